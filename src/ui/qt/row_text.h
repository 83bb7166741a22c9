// A kept line as one row of cells, the way the view shows it. One cell is one character of the fixed-width
// font, held as a byte (Latin-1).
//
//   plain        12:34:56.789  HELLO
//   as hex       12:34:56.789  48 45 4C 4C 4F 0D  |HELLO|
//
// The time stamp is there when asked for. The hex pairs always show the line end, too; as text it is a
// row's part only when line ends are shown.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "display/text_ring.h"

namespace quarlin {

struct RowFormat {
  bool times = false;
  bool hex = false;
  bool lineEnds = false;
  bool operator==(const RowFormat&) const = default;
};

class Row {
 public:
  // The end of a row together with its line end.
  static constexpr std::size_t throughLineEnd = std::string::npos;

  Row(TextLine line, RowFormat format);

  const std::string& Cells() const { return cells_; }
  std::size_t Length() const { return cells_.size(); }

  // Which byte of the line a cell stands for; nothing for time stamps, gaps and bars.
  std::optional<std::size_t> ByteAt(std::size_t cell) const;

  // True where a control character stands for itself, not its hex pair.
  bool IsControl(std::size_t cell) const;

  // The colour in which a byte of the line was added.
  Color ColorAt(std::size_t byte) const;

  // What a copy of the cells from `begin` to before `end` gives, without the line end.
  std::string CopiedText(std::size_t begin, std::size_t end) const;

  // The bytes of the line behind these cells, each once.
  std::string CopiedBytes(std::size_t begin, std::size_t end) const;

 private:
  TextLine line_;
  std::string cells_;
  std::size_t hexBegin_ = 0;
  std::size_t hexEnd_ = 0;
  std::size_t textBegin_ = 0;
  std::size_t textEnd_ = 0;
};

}  // namespace quarlin
