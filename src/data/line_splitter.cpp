// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/line_splitter.h"

#include <algorithm>

namespace quarlin {

void LineSplitter::Take(std::string_view piece) {
  while (!piece.empty()) {
    if (afterCr_ && piece.front() == '\n') piece.remove_prefix(1);
    afterCr_ = false;
    const auto end =
        std::find_if(piece.begin(), piece.end(), [](char byte) { return byte == '\n' || byte == '\r'; });
    const std::string_view part(piece.begin(), end);
    if (end == piece.end()) return Keep(part);
    afterCr_ = *end == '\r';
    piece.remove_prefix(part.size() + 1);
    End(part);
  }
}

void LineSplitter::Finish() {
  if (!begun_.empty()) End({});
}

void LineSplitter::Keep(std::string_view part) {
  const std::size_t room = longestLine - begun_.size();
  cut_ = cut_ || part.size() > room;
  begun_ += part.substr(0, room);
}

void LineSplitter::End(std::string_view part) {
  ++number_;
  if (begun_.empty() && part.size() <= longestLine) return sink_({number_, part, false});
  Keep(part);
  sink_({number_, begun_, cut_});
  begun_.clear();
  cut_ = false;
}

}  // namespace quarlin
