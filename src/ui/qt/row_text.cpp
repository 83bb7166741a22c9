// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/row_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "base/clock.h"

namespace quarlin {
namespace {

constexpr std::string_view differenceMark = "   || DIFF : ";
constexpr std::string_view lastMark = " || LAST ||     ";
constexpr std::string_view breakCell = "\n";  // stands for the sign

constexpr std::array<std::string_view, 32> lowCodes{
    "<NUL>", "<SOH>", "<STX>", "<ETX>", "<EOT>", "<ENQ>", "<ACK>", "<BEL>", "<BS>",  "<HT>",  "<LF>",
    "<VT>",  "<FF>",  "<CR>",  "<SO>",  "<SI>",  "<DLE>", "<DC1>", "<DC2>", "<DC3>", "<DC4>", "<NAK>",
    "<SYN>", "<ETB>", "<CAN>", "<EM>",  "<SUB>", "<ESC>", "<FS>",  "<GS>",  "<RS>",  "<US>"};

constexpr std::array<std::string_view, 33> highCodes{
    "<DEL>", "<80>", "<81>", "<82>", "<83>", "<84>", "<85>", "<86>", "<87>", "<88>", "<89>",
    "<8A>",  "<8B>", "<8C>", "<8D>", "<8E>", "<8F>", "<90>", "<91>", "<92>", "<93>", "<94>",
    "<95>",  "<96>", "<97>", "<98>", "<99>", "<9A>", "<9B>", "<9C>", "<9D>", "<9E>", "<9F>"};

bool IsWireLine(const TextLine& line) {
  return line.Whose() == Source::Received || line.Whose() == Source::Sent;
}

// Line ends of the program's own lines are nobody's codes.
std::size_t TextBytes(const TextLine& line, const RowFormat& format) {
  return format.codes && IsWireLine(line) ? line.text.size() : line.visible;
}

// Calls take(byte, cells) for each byte that is shown as text, in order; a break is taken once.
template <typename Take>
void ForEachByte(const TextLine& line, const RowFormat& format, Take take) {
  const std::size_t shown = TextBytes(line, format);
  auto run = line.runs.begin();
  const std::string_view text = line.text;
  bool inBreak = false;
  for (std::size_t byte = 0; byte < shown; ++byte) {
    while (run + 1 != line.runs.end() && (run + 1)->begin <= byte) ++run;
    const bool isBreak = IsBreak(run->kind);
    if (!isBreak) {
      const std::string_view name = format.codes ? CodeName(text[byte]) : std::string_view();
      take(byte, name.empty() ? text.substr(byte, 1) : name, isBreak);
    } else if (!inBreak) {
      take(byte, breakCell, isBreak);
    }
    inBreak = isBreak;
  }
}

// Rows of a fixed number of cells, filled without tearing a code apart.
class Wrap {
 public:
  explicit Wrap(std::size_t cells) : most_(cells) {}

  // Whether what is so wide begins a new row.
  bool Breaks(std::size_t width) {
    const bool breaks = most_ > 0 && used_ > 0 && used_ + width > most_;
    used_ = (breaks ? 0 : used_) + width;
    return breaks;
  }

