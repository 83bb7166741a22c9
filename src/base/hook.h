// SPDX-License-Identifier: GPL-3.0-or-later
// A function that a part leaves to somebody else to fill in: what it asks of its surroundings, or whom it
// tells. Filled in once; called while it is empty, it does nothing and gives the default of its result.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <utility>

namespace quarlin {

template <typename Signature>
class Hook;

template <typename Result, typename... Arguments>
class Hook<Result(Arguments...)> {
 public:
  using Function = std::function<Result(Arguments...)>;

  Hook() = default;
  Hook(const Hook&) = default;
  ~Hook() = default;

  // A second filling in is a programming error: the first one would be lost. Throws std::logic_error.
  Hook& operator=(Function function) {
    if (function_ && function) throw std::logic_error("a hook is filled in twice");
    function_ = std::move(function);
    return *this;
  }
  Hook& operator=(const Hook& other) { return *this = other.function_; }

  // Empties it; from then on it can be filled in anew.
  Hook& operator=(std::nullptr_t) {
    function_ = nullptr;
    return *this;
  }

  Result operator()(Arguments... arguments) const {
    if (!function_) return Result();
    return function_(std::forward<Arguments>(arguments)...);
  }

  explicit operator bool() const { return static_cast<bool>(function_); }

 private:
  Function function_;
};

}  // namespace quarlin
