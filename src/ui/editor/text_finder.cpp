// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/text_finder.h"

#include <QCoreApplication>

namespace quarlin {

TextFinder::TextFinder(const FindQuery& query)
    : isExpression_(query.expression), empty_(query.text.isEmpty()) {
  QString pattern = query.expression ? query.text : QRegularExpression::escape(query.text);
  if (query.wholeWord) pattern = QStringLiteral("\\b(?:%1)\\b").arg(pattern);
  QRegularExpression::PatternOptions options = QRegularExpression::MultilineOption;
  if (!query.caseSensitive) options |= QRegularExpression::CaseInsensitiveOption;
  expression_ = QRegularExpression(pattern, options);
  if (!expression_.isValid()) {
    error_ = QCoreApplication::translate("TextFinder", "%1, at character %2")
                 .arg(expression_.errorString())
                 .arg(expression_.patternErrorOffset() + 1);
  }
}

template <typename Use>
void TextFinder::ForEach(const QString& text, Use use) const {
  if (!Usable()) return;
  for (auto matches = expression_.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    if (match.capturedLength() > 0 && !use(match)) return;
  }
}

std::optional<FoundText> TextFinder::Next(const QString& text, qsizetype from) const {
  std::optional<FoundText> first, next;
  ForEach(text, [&](const QRegularExpressionMatch& match) {
    const FoundText found{match.capturedStart(), match.capturedEnd()};
    if (!first) first = found;
    if (found.begin >= from) next = found;
    return !next;
  });
  return next ? next : first;
}

std::optional<FoundText> TextFinder::Previous(const QString& text, qsizetype until) const {
  std::optional<FoundText> last, previous;
  ForEach(text, [&](const QRegularExpressionMatch& match) {
    last = FoundText{match.capturedStart(), match.capturedEnd()};
    if (last->end <= until) previous = last;
    return last->end <= until || !previous;
  });
  return previous ? previous : last;
}

int TextFinder::Count(const QString& text) const {
  int count = 0;
  ForEach(text, [&](const QRegularExpressionMatch&) { return ++count > 0; });
  return count;
}

std::vector<FoundText> TextFinder::First(const QString& text, std::size_t most) const {
  std::vector<FoundText> found;
  ForEach(text, [&](const QRegularExpressionMatch& match) {
    found.push_back({match.capturedStart(), match.capturedEnd()});
    return found.size() < most;
  });
  return found;
}

int TextFinder::ReplaceAll(QString& text, const QString& with) const {
  QString replaced;
  qsizetype taken = 0;
  int count = 0;
  ForEach(text, [&](const QRegularExpressionMatch& match) {
    replaced += QStringView(text).mid(taken, match.capturedStart() - taken);
    replaced += Filled(match, with);
    taken = match.capturedEnd();
    return ++count > 0;
  });
  if (count > 0) text = replaced.append(QStringView(text).mid(taken));
  return count;
}

QString TextFinder::Replacement(const QString& text, const FoundText& match, const QString& with) const {
  return Filled(expression_.match(text, match.begin), with);
}

QString TextFinder::Filled(const QRegularExpressionMatch& match, const QString& with) const {
  if (!isExpression_) return with;
  QString filled;
  for (qsizetype i = 0; i < with.size(); ++i) {
    const bool escaped = with[i] == '\\' && i + 1 < with.size();
    if (!escaped) {
      filled += with[i];
      continue;
    }
    const QChar code = with[++i];
    if (code.isDigit()) {
      filled += match.captured(code.digitValue());
    } else {
      filled += code == 'n' ? QChar('\n') : code == 't' ? QChar('\t') : code;
    }
  }
  return filled;
}

}  // namespace quarlin
