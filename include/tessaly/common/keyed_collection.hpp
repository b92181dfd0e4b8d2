// The keyed collection shared by every collection class of the model: items in insertion order,
// reached by 1-based position or by an optional text key. Keys are unique and compared without
// regard to letter case (see FoldCase); key look-up takes constant time. The items sit alone in
// one vector. Once the collection holds a key, a key index is made: each key, stored once as
// given (the texts of all keys back to back in one string), at its item's position in a list of
// keys, and an open-addressing table of positions that finds it (inserting or removing other
// than at the end renumbers the table, as it moves the items after it). A collection without
// keys, such as a request's placements, holds no more than its items.
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
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {

template <class T>
class KeyedCollection {
 private:
  // The key of the item at the same position (empty when it has none): where its text is in the
  // index's texts, and its hash.
  struct Key {
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
    std::uint32_t hash = 0;
  };
  // A slot of the key index: 1 + the position of a keyed entry (0: a free slot), and the low
  // bits of its key's hash.
  struct Slot {
    std::uint32_t entry = 0;
    std::uint32_t hash = 0;
  };

 public:
  using Ptr = std::shared_ptr<T>;

  // Iterates the items (shared pointers) in order.
  class const_iterator {
   public:
    using value_type = Ptr;
    using difference_type = std::ptrdiff_t;
    const_iterator() = default;
    const_iterator(typename std::vector<Ptr>::const_iterator it, typename std::vector<Ptr>::const_iterator end)
        : it_(it), end_(end) {}
    const Ptr& operator*() const { return *it_; }
    const Ptr* operator->() const { return &*it_; }
    const_iterator& operator++() {
      ++it_;
      // A walk over a large model waits mostly for items to come from memory: the item a few
      // steps ahead is asked for now, so that several loads are under way at once.
      if (end_ - it_ > kAhead) __builtin_prefetch((it_ + kAhead)->get());
      return *this;
    }
    const_iterator operator++(int) { auto old = *this; ++*this; return old; }
    bool operator==(const const_iterator& other) const { return it_ == other.it_; }

   private:
    static constexpr std::ptrdiff_t kAhead = 4;
    typename std::vector<Ptr>::const_iterator it_;
    typename std::vector<Ptr>::const_iterator end_;
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

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.size()); }
  bool empty() const noexcept { return items_.empty(); }

  // The item at 1-based `position`; error 9 when out of range.
  const Ptr& Item(std::int32_t position) const { return items_[Index(position)]; }
  // The item under `key`; error 5 when no item has that key.
  const Ptr& Item(std::string_view key) const {
    std::size_t slot = FindSlot(key);
    if (slot == kNone) RaisePlatform(errc::kInvalidCall);
    return items_[index_->slots[slot].entry - 1];
  }
  // The item under `key`, or nullptr.
  Ptr Find(std::string_view key) const {
    std::size_t slot = FindSlot(key);
    return slot == kNone ? nullptr : items_[index_->slots[slot].entry - 1];
  }
  bool ContainsKey(std::string_view key) const { return FindSlot(key) != kNone; }
  // 1-based position of the item under `key`, or 0.
  std::int32_t PositionOfKey(std::string_view key) const {
    std::size_t slot = FindSlot(key);
    return slot == kNone ? 0 : static_cast<std::int32_t>(index_->slots[slot].entry);
  }
  // The key under which the item at `position` is held ("" when unkeyed); the view is valid
  // until the collection next changes.
  std::string_view KeyAt(std::int32_t position) const {
    const std::size_t index = Index(position);
    return index_ ? index_->View(index) : std::string_view();
  }

  // 1-based position of the very same object, or 0.
  std::int32_t PositionOf(const T* item) const noexcept {
    for (std::size_t i = 0; i < items_.size(); ++i)
      if (items_[i].get() == item) return static_cast<std::int32_t>(i + 1);
    return 0;
  }

  // Appends `item`, under `key` when it is not empty; error 457 when the key is in use.
  void Append(Ptr item, std::string_view key = {}) { Insert(items_.size(), std::move(item), key); }
  // Inserts `item` before 1-based `position`; error 9 when out of range, 457 as Append.
  void InsertBefore(std::int32_t position, Ptr item, std::string_view key = {}) {
    Insert(Index(position), std::move(item), key);
  }

  // Makes room for `more` entries beyond those held, so that adding them moves nothing (the
  // keys of a collection that has none yet get the same room once the first comes).
  void Reserve(std::size_t more) {
    items_.reserve(items_.size() + more);
    if (index_) index_->keys.reserve(index_->keys.size() + more);
  }

  // Gives back the room held beyond the entries held.
  void ShrinkToFit() {
    items_.shrink_to_fit();
    if (index_) {
      index_->keys.shrink_to_fit();
      index_->texts.shrink_to_fit();
    }
  }

  void Remove(std::int32_t position) { Erase(Index(position)); }
  void Remove(std::string_view key) {
    std::size_t slot = FindSlot(key);
    if (slot == kNone) RaisePlatform(errc::kInvalidCall);
    Erase(index_->slots[slot].entry - 1);
  }
  // Removes the first `count` entries (all of them when there are fewer).
  void RemoveFirst(std::size_t count) {
    count = std::min(count, items_.size());
    items_.erase(items_.begin(), items_.begin() + static_cast<std::ptrdiff_t>(count));
    if (index_) {
      for (std::size_t i = 0; i < count; ++i) index_->unused += index_->keys[i].size;
      index_->keys.erase(index_->keys.begin(), index_->keys.begin() + static_cast<std::ptrdiff_t>(count));
      index_->Pack();
    }
    Reindex();
  }
  void RemoveAll() noexcept {
    items_.clear();
    index_.reset();
  }

  const_iterator begin() const { return const_iterator(items_.begin(), items_.end()); }
  const_iterator end() const { return const_iterator(items_.end(), items_.end()); }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t Index(std::int32_t position) const {
    if (position < 1 || position > Count()) RaisePlatform(errc::kSubscript);
    return static_cast<std::size_t>(position - 1);
  }
  static std::uint32_t HashOf(std::string_view key) noexcept { return static_cast<std::uint32_t>(FoldedHash(key)); }
  std::size_t Mask() const noexcept { return index_->slots.size() - 1; }

  // The slot holding `key`, or kNone. The index is probed linearly from the hash's own slot.
  std::size_t FindSlot(std::string_view key) const {
    return key.empty() ? kNone : FindSlot(key, HashOf(key));
  }
  // The same for a key whose hash is known.
  std::size_t FindSlot(std::string_view key, std::uint32_t hash) const {
    if (!index_ || index_->keyed == 0) return kNone;
    for (std::size_t i = hash & Mask();; i = (i + 1) & Mask()) {
      const Slot& slot = index_->slots[i];
      if (slot.entry == 0) return kNone;
      if (slot.hash == hash && FoldedEqual(index_->View(slot.entry - 1), key)) return i;
    }
  }
  // Puts entry `index` (keyed, hash `hash`) into a free slot; the index has room for it.
  void Place(std::size_t index, std::uint32_t hash) noexcept {
    std::vector<Slot>& slots = index_->slots;
    std::size_t i = hash & Mask();
    while (slots[i].entry != 0) i = (i + 1) & Mask();
    slots[i] = Slot{static_cast<std::uint32_t>(index + 1), hash};
  }
  // Rebuilds the index for the keys as they are, with room for `extra` more keys; a new index
  // starts with an empty key for each item held. Without keys, present or to come, there is no
  // index.
  void Reindex(std::size_t extra = 0) {
    std::size_t keyed = 0;
    if (index_)
      for (const Key& key : index_->keys) keyed += key.size != 0;
    if (keyed + extra == 0) {
      index_.reset();
      return;
    }
    std::size_t capacity = 8;
    while (capacity < 2 * (keyed + extra)) capacity *= 2;
    // Everything that can fail comes before the first change.
    std::vector<Slot> slots(capacity);
    if (!index_) {
      auto fresh = std::make_unique<KeyIndex>();
      fresh->keys.reserve(std::max(items_.capacity(), items_.size() + extra));
      fresh->keys.resize(items_.size());
      index_ = std::move(fresh);
    }
    index_->slots = std::move(slots);
    index_->keyed = static_cast<std::uint32_t>(keyed);
    for (std::size_t i = 0; i < index_->keys.size(); ++i)
      if (index_->keys[i].size != 0) Place(i, index_->keys[i].hash);
  }
  // Adds `delta` to the entry numbers of the slots at or after entry `from`.
  void Shift(std::size_t from, std::int32_t delta) noexcept {
    if (!index_) return;
    for (Slot& slot : index_->slots)
      if (slot.entry > from) slot.entry = static_cast<std::uint32_t>(static_cast<std::int64_t>(slot.entry) + delta);
  }

  void Insert(std::size_t index, Ptr item, std::string_view key) {
    Key held;
    if (!key.empty()) {
      held.hash = HashOf(key);
      if (FindSlot(key, held.hash) != kNone) RaisePlatform(errc::kDuplicateKey);
      // Room in the index first, so that nothing below can fail once the item is in.
      if (!index_ || 2 * (std::size_t{index_->keyed} + 1) > index_->slots.size()) Reindex(1);
      if (key.size() > kMaxTexts - index_->texts.size()) throw std::length_error("keys of a collection");
      held.offset = static_cast<std::uint32_t>(index_->texts.size());
      held.size = static_cast<std::uint32_t>(key.size());
      index_->texts.append(key.data(), key.size());  // copies `key` first, should it lie in texts
    }
    const bool keyed = held.size != 0;
    const std::uint32_t hash = held.hash;
    if (index_) {
      // Items and keys grow together; should either fail to, the key is taken out again.
      std::vector<Key>& keys = index_->keys;
      try {
        keys.insert(keys.begin() + static_cast<std::ptrdiff_t>(index), held);
        try {
          items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
        } catch (...) {
          keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(index));
          throw;
        }
      } catch (...) {
        if (keyed) index_->texts.resize(held.offset);
        throw;
      }
    } else {
      items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
    }
    if (index + 1 < items_.size()) Shift(index, 1);
    if (keyed) {
      Place(index, hash);
      ++index_->keyed;
    }
  }

  void Erase(std::size_t index) {
    if (index_ && index_->keys[index].size != 0) {
      std::vector<Slot>& slots = index_->slots;
      const std::size_t slot = FindSlot(index_->View(index), index_->keys[index].hash);
      // Backward-shift deletion: the slots after the freed one move up when their own slot is
      // not between the two, so that no probe sequence is broken.
      std::size_t hole = slot;
      for (std::size_t j = (slot + 1) & Mask(); slots[j].entry != 0; j = (j + 1) & Mask()) {
        const std::size_t home = slots[j].hash & Mask();
        const bool between = hole <= j ? (hole < home && home <= j) : (hole < home || home <= j);
        if (between) continue;
        slots[hole] = slots[j];
        hole = j;
      }
      slots[hole] = Slot{};
      --index_->keyed;
      index_->unused += index_->keys[index].size;
    }
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    if (index_) {
      index_->keys.erase(index_->keys.begin() + static_cast<std::ptrdiff_t>(index));
      index_->Pack();
    }
    if (index < items_.size()) Shift(index + 1, -1);
  }

  void CopyFrom(const KeyedCollection& other) {
    for (std::size_t i = 0; i < other.items_.size(); ++i)
      Append(other.items_[i], other.index_ ? other.index_->View(i) : std::string_view());
  }

  // Key offsets and lengths are 32-bit: a collection holds at most 4 GB of key text.
  static constexpr std::size_t kMaxTexts = UINT32_MAX;

  // The key index: one key per item (empty for an item without one); the texts of the keys, back
  // to back in one string rather than in a heap block each; and the slots, a power of two in
  // number, at most half of them used.
  struct KeyIndex {
    std::vector<Key> keys;
    std::vector<Slot> slots;
    std::string texts;
    // Counts held in 32 bits, as entry numbers and key texts are: a collection has one index, or
    // none, and thousands of collections have a few keys.
    std::uint32_t keyed = 0;
    std::uint32_t unused = 0;  // bytes of texts left by keys since removed

    std::string_view View(std::size_t entry) const noexcept {
      const Key& key = keys[entry];
      return {texts.data() + key.offset, key.size};
    }
    // Once most of the texts are left by removed keys, copies the others into a string of their
    // own size. Packing saves memory and nothing depends on it: without memory for the copy the
    // texts stay as they are.
    void Pack() noexcept {
      if (unused <= texts.size() / 2) return;
      std::string packed;
      try {
        packed.reserve(texts.size() - unused);
      } catch (const std::bad_alloc&) {
        return;
      }
      for (Key& key : keys) {
        if (key.size == 0) continue;
        const std::size_t offset = packed.size();
        packed.append(texts, key.offset, key.size);
        key.offset = static_cast<std::uint32_t>(offset);
      }
      texts = std::move(packed);
      unused = 0;
    }
  };

  std::vector<Ptr> items_;
  std::unique_ptr<KeyIndex> index_;  // null while no item has a key
};

}  // namespace tessaly

#endif  // TESSALY_COMMON_KEYED_COLLECTION_HPP_
