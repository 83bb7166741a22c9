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

// Two for each line, and so many that one line alone may change its colour at each byte.
std::size_t MostColors(const TextRing::Limits& limits) {
  return 2 * limits.lines + limits.lineLength + longestLineEnd;
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

TextRing::TextRing(Limits limits)
    : limits_(Sound(limits)), bytes_(limits_.bytes), lines_(limits_.lines), colors_(MostColors(limits_)) {}

void TextRing::Append(std::string_view text, Color color, LocalTime now) {
  if (text.empty()) return;
  ++revision_;
  StartColor(color);

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
  if (lastLine_ != LastLine::Grows) {
    if (lines_.Full()) DropFirstLine();
    lines_.PushBack({bytes_.End(), now});
    lastLine_ = LastLine::Grows;
  }
  return limits_.lineLength - static_cast<std::size_t>(bytes_.End() - lines_.Back().begin);
}

void TextRing::StartColor(Color color) {
  if (!colors_.Empty() && colors_.Back().color == color) return;
  while (colors_.Full()) DropFirstLine();
  colors_.PushBack({static_cast<std::uint32_t>(bytes_.End()), color});
}

// Adds to the last line. Older lines make room; the last one alone always fits.
void TextRing::Store(std::string_view part) {
  while (bytes_.Size() + part.size() > limits_.bytes) DropFirstLine();
  bytes_.Append(part);
}

void TextRing::DropFirstLine() {
  lines_.PopFront();
  ++firstLine_;
  const std::uint64_t begin = lines_.Empty() ? bytes_.End() : lines_.Front().begin;
  const auto dropped = static_cast<std::size_t>(begin - bytes_.Begin());
  while (colors_.Size() > 1 && ColorDistance(1) <= dropped) colors_.PopFront();
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

// From the first kept byte to the begin of a colour.
std::size_t TextRing::ColorDistance(std::size_t index) const {
  return static_cast<std::uint32_t>(colors_[index].begin - static_cast<std::uint32_t>(bytes_.Begin()));
}

std::vector<ColorRun> TextRing::ColorsBetween(std::uint64_t begin, std::uint64_t end) const {
  const auto from = static_cast<std::size_t>(begin - bytes_.Begin());
  const auto to = static_cast<std::size_t>(end - bytes_.Begin());
  std::size_t color = 0;  // the last one that begins at or before `from`
  for (std::size_t above = colors_.Size(); above - color > 1;) {
    const std::size_t middle = color + (above - color) / 2;
    (ColorDistance(middle) <= from ? color : above) = middle;
  }
  std::vector<ColorRun> runs{{0, colors_[color].color}};
  for (++color; color < colors_.Size() && ColorDistance(color) < to; ++color) {
    runs.push_back({static_cast<std::uint32_t>(ColorDistance(color) - from), colors_[color].color});
  }
  return runs;
}

TextLine TextRing::Line(std::uint64_t number) const {
  if (number < FirstLine() || number >= EndLine()) return {};
  const auto index = static_cast<std::size_t>(number - firstLine_);
  const std::uint64_t begin = lines_[index].begin;
  const std::uint64_t end = index + 1 < lines_.Size() ? lines_[index + 1].begin : bytes_.End();
  TextLine line{bytes_.Copy(begin, end), 0, lines_[index].time, ColorsBetween(begin, end)};
  line.visible = VisibleLength(line.text);
  return line;
}

}  // namespace quarlin
