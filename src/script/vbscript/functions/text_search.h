// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for one text in another, by code unit or without regard to case. The time grows with the sum of
// the lengths, and the script is asked on the way whether it may go on.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "script/values/pace.h"
#include "script/vbscript/functions/two_way.h"

namespace quarlin::vbs {

class SoughtText {
 public:
  static constexpr std::size_t nowhere = std::u16string_view::npos;

  // `text` must outlive it.
  SoughtText(std::u16string_view text, bool ignoreCase, Services& services);
  SoughtText(const SoughtText&) = delete;
  SoughtText& operator=(const SoughtText&) = delete;

  std::size_t Size() const { return text_.size(); }

  // The first place at `from` or behind it, or nowhere. An empty text is found at once.
  std::size_t FindIn(std::u16string_view where, std::size_t from);

  // The last place, or nowhere.
  std::size_t FindLastIn(std::u16string_view where);

 private:
  std::size_t FindNear(std::u16string_view where, std::size_t from) const;
  std::size_t FindLastNear(std::u16string_view where) const;
  std::size_t FindFar(std::u16string_view where, std::size_t from);
  std::size_t FindLastFar(std::u16string_view where);

  bool ignoreCase_;
  std::u16string folded_;  // in lower case, where that matters
  std::u16string_view text_;
  Pace pace_;
  std::optional<TwoWay> forwards_;   // made when they are first needed
  std::optional<TwoWay> backwards_;  // of the text from its end on
};

// The first place among the bytes of `where`, two to a code unit and the lower one first, at `from` or
// behind it, at which those of `what` stand; or nowhere. `what` is not empty.
std::size_t FindBytes(std::u16string_view where, std::u16string_view what, std::size_t from, bool ignoreCase,
                      Services& services);

}  // namespace quarlin::vbs