 private:
  std::size_t most_;
  std::size_t used_ = 0;
};

// The positions of the bytes that were on the wire.
std::vector<std::uint16_t> WireBytes(const TextLine& line) {
  std::vector<std::uint16_t> bytes;
  bytes.reserve(line.text.size());
  for (std::size_t run = 0; run < line.runs.size(); ++run) {
    if (!IsOfWire(line.runs[run].kind)) continue;
    const std::size_t end = run + 1 < line.runs.size() ? line.runs[run + 1].begin : line.text.size();
    for (std::size_t byte = line.runs[run].begin; byte < end; ++byte) {
      bytes.push_back(static_cast<std::uint16_t>(byte));
    }
  }
  return bytes;
}

std::size_t WireByteCount(const TextLine& line) {
  std::size_t count = 0;
  for (std::size_t run = 0; run < line.runs.size(); ++run) {
    const std::size_t end = run + 1 < line.runs.size() ? line.runs[run + 1].begin : line.text.size();
    if (IsOfWire(line.runs[run].kind)) count += end - line.runs[run].begin;
  }
  return count;
}

std::uint32_t RoundedUp(std::size_t count, std::size_t share) {
  return static_cast<std::uint32_t>(std::max<std::size_t>(1, (count + share - 1) / share));
}

}  // namespace

std::string_view CodeName(char character) {
  const auto code = static_cast<unsigned char>(character);
  if (code < lowCodes.size()) return lowCodes[code];
  return code >= 0x7F && code < 0xA0 ? highCodes[code - 0x7F] : std::string_view();
}

bool IsControlCode(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

LineRows::LineRows(const TextLine& line, const RowFormat& format) {
  if (line.runs.empty()) {  // no line that is kept
    EndRow();
  } else if (format.hex && IsWireLine(line)) {
    shownBytes_ = line.text.size();
    LayHex(line, format.hexBytes);
  } else {
    shownBytes_ = TextBytes(line, format);
    LayText(line, format);
  }
}

void LineRows::LayText(const TextLine& line, const RowFormat& format) {
  cells_.reserve(line.text.size() + 8);
  Wrap wrap(format.wrapAt);
  ForEachByte(line, format, [&](std::size_t byte, std::string_view text, bool isBreak) {
    if (wrap.Breaks(text.size())) EndRow();
    Cell::Look look = text.size() > 1 ? Cell::Look::Code : Cell::Look::Text;
    if (look == Cell::Look::Text && IsControlCode(text.front())) look = Cell::Look::Control;
    Put(text, isBreak ? Cell::Look::Break : look, byte);
  });
  EndRow();
}

void LineRows::LayHex(const TextLine& line, std::size_t rowBytes) {
  const std::vector<std::uint16_t> bytes = WireBytes(line);
  for (std::size_t offset = 0; offset < bytes.size(); offset += rowBytes) {
    LayHexRow(line, std::span(bytes).subspan(offset, std::min(rowBytes, bytes.size() - offset)), offset,
              rowBytes);
    EndRow();
  }
  if (bytes.empty()) EndRow();
}

void LineRows::LayHexRow(const TextLine& line, std::span<const std::uint16_t> bytes, std::size_t offset,
                         std::size_t rowBytes) {
  using enum Cell::Look;
  constexpr std::string_view digits = "0123456789ABCDEF";
  Put(fmt::format("{:04X}  ", offset), Furniture, Cell::noByte);
  for (std::size_t i = 0; i < rowBytes; ++i) {
    const bool there = i < bytes.size();
    const std::size_t byte = there ? bytes[i] : Cell::noByte;
    const auto code = static_cast<unsigned char>(there ? line.text[byte] : 0);
    const char pair[] = {digits[code >> 4], digits[code & 15]};
    Put(there ? std::string_view(pair, 2) : "  ", there ? Text : Furniture, byte);
    const bool widens = i % 8 == 7 && i + 1 < rowBytes;
    Put(widens ? "  " : " ", there ? Gap : Furniture, byte);
  }
  Put(" |", Furniture, Cell::noByte);
  for (const std::uint16_t byte : bytes) {
    const char character = line.text[byte];
    const bool control = IsControlCode(character);
    Put(std::string_view(control ? "." : &character, 1), control ? Control : Text, byte);
  }
  Put("|", Furniture, Cell::noByte);
}

void LineRows::Put(std::string_view text, Cell::Look look, std::size_t byte) {
  for (const char character : text) cells_.push_back({character, look, static_cast<std::uint16_t>(byte)});
}

std::span<const Cell> LineRows::Row(std::size_t row) const {
  if (row >= ends_.size()) return {};
  const std::size_t begin = row == 0 ? 0 : ends_[row - 1];
  return std::span(cells_).subspan(begin, ends_[row] - begin);
}

// The byte behind the last one of a row.
std::size_t LineRows::RowEnd(std::size_t row) const {
  for (std::size_t next = row + 1; next < Count(); ++next) {
    for (const Cell& cell : Row(next)) {
      if (cell.byte != Cell::noByte) return cell.byte;
    }
  }
  return shownBytes_;
}

// The cell with a byte that is at a place or else to its left; the row's size when there is none.
std::size_t LineRows::Nearest(std::size_t row, double cells) const {
  const std::span<const Cell> shown = Row(row);
  const auto at = static_cast<std::size_t>(std::max(0.0, std::floor(cells)));
  for (std::size_t cell = std::min(at + 1, shown.size()); cell > 0; --cell) {
    if (shown[cell - 1].byte != Cell::noByte) return cell - 1;
  }
  return shown.size();
}

std::size_t LineRows::EdgeAt(std::size_t row, double cells) const {
  const std::span<const Cell> shown = Row(row);
  if (cells >= static_cast<double>(shown.size())) return RowEnd(row);
  const std::size_t cell = Nearest(row, cells);
  if (cell == shown.size()) return ByteAt(row, cells);
  const std::size_t byte = shown[cell].byte;
  std::size_t begin = cell;
  std::size_t end = cell + 1;
  while (begin > 0 && shown[begin - 1].byte == byte) --begin;
  while (end < shown.size() && shown[end].byte == byte) ++end;
  return 2 * cells < static_cast<double>(begin + end) ? byte : byte + 1;
}

std::size_t LineRows::ByteAt(std::size_t row, double cells) const {
  const std::span<const Cell> shown = Row(row);
  if (cells >= static_cast<double>(shown.size())) return RowEnd(row);
  const std::size_t cell = Nearest(row, cells);
  if (cell < shown.size()) return shown[cell].byte;
  for (const Cell& first : shown) {
    if (first.byte != Cell::noByte) return first.byte;
  }
  return RowEnd(row);
}

LineRows::Place LineRows::PlaceOf(std::size_t byte) const {
  for (std::size_t row = 0; row < Count(); ++row) {
    const std::span<const Cell> shown = Row(row);
    for (std::size_t cell = 0; cell < shown.size(); ++cell) {
      if (shown[cell].byte != Cell::noByte && shown[cell].byte >= byte) return {row, cell};
    }
  }
  return {Count() - 1, Row(Count() - 1).size()};
}

std::uint32_t RowCount(const TextLine& line, const RowFormat& format) {
  if (line.runs.empty()) return 1;
  if (format.hex && IsWireLine(line)) return RoundedUp(WireByteCount(line), format.hexBytes);
  if (format.wrapAt == 0) return 1;
  const std::size_t bytes = TextBytes(line, format);
  constexpr std::size_t widestCode = 5;
  if (bytes * (format.codes ? widestCode : 1) <= format.wrapAt) return 1;
  if (!format.codes) return RoundedUp(bytes, format.wrapAt);
  Wrap wrap(format.wrapAt);
  std::uint32_t rows = 1;
  ForEachByte(line, format,
              [&](std::size_t, std::string_view text, bool) { rows += wrap.Breaks(text.size()); });
  return rows;
}

std::size_t HexWidth(std::size_t rowBytes) {
  constexpr std::size_t offset = 6;
  constexpr std::size_t bars = 3;
  return offset + 3 * rowBytes + (rowBytes - 1) / 8 + bars + rowBytes;
}

std::size_t LineWidth(const TextLine& line, const RowFormat& format) {
  if (line.runs.empty()) return 0;
  if (format.hex && IsWireLine(line)) return HexWidth(format.hexBytes);
  std::size_t width = TextBytes(line, format);
  if (format.codes) {
    width = 0;
    ForEachByte(line, format, [&](std::size_t, std::string_view text, bool) { width += text.size(); });
  }
  return format.wrapAt == 0 ? width : std::min(width, format.wrapAt);
}

std::string ClockText(LocalTime time) {
  using std::chrono::milliseconds;
  const auto sinceEpoch = std::chrono::floor<milliseconds>(time).time_since_epoch();
  const auto thousandth = (sinceEpoch % 1000 + milliseconds(1000)) % 1000;
  return fmt::format("{}.{:03}", TimeText(time), thousandth.count());
}

std::string IntervalText(Duration duration) {
  using std::chrono::duration_cast;
  const double seconds = duration_cast<std::chrono::duration<double>>(duration).count();
  if (std::abs(seconds) < 0.99995) return fmt::format("{:.1f} ms", seconds * 1000);
  if (std::abs(seconds) < 59.9995) return fmt::format("{:.3f} s", seconds);
  return (seconds < 0 ? "-" : "") + ElapsedText(duration < Duration{} ? -duration : duration);
}

std::string TimeColumnText(const TextLine& line, TimeColumn column, std::optional<LocalTime> before) {
  switch (column) {
    case TimeColumn::Clock:
      return ClockText(line.time);
    case TimeColumn::SinceRow:
      return before ? IntervalText(line.time - *before) : std::string();
    case TimeColumn::SinceRequest:
      return line.sinceRequest ? IntervalText(*line.sinceRequest) : std::string();
    case TimeColumn::Off:
      break;
  }
  return {};
}

namespace {

QString ShownRow(std::span<const Cell> row) {
  QString text;
  for (const Cell& cell : row) {
    const auto code = static_cast<unsigned char>(cell.character);
    if (cell.look == Cell::Look::Break) {
      text += QChar(0x21B5);
    } else if (cell.look == Cell::Look::Control && code < 0x20) {
      text += QChar(0x2400 + code);
    } else {
      text += QChar(code == 0x7F ? 0x2421 : code);
    }
  }
  return text;
}

QString DirectionText(const TextLine& line) {
  if (line.Whose() == Source::Sent) return QStringLiteral("→ ");
  return line.Whose() == Source::Received ? QStringLiteral("← ") : QStringLiteral("  ");
}

}  // namespace

QString ShownLine(const TextLine& line, RowFormat format, TimeColumn column,
                  std::optional<LocalTime> before) {
  if (line.runs.empty()) return {};
  format.wrapAt = 0;
  const LineRows rows(line, format);
  const QString time = QString::fromStdString(TimeColumnText(line, column, before));
  const bool clock = column == TimeColumn::Clock;
  const QString head = (clock ? time + QStringLiteral("  ") : QString()) + DirectionText(line);
  QString text = head + ShownRow(rows.Row(0));
  const auto mark = column == TimeColumn::SinceRow ? differenceMark : lastMark;
  if (!clock && !time.isEmpty()) text += QLatin1String(mark.data(), static_cast<int>(mark.size())) + time;
  for (std::size_t row = 1; row < rows.Count(); ++row) {
    text += QChar('\n') + QString(head.size(), QChar(' ')) + ShownRow(rows.Row(row));
  }
  return text;
}

}  // namespace quarlin
