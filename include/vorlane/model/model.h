// Models.

#ifndef ZYL_MODEL_MODEL_H
#define ZYL_MODEL_MODEL_H

#include "vorlane/model/change.h"
#include "vorlane/model/extractable_list.h"

/// An ordered bag of extractables, itself an extractable: models nest.
///
/// Holds references and owns nothing: taking an element out does not end it, ending the model
/// leaves the elements alive. Duplicates are kept.
class ZYL_EXPORT ZylModelI : public ZylExtractableI {
  ZYL_TYPE(ZylModelI, ZylExtractableI)
  ZYL_CP_HOOKS(ZylModelI)
 public:
  using Iterator = ZylExtractableList::Iterator;

  explicit ZylModelI(ZylEnvI* env, const char* name = nullptr);
  ~ZylModelI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  /// Drops the elements that go; the model stays.
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;

  /// Appends `element` and sends `ZylAddOneToModel`. O(1).
  ZylExtractableI* add(ZylExtractableI* element);
  /// Appends the elements that are not null and sends one `ZylAddToModel`.
  void add(const ZylExtractableArray& elements);
  /// Removes the first occurrence and sends `ZylRemoveFromModel`; nothing if there is none.
  void remove(ZylExtractableI* element);
  /// Removes all occurrences of the elements in one walk, and sends one `ZylRemoveFromModel` with
  /// what was there.
  void remove(const ZylExtractableArray& elements);

  const ZylExtractableList& getElements() const noexcept { return _elements; }

 private:
  ZylExtractableList _elements;
};

/// Handle of a model.
class ZYL_EXPORT ZylModel : public ZylExtractable {
  ZYL_HANDLE(ZylModel, ZylExtractable, ZylModelI)
 public:
  explicit ZylModel(const ZylEnv& env, const char* name = nullptr);

  /// Returns `element`. Raises `ZylEmptyHandleException` for empty handles, `ZylWrongUsage` for an
  /// object of another environment.
  ZylExtractable add(const ZylExtractable& element) const;
  const ZylExtractableArray& add(const ZylExtractableArray& elements) const;
  void remove(const ZylExtractable& element) const;
  void remove(const ZylExtractableArray& elements) const;
  /// Adds what `element` stands for, through the environment's expander.
  void expand(const ZylExtractable& element, const char* first = nullptr,
              const char* second = nullptr) const;
  ZylModel getClone(const ZylEnv& env) const;

  /// Walks the elements in order of addition.
  class ZYL_EXPORT Iterator {
   public:
    explicit Iterator(const ZylModel& model);
    bool ok() const noexcept { return _cells.ok(); }
    ZylExtractable operator*() const noexcept { return ZylExtractable(*_cells); }
    void operator++() noexcept { ++_cells; }

   private:
    ZylModelI::Iterator _cells;
  };
};

/// One element was appended to a model.
class ZYL_EXPORT ZylAddOneToModel final : public ZylChange {
  ZYL_CHANGE(ZylAddOneToModel, ZylChange)
 public:
  ZylAddOneToModel(ZylModelI* model, ZylExtractableI* element) : _model(model), _element(element) {}
  ZylExtractableI* getChangedExtractable() const override { return _model; }
  ZylModelI* getModel() const noexcept { return _model; }
  ZylExtractableI* getElement() const noexcept { return _element; }

 private:
  ZylModelI* _model;
  ZylExtractableI* _element;
};

namespace zyl::detail {
/// A model and elements that joined or left it; ends the array if it made it itself.
class ZYL_EXPORT ModelArrayChange : public ZylChange {
 public:
  ModelArrayChange(const ModelArrayChange&) = delete;
  ModelArrayChange& operator=(const ModelArrayChange&) = delete;
  ~ModelArrayChange() override;
  ZylExtractableI* getChangedExtractable() const override { return _model; }
  ZylModelI* getModel() const noexcept { return _model; }
  const ZylExtractableArray& getElements() const noexcept { return _elements; }

 protected:
  ModelArrayChange(ZylModelI* model, const ZylExtractableArray& elements)
      : _model(model), _elements(elements), _owned(0) {}
  ModelArrayChange(ZylModelI* model, ZylExtractableI* element);
  ZylModelI* _model;
  ZylExtractableArray _elements;
  long _owned;
};
}  // namespace zyl::detail

/// Elements were appended to a model.
class ZYL_EXPORT ZylAddToModel final : public zyl::detail::ModelArrayChange {
  ZYL_CHANGE(ZylAddToModel, ZylChange)
 public:
  ZylAddToModel(ZylModelI* model, const ZylExtractableArray& elements)
      : ModelArrayChange(model, elements) {}
  ZylAddToModel(ZylModelI* model, ZylExtractableI* element) : ModelArrayChange(model, element) {}
};

/// Elements were taken out of a model.
class ZYL_EXPORT ZylRemoveFromModel final : public zyl::detail::ModelArrayChange {
  ZYL_CHANGE(ZylRemoveFromModel, ZylChange)
 public:
  ZylRemoveFromModel(ZylModelI* model, const ZylExtractableArray& elements)
      : ModelArrayChange(model, elements) {}
  ZylRemoveFromModel(ZylModelI* model, ZylExtractableI* element)
      : ModelArrayChange(model, element) {}
};

#endif
