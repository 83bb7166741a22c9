// SPDX-License-Identifier: GPL-3.0-or-later
// Objects that hold values can hold each other in a circle, which counted references never end. So those
// of one engine stand in a list, and let go of what they hold when the engine ends.
#pragma once

namespace quarlin::vbs {

class Holders;

class Holder {
 public:
  Holder() = default;
  explicit Holder(Holders* list);
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  // Drops every value that the object holds. It is kept alive by the caller.
  virtual void LetGo() = 0;
  virtual void KeepAlive() = 0;
  virtual void Release() = 0;

 protected:
  virtual ~Holder();

 private:
  friend class Holders;
  Holders* list_ = nullptr;
  Holder* next_ = nullptr;
  Holder* previous_ = nullptr;
};

class Holders {
 public:
  Holders() = default;
  Holders(const Holders&) = delete;
  Holders& operator=(const Holders&) = delete;
  ~Holders() { LetAllGo(); }

  void LetAllGo();

 private:
  friend class Holder;
  Holder* first_ = nullptr;
};

}  // namespace quarlin::vbs
