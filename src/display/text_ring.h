// The received-text display's store: the last lines of both directions, bounded in lines and bytes, so a
// run of days takes no more memory than a run of minutes. The view paints the lines that it needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "controls/control.h"
#include "display/byte_blocks.h"
#include "display/ring_vector.h"

namespace quarlin {

// A stretch of a line in one colour, up to the next one's begin.
struct ColorRun {
  std::uint32_t begin = 0;
  Color color = 0;
};

struct TextLine {
  std::string text;         // with its line end, CR, LF or CR LF, if it has one
  std::size_t visible = 0;  // length without the line end
  LocalTime time;           // when its first byte came
  std::vector<ColorRun> runs;
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

  // Adds text of one colour. A line ends with CR, LF or CR LF, also where the pair comes in two calls.
  void Append(std::string_view text, Color color, LocalTime now);
  void Clear();

  // Lines are numbered from the start of the program; those from FirstLine() to EndLine() - 1 are kept.
  // The last one may still grow. A cleared ring goes on counting.
  std::uint64_t FirstLine() const { return firstLine_; }
  std::uint64_t EndLine() const { return firstLine_ + lines_.Size(); }

  // A copy of a kept line; an empty one for any other number.
  TextLine Line(std::uint64_t number) const;

  std::size_t Bytes() const { return bytes_.Size(); }   // held at present
  std::uint64_t Revision() const { return revision_; }  // differs whenever something was added or cleared

 private:
  struct LineStart {
    std::uint64_t begin = 0;  // position of its first byte
    LocalTime time;
  };

  // A colour begins here and goes on over the line ends until the next one. Kept small, since there may
  // be several in a line: of the position only the low 32 bits, told apart by their distance to the first
  // kept byte.
  struct ColorStart {
    std::uint32_t begin = 0;
    Color color = 0;
  };

  // What the last line waits for. A CR ends its line at once, and an LF that comes next joins it.
  enum class LastLine { Grows, TakesLineFeed, Ended };

  std::size_t RoomInLine(LocalTime now);
  void StartColor(Color color);
  void Store(std::string_view part);
  void DropFirstLine();
  std::size_t ColorDistance(std::size_t index) const;
  std::vector<ColorRun> ColorsBetween(std::uint64_t begin, std::uint64_t end) const;

  Limits limits_;
  ByteBlocks bytes_;
  RingVector<LineStart> lines_;
  RingVector<ColorStart> colors_;  // the first one holds from the first kept byte on
  LastLine lastLine_ = LastLine::Ended;
  std::uint64_t firstLine_ = 0;
  std::uint64_t revision_ = 0;
};

}  // namespace quarlin
