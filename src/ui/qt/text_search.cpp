// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/text_search.h"

#include <QElapsedTimer>
#include <algorithm>

#include "ui/qt/row_text.h"

namespace quarlin {
namespace {

constexpr std::uint64_t linesBetweenLooks = 64;  // at the clock

// Makes the capital letters of Latin-1 small; without branches or a table, so that the compiler can take
// many at once.
void MakeLower(std::string& text) {
  for (char& letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    const bool ascii = static_cast<unsigned char>(code - 'A') < 26;
    const bool accented = (static_cast<unsigned char>(code - 0xC0) < 31) & (code != 0xD7);
    letter = static_cast<char>(code | ((ascii | accented) << 5));
  }
}

// The text as bytes. Nothing when a character can stand in none of them.
std::optional<std::string> BytesOfText(const QString& text) {
  std::string bytes;
  for (const QChar character : text) {
    const char16_t code = character.unicode();
    const bool picture = code >= 0x2400 && code < 0x2420;  // copied from a display such as this one
    if (!picture && code > 0xFF) return std::nullopt;
    bytes += static_cast<char>(picture ? code - 0x2400 : code);
  }
  return bytes;
}

std::string WithCodes(const std::string& text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length = 1;
    char byte = text[at];
    for (int code = 0; code < 256 && length == 1; ++code) {
      const std::string_view name = CodeName(static_cast<char>(code));
      if (name.empty() || text.compare(at, name.size(), name) != 0) continue;
      byte = static_cast<char>(code);
      length = name.size();
    }
    bytes += byte;
    at += length;
  }
  return bytes;
}

// The bytes that pairs of hex digits name; nothing for any other text.
std::optional<std::string> HexBytes(const QString& text) {
  static const QRegularExpression pairs(QStringLiteral("^\\s*([0-9A-Fa-f]{2}\\s*)+$"));
  if (!pairs.match(text).hasMatch()) return std::nullopt;
  return QByteArray::fromHex(text.toLatin1()).toStdString();
}

std::size_t Searched(const TextLine& line, bool throughLineEnds) {
  return throughLineEnds ? line.text.size() : line.visible;
}

}  // namespace

TextMatcher::TextMatcher(const TextQuery& query) : caseSensitive_(query.caseSensitive) {
  if (query.text.isEmpty()) return;
  query.expression ? TakeExpression(query) : TakeText(query);
}

void TextMatcher::TakeText(const TextQuery& query) {
  throughLineEnds_ = query.hex || query.codes;
  if (const auto bytes = query.hex ? HexBytes(query.text) : std::nullopt) {
    needle_ = *bytes;
    caseSensitive_ = true;
    return;
  }
  needle_ = BytesOfText(query.text).value_or("");
  if (query.codes) needle_ = WithCodes(needle_);
  if (!caseSensitive_) MakeLower(needle_);
}

void TextMatcher::TakeExpression(const TextQuery& query) {
  const QString limit = QStringLiteral("(*LIMIT_MATCH=20000)");  // steps of one match
  const auto options =
      query.caseSensitive ? QRegularExpression::NoPatternOption : QRegularExpression::CaseInsensitiveOption;
  expression_.emplace(limit + query.text, options);
  if (expression_->isValid()) {
    expression_->optimize();
    return;
  }
  const qsizetype place = std::max<qsizetype>(0, expression_->patternErrorOffset() - limit.size()) + 1;
  error_ = QObject::tr("%1, at character %2").arg(expression_->errorString()).arg(place);
}

void TextMatcher::Find(const TextLine& line, std::vector<ByteRange>& matches) const {
  matches.clear();
  if (!Usable()) return;
  expression_ ? FindExpression(line, matches) : FindText(line, matches);
}

void TextMatcher::FindText(const TextLine& line, std::vector<ByteRange>& matches) const {
  std::string_view text = line.text;
  if (!caseSensitive_) {
    lowered_ = line.text;
    MakeLower(lowered_);
    text = lowered_;
  }
  text = text.substr(0, Searched(line, throughLineEnds_));
  for (std::size_t at = text.find(needle_); at != std::string_view::npos;
       at = text.find(needle_, at + needle_.size())) {
    matches.push_back({at, at + needle_.size()});
  }
}

void TextMatcher::FindExpression(const TextLine& line, std::vector<ByteRange>& matches) const {
  const QString text = QString::fromLatin1(line.text.data(), static_cast<qsizetype>(line.visible));
  for (QRegularExpressionMatchIterator each = expression_->globalMatch(text); each.hasNext();) {
    const QRegularExpressionMatch match = each.next();
    if (match.capturedLength() == 0) continue;
    matches.push_back(
        {static_cast<std::size_t>(match.capturedStart()), static_cast<std::size_t>(match.capturedEnd())});
  }
}

