// The standard operations that every collection class of the model offers over its inner keyed
// collection: Item, Count, Remove, iteration (the for-each source), and the building blocks of
// clear and delete. Each collection class derives from Collection<ItsItem> and adds only what
// differs (its Add, AddData, look-ups, loadXml and createXMLnode).
#ifndef TESSALY_COMMON_COLLECTION_HPP_
#define TESSALY_COMMON_COLLECTION_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "tessaly/common/keyed_collection.hpp"

namespace tessaly {

template <class T>
class Collection {
 public:
  using Ptr = std::shared_ptr<T>;
  using const_iterator = typename KeyedCollection<T>::const_iterator;

  // By 1-based position (error 9 when out of range) or by key (error 5 when missing).
  const Ptr& Item(std::int32_t position) const { return inner_.Item(position); }
  const Ptr& Item(std::string_view key) const { return inner_.Item(key); }
  std::int32_t Count() const noexcept { return inner_.Count(); }
  // Removes the entry; the item itself is not cleared.
  void Remove(std::int32_t position) { inner_.Remove(position); }
  void Remove(std::string_view key) { inner_.Remove(key); }
  // Makes room for `more` items beyond those held, so that adding them moves nothing.
  void Reserve(std::size_t more) { inner_.Reserve(more); }
  // Gives back the room held beyond the items.
  void ShrinkToFit() { inner_.ShrinkToFit(); }
  // Iteration in insertion order (the collection's enumerator).
  const_iterator begin() const { return inner_.begin(); }
  const_iterator end() const { return inner_.end(); }

 protected:
  Collection() = default;
  ~Collection() = default;
  Collection(const Collection&) = delete;
  Collection& operator=(const Collection&) = delete;

  // Clears every item, first to last, and leaves the collection empty: the same as taking
  // entry 1, clearing it and removing it until none is left, without shifting the remaining
  // entries at each step. When an item's clear throws, the items before it are removed and it
  // stays first, with the ones after it.
  void ClearItems() {
    std::size_t cleared = 0;
    try {
      for (const Ptr& item : inner_) {
        item->clear();
        ++cleared;
      }
    } catch (...) {
      inner_.RemoveFirst(cleared);
      throw;
    }
    inner_.RemoveAll();
  }

  // At the first entry that is the very same object: clears it and removes it. An item that is
  // not held is ignored.
  void DeleteItem(const T* item) {
    std::int32_t position = inner_.PositionOf(item);
    if (position == 0) return;
    Ptr held = inner_.Item(position);
    held->clear();
    inner_.Remove(position);
  }

  // The first item, in order, for which `match` holds; nullptr when none does.
  template <class Match>
  Ptr FindFirst(Match&& match) const {
    for (const Ptr& item : inner_)
      if (match(*item)) return item;
    return nullptr;
  }

  // Adds under `key` when it is not empty, unkeyed otherwise; returns the item.
  const Ptr& Append(const Ptr& item, std::string_view key = {}) {
    inner_.Append(item, key);
    return item;
  }

  KeyedCollection<T> inner_;
};

}  // namespace tessaly

#endif  // TESSALY_COMMON_COLLECTION_HPP_
