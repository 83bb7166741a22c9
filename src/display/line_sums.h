// SPDX-License-Identifier: GPL-3.0-or-later
// A small number for each kept line, such as the rows that it takes, with quick sums over them: two bytes a
// line, and a look-up walks over some 400 sums at the most.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "display/ring_vector.h"

namespace quarlin {

class LineSums {
 public:
  static constexpr std::uint32_t most = 0xFFFF;  // a larger number is taken as this

  explicit LineSums(std::size_t lines) : numbers_(lines) {}

  // Forgets everything; the next line added has this number.
  void Restart(std::uint64_t firstLine);

  std::uint64_t FirstLine() const { return firstLine_; }
  std::uint64_t EndLine() const { return firstLine_ + numbers_.Size(); }
  std::uint64_t Total() const { return total_; }

  // Adds a line at the end. Requires that fewer than `lines` are there.
  void Add(std::uint32_t number);

  // Lets go of the lines before `line`, and returns their sum.
  std::uint64_t DropBefore(std::uint64_t line);

  // Both require a line that is there.
  void Set(std::uint64_t line, std::uint32_t number);
  std::uint32_t Of(std::uint64_t line) const { return numbers_[IndexOf(line)]; }

  // The sum of the lines before `line`, which is at most EndLine().
  std::uint64_t Before(std::uint64_t line) const;

  // The line in whose part of the sum `at` lies: Before(line) <= at < Before(line) + Of(line). EndLine() when
  // `at` is no less than Total().
  std::uint64_t LineAt(std::uint64_t at) const;

 private:
  static constexpr std::uint64_t blockLines = 256;

  std::size_t IndexOf(std::uint64_t line) const { return static_cast<std::size_t>(line - firstLine_); }
  std::uint64_t& BlockOf(std::uint64_t line) { return blocks_[BlockIndex(line)]; }
  std::size_t BlockIndex(std::uint64_t line) const {
    return static_cast<std::size_t>(line / blockLines - firstLine_ / blockLines);
  }

  RingVector<std::uint16_t> numbers_;
  std::deque<std::uint64_t> blocks_;  // sums of 256 lines each, cut at multiples of 256
  std::uint64_t firstLine_ = 0;
  std::uint64_t total_ = 0;
};

}  // namespace quarlin
