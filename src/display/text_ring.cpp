// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/text_ring.h"

#include <algorithm>
#include <cstring>

namespace quarlin {
namespace {

constexpr std::size_t longestLineEnd = 2;

// Positions of colours are told apart within 32 bits.
constexpr std::size_t mostBytes = std::size_t{1} << 31;

TextRing::Limits Sound(TextRing::Limits limits) {
  limits.lines = std::max<std::size_t>(limits.lines, 1);
  limits.lineLength = std::clamp<std::size_t>(limits.lineLength, 1, mostBytes - longestLineEnd);
  limits.bytes = std::clamp(limits.bytes, limits.lineLength + longestLineEnd, mostBytes);
  return limits;
}

// Three for each line, as a stamp, a text and a break inserted behind it take; and so many that one line
// alone may change its colour at each byte.
std::size_t MostColors(const TextRing::Limits& limits) {
  return 3 * limits.lines + limits.lineLength + longestLineEnd;
}

// Since a request time is counted in units of 10 µs, which makes 11 hours of 32 bits.
constexpr Duration sinceUnit = std::chrono::microseconds(10);
constexpr std::uint32_t noRequest = ~std::uint32_t{0};

constexpr std::uint32_t colorMask = 0xFFFFFF;
constexpr unsigned kindShift = 24;

std::uint32_t Packed(TextKind kind, Color color) {
  return static_cast<std::uint32_t>(kind) << kindShift | (static_cast<std::uint32_t>(color) & colorMask);
}

ColorRun Unpacked(std::size_t begin, std::uint32_t colorAndKind) {
  return {static_cast<std::uint32_t>(begin), static_cast<Color>(colorAndKind & colorMask),
          static_cast<TextKind>(colorAndKind >> kindShift)};
}

// Finds line ends from left to right. The next CR and the next LF are both remembered, so each byte is
// looked at twice in all, however the ends are mixed.
class LineEnds {
 public:
  explicit LineEnds(std::string_view text)
      : text_(text), nextReturn_(Find('\r', 0)), nextFeed_(Find('\n', 0)) {}

  // The first CR or LF at or behind `from`, or the text's size. `from` never goes back.
  std::size_t From(std::size_t from) {
    if (nextReturn_ < from) nextReturn_ = Find('\r', from);
    if (nextFeed_ < from) nextFeed_ = Find('\n', from);
    return std::min(nextReturn_, nextFeed_);
  }

 private:
  std::size_t Find(char end, std::size_t from) const {
    const void* found = std::memchr(text_.data() + from, end, text_.size() - from);
    if (found == nullptr) return text_.size();
    return static_cast<std::size_t>(static_cast<const char*>(found) - text_.data());
  }

  std::string_view text_;
  std::size_t nextReturn_;
  std::size_t nextFeed_;
};

// How long the line end is that the text begins with: CR LF, CR, LF, or 0 when the text is empty.
std::size_t LineEndLength(std::string_view text) {
  return text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1);
}

std::size_t VisibleLength(std::string_view line) {
  const std::size_t last = line.find_last_not_of("\r\n");
  return last == std::string_view::npos ? 0 : last + 1;
}

}  // namespace

Source SourceOf(TextKind kind) {
  switch (kind) {
    case TextKind::Error:
      return Source::Error;
    case TextKind::Received:
    case TextKind::ReceivedBreak:
      return Source::Received;
    case TextKind::Sent:
    case TextKind::SentStamp:
    case TextKind::SentBreak:
      return Source::Sent;
    case TextKind::Own:
      break;
  }
  return Source::Own;
}

const ColorRun& TextLine::RunAt(std::size_t byte) const {
  const auto after = std::upper_bound(runs.begin() + 1, runs.end(), byte,
                                      [](std::size_t at, const ColorRun& run) { return at < run.begin; });
  return *std::prev(after);
}

TextRing::TextRing(Limits limits)
    : limits_(Sound(limits)), bytes_(limits_.bytes), lines_(limits_.lines), colors_(MostColors(limits_)) {}

void TextRing::Append(std::string_view text, TextKind kind, Color color, LocalTime now) {
  if (text.empty()) return;
  ++revision_;
  StartSource(kind);
  StartColor(kind, color);

  std::size_t at = 0;
  if (lastLine_ == LastLine::TakesLineFeed) {
    lastLine_ = LastLine::Ended;
    if (text.front() == '\n') {
      Store(text.substr(0, 1));
      at = 1;
    }
  }
  LineEnds ends(text);
  while (at < text.size()) {
    const std::size_t end = ends.From(at);
    const std::size_t room = RoomInLine(now);
    if (end - at > room) {
      Store(text.substr(at, room));
      lastLine_ = LastLine::Ended;
      at += room;
      continue;
    }
    const std::size_t next = end + LineEndLength(text.substr(end));
    Store(text.substr(at, next - at));
    if (next > end) lastLine_ = text[next - 1] == '\r' ? LastLine::TakesLineFeed : LastLine::Ended;
    at = next;
  }
}

