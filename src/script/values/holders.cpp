// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/holders.h"

#include <algorithm>

#include "script/values/array.h"
#include "script/values/effort.h"
#include "script/values/heap.h"

namespace quarlin::vbs {
namespace {

std::size_t CountOf(const HolderRing& ring) {
  std::size_t count = 0;
  for (const HolderRing* place = ring.next; place != &ring; place = place->next) ++count;
  return count;
}

// How much may come until it is worth while to look again; less and less as the end of the memory comes
// near, so that no script fails for what nobody refers to any more.
std::size_t MemoryForNext() {
  const std::size_t used = heap::InUse();
  const std::size_t left = heap::Limit() - std::min(used, heap::Limit());
  return used + std::max(left / 2, heap::Limit() / 64);
}

}  // namespace

void HolderRing::Leave() {
  next->previous = previous;
  previous->next = next;
  next = previous = this;
}

void HolderRing::StandBefore(HolderRing& other) {
  Leave();
  next = &other;
  previous = other.previous;
  previous->next = this;
  other.previous = this;
}

void HolderRing::TakeAll(HolderRing& other) {
  if (other.Empty()) return;
  other.next->previous = previous;
  other.previous->next = this;
  previous->next = other.next;
  previous = other.previous;
  other.next = other.previous = &other;
}

Holder::Holder(Holders* list) {
  if (list == nullptr) return;
  StandBefore(list->young_);
  ++list->born_;
}

void Holder::LastReferenceGone() noexcept {
  Leave();
  delete this;
}

void HeldValues::SeeObject(Dispatch* object) {
  ++seen_;
  Holder* holder = object == nullptr ? nullptr : object->AsHolder();
  if (holder == nullptr || !holder->suspected_) return;
  if (living_ == nullptr) {
    ++holder->explained_;
  } else {
    holder->suspected_ = false;
    holder->StandBefore(*living_);
  }
}

// Suspected from when it is found until it turns out to be alive.
void HeldValues::SeeArray(ArrayBody& array) {
  ++seen_;
  ArrayBody::Scan& scan = array.ScanState();
  if (living_ == nullptr) {
    if (!scan.suspected) {
      scan = {0, true};
      arrays_.push_back(&array);
      waiting_.push_back(&array);
    }
    ++scan.explained;
  } else if (scan.suspected) {
    scan.suspected = false;
    waiting_.push_back(&array);
  }
}

// Only what is referred to from elsewhere is alive, and what it holds: an object or an array that has more
// references than were found by looking at what the suspects hold. `held` references of each are our own.
// The living go over to their ring, and the rest stays. Returns how much work it was.
std::size_t Holders::FindLiving(HolderRing& suspects, HolderRing& living, std::uint32_t held) {
  HeldValues values;
  const auto seeArrays = [&values] {
    while (!values.waiting_.empty()) {
      const ArrayBody* array = values.waiting_.back();
      values.waiting_.pop_back();
      values.seen_ += array->Items().size() / 8;
      for (const Value& item : array->Items()) values.See(item);
    }
  };
  for (HolderRing* place = suspects.next; place != &suspects; place = place->next) {
    Holder::Of(*place).suspected_ = true;
    Holder::Of(*place).explained_ = held;
  }
  for (HolderRing* place = suspects.next; place != &suspects; place = place->next) {
    ++values.seen_;
    Holder::Of(*place).ShowHeld(values);
    seeArrays();
  }

  values.living_ = &living;
  for (HolderRing* place = suspects.next; place != &suspects;) {
    Holder& holder = Holder::Of(*place);
    place = place->next;
    // One without any reference is about to die already.
    if (holder.References() != holder.explained_ || holder.References() == 0) values.SeeObject(&holder);
  }
  for (ArrayBody* array : values.arrays_) {
    if (array->References() != array->ScanState().explained) values.SeeArray(*array);
  }
  seeArrays();
  for (HolderRing* place = living.next; place != &living; place = place->next) {
    Holder::Of(*place).ShowHeld(values);
    seeArrays();
  }

  for (ArrayBody* array : values.arrays_) array->ScanState().suspected = false;
  for (HolderRing* place = suspects.next; place != &suspects; place = place->next) {
    Holder::Of(*place).suspected_ = false;
  }
  effort::Spend(values.seen_);
  return values.seen_;
}

// What the objects do at their end may make some of them live on.
void Holders::End(HolderRing& garbage) {
  bool ran = false;
  for (HolderRing* place = garbage.next; place != &garbage; place = place->next) {
    Holder::Of(*place).AddReference();
  }
  for (HolderRing* place = garbage.next; place != &garbage; place = place->next) {
    ran |= Holder::Of(*place).Finish();
  }
  if (ran) {
    HolderRing living;
    FindLiving(garbage, living, 1);
    for (HolderRing* place = living.next; place != &living;) {
      Holder& holder = Holder::Of(*place);
      place = place->next;
      holder.StandBefore(old_);
      holder.RemoveReference();
    }
  }
  for (HolderRing* place = garbage.next; place != &garbage; place = place->next) {
    Holder::Of(*place).LetGo();
  }
  while (!garbage.Empty()) {
    Holder& holder = Holder::Of(*garbage.next);
    holder.Leave();
    holder.RemoveReference();
  }
}

void Holders::Collect() {
  if (collecting_) return;
  collecting_ = true;
  const bool all = grownOld_ > oldAtLast_ + fewestBirths_ || heap::InUse() > memoryUntilNext_;
  HolderRing suspects;
  HolderRing living;
  if (all) suspects.TakeAll(old_);
  suspects.TakeAll(young_);
  born_ = 0;
  const std::size_t work = FindLiving(suspects, living, 0);
  const std::size_t count = CountOf(living);
  old_.TakeAll(living);
  if (all) oldAtLast_ = count;
  grownOld_ = all ? 0 : grownOld_ + count;
  End(suspects);
  // Young objects that hold giant arrays make it more work: then it must be worth more.
  birthsUntilNext_ = std::max(fewestBirths_, all ? 0 : work / 4);
  memoryUntilNext_ = MemoryForNext();
  collecting_ = false;
}

void Holders::LetGoOf(HolderRing& ring) {
  while (!ring.Empty()) {
    const Ref<Holder> holder(&Holder::Of(*ring.next));
    holder->Leave();
    holder->LetGo();
  }
}

void Holders::LetAllGo() {
  while (!young_.Empty() || !old_.Empty()) {
    LetGoOf(young_);
    LetGoOf(old_);
  }
}

}  // namespace quarlin::vbs
