// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/line_sums.h"

#include <algorithm>

namespace quarlin {

void LineSums::Restart(std::uint64_t firstLine) {
  numbers_.Clear();
  blocks_.clear();
  firstLine_ = firstLine;
  total_ = 0;
}

void LineSums::Add(std::uint32_t number) {
  const std::uint64_t line = EndLine();
  if (BlockIndex(line) == blocks_.size()) blocks_.push_back(0);
  numbers_.PushBack(0);
  Set(line, number);
}

std::uint64_t LineSums::DropBefore(std::uint64_t line) {
  const std::uint64_t before = total_;
  while (firstLine_ < line && !numbers_.Empty()) {
    Set(firstLine_, 0);
    numbers_.PopFront();
    ++firstLine_;
    if (firstLine_ % blockLines == 0) blocks_.pop_front();
  }
  const std::uint64_t dropped = before - total_;
  if (numbers_.Empty()) Restart(std::max(firstLine_, line));
  return dropped;
}

void LineSums::Set(std::uint64_t line, std::uint32_t number) {
  std::uint16_t& kept = numbers_[IndexOf(line)];
  const auto taken = static_cast<std::uint16_t>(std::min(number, most));
  const std::uint64_t change = std::uint64_t{taken} - kept;  // modulo 2^64, so it may be less than 0
  BlockOf(line) += change;
  total_ += change;
  kept = taken;
}

std::uint64_t LineSums::Before(std::uint64_t line) const {
  std::uint64_t sum = 0;
  std::uint64_t at = firstLine_;
  for (std::size_t block = 0; (at / blockLines + 1) * blockLines <= line; ++block) {
    sum += blocks_[block];
    at = (at / blockLines + 1) * blockLines;
  }
  for (; at < line; ++at) sum += Of(at);
  return sum;
}

std::uint64_t LineSums::LineAt(std::uint64_t at) const {
  if (at >= total_) return EndLine();
  std::uint64_t line = firstLine_;
  for (std::size_t block = 0; at >= blocks_[block]; ++block) {
    at -= blocks_[block];
    line = (line / blockLines + 1) * blockLines;
  }
  for (; at >= Of(line); ++line) at -= Of(line);
  return line;
}

}  // namespace quarlin
