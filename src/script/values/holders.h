// SPDX-License-Identifier: GPL-3.0-or-later
// Objects that hold values can hold each other in a circle, which counted references never end. So those
// of one engine stand in a list, where circles that nobody else refers to are found and ended now and then,
// and where all of them let go of what they hold when the engine ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "script/values/dispatch.h"

namespace quarlin::vbs {

class Holders;
class HeldValues;

// The places before and behind in a ring of objects.
struct HolderRing {
  HolderRing* next = this;
  HolderRing* previous = this;

  HolderRing() = default;
  HolderRing(const HolderRing&) = delete;
  HolderRing& operator=(const HolderRing&) = delete;

  bool Empty() const { return next == this; }
  void Leave();
  void StandBefore(HolderRing& other);
  // All of the other ring's, behind those that are here.
  void TakeAll(HolderRing& other);
};

class Holder : public Dispatch, private HolderRing {
 public:
  Holder* AsHolder() final { return this; }

  // Tells of every value that the object holds.
  virtual void ShowHeld(HeldValues& values) = 0;

  // Drops every value that the object holds. It is kept alive by the caller.
  virtual void LetGo() = 0;

  // Runs what the object does at its end, once; false when there was nothing to run. May make the object
  // live on, as it may store a reference to it.
  virtual bool Finish() noexcept { return false; }

 protected:
  explicit Holder(Holders* list);  // null: of an engine that keeps no list
  ~Holder() override { Leave(); }

  // Out of the list first: while its values go, which may run code, the object is no whole one any more.
  void LastReferenceGone() noexcept override;

 private:
  friend class Holders;
  friend class HeldValues;
  static Holder& Of(HolderRing& place) { return static_cast<Holder&>(place); }

  std::uint32_t explained_ = 0;  // references to it that were found while circles are looked for
  bool suspected_ = false;       // it may be in a circle that nobody refers to
};

// Sees what holders hold, and passes from object to object.
class HeldValues {
 public:
  void See(const Value& value) {
    if (value.IsObject()) return SeeObject(value.AsObject());
    if (value.IsArray()) SeeArray(value.AsArray());
  }

 private:
  friend class Holders;
  void SeeObject(Dispatch* object);
  void SeeArray(ArrayBody& array);

  HolderRing* living_ = nullptr;     // where what is found alive goes; null while references are counted
  std::vector<ArrayBody*> arrays_;   // all that were found
  std::vector<ArrayBody*> waiting_;  // whose items are still to be seen
  std::size_t seen_ = 0;             // how much work it was
};

// The objects are of two ages. Most circles are young, so the young objects alone are looked at often, and
// all of them when there are twice as many as the last time. What refers to an object from outside of those
// that are looked at keeps it alive.
class Holders {
 public:
  // The young are looked at when there are `fewestBirths` of them, or more where that is much work.
  explicit Holders(std::size_t fewestBirths) : fewestBirths_(fewestBirths) {}
  Holders(const Holders&) = delete;
  Holders& operator=(const Holders&) = delete;
  ~Holders() { LetAllGo(); }

  // Ends circles that nobody refers to, if so many objects were made or so much memory was taken since the
  // last time that it is worth while. Runs what the objects do at their end. Must not be called in the
  // middle of something that holds a value without a reference to it.
  void CollectWhenDue() {
    if (born_ >= birthsUntilNext_ || heap::InUse() > memoryUntilNext_) Collect();
  }

  void LetAllGo();

 private:
  friend class Holder;

  void Collect();
  static std::size_t FindLiving(HolderRing& suspects, HolderRing& living, std::uint32_t held);
  void End(HolderRing& garbage);
  static void LetGoOf(HolderRing& ring);

  const std::size_t fewestBirths_;
  HolderRing young_;
  HolderRing old_;
  std::size_t born_ = 0;  // since the last collection
  std::size_t birthsUntilNext_ = fewestBirths_;
  std::size_t memoryUntilNext_ = 0;
  std::size_t grownOld_ = 0;  // since all were looked at
  std::size_t oldAtLast_ = 0;
  bool collecting_ = false;
};

}  // namespace quarlin::vbs
