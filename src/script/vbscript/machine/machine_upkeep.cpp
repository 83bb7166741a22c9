// SPDX-License-Identifier: GPL-3.0-or-later
// What a script has replaced, or wants no more, goes while it runs on.
#include <algorithm>
#include <utility>

#include "script/values/array.h"
#include "script/values/pace.h"
#include "script/vbscript/machine/machine_calls.h"

namespace quarlin::vbs {
namespace {

struct CountedSource {
  explicit CountedSource(std::u16string_view source)
      : share(source.size() * sizeof(char16_t)), text(source) {}
  HeapShare share;
  std::u16string text;
};

}  // namespace

std::shared_ptr<const std::u16string> Machine::SourceOf(std::u16string_view source) {
  const auto counted = std::make_shared<const CountedSource>(source);
  return {counted, &counted->text};
}

void Machine::Keep(std::shared_ptr<const Code> code) {
  kept_.push_back(std::move(code));
  if (kept_.size() >= mostKept_) DropOldCode();
}

// Of the code that was replaced, a frame may still run some; nobody will ever enter it again.
void Machine::DropOldCode() {
  std::vector<const Code*> running;
  for (std::size_t i = 0; i < frames_.Size(); ++i) running.push_back(frames_[i].code);
  std::sort(running.begin(), running.end());
  std::erase_if(kept_, [&](const auto& code) {
    return !std::binary_search(running.begin(), running.end(), code.get());
  });
  mostKept_ = std::max(fewestKept, 2 * kept_.size());
}

// Objects of a class that was replaced go on as they are.
void Machine::Retire(std::shared_ptr<const ClassInfo> info) {
  retired_.push_back(std::move(info));
  if (retired_.size() >= mostRetired_) DropOldClasses();
}

// While a method runs, its object is alive and has its class.
void Machine::DropOldClasses() {
  std::erase_if(retired_, [this](const auto& info) {
    if (info.use_count() > 1) return false;
    DropMethods(*info);
    return true;
  });
  mostRetired_ = std::max(fewestKept, 2 * retired_.size());
}

void Machine::DropMethods(const ClassInfo& info) {
  for (const ClassMember& member : info.members) {
    for (const int slot : {member.get, member.let, member.set}) {
      if (slot == ClassMember::none) continue;
      const auto number = static_cast<std::size_t>(slot);
      slots_[number] = {};
      freeSlots_.push_back(number);
    }
  }
}

std::size_t Machine::FreeSlot() {
  if (freeSlots_.empty()) {
    slots_.emplace_back();
    return slots_.size() - 1;
  }
  const std::size_t slot = freeSlots_.back();
  freeSlots_.pop_back();
  return slot;
}

// An array that is in no variable any more: in pieces where nobody shares it, as a large one takes its time.
void Machine::LetArrayGo(const Value& array) {
  if (!array.IsArray() || array.AsArray().References() > 1) return;
  LetItemsGo(std::exchange(array.AsArray().Items(), {}));
}

void Machine::LetItemsGo(std::vector<Value> items) {
  Pace pace(services_);
  for (std::size_t gone = 0; items.size() - gone > Pace::piece; gone += Pace::piece) {
    for (std::size_t i = gone; i < gone + Pace::piece; ++i) items[i] = Value();
    pace.Done(Pace::piece);
  }
}

}  // namespace quarlin::vbs