namespace {

class Searcher {
 public:
  Searcher(const TextRing& ring, const RowMap& map, const TextMatcher& matcher, SearchDirection direction)
      : ring_(ring), map_(map), matcher_(matcher), direction_(direction) {}

  // In one line: the first match at or after `from`, or the last that ends at or before it.
  std::optional<TextSpan> InLine(std::uint64_t number, std::size_t from) {
    if (!map_.Shows(number)) return std::nullopt;
    ring_.Read(number, line_);
    matcher_.Find(line_, matches_);
    std::optional<TextSpan> found;
    for (const ByteRange& match : matches_) {
      const TextSpan span{{number, match.begin}, {number, match.end}};
      if (direction_ == SearchDirection::Backward && match.end <= from) found = span;
      if (direction_ == SearchDirection::Forward && match.begin >= from) return span;
    }
    return found;
  }

 private:
  const TextRing& ring_;
  const RowMap& map_;
  const TextMatcher& matcher_;
  SearchDirection direction_;
  TextLine line_;
  std::vector<ByteRange> matches_;
};

}  // namespace

bool IsMatch(const TextRing& ring, const TextMatcher& matcher, const TextSpan& span) {
  if (span.begin.line != span.end.line) return false;
  std::vector<ByteRange> matches;
  matcher.Find(ring.Line(span.begin.line), matches);
  return std::any_of(matches.begin(), matches.end(), [&](const ByteRange& match) {
    return match.begin == span.begin.byte && match.end == span.end.byte;
  });
}

std::optional<TextSpan> FindText(const TextRing& ring, const RowMap& map, const TextMatcher& matcher,
                                 TextPosition from, SearchDirection direction, Duration patience) {
  const std::uint64_t first = ring.FirstLine();
  const std::uint64_t count = ring.EndLine() - first;
  if (count == 0 || !matcher.Usable()) return std::nullopt;

  QElapsedTimer taken;
  taken.start();
  Searcher searcher(ring, map, matcher, direction);
  const bool forward = direction == SearchDirection::Forward;
  const std::uint64_t start = std::clamp(from.line, first, first + count - 1) - first;
  const std::size_t whole = forward ? 0 : std::string::npos;
  if (const auto match = searcher.InLine(first + start, from.byte)) return match;
  // The last step takes the first line again, now as a whole.
  for (std::uint64_t step = 1; step <= count; ++step) {
    const std::uint64_t index = (forward ? start + step : start + count - step) % count;
    if (const auto match = searcher.InLine(first + index, whole)) return match;
    if (step % linesBetweenLooks == 0 && std::chrono::nanoseconds(taken.nsecsElapsed()) > patience) break;
  }
  return std::nullopt;
}

std::uint32_t MatchCount::CountIn(const TextRing& ring, const RowMap& map, const TextMatcher& matcher,
                                  std::uint64_t line) {
  if (!map.Shows(line)) return 0;
  ring.Read(line, read_);
  matcher.Find(read_, matches_);
  return static_cast<std::uint32_t>(matches_.size());
}

bool MatchCount::Update(const TextRing& ring, const RowMap& map, const TextMatcher& matcher,
                        Duration budget) {
  QElapsedTimer taken;
  taken.start();
  if (std::exchange(fresh_, false)) sums_.Restart(ring.FirstLine());
  sums_.DropBefore(ring.FirstLine());
  // The last line may have grown, and lines before an error have been shown since.
  const std::uint64_t mayDiffer = map.Plain() ? 1 : RowMap::farthestBefore + 1;
  const std::uint64_t end = sums_.EndLine();
  for (std::uint64_t line = end - std::min(mayDiffer, end - sums_.FirstLine()); line < end; ++line) {
    sums_.Set(line, CountIn(ring, map, matcher, line));
  }
  while (sums_.EndLine() < ring.EndLine()) {
    sums_.Add(CountIn(ring, map, matcher, sums_.EndLine()));
    if (sums_.EndLine() % linesBetweenLooks == 0 && std::chrono::nanoseconds(taken.nsecsElapsed()) > budget) {
      return false;
    }
  }
  return true;
}

std::uint64_t MatchCount::NumberOf(const TextRing& ring, const TextMatcher& matcher,
                                   const TextSpan& span) const {
  const std::uint64_t line = span.begin.line;
  if (span.end.line != line || line < sums_.FirstLine() || line >= sums_.EndLine()) return 0;
  std::vector<ByteRange> matches;
  matcher.Find(ring.Line(line), matches);
  for (std::size_t index = 0; index < matches.size(); ++index) {
    const bool same = matches[index].begin == span.begin.byte && matches[index].end == span.end.byte;
    if (same) return sums_.Before(line) + index + 1;
  }
  return 0;
}

}  // namespace quarlin
