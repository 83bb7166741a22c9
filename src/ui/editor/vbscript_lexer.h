// SPDX-License-Identifier: GPL-3.0-or-later
// VBScript for the editing component, which knows how the language is built but neither its name nor its
// words.
#pragma once

#include <Qsci/qscilexer.h>

#include <QByteArray>
#include <string>
#include <vector>

namespace quarlin {

class VbscriptLexer : public QsciLexer {
  Q_OBJECT

 public:
  // As the component numbers what it tells apart.
  enum Style {
    Default = 0,
    Comment = 1,
    Number = 2,
    Keyword = 3,
    String = 4,
    Preprocessor = 5,
    Operator = 6,
    Identifier = 7,
    Date = 8,
    UnclosedString = 9,
    Function = 10,  // the second set of words: of the library
    Object = 11,    // the third: of the program
  };

  explicit VbscriptLexer(QObject* parent);

  // The program's objects and "object.member" of each, which the component takes for one word. Counts from
  // the next time that the lexer is set.
  void SetObjectNames(const std::vector<std::string>& names);

  const char* language() const override { return "VBScript"; }
  const char* lexer() const override { return "vbscript"; }
  const char* keywords(int set) const override;
  QString description(int style) const override;
  bool caseSensitive() const override { return false; }
  const char* wordCharacters() const override;
  int braceStyle() const override { return Operator; }

 private:
  QByteArray keywords_;
  QByteArray functions_;
  QByteArray objects_;
};

}  // namespace quarlin
