// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for a text in another, and putting something else in its place. Places count the units of QString.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <optional>
#include <vector>

namespace quarlin {

struct FindQuery {
  QString text;
  bool caseSensitive = false;
  bool wholeWord = false;
  bool expression = false;  // a regular expression in Perl's syntax; ^ and $ mean lines
};

struct FoundText {
  qsizetype begin = 0;
  qsizetype end = 0;
};

class TextFinder {
 public:
  explicit TextFinder(const FindQuery& query);

  bool Usable() const { return !empty_ && error_.isEmpty(); }
  const QString& Error() const { return error_; }  // of an expression; empty where nothing is wrong

  // The first place at `from` or behind it, the last one that ends at `until` or before it; from the other
  // end of the text where there is none. Nothing where there is none at all. Empty matches are none.
  std::optional<FoundText> Next(const QString& text, qsizetype from) const;
  std::optional<FoundText> Previous(const QString& text, qsizetype until) const;
  int Count(const QString& text) const;
  std::vector<FoundText> First(const QString& text, std::size_t most) const;  // so many places, in order

  // Puts `with` in the place of every match and says of how many. In an expression "\1" is its first group.
  int ReplaceAll(QString& text, const QString& with) const;

  // What the match becomes.
  QString Replacement(const QString& text, const FoundText& match, const QString& with) const;

 private:
  template <typename Use>
  void ForEach(const QString& text, Use use) const;  // until `use` returns false
  QString Filled(const QRegularExpressionMatch& match, const QString& with) const;

  QRegularExpression expression_;
  bool isExpression_;
  bool empty_;
  QString error_;
};

}  // namespace quarlin
