// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/clock.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

// The time zone of the machine, as long as this lives.
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* before = getenv("TZ")) before_ = before;
    Set(name);
  }
  ~Zone() { before_.empty() ? Reset() : Set(before_.c_str()); }

 private:
  static void Set(const char* name) {
    setenv("TZ", name, 1);
    tzset();
  }
  static void Reset() {
    unsetenv("TZ");
    tzset();
  }
  std::string before_;
};

TEST(ClockTexts, ATimeOfDayTellsItsDistanceToUtc) {
  struct Row {
    const char* zone;
    LocalTime time;
    std::string_view text;
  };
  using std::chrono::local_days;
  using std::chrono::year;
  const LocalTime winter = local_days(year(2026) / 2 / 3) + 1h + 2min + 3s + 4567us;
  const LocalTime summer = local_days(year(2026) / 8 / 31) + 23h + 59min + 59s + 999'999'999ns;
  const char* central = "CET-1CEST,M3.5.0,M10.5.0/3";
  for (const Row& row : {Row{"UTC0", winter, "2026-02-03T01:02:03.004567+00:00"},
                         Row{central, winter, "2026-02-03T01:02:03.004567+01:00"},
                         Row{central, summer, "2026-08-31T23:59:59.999999+02:00"},
                         Row{"NST3:30", summer, "2026-08-31T23:59:59.999999-03:30"},
                         Row{"NPT-5:45", LocalTime{}, "1970-01-01T00:00:00.000000+05:45"}}) {
    const Zone zone(row.zone);
    EXPECT_EQ(IsoText(row.time, UtcOffsetAt(row.time)), row.text) << row.zone;
    EXPECT_EQ(IsoText(row.time), row.text.substr(0, 19)) << row.zone;
  }
}

}  // namespace
}  // namespace quarlin
