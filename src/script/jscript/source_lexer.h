// SPDX-License-Identifier: GPL-3.0-or-later
// The text of a script in its smallest parts, found without a parse.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quarlin::jscript {

bool StartsName(char16_t unit);
bool ContinuesName(char16_t unit);

struct Token {
  enum class Kind : std::uint8_t { Start, Name, Number, Text, Pattern, Mark };

  Kind kind = Kind::Start;
  std::u16string_view text;
  std::size_t at = 0;  // where it begins in the source
  bool onNewLine = false;
  bool isMember = false;     // a name behind a dot
  bool endsOperand = false;  // a value ends here: a slash behind it divides, a parenthesis calls

  bool Is(std::u16string_view other) const {
    return (kind == Kind::Name || kind == Kind::Mark) && text == other;
  }
  std::size_t End() const { return at + text.size(); }
};

// A template with all that stands in it is one text. Whether a slash begins a pattern is decided by what
// stands before it; only behind a closing brace that may guess wrong, where an object or a function that is a
// value is divided.
class Lexer {
 public:
  explicit Lexer(std::u16string_view source) : source_(source) {}

  std::optional<Token> Next();

 private:
  char16_t Peek(std::size_t ahead = 0) const {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : u'\0';
  }
  bool SkipBlanks();
  Token::Kind TakeToken();
  Token::Kind TakeMark();
  Token::Kind TakeNumber();
  Token::Kind TakeWhile(bool (*belongs)(char16_t), Token::Kind kind);
  Token::Kind TakeQuoted(char16_t quote);
  Token::Kind TakePattern();
  Token::Kind TakeTemplate();
  void SkipInsert();
  bool EndsOperand(const Token& token);
  bool MarkEndsOperand(const Token& token);
  bool BracketWillEndOperand(const Token& bracket) const;

  std::u16string_view source_;
  std::size_t at_ = 0;
  int templates_ = 0;  // that lie around this text
  Token previous_;
  std::vector<bool> open_;  // of each bracket, whether it ends an operand when it is closed
};

}  // namespace quarlin::jscript
