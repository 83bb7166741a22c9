// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/key_table.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>

#include "script/values/conversions.h"
#include "script/values/effort.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t fewestSlots = 16;
constexpr std::size_t fewestHoles = 16;  // closing holes is not worth while below this
constexpr std::size_t mostSlots = std::size_t{1} << 31;

// Every bit of the input reaches the lower half of the result.
std::uint64_t Mix(std::uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15U;
  return bits ^ (bits >> 32);
}

std::uint32_t Finish(std::uint64_t hash) {
  return static_cast<std::uint32_t>(Mix(Mix(hash)));
}

std::uint32_t HashOfText(std::u16string_view text) {
  constexpr std::size_t step = 4;  // code units in one word
  std::uint64_t hash = text.size();
  const char16_t* unit = text.data();
  std::size_t left = text.size();
  for (; left >= step; left -= step, unit += step) {
    std::uint64_t word;
    std::memcpy(&word, unit, sizeof(word));
    hash = Mix(hash ^ word);
  }
  std::uint64_t rest = 0;
  for (; left > 0; --left) rest = rest << 16 | *unit++;
  return Finish(hash ^ rest);
}

char16_t FoldedUnit(char16_t unit) {
  if (unit >= 0x80) return UpperOf(unit);
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

std::uint32_t HashOfFoldedText(std::u16string_view text) {
  std::uint64_t hash = text.size();
  for (const char16_t unit : text) hash = Mix(hash ^ FoldedUnit(unit));
  return Finish(hash);
}

bool SameFolded(std::u16string_view left, std::u16string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char16_t one, char16_t other) { return FoldedUnit(one) == FoldedUnit(other); });
}

bool IsNumber(const Value& value) {
  return value.GetKind() >= Kind::Boolean && value.GetKind() <= Kind::Date;
}

double NumberOf(const Value& value) {
  constexpr double tenThousandths = 10000.0;
  switch (value.GetKind()) {
    case Kind::Single:
    case Kind::Double:
    case Kind::Date:
      return value.AsReal();
    case Kind::Currency:
      return static_cast<double>(value.AsWhole()) / tenThousandths;
    default:
      return static_cast<double>(value.AsWhole());
  }
}

}  // namespace

std::uint32_t KeyTable::HashOf(const Value& key) const {
  switch (key.GetKind()) {
    case Kind::String:
      effort::Touch(4 * key.AsText().size());
      return ignoresCase_ ? HashOfFoldedText(key.AsText()) : HashOfText(key.AsText());
    case Kind::Object:
      return Finish(reinterpret_cast<std::uintptr_t>(key.AsObject()));
    case Kind::Empty:
    case Kind::Null:
      return static_cast<std::uint32_t>(key.GetKind());
    case Kind::Array:
    case Kind::Error:
    case Kind::Reference:
      throw ScriptError(invalidCall);
    default:
      return Finish(std::bit_cast<std::uint64_t>(NumberOf(key) + 0.0));  // -0 becomes 0
  }
}

bool KeyTable::SameKey(const Value& left, const Value& right) const {
  if (IsNumber(left)) return IsNumber(right) && NumberOf(left) == NumberOf(right);
  if (left.GetKind() != right.GetKind()) return false;
  if (left.IsString()) {
    return ignoresCase_ ? SameFolded(left.AsText(), right.AsText()) : left.AsText() == right.AsText();
  }
  return !left.IsObject() || left.AsObject() == right.AsObject();
}

// The slot that names the key's entry, or the free one where it would stand. There is always a free slot.
std::size_t KeyTable::SlotOf(const Value& key, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    const Slot& here = slots_[slot];
    if (here.place == 0) return slot;
    if (here.hash == hash && SameKey(entries_[here.place - 1].key, key)) return slot;
  }
}

bool KeyTable::Has(const Value& key) const {
  const std::uint32_t hash = HashOf(key);
  return count_ != 0 && slots_[SlotOf(key, hash)].place != 0;
}

Value& KeyTable::FindOrAdd(const Value& key) {
  const std::uint32_t hash = HashOf(key);
  if (count_ != 0) {
    const std::uint32_t place = slots_[SlotOf(key, hash)].place;
    if (place != 0) return entries_[place - 1].item;
  }
  return Append(key, hash);
}

