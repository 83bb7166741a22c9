// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/line_errors.h"

#include <fmt/format.h>

#include <array>
#include <string_view>

namespace quarlin {
namespace {

struct Kind {
  std::uint64_t LineErrors::*count;
  std::string_view name;
};

constexpr std::array<Kind, 4> kinds{{{&LineErrors::parity, "parity"},
                                     {&LineErrors::framing, "framing"},
                                     {&LineErrors::overrun, "overrun"},
                                     {&LineErrors::breaks, "break"}}};

}  // namespace

LineErrors operator+(const LineErrors& left, const LineErrors& right) {
  LineErrors sum;
  for (const Kind& kind : kinds) sum.*kind.count = left.*kind.count + right.*kind.count;
  return sum;
}

LineErrors operator-(const LineErrors& left, const LineErrors& right) {
  LineErrors difference;
  for (const Kind& kind : kinds) difference.*kind.count = left.*kind.count - right.*kind.count;
  return difference;
}

std::string InWords(const LineErrors& errors) {
  std::string words;
  for (const Kind& kind : kinds) {
    if (errors.*kind.count == 0) continue;
    words += fmt::format("{}{} {}", words.empty() ? "" : ", ", errors.*kind.count, kind.name);
  }
  return words;
}

}  // namespace quarlin
