// SPDX-License-Identifier: GPL-3.0-or-later
// Finding text in the kept lines, and counting the places.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "display/line_sums.h"
#include "display/row_map.h"
#include "display/text_ring.h"
#include "ui/qt/text_selection.h"

namespace quarlin {

struct TextQuery {
  QString text;
  bool caseSensitive = false;
  bool expression = false;  // a regular expression instead of plain text
  bool codes = false;       // "<STX>" in plain text means the control code
  bool hex = false;         // plain text of pairs of hex digits means the bytes
  bool operator==(const TextQuery&) const = default;
};

// What to look for, made ready. Looks at the text of a line; where it names control codes, at the line end,
// too. A line's matches are told from the left and do not overlap; empty ones are none.
// Expressions are the toolkit's own (Perl's syntax): they are there without another library, their errors
// come with their place, and a limit on the steps for a line keeps a bad one from holding up the window.
class TextMatcher {
 public:
  TextMatcher() = default;  // matches nothing
  explicit TextMatcher(const TextQuery& query);

  bool Usable() const { return error_.isEmpty() && (expression_ || !needle_.empty()); }

  // Why nothing can be found: "missing closing parenthesis, at character 5". Empty for a usable query and for
  // none.
  const QString& Error() const { return error_; }

  // Writes the line's matches over `matches`.
  void Find(const TextLine& line, std::vector<ByteRange>& matches) const;

 private:
  void TakeText(const TextQuery& query);
  void TakeExpression(const TextQuery& query);
  void FindText(const TextLine& line, std::vector<ByteRange>& matches) const;
  void FindExpression(const TextLine& line, std::vector<ByteRange>& matches) const;

  std::string needle_;
  bool caseSensitive_ = false;
  bool throughLineEnds_ = false;
  std::optional<QRegularExpression> expression_;
  QString error_;
  mutable std::string lowered_;  // memory that is used again
};

// Whether the span is a match, so that a search has to go past it.
bool IsMatch(const TextRing& ring, const TextMatcher& matcher, const TextSpan& span);

enum class SearchDirection { Forward, Backward };

// In the lines that are shown the next match that begins at `from` or later; backward, the last one that ends
// at `from` or before. Goes on at the other end of the ring. Nothing also when `patience` is over.
std::optional<TextSpan> FindText(const TextRing& ring, const RowMap& map, const TextMatcher& matcher,
                                 TextPosition from, SearchDirection direction, Duration patience);

// How many matches the lines have that are shown, kept up to date while lines come and go.
class MatchCount {
 public:
  void Restart() { fresh_ = true; }

  // Looks at what is new, for no longer than `budget`. Whether all has been looked at.
  bool Update(const TextRing& ring, const RowMap& map, const TextMatcher& matcher, Duration budget);

  std::uint64_t Count() const { return sums_.Total(); }

  // The number of a match, counted from 1; 0 when the span is none.
  std::uint64_t NumberOf(const TextRing& ring, const TextMatcher& matcher, const TextSpan& span) const;

 private:
  LineSums sums_{TextRing::Limits().lines};
  bool fresh_ = true;
  std::uint32_t CountIn(const TextRing& ring, const RowMap& map, const TextMatcher& matcher,
                        std::uint64_t line);

  TextLine read_;
  std::vector<ByteRange> matches_;
};

}  // namespace quarlin
