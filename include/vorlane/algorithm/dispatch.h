// Tables of what an engine does for each class of object and change.

#ifndef ZYL_ALGORITHM_DISPATCH_H
#define ZYL_ALGORITHM_DISPATCH_H

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <type_traits>
#include <vector>

#include "vorlane/algorithm/algorithm.h"
#include "vorlane/model/change.h"

namespace zyl {

/// What an engine does for each class of object that it can take, and for each change that it
/// follows. Filled once, in a static of the engine, and read by `doExtract`, `doRemove` and
/// `doApply`:
///
///     const zyl::EngineTable<MyEngine>& table() {
///       static const auto Table = zyl::EngineTable<MyEngine>()
///           .take<ZylRangeI>(&MyEngine::addRow, &MyEngine::removeRow)
///           .on<ZylSetRangeBounds>(&MyEngine::rangeBounds);
///       return Table;
///     }
///
/// where `Row* addRow(const ZylRangeI*)`, `void removeRow(const ZylRangeI*, Row*)` and
/// `bool rangeBounds(const ZylSetRangeBounds&, Row*)` are members: handles keep their types. A
/// class that is not listed is treated as its nearest listed base; `takeExactly` is for classes
/// whose subclasses mean more than the engine knows.
///
/// Nothing is written after the table is filled, so engines on several threads share one. A listed
/// class is found by one indexed read, another one by a walk up its bases.
template <class Engine>
class EngineTable {
 public:
  /// Objects of the class and of its subclasses. `taking` returns the engine's handle, null to
  /// refuse; `releasing` gets it back. What either raises passes.
  template <class Object, class Owner, class Taken, class Released, class Handle>
  EngineTable& take(Handle* (Owner::*taking)(const Taken*),
                    void (Owner::*releasing)(const Released*, Handle*)) {
    return add<Object>(taking, releasing, /*exactly=*/false);
  }
  /// Objects of the class, and of none of its subclasses.
  template <class Object, class Owner, class Taken, class Released, class Handle>
  EngineTable& takeExactly(Handle* (Owner::*taking)(const Taken*),
                           void (Owner::*releasing)(const Released*, Handle*)) {
    return add<Object>(taking, releasing, /*exactly=*/true);
  }
  /// Changes of the class. `following` gets the handle of the object changed, null where there is
  /// none, and returns whether the engine could follow.
  template <class Change, class Owner, class Followed, class Handle>
  EngineTable& on(bool (Owner::*following)(const Followed&, Handle*)) {
    static_assert(std::is_base_of_v<ZylChange, Change>, "not a change");
    static_assert(std::is_base_of_v<Followed, Change>, "the member follows another change");
    static_assert(std::is_base_of_v<Owner, Engine>, "not a member of the engine");
    Entry entry(Change::GetTypeInfo());
    entry.store(following);
    entry.apply = [](Engine* engine, const Entry& self, const ZylChange* change, void* handle) {
      const auto member = self.template load<decltype(following)>();
      return (engine->*member)(static_cast<const Change&>(*change), static_cast<Handle*>(handle));
    };
    insert(&_changes, entry, Change::GetTypeIndex());
    return *this;
  }

  /// The body of `doExtract`; false for a class that the table does not know.
  bool extract(Engine* engine, const ZylExtractableI* object, void** handle) const {
    const Entry* entry = _objects.find(object);
    return entry != nullptr && entry->extract(engine, *entry, object, handle);
  }
  /// The body of `doRemove`.
  bool remove(Engine* engine, const ZylExtractableI* object, void* handle) const {
    const Entry* entry = _objects.find(object);
    if (entry == nullptr) return false;
    entry->release(engine, *entry, object, handle);
    return true;
  }
  /// The body of `doApply`; false for a change that the table does not know.
  bool apply(Engine* engine, const ZylChange* change, void* handle) const {
    const Entry* entry = _changes.find(change);
    return entry != nullptr && entry->apply(engine, *entry, change, handle);
  }

