// All extractables of an environment by class, for those who ask.

#ifndef ZYL_MODEL_TYPED_LIST_H
#define ZYL_MODEL_TYPED_LIST_H

#include "vorlane/env/simple_hash_table.h"
#include "vorlane/model/extractable_list.h"

/// The objects of exactly one class, in a tree that mirrors the class hierarchy.
class ZYL_EXPORT ZylTypedList : public ZylExtractableList {
 public:
  explicit ZylTypedList(ZylTypeInfo type) : _type(type) {}
  ZylTypeInfo getType() const noexcept { return _type; }
  ZylTypedList* getFather() const noexcept { return _father; }
  ZylTypedList* getFirstSubType() const noexcept { return _firstSubType; }
  ZylTypedList* getNext() const noexcept { return _next; }
  /// Makes `list` the last of the sub-lists.
  void addSubList(ZylTypedList* list) noexcept;

 private:
  ZylTypeInfo _type;
  ZylTypedList* _father = nullptr;
  ZylTypedList* _firstSubType = nullptr;
  ZylTypedList* _next = nullptr;
};

/// The classification: lazy, so that it costs nothing until a client asks.
class ZYL_EXPORT ZylTypedListManagerI {
 public:
  explicit ZylTypedListManagerI(ZylEnvI* env);
  ZylTypedListManagerI(const ZylTypedListManagerI&) = delete;
  ZylTypedListManagerI& operator=(const ZylTypedListManagerI&) = delete;

  void add(ZylExtractableI* object);
  void remove(ZylExtractableI* object);
  /// The objects of exactly the class with this token, null if there never was one. Classifies what
  /// is new first.
  ZylTypedList* getList(ZylTypeInfo type);
  /// Forgets everything; the next question starts from the id table.
  void clear();
  void end();

 private:
  ZYL_LOCAL void classify();
  ZYL_LOCAL void classifyAll();
  ZYL_LOCAL void insert(ZylExtractableI* object);
  ZYL_LOCAL ZylTypedList* getOrBuildList(ZylTypeInfo type);

  ZylEnvI* _env;
  long _classifyAll;
  ZylExtractableList _pending;
  ZylSimpleHashTable _lists;
};

#endif
