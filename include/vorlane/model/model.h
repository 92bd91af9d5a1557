// Models.

#ifndef ZYL_MODEL_MODEL_H
#define ZYL_MODEL_MODEL_H

#include "vorlane/model/extractable_array.h"
#include "vorlane/model/extractable_list.h"

/// An ordered bag of extractables, itself an extractable: models nest.
///
/// Holds references and owns nothing: taking an element out does not end it, ending the model
/// leaves the elements alive. Duplicates are kept.
class ZYL_EXPORT ZylModelI : public ZylExtractableI {
  ZYL_EXTRACTABLE(ZylModelI, ZylExtractableI)
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

#endif
