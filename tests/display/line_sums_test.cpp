// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/line_sums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace quarlin {
namespace {

// Against a plain list, over many blocks of sums: lines come, change, and leave at the beginning.
TEST(LineSums, AgreesWithAPlainList) {
  std::mt19937 random(1);
  const auto below = [&](std::uint64_t end) { return random() % end; };
  LineSums sums(3000);
  std::vector<std::uint32_t> numbers;  // of all lines that ever were; 0 for those that have left
  std::uint64_t first = 0;
  for (int step = 0; step < 300; ++step) {
    for (std::uint64_t i = below(700); i > 0 && numbers.size() - first < 3000; --i) {
      numbers.push_back(static_cast<std::uint32_t>(below(4)));
      sums.Add(numbers.back());
    }
    const std::uint64_t left = first + below(numbers.size() - first + 1);
    const auto leaving = numbers.begin() + static_cast<std::ptrdiff_t>(first);
    const auto keeping = numbers.begin() + static_cast<std::ptrdiff_t>(left);
    EXPECT_EQ(sums.DropBefore(left), std::accumulate(leaving, keeping, std::uint64_t{0}));
    std::fill(leaving, keeping, 0);
    first = left;
    if (first == numbers.size()) continue;

    const std::uint64_t changed = first + below(numbers.size() - first);
    numbers[changed] = static_cast<std::uint32_t>(below(9));
    sums.Set(changed, numbers[changed]);
    const std::uint64_t line = first + below(numbers.size() - first);
    const auto end = numbers.begin() + static_cast<std::ptrdiff_t>(line);
    const std::uint64_t before = std::accumulate(numbers.begin(), end, std::uint64_t{0});
    ASSERT_EQ(sums.Before(line), before);
    ASSERT_EQ(sums.Total(), std::accumulate(numbers.begin(), numbers.end(), std::uint64_t{0}));
    for (std::uint32_t part = 0; part < numbers[line]; ++part) ASSERT_EQ(sums.LineAt(before + part), line);
    ASSERT_EQ(sums.LineAt(sums.Total()), numbers.size());
  }
}

}  // namespace
}  // namespace quarlin