// How many visible bytes the growing line may still take; begins a line when none grows.
std::size_t TextRing::RoomInLine(LocalTime now) {
  if (lastLine_ != LastLine::Grows) BeginLine(now);
  return limits_.lineLength - static_cast<std::size_t>(bytes_.End() - BeginOf(lines_.Size() - 1));
}

void TextRing::BeginLine(LocalTime now) {
  if (lines_.Full()) DropFirstLine();
  if (lastSource_ == Source::Sent) lastRequest_ = now;
  lines_.PushBack({static_cast<std::uint32_t>(bytes_.End()), SinceRequest(now), now});
  lastLine_ = LastLine::Grows;
}

std::uint32_t TextRing::SinceRequest(LocalTime now) const {
  if (lastSource_ == Source::Sent || !lastRequest_ || now < *lastRequest_) return noRequest;
  const auto units = (now - *lastRequest_) / sinceUnit;
  return units < noRequest ? static_cast<std::uint32_t>(units) : noRequest;
}

// Text of another source ends the line that grows.
void TextRing::StartSource(TextKind kind) {
  const Source source = SourceOf(kind);
  if (source != lastSource_) lastLine_ = LastLine::Ended;
  lastSource_ = source;
  if (kind == TextKind::Sent) lastSentLine_ = EndLine() - (lastLine_ == LastLine::Grows ? 1 : 0);
}

void TextRing::StartColor(TextKind kind, Color color) {
  const std::uint32_t packed = Packed(kind, color);
  if (!colors_.Empty() && colors_.Back().colorAndKind == packed) return;
  while (colors_.Full()) DropFirstLine();
  colors_.PushBack({static_cast<std::uint32_t>(bytes_.End()), packed});
}

// Adds to the last line. Older lines make room; the last one alone always fits.
void TextRing::Store(std::string_view part) {
  while (bytes_.Size() + part.size() > limits_.bytes) DropFirstLine();
  bytes_.Append(part);
}

void TextRing::DropFirstLine() {
  lines_.PopFront();
  ++firstLine_;
  const std::uint64_t begin = lines_.Empty() ? bytes_.End() : BeginOf(0);
  const auto dropped = static_cast<std::size_t>(begin - bytes_.Begin());
  while (colors_.Size() > 1 && DistanceOf(colors_[1].begin) <= dropped) colors_.PopFront();
  bytes_.DropBefore(begin);
}

void TextRing::Clear() {
  ++revision_;
  firstLine_ += lines_.Size();
  lines_.Clear();
  colors_.Clear();
  bytes_.Clear();
  lastLine_ = LastLine::Ended;
}

// From the first kept byte to a position.
std::size_t TextRing::DistanceOf(std::uint32_t begin) const {
  return static_cast<std::uint32_t>(begin - static_cast<std::uint32_t>(bytes_.Begin()));
}

void TextRing::ReadColors(std::uint64_t begin, std::uint64_t end, std::vector<ColorRun>& runs) const {
  const auto from = static_cast<std::size_t>(begin - bytes_.Begin());
  const auto to = static_cast<std::size_t>(end - bytes_.Begin());
  std::size_t color = 0;  // the last one that begins at or before `from`
  for (std::size_t above = colors_.Size(); above - color > 1;) {
    const std::size_t middle = color + (above - color) / 2;
    (DistanceOf(colors_[middle].begin) <= from ? color : above) = middle;
  }
  runs.assign(1, Unpacked(0, colors_[color].colorAndKind));
  for (++color; color < colors_.Size(); ++color) {
    const std::size_t at = DistanceOf(colors_[color].begin);
    if (at >= to) break;
    runs.push_back(Unpacked(at - from, colors_[color].colorAndKind));
  }
}

TextLine TextRing::Line(std::uint64_t number) const {
  TextLine line;
  Read(number, line);
  return line;
}

void TextRing::Read(std::uint64_t number, TextLine& line) const {
  if (!Keeps(number)) {
    line = {};
    return;
  }
  const std::size_t index = IndexOf(number);
  const LineStart& start = lines_[index];
  const std::uint64_t begin = BeginOf(index);
  const std::uint64_t end = index + 1 < lines_.Size() ? BeginOf(index + 1) : bytes_.End();
  line.text.clear();
  bytes_.CopyTo(begin, end, line.text);
  line.visible = VisibleLength(line.text);
  line.time = start.time;
  line.sinceRequest.reset();
  if (start.sinceRequest != noRequest) line.sinceRequest = start.sinceRequest * sinceUnit;
  ReadColors(begin, end, line.runs);
}

}  // namespace quarlin
