// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/hook.h"

#include <gtest/gtest.h>

#include <string>

namespace quarlin {
namespace {

TEST(Hook, AnEmptyOneDoesNothingAndGivesTheDefault) {
  const Hook<std::string(int)> text;
  const Hook<void(std::string&)> changes;
  std::string unchanged = "as it was";
  changes(unchanged);
  EXPECT_EQ(unchanged, "as it was");
  EXPECT_EQ(text(1), "");
  EXPECT_FALSE(text);
}

TEST(Hook, IsFilledInOnceAndAgainOnlyAfterItWasEmptied) {
  Hook<int(int)> twice;
  twice = [](int number) { return 2 * number; };
  EXPECT_THROW(
      twice = [](int) { return 0; }, std::logic_error);
  const Hook<int(int)> other = twice;
  EXPECT_THROW(twice = other, std::logic_error);
  EXPECT_EQ(twice(4), 8) << "the first one stays";
  twice = nullptr;
  EXPECT_EQ(twice(4), 0);
  twice = other;
  EXPECT_EQ(twice(5), 10);
}

// A text handed over is not copied on its way.
TEST(Hook, HandsOnWhatItIsGivenWithoutACopy) {
  const std::string text(100, 'x');
  const char* seen = nullptr;
  Hook<void(std::string)> moved;
  moved = [&](std::string taken) { seen = taken.data(); };
  std::string given = text;
  const char* before = given.data();
  moved(std::move(given));
  EXPECT_EQ(seen, before);
}

}  // namespace
}  // namespace quarlin
