// Finding text in the kept lines, as the view shows them.
#pragma once

#include <optional>
#include <string>

#include "display/text_ring.h"
#include "ui/qt/text_selection.h"

namespace quarlin {

enum class SearchDirection { Forward, Backward };

struct TextQuery {
  std::string text;  // Latin-1, not empty
  SearchDirection direction = SearchDirection::Forward;
  bool caseSensitive = false;
};

// The next match that begins at `from` or later; backward, the last one that ends at `from` or before.
// Goes on at the other end of the ring.
std::optional<TextSpan> FindText(const TextRing& ring, RowFormat format, const TextQuery& query,
                                 TextPosition from);

// Whether the span is a match itself, so that the search has to go past it.
bool Matches(const TextRing& ring, RowFormat format, const TextQuery& query, const TextSpan& span);

}  // namespace quarlin