 private:
  // Pointers to members are kept as bytes, with the function that knows their type.
  struct Entry {
    explicit Entry(ZylTypeInfo t) : type(t) {}
    template <class Member>
    void store(Member member, std::size_t slot = 0) {
      static_assert(std::is_trivially_copyable_v<Member> && sizeof(member) <= sizeof(members[0]));
      std::memcpy(members[slot].data(), &member, sizeof(member));
    }
    template <class Member>
    Member load(std::size_t slot = 0) const {
      Member member;
      std::memcpy(&member, members[slot].data(), sizeof(member));
      return member;
    }

    ZylTypeInfo type;
    bool exactly = false;
    bool (*extract)(Engine*, const Entry&, const ZylExtractableI*, void**) = nullptr;
    void (*release)(Engine*, const Entry&, const ZylExtractableI*, void*) = nullptr;
    bool (*apply)(Engine*, const Entry&, const ZylChange*, void*) = nullptr;
    std::array<std::array<unsigned char, 2 * sizeof(void*)>, 2> members{};
  };

  struct Table {
    std::vector<Entry> entries;
    std::vector<long> byIndex;  // type index: 1 + the entry, or 0

    template <class Object>
    const Entry* find(const Object* object) const {
      const auto index = static_cast<std::size_t>(object->getTypeIndex());
      if (index < byIndex.size() && byIndex[index] != 0) {
        return &entries[static_cast<std::size_t>(byIndex[index] - 1)];
      }
      for (ZylTypeInfo type = object->getTypeInfo(); type != ZylRtti::GetTypeInfo();
           type = ZylGetBaseTypeInfo(type)) {
        const auto entry = std::find_if(entries.begin(), entries.end(),
                                        [type](const Entry& e) { return e.type == type; });
        if (entry == entries.end()) continue;
        return entry->exactly && type != object->getTypeInfo() ? nullptr : &*entry;
      }
      return nullptr;
    }
  };

  template <class Object, class Owner, class Taken, class Released, class Handle>
  EngineTable& add(Handle* (Owner::*taking)(const Taken*),
                   void (Owner::*releasing)(const Released*, Handle*), bool exactly) {
    static_assert(std::is_base_of_v<Owner, Engine>, "not a member of the engine");
    static_assert(std::is_base_of_v<ZylExtractableI, Object>, "not an extractable");
    static_assert(std::is_base_of_v<Taken, Object> && std::is_base_of_v<Released, Object>,
                  "the members take another class");
    Entry entry(Object::GetTypeInfo());
    entry.exactly = exactly;
    entry.store(taking, 0);
    entry.store(releasing, 1);
    entry.extract = [](Engine* engine, const Entry& self, const ZylExtractableI* object,
                       void** handle) {
      const auto member = self.template load<decltype(taking)>(0);
      Handle* const result = (engine->*member)(static_cast<const Object*>(object));
      if (result == nullptr) return false;
      *handle = result;
      return true;
    };
    entry.release = [](Engine* engine, const Entry& self, const ZylExtractableI* object,
                       void* handle) {
      const auto member = self.template load<decltype(releasing)>(1);
      (engine->*member)(static_cast<const Object*>(object), static_cast<Handle*>(handle));
    };
    insert(&_objects, entry, Object::GetTypeIndex());
    return *this;
  }

  // A later entry for a class replaces the one before.
  static void insert(Table* table, const Entry& entry, long typeIndex) {
    const auto index = static_cast<std::size_t>(typeIndex);
    if (index >= table->byIndex.size()) table->byIndex.resize(index + 1, 0);
    if (table->byIndex[index] != 0) {
      table->entries[static_cast<std::size_t>(table->byIndex[index] - 1)] = entry;
      return;
    }
    table->entries.push_back(entry);
    table->byIndex[index] = static_cast<long>(table->entries.size());
  }

  Table _objects;
  Table _changes;
};

}  // namespace zyl

#endif
