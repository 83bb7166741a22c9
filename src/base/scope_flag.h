// SPDX-License-Identifier: GPL-3.0-or-later
// A flag that tells that something is going on, for as long as the scope lives: however the scope is left,
// by an exception too, the flag is then as it was.
#pragma once

#include <utility>

namespace quarlin {

class ScopeFlag {
 public:
  explicit ScopeFlag(bool& flag, bool value = true) : flag_(flag), before_(std::exchange(flag, value)) {}
  ~ScopeFlag() { flag_ = before_; }
  ScopeFlag(const ScopeFlag&) = delete;
  ScopeFlag& operator=(const ScopeFlag&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace quarlin
