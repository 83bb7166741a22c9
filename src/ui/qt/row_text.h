// SPDX-License-Identifier: GPL-3.0-or-later
// How a kept line is shown: as one row of cells or several. A cell is one character of the display's font and
// stands for a byte of the line, or for none; places in a line are told by its bytes, so a selection means
// the same in every format.
//
//   plain        HELLO
//   with codes   HELLO<CR><LF>          a code is as many cells as its name has, for one byte
//   as hex       0000  48 45 4C 4C 4F 0D 0A  |HELLO..|
//
// Hex has the bytes of the wire and nothing else; lines of the program's own stay text. What "Append Row" put
// behind a string is a sign of its own where codes are shown, and no CR LF.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "display/text_ring.h"

namespace quarlin {

struct RowFormat {
  bool hex = false;
  bool codes = false;
  std::size_t wrapAt = 0;     // cells of a row; 0: a line is one row, however long
  std::size_t hexBytes = 16;  // of a row as hex
  bool operator==(const RowFormat&) const = default;
};

struct Cell {
  enum class Look : std::uint8_t {
    Text,
    Control,    // a control character as one cell
    Code,       // a part of the name of one, "<" and ">" included
    Break,      // the sign of an inserted line break
    Gap,        // between two pairs; goes with the byte before it
    Furniture,  // offsets and bars
  };
  static constexpr std::uint16_t noByte = 0xFFFF;

  char character = ' ';
  Look look = Look::Text;
  std::uint16_t byte = noByte;
};

class LineRows {
 public:
  LineRows(const TextLine& line, const RowFormat& format);

  std::size_t Count() const { return ends_.size(); }  // at least 1
  std::span<const Cell> Row(std::size_t row) const;

  // How many bytes of the line are shown, its line end included or not.
  std::size_t ShownBytes() const { return shownBytes_; }

  // The edge between two bytes that is nearest to a place in a row, counted in cells; and the byte itself.
  // Beside the text it is the row's first or last one.
  std::size_t EdgeAt(std::size_t row, double cells) const;
  std::size_t ByteAt(std::size_t row, double cells) const;

  // Where a byte is shown first: its row and its cell in it; the end of the last row behind the last byte.
  struct Place {
    std::size_t row = 0;
    std::size_t cell = 0;
  };
  Place PlaceOf(std::size_t byte) const;

 private:
  struct Bytes;

  void LayText(const TextLine& line, const RowFormat& format);
  void LayHex(const TextLine& line, std::size_t rowBytes);
  void LayHexRow(const TextLine& line, std::span<const std::uint16_t> bytes, std::size_t offset,
                 std::size_t rowBytes);
  void Put(std::string_view text, Cell::Look look, std::size_t byte);
  void EndRow() { ends_.push_back(cells_.size()); }
  std::size_t RowEnd(std::size_t row) const;
  std::size_t Nearest(std::size_t row, double cells) const;

  std::vector<Cell> cells_;
  std::vector<std::size_t> ends_;  // of the rows, in cells
  std::size_t shownBytes_ = 0;
};

// How many rows the line takes: what Count() says, without laying them.
std::uint32_t RowCount(const TextLine& line, const RowFormat& format);

// How many cells the line's widest row has, without laying it.
std::size_t LineWidth(const TextLine& line, const RowFormat& format);

// The cells of a full row as hex.
std::size_t HexWidth(std::size_t rowBytes);

// "<STX>" for 2: the name of a control code between brackets; empty for any other character.
std::string_view CodeName(char character);
bool IsControlCode(char character);

// What the gutter to the left of the text tells about a line.
enum class TimeColumn { Off, Clock, SinceRow, SinceRequest };

// The time column of a line: 12 characters at most, empty where there is nothing to tell. `before` is the
// time of the row before it.
std::string TimeColumnText(const TextLine& line, TimeColumn column, std::optional<LocalTime> before);

std::string ClockText(LocalTime time);  // "12:34:56.789"

// A duration in the unit that suits it: "12.3 ms", "4.500 s", "00:02:10".
std::string IntervalText(Duration duration);

// A whole line as it is shown, with its time and direction, rows that hex makes of it joined by "\n":
//   19:04:14.788  ← ST,GS          ← ST,GS   || DIFF : 12.3 ms          ← ST,GS || LAST ||     12.3 ms
QString ShownLine(const TextLine& line, RowFormat format, TimeColumn column, std::optional<LocalTime> before);

}  // namespace quarlin
