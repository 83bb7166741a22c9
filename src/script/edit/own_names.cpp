// SPDX-License-Identifier: GPL-3.0-or-later
#include <set>

#include "base/text.h"
#include "script/edit/vocabulary.h"
#include "script/values/conversions.h"
#include "script/vbscript/syntax/lexer.h"

namespace quarlin {
namespace {

using vbs::Token;
using vbs::TokenKind;

class NameList {
 public:
  void Add(std::string name, std::string help) {
    if (!known_.insert(ToUpper(name)).second) return;
    names_.push_back({std::move(name), std::move(help)});
  }
  std::vector<Suggestion> Take() { return std::move(names_); }

 private:
  std::vector<Suggestion> names_;
  std::set<std::string> known_;
};

bool Declares(TokenKind kind) {
  return kind == TokenKind::Sub || kind == TokenKind::Function || kind == TokenKind::Class ||
         kind == TokenKind::Property;
}

// Every name that stands for itself. A line that cannot be read counts up to there.
void TakeVbscript(NameList& names, const std::string& line) {
  const std::u16string units = vbs::Utf16Of(line);
  try {
    vbs::Lexer lexer(units);
    TokenKind before = TokenKind::EndOfLine;
    for (Token token = lexer.Next(); token.kind != TokenKind::EndOfText; token = lexer.Next()) {
      if (token.kind == TokenKind::Name && before != TokenKind::Dot) {
        names.Add(vbs::Utf8Of(token.text), Declares(before) ? std::string(TrimBlanks(line)) : "");
      }
      before = token.kind;
    }
  } catch (const vbs::ScriptError&) {
  }
}

bool Begins(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         character == '_' || character == '$';
}

// Words of a line, but not of its texts and of a comment at its end.
void TakeJscript(NameList& names, const std::string& line) {
  char quote = 0;
  bool isFunction = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char character = line[i];
    if (quote != 0) {
      if (character == '\\') ++i;
      if (character == quote) quote = 0;
    } else if (character == '"' || character == '\'') {
      quote = character;
    } else if (line.compare(i, 2, "//") == 0) {
      return;
    } else if (Begins(character)) {
      std::size_t end = i;
      while (end < line.size() && (Begins(line[end]) || (line[end] >= '0' && line[end] <= '9'))) ++end;
      const std::string word = line.substr(i, end - i);
      if (i == 0 || line[i - 1] != '.') names.Add(word, isFunction ? std::string(TrimBlanks(line)) : "");
      isFunction = word == "function";
      i = end - 1;
    }
  }
}

}  // namespace

std::vector<Suggestion> OwnNames(std::string_view language, std::string_view script) {
  NameList names;
  for (const std::string& line : SplitLines(script)) {
    language == "VBScript" ? TakeVbscript(names, line) : TakeJscript(names, line);
  }
  return names.Take();
}

}  // namespace quarlin
