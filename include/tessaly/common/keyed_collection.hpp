// The keyed collection shared by every collection class of the model: items in insertion order,
// reached by 1-based position or by an optional text key. Keys are unique and compared without
// regard to letter case (see FoldCase); key look-up takes constant time. Each key is stored once,
// as given.
//
// Errors, with the platform's numbers and texts: a position outside 1..Count is error 9, a
// missing key error 5, a key that is already used error 457. None is caught here.
//
// Thread safety: none; a collection belongs to one document, used from one thread at a time.
#ifndef TESSALY_COMMON_KEYED_COLLECTION_HPP_
#define TESSALY_COMMON_KEYED_COLLECTION_HPP_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {

// Hashing and comparison of keys without regard to letter case (as FoldCase folds them), for
// look-ups by any text without building a folded copy.
struct FoldedKeyHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view key) const noexcept { return FoldedHash(key); }
};
struct FoldedKeyEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept { return FoldedEqual(a, b); }
};

template <class T>
class KeyedCollection {
 private:
  // An item, and its key as given (a key of keys_), or null when it has none.
  struct Entry {
    std::shared_ptr<T> item;
    const std::string* key;
  };

 public:
  using Ptr = std::shared_ptr<T>;

  // Iterates the items (shared pointers) in order.
  class const_iterator {
   public:
    using value_type = Ptr;
    using difference_type = std::ptrdiff_t;
    const_iterator() = default;
    explicit const_iterator(typename std::vector<Entry>::const_iterator it) : it_(it) {}
    const Ptr& operator*() const { return it_->item; }
    const Ptr* operator->() const { return &it_->item; }
    const_iterator& operator++() { ++it_; return *this; }
    const_iterator operator++(int) { auto old = *this; ++it_; return old; }
    bool operator==(const const_iterator&) const = default;

   private:
    typename std::vector<Entry>::const_iterator it_;
  };

  KeyedCollection() = default;
  // Copies hold the same items under the same keys.
  KeyedCollection(const KeyedCollection& other) { CopyFrom(other); }
  KeyedCollection& operator=(const KeyedCollection& other) {
    if (this != &other) {
      RemoveAll();
      CopyFrom(other);
    }
    return *this;
  }
  KeyedCollection(KeyedCollection&&) noexcept = default;
  KeyedCollection& operator=(KeyedCollection&&) noexcept = default;

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
  bool empty() const noexcept { return entries_.empty(); }

  // The item at 1-based `position`; error 9 when out of range.
  const Ptr& Item(std::int32_t position) const { return entries_[Index(position)].item; }
  // The item under `key`; error 5 when no item has that key.
  const Ptr& Item(std::string_view key) const {
    auto it = keys_.find(key);
    if (it == keys_.end()) RaisePlatform(errc::kInvalidCall);
    return it->second;
  }
  // The item under `key`, or nullptr.
  Ptr Find(std::string_view key) const {
    auto it = keys_.find(key);
    return it == keys_.end() ? nullptr : it->second;
  }
  bool ContainsKey(std::string_view key) const { return keys_.find(key) != keys_.end(); }
  // The key under which the item at `position` is held ("" when unkeyed).
  const std::string& KeyAt(std::int32_t position) const {
    const std::string* key = entries_[Index(position)].key;
    return key != nullptr ? *key : NoKey();
  }

  // 1-based position of the very same object, or 0.
  std::int32_t PositionOf(const T* item) const noexcept {
    for (std::size_t i = 0; i < entries_.size(); ++i)
      if (entries_[i].item.get() == item) return static_cast<std::int32_t>(i + 1);
    return 0;
  }

  // Appends `item`, under `key` when it is not empty; error 457 when the key is in use.
  void Append(Ptr item, std::string_view key = {}) { Insert(entries_.size(), std::move(item), key); }
  // Inserts `item` before 1-based `position`; error 9 when out of range, 457 as Append.
  void InsertBefore(std::int32_t position, Ptr item, std::string_view key = {}) {
    Insert(Index(position), std::move(item), key);
  }

  void Remove(std::int32_t position) {
    std::size_t i = Index(position);
    ForgetKey(entries_[i]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
  }
  void Remove(std::string_view key) {
    auto it = keys_.find(key);
    if (it == keys_.end()) RaisePlatform(errc::kInvalidCall);
    Remove(PositionOf(it->second.get()));
  }
  // Removes the first `count` entries (all of them when there are fewer).
  void RemoveFirst(std::size_t count) {
    count = std::min(count, entries_.size());
    for (std::size_t i = 0; i < count; ++i) ForgetKey(entries_[i]);
    entries_.erase(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(count));
  }
  void RemoveAll() noexcept {
    entries_.clear();
    keys_.clear();
  }

  const_iterator begin() const { return const_iterator(entries_.begin()); }
  const_iterator end() const { return const_iterator(entries_.end()); }

 private:
  static const std::string& NoKey() {
    static const std::string none;
    return none;
  }
  std::size_t Index(std::int32_t position) const {
    if (position < 1 || position > Count()) RaisePlatform(errc::kSubscript);
    return static_cast<std::size_t>(position - 1);
  }
  void Insert(std::size_t index, Ptr item, std::string_view key) {
    const std::string* held = nullptr;
    if (!key.empty()) {
      auto [it, inserted] = keys_.try_emplace(std::string(key), item);
      if (!inserted) RaisePlatform(errc::kDuplicateKey);
      held = &it->first;
    }
    try {
      entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(index), Entry{std::move(item), held});
    } catch (...) {
      if (held != nullptr) keys_.erase(keys_.find(std::string_view(*held)));
      throw;
    }
  }
  // Drops the key of `entry`, if it has one (the key text goes with it).
  void ForgetKey(Entry& entry) {
    if (entry.key == nullptr) return;
    keys_.erase(keys_.find(std::string_view(*entry.key)));
    entry.key = nullptr;
  }
  void CopyFrom(const KeyedCollection& other) {
    for (const Entry& entry : other.entries_) Append(entry.item, entry.key != nullptr ? *entry.key : std::string_view());
  }

  std::vector<Entry> entries_;
  std::unordered_map<std::string, Ptr, FoldedKeyHash, FoldedKeyEqual> keys_;
};

}  // namespace tessaly

#endif  // TESSALY_COMMON_KEYED_COLLECTION_HPP_
