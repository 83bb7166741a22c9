// SPDX-License-Identifier: GPL-3.0-or-later
// Keys with their items, found by hashing and kept in the order in which they came.
//
// The entries stand in one vector in their order; a second table of slots, found by the hash, names their
// places. Removing leaves a hole among the entries, and holes are closed when they outnumber the rest.
#pragma once

#include <cstdint>
#include <vector>

#include "script/values/heap_share.h"
#include "script/values/value.h"

namespace quarlin::vbs {

// Numbers of any kind are one key when they are equal, texts when their characters are, objects when they
// are the same one. A text and a number differ always. An array as a key is error 5.
class KeyTable {
 public:
  std::size_t Count() const { return count_; }

  // Whether texts are one key that differ in case only. May change only while there are no entries.
  void IgnoreCase(bool ignore) { ignoresCase_ = ignore; }
  bool IgnoresCase() const { return ignoresCase_; }

  bool Has(const Value& key) const;

  // The item, with Empty for a key that was not there and is from now on. The reference holds until the
  // table is changed.
  Value& FindOrAdd(const Value& key);

  // False, and nothing changed, for a key that is there already.
  bool Add(const Value& key, const Value& item);

  // False for a key that is not there. What is removed dies when the table is in order again, so it may
  // run code that uses the table.
  bool Remove(const Value& key);
  void Clear();

  // The entry keeps its place and its item. Error 32811 when `from` is missing, 457 when `to` is another
  // entry's key.
  void Rename(const Value& from, const Value& to);

  // Calls `see` with every key and every item.
  template <class See>
  void ForEach(See see) const {
    for (const Entry& entry : entries_) {
      if (!entry.live) continue;
      see(entry.key);
      see(entry.item);
    }
  }

  // In their order.
  std::vector<Value> Keys() const;
  std::vector<Value> Items() const;

 private:
  struct Entry {
    Value key;
    Value item;
    std::uint32_t hash = 0;
    bool live = false;
  };

  // `place` counts the entries from 1; 0 is a free slot. The hash stands here too, so that looking along
  // the slots touches no entry that is not meant.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t place = 0;
  };

  std::uint32_t HashOf(const Value& key) const;
  bool SameKey(const Value& left, const Value& right) const;
  std::size_t SlotOf(const Value& key, std::uint32_t hash) const;
  void FreeSlot(std::size_t slot);
  void MakeRoom();
  void Resize(std::size_t slots);
  void CloseHoles();
  void Rebuild();
  Value& Append(const Value& key, std::uint32_t hash);

  std::vector<Entry> entries_;
  std::vector<Slot> slots_;  // none, or a power of two; at most half of them taken
  std::size_t count_ = 0;
  bool ignoresCase_ = false;
  HeapShare share_;
};

}  // namespace quarlin::vbs
