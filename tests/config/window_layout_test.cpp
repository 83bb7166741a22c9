// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/window_layout.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/profile_file.h"
#include "config/window_place.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

struct WindowLayoutTest : testing::Test {
  WindowLayout Read(std::string_view content) {
    WriteInPlace(file, content);
    return WindowLayout(file);
  }
  std::string Saved() { return ReadWholeFile(file).value_or("(none)"); }

  TempFolder folder;
  std::filesystem::path file = folder / "position.ini";
};

TEST_F(WindowLayoutTest, RewritingKeepsWhatOthersWrote) {
  struct Case {
    std::string before, after;
  };
  const std::vector<Case> cases{
      {"", "[Window]\nPlace=1,2\n"},
      {"; mine\n\n[SCRIPT]\nLocale=de-DE\n", "; mine\n\n[SCRIPT]\nLocale=de-DE\n\n[Window]\nPlace=1,2\n"},
      {"[window]\r\nPLACE = 9\r\n\r\n[SCRIPT]\r\nLocale=1031",
       "[window]\r\nPlace=1,2\r\n\r\n[SCRIPT]\r\nLocale=1031\r\n"},
      {"[Window]\nOld=1\n\n[Other]\nPlace=3\n", "[Window]\nOld=1\nPlace=1,2\n\n[Other]\nPlace=3\n"},
      {"[Window]\nPlace=7\nGone=1\nPlace=8\n", "[Window]\nPlace=1,2\nPlace=8\n"},
      {"no heading\n[Window\n=\n", "no heading\n[Window\n=\n\n[Window]\nPlace=1,2\n"},
  };
  for (const Case& one : cases) {
    WindowLayout layout = Read("[Window]\nPlace=5\n");
    layout.Set("Window", "Place", "1,2");
    layout.Set("Window", "Gone", "");
    WriteInPlace(file, one.before);  // while the program runs
    EXPECT_FALSE(layout.Save());
    EXPECT_EQ(Saved(), one.after);
  }
}

TEST_F(WindowLayoutTest, AValueThatIsSavedIsReadAgain) {
  for (const std::string value : {"plain", " blanks ", "\"quoted\"", "'a' 'b'", "a=b;c", "[x]", "\""}) {
    WindowLayout layout(file);
    layout.Set("Window", "Value", value);
    EXPECT_FALSE(layout.Save());
    EXPECT_EQ(WindowLayout(file).Value("window", "VALUE"), value);
    EXPECT_EQ(ProfileFile(ProgramFolder(folder.Path()), "position.ini").ReadProfileString("Window", "Value"),
              value);
  }
}

TEST_F(WindowLayoutTest, AFileThatIsNoLayoutIsToldAndReplaced) {
  using namespace std::string_literals;
  for (const std::string& content :
       {"[Window]\nPlace=1\n\0\1\2"s, std::string(WindowLayout::mostBytes + 1, 'x'),
        "\x7F"
        "ELF\x02\x01"s}) {
    WindowLayout layout = Read(content);
    EXPECT_NE(layout.Trouble().find("position.ini was passed over: it "), std::string::npos)
        << layout.Trouble();
    EXPECT_EQ(layout.Value("Window", "Place"), "");
    layout.Set("Window", "Place", "2");
    EXPECT_FALSE(layout.Save());
    EXPECT_EQ(Saved(), "[Window]\nPlace=2\n");
  }
}

TEST_F(WindowLayoutTest, NumbersOutOfRangeAreNone) {
  const WindowLayout layout = Read("[W]\nA=1,-20\nB=1,\nC=1,2x\nD=99999999999\nE=1,21\nF=\nG= 3\nH=1 ,2\n");
  EXPECT_EQ(layout.Numbers("W", "A", -20, 20), (std::vector<int>{1, -20}));
  EXPECT_EQ(layout.Numbers("W", "G", -20, 20), (std::vector<int>{3}));
  for (const char* key : {"B", "C", "D", "E", "F", "H", "none"}) {
    EXPECT_FALSE(layout.Numbers("W", key, -20, 20)) << key;
  }
}

TEST(WindowPlaceTest, AWindowThatCannotBeSeenIsBroughtBack) {
  const std::vector<Place> one{{0, 0, 1366, 768}};
  const std::vector<Place> two{{0, 0, 1366, 768}, {1366, -100, 1920, 1080}};
  struct Case {
    Place wanted;
    std::vector<Place> screens;
    Place expected;
  };
  const std::vector<Case> cases{
      {{10, 20, 1000, 700}, one, {10, 20, 1000, 700}},
      {{0, 0, 1366, 768}, one, {0, 0, 1366, 768}},
      {{1500, 50, 1000, 700}, one, {366, 50, 1000, 700}},  // its screen is gone
      {{-3000, -900, 1000, 700}, one, {0, 32, 1000, 700}},
      {{100, 400, 1000, 700}, one, {100, 68, 1000, 700}},     // half below the edge
      {{0, 0, 3840, 2160}, one, {0, 32, 1366, 736}},          // the screen shrank
      {{1000, 100, 1000, 600}, two, {1000, 100, 1000, 600}},  // over both, all in sight
      {{1300, -500, 800, 600}, two, {1366, -68, 800, 600}},
      {{5, 5, 100, 100}, {}, {5, 5, 100, 100}},
  };
  for (const Case& row : cases) {
    const Place place = BroughtBack(row.wanted, row.screens);
    EXPECT_TRUE(place == row.expected)
        << place.x << ',' << place.y << ' ' << place.width << 'x' << place.height;
  }
}

}  // namespace
}  // namespace quarlin
