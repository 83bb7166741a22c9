// SPDX-License-Identifier: GPL-3.0-or-later
// Lines out of pieces that are cut anywhere. A line ends with CR, LF or both; of a long one the beginning is
// kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quarlin {

class LineSplitter {
 public:
  static constexpr std::size_t longestLine = 65536;

  struct Line {
    std::uint64_t number;  // from 1, empty ones count
    std::string_view text;
    bool cut;  // it was longer
  };
  using Sink = std::function<void(const Line& line)>;

  // `sink` is called in the calls below; what it gets lives until it returns.
  explicit LineSplitter(Sink sink) : sink_(std::move(sink)) {}

  void Take(std::string_view piece);
  void Finish();  // the last line, where it has no end

 private:
  void Keep(std::string_view part);
  void End(std::string_view part);

  Sink sink_;
  std::string begun_;  // of the line that the last piece left open
  bool cut_ = false;
  bool afterCr_ = false;  // a LF that comes next belongs to the CR before
  std::uint64_t number_ = 0;
};

}  // namespace quarlin
