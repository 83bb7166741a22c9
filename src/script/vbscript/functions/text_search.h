// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for one text in another, by code unit or without regard to case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quarlin::vbs {

class SoughtText {
 public:
  static constexpr std::size_t nowhere = std::u16string_view::npos;

  // `text` must outlive it.
  SoughtText(std::u16string_view text, bool ignoreCase);
  SoughtText(const SoughtText&) = delete;
  SoughtText& operator=(const SoughtText&) = delete;

  std::size_t Size() const { return text_.size(); }

  // The first place at `from` or behind it, or nowhere. An empty text is found at once.
  std::size_t FindIn(std::u16string_view where, std::size_t from) const {
    return ignoreCase_ ? FindFolded(where, from) : where.find(text_, from);
  }

  // The last place, or nowhere.
  std::size_t FindLastIn(std::u16string_view where) const {
    return ignoreCase_ ? FindLastFolded(where) : where.rfind(text_);
  }

 private:
  std::size_t FindFolded(std::u16string_view where, std::size_t from) const;
  std::size_t FindLastFolded(std::u16string_view where) const;

  bool ignoreCase_;
  std::u16string folded_;  // in lower case, where that matters
  std::u16string_view text_;
};

}  // namespace quarlin::vbs
