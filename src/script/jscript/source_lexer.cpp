// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/source_lexer.h"

#include <algorithm>
#include <array>

namespace quarlin::jscript {
namespace {

// Behind these an expression begins.
constexpr std::array<std::u16string_view, 13> operatorWords{
    u"return", u"typeof", u"case", u"in", u"of",         u"delete", u"void",
    u"throw",  u"new",    u"else", u"do", u"instanceof", u"yield"};

// What stands in parentheses behind these is no operand.
constexpr std::array<std::u16string_view, 6> headWords{u"if", u"while", u"for", u"with", u"switch", u"catch"};

// A brace behind these opens a block.
constexpr std::array<std::u16string_view, 2> blockWords{u"else", u"do"};
constexpr std::array<std::u16string_view, 5> blockMarks{u")", u"}", u";", u"{", u"=>"};

// Templates within each other are skipped by calls within each other.
constexpr int mostTemplates = 50;

// The longest first.
constexpr std::array<std::u16string_view, 29> marks{
    u">>>=", u"===", u"!==", u">>>", u"<<=", u">>=", u"**=", u"...", u"=>", u"==",
    u"!=",   u"<=",  u">=",  u"&&",  u"||",  u"??",  u"++",  u"--",  u"+=", u"-=",
    u"*=",   u"%=",  u"&=",  u"|=",  u"^=",  u"<<",  u">>",  u"**",  u"/="};

template <std::size_t count>
bool IsOneOf(const std::array<std::u16string_view, count>& words, std::u16string_view word) {
  return std::ranges::find(words, word) != words.end();
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool IsNewline(char16_t unit) {
  return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029;
}

}  // namespace

bool StartsName(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit == u'$' ||
         (unit >= 0xAA && !IsNewline(unit) && unit != 0xFEFF);
}

bool ContinuesName(char16_t unit) {
  return StartsName(unit) || IsDigit(unit);
}

std::optional<Token> Lexer::Next() {
  Token token;
  token.onNewLine = SkipBlanks();
  if (at_ >= source_.size()) return std::nullopt;
  token.at = at_;
  token.isMember = previous_.Is(u".") || previous_.Is(u"?.");
  token.kind = TakeToken();
  token.text = source_.substr(token.at, at_ - token.at);
  token.endsOperand = EndsOperand(token);
  previous_ = token;
  return token;
}

// Blanks and comments; true when a line ended.
bool Lexer::SkipBlanks() {
  bool newLine = false;
  while (at_ < source_.size()) {
    if (IsNewline(Peek())) {
      newLine = true;
      ++at_;
    } else if (Peek() == u'/' && Peek(1) == u'/') {
      while (at_ < source_.size() && !IsNewline(Peek())) ++at_;
    } else if (Peek() == u'/' && Peek(1) == u'*') {
      const std::size_t close = source_.find(u"*/", at_ + 2);
      const std::size_t end = close == source_.npos ? source_.size() : close + 2;
      newLine = newLine || std::ranges::any_of(source_.substr(at_, end - at_), IsNewline);
      at_ = end;
    } else if (Peek() <= u' ' || Peek() == 0xA0 || Peek() == 0xFEFF) {
      ++at_;
    } else {
      break;
    }
  }
  return newLine;
}

Token::Kind Lexer::TakeToken() {
  const char16_t first = Peek();
  if (StartsName(first)) return TakeWhile(ContinuesName, Token::Kind::Name);
  if (IsDigit(first) || (first == u'.' && IsDigit(Peek(1)))) return TakeNumber();
  if (first == u'"' || first == u'\'') return TakeQuoted(first);
  if (first == u'`') return TakeTemplate();
  if (first == u'/' && !previous_.endsOperand) return TakePattern();
  return TakeMark();
}

Token::Kind Lexer::TakeMark() {
  for (const std::u16string_view mark : marks) {
    if (!source_.substr(at_).starts_with(mark)) continue;
    at_ += mark.size();
    return Token::Kind::Mark;
  }
  ++at_;
  return Token::Kind::Mark;
}

Token::Kind Lexer::TakeWhile(bool (*belongs)(char16_t), Token::Kind kind) {
  while (at_ < source_.size() && belongs(Peek())) ++at_;
  return kind;
}

Token::Kind Lexer::TakeNumber() {
  return TakeWhile([](char16_t unit) { return ContinuesName(unit) || unit == u'.'; }, Token::Kind::Number);
}

Token::Kind Lexer::TakeQuoted(char16_t quote) {
  for (++at_; at_ < source_.size() && Peek() != quote && !IsNewline(Peek()); ++at_) {
    if (Peek() != u'\\') continue;
    ++at_;
    if (Peek() == u'\r' && Peek(1) == u'\n') ++at_;
  }
  at_ = std::min(Peek() == quote ? at_ + 1 : at_, source_.size());
  return Token::Kind::Text;
}

Token::Kind Lexer::TakePattern() {
  bool inSet = false;
  for (++at_; at_ < source_.size() && !IsNewline(Peek()); ++at_) {
    if (Peek() == u'\\') {
      ++at_;
    } else if (Peek() == u'[') {
      inSet = true;
    } else if (Peek() == u']') {
      inSet = false;
    } else if (Peek() == u'/' && !inSet) {
      break;
    }
  }
  at_ = std::min(Peek() == u'/' ? at_ + 1 : at_, source_.size());
  return TakeWhile(ContinuesName, Token::Kind::Pattern);
}

Token::Kind Lexer::TakeTemplate() {
  for (++at_; at_ < source_.size() && Peek() != u'`'; ++at_) {
    if (Peek() == u'\\') {
      ++at_;
    } else if (Peek() == u'$' && Peek(1) == u'{') {
      at_ += 2;
      SkipInsert();
      --at_;
    }
  }
  at_ = std::min(at_ + 1, source_.size());
  return Token::Kind::Text;
}

// To the brace that closes it, and beyond.
void Lexer::SkipInsert() {
  Lexer inner(source_);
  inner.at_ = at_;
  inner.templates_ = templates_ + 1;
  int depth = 1;
  while (depth > 0 && inner.templates_ < mostTemplates) {
    const auto token = inner.Next();
    if (!token) break;
    if (token->Is(u"{")) ++depth;
    if (token->Is(u"}")) --depth;
  }
  at_ = depth == 0 ? inner.at_ : source_.size();
}

bool Lexer::EndsOperand(const Token& token) {
  switch (token.kind) {
    case Token::Kind::Start:
      return false;
    case Token::Kind::Name:
      return token.isMember || !(IsOneOf(operatorWords, token.text) || IsOneOf(headWords, token.text));
    case Token::Kind::Number:
    case Token::Kind::Text:
    case Token::Kind::Pattern:
      return true;
    case Token::Kind::Mark:
      return MarkEndsOperand(token);
  }
  return false;
}

bool Lexer::MarkEndsOperand(const Token& token) {
  if (token.Is(u"++") || token.Is(u"--")) return previous_.endsOperand && !token.onNewLine;
  if (token.Is(u"(") || token.Is(u"[") || token.Is(u"{")) {
    open_.push_back(BracketWillEndOperand(token));
    return false;
  }
  if (!token.Is(u")") && !token.Is(u"]") && !token.Is(u"}")) return false;
  if (open_.empty()) return true;
  const bool ends = open_.back();
  open_.pop_back();
  return ends;
}

// Not where a condition stands in it, or statements.
bool Lexer::BracketWillEndOperand(const Token& bracket) const {
  const bool isWord = previous_.kind == Token::Kind::Name && !previous_.isMember;
  if (bracket.Is(u"(")) return !(isWord && IsOneOf(headWords, previous_.text));
  if (bracket.Is(u"[")) return true;
  const bool isObject =
      previous_.kind == Token::Kind::Mark && !previous_.endsOperand && !IsOneOf(blockMarks, previous_.text);
  return isObject ||
         (isWord && IsOneOf(operatorWords, previous_.text) && !IsOneOf(blockWords, previous_.text));
}

}  // namespace quarlin::jscript
