// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculator/byte_views.h"

#include <gtest/gtest.h>

#include "macro/expander.h"

using namespace std::string_literals;

namespace quarlin {
namespace {

std::u16string Wide(std::string_view text) {
  std::u16string wide;
  for (const char c : text) wide += static_cast<unsigned char>(c);
  return wide;
}

TEST(ByteViews, EveryWayToWriteIsReadBackWhateverIsChosen) {
  std::string all = "^r^p^x{{}{41}";
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  all += std::string(3000, 'x') + "\r\n\r";
  for (const NumberFormat& format : NumberFormats()) {
    for (const ByteView view : byteViews) {
      const WrittenBytes written = WriteBytes(all, view, format);
      const ReadBytes read = ReadView(Wide(written.text), view);
      EXPECT_EQ(read.bytes, all) << format.name << ": " << read.trouble;
      EXPECT_EQ(read.places, written.places) << format.name;
    }
  }
  EXPECT_EQ(ExpandHexCodes(MacroText(all)), all);
  EXPECT_EQ(MacroText("a^r^x{}"), "a{5E}r^x{{}");  // what a macro would make a line end
}

TEST(ByteViews, WhatIsTypedIsReadOrSaidToBeWrong) {
  struct Case {
    ByteView view;
    std::string typed, bytes, trouble;
    Stretch at = {};
  };
  using enum ByteView;
  for (const Case& row : {
           Case{Text, "a{41}{{}{0}{}\nb", "aA{}\0\0b"s, ""},
           Case{Text,
                "ab{4",
                "ab",
                "a code is hexadecimal digits in braces, as {41}; a brace itself is {{",
                {2, 4}},
           Case{Text,
                "{4x}",
                "",
                "a code is hexadecimal digits in braces, as {41}; a brace itself is {{",
                {0, 3}},
           Case{Text, "{100}", "", "\"{100}\" is more than {FF}", {0, 5}},
           Case{Hexadecimal, "0x41,&h42 $43$4 4546\n\t;0X47",
                "ABC\x04"
                "EFG",
                ""},
           Case{Hexadecimal, "41 4G", "A", "\"G\" is no hexadecimal digit", {4, 5}},
           Case{Hexadecimal, "41 424", "A", "\"424\" is not made of groups of 2 digits", {3, 6}},
           Case{Hexadecimal, "0x", "", "\"0x\" is no hexadecimal number", {0, 2}},
           Case{Decimal, "65, 7;255 065066",
                "A\x07\xFF"
                "AB",
                ""},
           Case{Decimal, "65 256", "A", "256 is more than 255", {3, 6}},
           Case{Decimal, "$41", "", "\"$\" is no decimal number", {0, 1}},
           Case{Binary, "1 0b1000001 0100000101000010 %1",
                "\x01"
                "AAB\x01",
                ""},
           Case{Binary, "0100000101", "", "\"0100000101\" is not made of groups of 8 digits", {0, 10}},
           Case{Binary, "12", "", "\"2\" is no binary digit", {1, 2}},
       }) {
    const ReadBytes read = ReadView(Wide(row.typed), row.view);
    EXPECT_EQ(read.bytes, row.bytes) << row.typed;
    EXPECT_EQ(read.trouble, row.trouble) << row.typed;
    EXPECT_EQ(read.troubleAt, row.at) << row.typed;
  }
  EXPECT_EQ(ReadView(u"5 €", ByteView::Text).trouble, "U+20AC is no character with a code up to FF");
}

TEST(ByteViews, ASelectionTakesTheBytesThatItTouches) {
  const BytePlaces places = ReadView(u"41, 0x42  43", ByteView::Hexadecimal).places;
  struct Case {
    Stretch selected, bytes, shown;
  };
  for (const auto& [selected, bytes, shown] :
       {Case{{0, 1}, {0, 1}, {0, 2}}, Case{{1, 5}, {0, 2}, {0, 8}}, Case{{2, 4}, {1, 1}, {4, 4}},
        Case{{7, 7}, {1, 1}, {4, 4}}, Case{{8, 12}, {2, 3}, {10, 12}}, Case{{12, 12}, {3, 3}, {12, 12}}}) {
    EXPECT_EQ(BytesAt(places, selected), bytes) << selected.begin;
    EXPECT_EQ(CharactersOf(places, bytes), shown) << selected.begin;
  }
  EXPECT_EQ(CharactersOf({}, BytesAt({}, {0, 3})), Stretch());
}

}  // namespace
}  // namespace quarlin
