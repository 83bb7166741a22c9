// SPDX-License-Identifier: GPL-3.0-or-later
// The received-text display's store: the last lines of both directions, bounded in lines and bytes, so a
// run of days takes no more memory than a run of minutes. The view paints the lines that it needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "controls/control.h"
#include "display/byte_blocks.h"
#include "display/ring_vector.h"

namespace quarlin {

// What a text is. Bytes of the wire are Received and Sent alone.
enum class TextKind : std::uint8_t {
  Own,    // of the program or a script
  Error,  // tells what went wrong
  Received,
  Sent,
  SentStamp,      // the date and time in front of what is sent
  ReceivedBreak,  // the line break that "Append Row" puts behind a string
  SentBreak
};

// Whose a line is; a line has one source only.
enum class Source : std::uint8_t { Own, Error, Received, Sent };

Source SourceOf(TextKind kind);
constexpr bool IsOfWire(TextKind kind) {
  return kind == TextKind::Received || kind == TextKind::Sent;
}
constexpr bool IsBreak(TextKind kind) {
  return kind == TextKind::ReceivedBreak || kind == TextKind::SentBreak;
}

// A stretch of a line in one colour and of one kind, up to the next one's begin.
struct ColorRun {
  std::uint32_t begin = 0;
  Color color = 0;
  TextKind kind = TextKind::Own;
};

struct TextLine {
  std::string text;         // with its line end, CR, LF or CR LF, if it has one
  std::size_t visible = 0;  // length without the line end
  LocalTime time;           // when its first byte came
  std::optional<Duration>
      sinceRequest;            // from the last line sent before it; none for that itself, and above 11 h
  std::vector<ColorRun> runs;  // at least one; the first begins at 0

  Source Whose() const { return SourceOf(runs.front().kind); }
  const ColorRun& RunAt(std::size_t byte) const;
};

class TextRing {
 public:
  struct Limits {
    std::size_t lines = 100'000;
    std::size_t bytes = std::size_t{32} << 20;
    std::size_t lineLength = 4096;  // a longer line is broken
  };

  TextRing() : TextRing(Limits()) {}

  // At least one line is always kept, so `bytes` is taken as no less than a whole line.
  explicit TextRing(Limits limits);

  // Adds text of one colour (24 bits) and kind. A line ends with CR, LF or CR LF, also where the pair comes
  // in two calls, and where text of another source follows.
  void Append(std::string_view text, TextKind kind, Color color, LocalTime now);
  void Clear();

  // Lines are numbered from the start of the program; those from FirstLine() to EndLine() - 1 are kept.
  // The last one may still grow. A cleared ring goes on counting.
  std::uint64_t FirstLine() const { return firstLine_; }
  std::uint64_t EndLine() const { return firstLine_ + lines_.Size(); }

  bool Keeps(std::uint64_t number) const { return number >= FirstLine() && number < EndLine(); }

  // The line in which the text begins that was sent last; it need not be kept any more.
  std::uint64_t LastSentLine() const { return lastSentLine_; }

  // A copy of a kept line; an empty one for any other number. Read writes it over another one, whose memory
  // is used again.
  TextLine Line(std::uint64_t number) const;
  void Read(std::uint64_t number, TextLine& line) const;

  // When a kept line came.
  LocalTime TimeOf(std::uint64_t number) const { return lines_[IndexOf(number)].time; }

  std::size_t Bytes() const { return bytes_.Size(); }   // held at present
  std::uint64_t Revision() const { return revision_; }  // differs whenever something was added or cleared

 private:
  // Both are kept small, since there are many: of a position only the low 32 bits, told apart by their
  // distance to the first kept byte.
  struct LineStart {
    std::uint32_t begin = 0;  // position of its first byte
    std::uint32_t sinceRequest = 0;
    LocalTime time;
  };

  // A colour and a kind begin here and go on over the line ends until the next ones.
  struct ColorStart {
    std::uint32_t begin = 0;
    std::uint32_t colorAndKind = 0;  // the kind in the highest byte
  };

  // What the last line waits for. A CR ends its line at once, and an LF that comes next joins it.
  enum class LastLine { Grows, TakesLineFeed, Ended };

  std::size_t RoomInLine(LocalTime now);
  void BeginLine(LocalTime now);
  void StartSource(TextKind kind);
  std::uint32_t SinceRequest(LocalTime now) const;
  void StartColor(TextKind kind, Color color);
  void Store(std::string_view part);
  void DropFirstLine();
  std::size_t IndexOf(std::uint64_t number) const { return static_cast<std::size_t>(number - firstLine_); }
  std::size_t DistanceOf(std::uint32_t begin) const;
  std::uint64_t BeginOf(std::size_t index) const { return bytes_.Begin() + DistanceOf(lines_[index].begin); }
  void ReadColors(std::uint64_t begin, std::uint64_t end, std::vector<ColorRun>& runs) const;

  Limits limits_;
  ByteBlocks bytes_;
  RingVector<LineStart> lines_;
  RingVector<ColorStart> colors_;  // the first one holds from the first kept byte on
  LastLine lastLine_ = LastLine::Ended;
  Source lastSource_ = Source::Own;
  std::optional<LocalTime> lastRequest_;
  std::uint64_t lastSentLine_ = 0;
  std::uint64_t firstLine_ = 0;
  std::uint64_t revision_ = 0;
};

}  // namespace quarlin
