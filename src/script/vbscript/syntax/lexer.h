// SPDX-License-Identifier: GPL-3.0-or-later
// A script's text as words and signs, one after the other.
#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "script/values/error.h"

namespace quarlin::vbs {

enum class TokenKind : std::uint8_t {
  EndOfText,
  EndOfLine,  // comments belong to it; a continued line goes on behind its underscore
  Colon,
  Name,
  Number,
  Text,
  Date,
  LeftParenthesis,
  RightParenthesis,
  Comma,
  Dot,
  // Signs between operands.
  Plus,
  Minus,
  Times,
  Divide,
  IntegerDivide,
  Power,
  Concatenate,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  // Words that nothing else may be called, except behind a dot or in brackets.
  And,
  As,
  ByRef,
  ByVal,
  Call,
  Case,
  Class,
  Const,
  Dim,
  Do,
  Each,
  Else,
  ElseIf,
  Empty,
  End,
  Eqv,
  Exit,
  False,
  For,
  Function,
  GoTo,
  If,
  Imp,
  In,
  Is,
  Let,
  Loop,
  Me,
  Mod,
  New,
  Next,
  Not,
  Nothing,
  Null,
  On,
  Option,
  Or,
  Private,
  Public,
  ReDim,
  Rem,
  Resume,
  Select,
  Set,
  Stop,
  Sub,
  Then,
  To,
  True,
  Until,
  Wend,
  While,
  With,
  Xor,
  // Words with a meaning in one place, and names everywhere else.
  Default,
  Erase,
  Error,
  Explicit,
  Get,
  Preserve,
  Property,
  Step
};

inline constexpr std::size_t tokenKinds = static_cast<std::size_t>(TokenKind::Step) + 1;

constexpr bool IsName(TokenKind kind) {
  return kind == TokenKind::Name || kind >= TokenKind::Default;
}

struct Token {
  TokenKind kind = TokenKind::EndOfText;
  bool spaced = false;       // blanks stand in front of it
  Position at;               // a continued line counts as its first one, the column is that of its own
  std::size_t offset = 0;    // where it begins in the text
  std::u16string_view text;  // a name without its brackets; a text or date without what encloses it
};

// The words with a meaning of their own, in small letters.
std::vector<std::string_view> KeywordSpellings();

// Cheap to copy, which is how somebody looks ahead. Every failure is a ScriptError with its place.
class Lexer {
 public:
  explicit Lexer(std::u16string_view source);

  // EndOfText again and again behind the last one.
  Token Next();

  // `sign` is an & where an operand must stand: the octal number that it begins (&17), or the sign again.
  Token OctalAt(const Token& sign);

  // What Next would return.
  Token Peek() const { return Lexer(*this).Next(); }

  // Throws a compile error at a place of the text, with the text of its line.
  [[noreturn]] void Fail(std::int32_t number, std::size_t offset, std::u16string_view culprit = {},
                         std::u16string_view hint = {}) const;

 private:
  bool SkipBlanks();
  bool SkipContinuation();
  void SkipComment();
  void TakeLineBreak();
  TokenKind LineEnd(Token& token);
  TokenKind Word(Token& token, bool afterDot);
  TokenKind Number();
  TokenKind Based(std::size_t digits);
  void NumberMayEnd(std::size_t start) const;
  TokenKind Sign(Token& token);
  TokenKind Single(char16_t unit) const;
  TokenKind Pair(char16_t first);
  TokenKind Bracketed(Token& token);
  TokenKind Text(Token& token);
  TokenKind Date(Token& token);
  std::size_t SkipDigits(std::size_t from) const;
  char16_t At(std::size_t offset) const { return offset < source_.size() ? source_[offset] : u'\0'; }
  bool AtLineEnd(std::size_t offset) const;

  std::u16string_view source_;
  std::size_t offset_ = 0;
  std::size_t lineStart_ = 0;
  int line_ = 1;
  int firstLine_ = 1;  // of the line that is continued
  bool afterDot_ = false;
};

static_assert(std::is_trivially_copyable_v<Lexer>);

}  // namespace quarlin::vbs