bool KeyTable::Add(const Value& key, const Value& item) {
  const std::uint32_t hash = HashOf(key);
  if (count_ != 0 && slots_[SlotOf(key, hash)].place != 0) return false;
  Append(key, hash) = item;
  return true;
}

// Of a key that is not there yet.
Value& KeyTable::Append(const Value& key, std::uint32_t hash) {
  MakeRoom();
  entries_.push_back({key, {}, hash, true});
  slots_[SlotOf(key, hash)] = {hash, static_cast<std::uint32_t>(entries_.size())};
  ++count_;
  return entries_.back().item;
}

bool KeyTable::Remove(const Value& key) {
  const std::uint32_t hash = HashOf(key);
  if (count_ == 0) return false;
  const std::size_t slot = SlotOf(key, hash);
  if (slots_[slot].place == 0) return false;
  const Entry removed = std::exchange(entries_[slots_[slot].place - 1], Entry{});
  FreeSlot(slot);
  --count_;
  while (!entries_.empty() && !entries_.back().live) entries_.pop_back();
  if (entries_.size() - count_ > std::max(count_, fewestHoles)) CloseHoles();
  return true;
}

void KeyTable::Clear() {
  const std::vector<Entry> removed = std::exchange(entries_, {});
  slots_ = {};
  count_ = 0;
  share_.Resize(0);
}

void KeyTable::Rename(const Value& from, const Value& to) {
  const std::uint32_t hash = HashOf(to);
  const std::uint32_t oldHash = HashOf(from);
  const std::size_t slot = count_ == 0 ? 0 : SlotOf(from, oldHash);
  if (count_ == 0 || slots_[slot].place == 0) throw ScriptError(elementNotFound, QuotedText(from));
  const std::uint32_t place = slots_[slot].place;
  const std::uint32_t other = slots_[SlotOf(to, hash)].place;
  if (other != 0 && other != place) throw ScriptError(keyExists, QuotedText(to));
  FreeSlot(slot);
  slots_[SlotOf(to, hash)] = {hash, place};
  Entry& entry = entries_[place - 1];
  entry.hash = hash;
  const Value replaced = std::exchange(entry.key, to);
}

std::vector<Value> KeyTable::Keys() const {
  std::vector<Value> keys;
  keys.reserve(count_);
  for (const Entry& entry : entries_) {
    if (entry.live) keys.push_back(entry.key);
  }
  return keys;
}

std::vector<Value> KeyTable::Items() const {
  std::vector<Value> items;
  items.reserve(count_);
  for (const Entry& entry : entries_) {
    if (entry.live) items.push_back(entry.item);
  }
  return items;
}

// Entries behind the freed slot that were pushed on from it, or from one before it, move up; so a free
// slot always ends a search, and nothing has to mark where something was.
void KeyTable::FreeSlot(std::size_t slot) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t next = (slot + 1) & mask; slots_[next].place != 0; next = (next + 1) & mask) {
    const std::size_t home = slots_[next].hash & mask;
    if (((next - home) & mask) < ((next - slot) & mask)) continue;
    slots_[slot] = slots_[next];
    slot = next;
  }
  slots_[slot] = {};
}

// For one more entry.
void KeyTable::MakeRoom() {
  const std::size_t most = slots_.size() / 2;
  if (entries_.size() < most) return;
  if (entries_.size() - count_ > most / 4) return CloseHoles();
  Resize(std::max(fewestSlots, slots_.size() * 2));
}

void KeyTable::Resize(std::size_t slots) {
  if (slots > mostSlots) throw ScriptError(outOfMemory);
  share_.Resize(slots * sizeof(Slot) + slots / 2 * sizeof(Entry));
  entries_.reserve(slots / 2);
  slots_.resize(slots);
  Rebuild();
}

void KeyTable::CloseHoles() {
  std::erase_if(entries_, [](const Entry& entry) { return !entry.live; });
  Rebuild();
}

// The slots from the entries, which are all different.
void KeyTable::Rebuild() {
  std::fill(slots_.begin(), slots_.end(), Slot{});
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    if (!entries_[index].live) continue;
    std::size_t slot = entries_[index].hash & mask;
    while (slots_[slot].place != 0) slot = (slot + 1) & mask;
    slots_[slot] = {entries_[index].hash, static_cast<std::uint32_t>(index + 1)};
  }
}

}  // namespace quarlin::vbs
