// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/syntax/lexer.h"

#include <array>
#include <utility>

#include "script/vbscript/syntax/character_names.h"
#include "script/vbscript/syntax/syntax_errors.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t longestName = 255;
constexpr std::size_t longestWord = 8;  // "function", "property"

struct Keyword {
  std::string_view spelling;
  TokenKind kind;
};

constexpr std::array keywords = std::to_array<Keyword>({
    {"and", TokenKind::And},
    {"as", TokenKind::As},
    {"byref", TokenKind::ByRef},
    {"byval", TokenKind::ByVal},
    {"call", TokenKind::Call},
    {"case", TokenKind::Case},
    {"class", TokenKind::Class},
    {"const", TokenKind::Const},
    {"default", TokenKind::Default},
    {"dim", TokenKind::Dim},
    {"do", TokenKind::Do},
    {"each", TokenKind::Each},
    {"else", TokenKind::Else},
    {"elseif", TokenKind::ElseIf},
    {"empty", TokenKind::Empty},
    {"end", TokenKind::End},
    {"eqv", TokenKind::Eqv},
    {"erase", TokenKind::Erase},
    {"error", TokenKind::Error},
    {"exit", TokenKind::Exit},
    {"explicit", TokenKind::Explicit},
    {"false", TokenKind::False},
    {"for", TokenKind::For},
    {"function", TokenKind::Function},
    {"get", TokenKind::Get},
    {"goto", TokenKind::GoTo},
    {"if", TokenKind::If},
    {"imp", TokenKind::Imp},
    {"in", TokenKind::In},
    {"is", TokenKind::Is},
    {"let", TokenKind::Let},
    {"loop", TokenKind::Loop},
    {"me", TokenKind::Me},
    {"mod", TokenKind::Mod},
    {"new", TokenKind::New},
    {"next", TokenKind::Next},
    {"not", TokenKind::Not},
    {"nothing", TokenKind::Nothing},
    {"null", TokenKind::Null},
    {"on", TokenKind::On},
    {"option", TokenKind::Option},
    {"or", TokenKind::Or},
    {"preserve", TokenKind::Preserve},
    {"private", TokenKind::Private},
    {"property", TokenKind::Property},
    {"public", TokenKind::Public},
    {"redim", TokenKind::ReDim},
    {"rem", TokenKind::Rem},
    {"resume", TokenKind::Resume},
    {"select", TokenKind::Select},
    {"set", TokenKind::Set},
    {"step", TokenKind::Step},
    {"stop", TokenKind::Stop},
    {"sub", TokenKind::Sub},
    {"then", TokenKind::Then},
    {"to", TokenKind::To},
    {"true", TokenKind::True},
    {"until", TokenKind::Until},
    {"wend", TokenKind::Wend},
    {"while", TokenKind::While},
    {"with", TokenKind::With},
    {"xor", TokenKind::Xor},
});

// A word of up to eight letters in one number, without regard to case. What is no letter becomes something
// that is no letter either, so it cannot be taken for a keyword.
template <class View>
constexpr std::uint64_t Packed(View word) {
  std::uint64_t packed = 0;
  for (const auto unit : word) packed = packed << 8 | static_cast<std::uint8_t>(unit | 0x20);
  return packed;
}

struct Slot {
  std::uint64_t packed = 0;
  TokenKind kind = TokenKind::Name;
};
using Slots = std::array<Slot, 256>;

constexpr std::size_t FirstSlot(std::uint64_t packed) {
  return packed * 0x9E3779B97F4A7C15u >> 56;
}

constexpr Slots slots = [] {
  Slots made{};
  for (const Keyword& keyword : keywords) {
    const std::uint64_t packed = Packed(keyword.spelling);
    std::size_t slot = FirstSlot(packed);
    while (made[slot].packed != 0) slot = (slot + 1) % made.size();
    made[slot] = {packed, keyword.kind};
  }
  return made;
}();

TokenKind KindOfWord(std::u16string_view word) {
  if (word.size() > longestWord) return TokenKind::Name;
  const std::uint64_t packed = Packed(word);
  std::size_t slot = FirstSlot(packed);
  while (slots[slot].packed != packed && slots[slot].packed != 0) slot = (slot + 1) % slots.size();
  return slots[slot].packed == packed ? slots[slot].kind : TokenKind::Name;
}

constexpr bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}
constexpr bool IsLetter(char16_t unit) {
  return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}
constexpr bool IsNameUnit(char16_t unit) {
  return IsLetter(unit) || IsDigit(unit) || unit == u'_';
}
constexpr bool IsHexDigit(char16_t unit) {
  return IsDigit(unit) || ((unit | 0x20) >= u'a' && (unit | 0x20) <= u'f');
}
constexpr bool IsOctalDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'7';
}
constexpr bool IsBlank(char16_t unit) {
  constexpr char16_t noBreakSpace = 0x00A0;
  return unit == u' ' || unit == u'\t' || unit == u'\v' || unit == u'\f' || unit == noBreakSpace;
}
constexpr bool IsLineBreak(char16_t unit) {
  return unit == u'\r' || unit == u'\n';
}

}  // namespace

std::vector<std::string_view> KeywordSpellings() {
  std::vector<std::string_view> spellings;
  spellings.reserve(keywords.size());
  for (const Keyword& keyword : keywords) spellings.push_back(keyword.spelling);
  return spellings;
}

Lexer::Lexer(std::u16string_view source) : source_(source) {
  constexpr char16_t byteOrderMark = 0xFEFF;
  if (At(0) == byteOrderMark) lineStart_ = offset_ = 1;
}

bool Lexer::AtLineEnd(std::size_t offset) const {
  return offset >= source_.size() || IsLineBreak(source_[offset]);
}

// CR LF is one break.
void Lexer::TakeLineBreak() {
  offset_ += At(offset_) == u'\r' && At(offset_ + 1) == u'\n' ? 2 : 1;
  lineStart_ = offset_;
  ++line_;
}

// Whether there were any blanks.
bool Lexer::SkipBlanks() {
  const std::size_t start = offset_;
  do {
    while (IsBlank(At(offset_))) ++offset_;
  } while (SkipContinuation());
  return offset_ != start;
}

bool Lexer::SkipContinuation() {
  if (At(offset_) != u'_') return false;
  std::size_t end = offset_ + 1;
  while (IsBlank(At(end))) ++end;
  if (!AtLineEnd(end)) return false;
  offset_ = end;
  if (offset_ < source_.size()) TakeLineBreak();
  return true;
}

void Lexer::SkipComment() {
  while (!AtLineEnd(offset_)) ++offset_;
}

TokenKind Lexer::LineEnd(Token& token) {
  SkipComment();
  token.offset = offset_;
  token.at.column = static_cast<int>(offset_ - lineStart_);
  if (offset_ >= source_.size()) return TokenKind::EndOfText;
  TakeLineBreak();
  firstLine_ = line_;
  return TokenKind::EndOfLine;
}

Token Lexer::Next() {
  Token token;
  token.spaced = SkipBlanks();
  token.offset = offset_;
  token.at = {firstLine_, static_cast<int>(offset_ - lineStart_)};
  const bool afterDot = std::exchange(afterDot_, false);
  const char16_t unit = At(offset_);
  if (IsLetter(unit)) {
    token.kind = Word(token, afterDot);
  } else if (IsDigit(unit) || (unit == u'.' && IsDigit(At(offset_ + 1)))) {
    token.kind = Number();
    token.text = source_.substr(token.offset, offset_ - token.offset);
  } else if (AtLineEnd(offset_) || unit == u'\'') {
    token.kind = LineEnd(token);
  } else {
    token.kind = Sign(token);
  }
  return token;
}

TokenKind Lexer::Word(Token& token, bool afterDot) {
  while (IsNameUnit(At(offset_))) ++offset_;
  token.text = source_.substr(token.offset, offset_ - token.offset);
  if (token.text.size() > longestName) Fail(nameTooLong, token.offset);
  const TokenKind kind = afterDot ? TokenKind::Name : KindOfWord(token.text);
  return kind == TokenKind::Rem ? LineEnd(token) : kind;
}

std::size_t Lexer::SkipDigits(std::size_t from) const {
  while (IsDigit(At(from))) ++from;
  return from;
}

TokenKind Lexer::Number() {
  const std::size_t start = offset_;
  offset_ = SkipDigits(offset_);
  if (At(offset_) == u'.') offset_ = SkipDigits(offset_ + 1);
  if ((At(offset_) | 0x20) == u'e') {
    const bool isSigned = At(offset_ + 1) == u'+' || At(offset_ + 1) == u'-';
    const std::size_t exponent = offset_ + (isSigned ? 2 : 1);
    if (IsDigit(At(exponent))) offset_ = SkipDigits(exponent);
  }
  NumberMayEnd(start);
  return TokenKind::Number;
}

// "1Then" are two words, "1abc" is nothing.
void Lexer::NumberMayEnd(std::size_t start) const {
  std::size_t end = offset_;
  while (IsNameUnit(At(end))) ++end;
  if (end == offset_) return;
  const std::u16string_view word = source_.substr(offset_, end - offset_);
  if (KindOfWord(word) == TokenKind::Name) Fail(invalidNumber, start);
}

// &H and &O with digits, or the sign & where a name follows that only looks like it: "a" &other.
TokenKind Lexer::Based(std::size_t digits) {
  std::size_t end = digits;
  const auto isDigit = (At(digits - 1) | 0x20) == u'h' ? IsHexDigit : IsOctalDigit;
  while (isDigit(At(end))) ++end;
  if (end == digits || IsNameUnit(At(end))) {
    ++offset_;
    return TokenKind::Concatenate;
  }
  offset_ = At(end) == u'&' ? end + 1 : end;
  return TokenKind::Number;
}

Token Lexer::OctalAt(const Token& sign) {
  if (!IsDigit(At(sign.offset + 1))) return sign;
  Token number = sign;
  offset_ = sign.offset + 1;
  while (IsOctalDigit(At(offset_))) ++offset_;
  if (IsDigit(At(offset_))) Fail(invalidNumber, sign.offset);
  NumberMayEnd(sign.offset);
  if (At(offset_) == u'&') ++offset_;
  number.kind = TokenKind::Number;
  number.text = source_.substr(sign.offset, offset_ - sign.offset);
  return number;
}

TokenKind Lexer::Sign(Token& token) {
  const auto taken = [this](TokenKind kind) {
    ++offset_;
    return kind;
  };
  const char16_t unit = At(offset_);
  switch (unit) {
    case u'"':
      return Text(token);
    case u'#':
      return Date(token);
    case u'[':
      return Bracketed(token);
    case u'&': {
      const char16_t base = At(offset_ + 1) | 0x20;
      if (base != u'h' && base != u'o') return taken(TokenKind::Concatenate);
      const TokenKind kind = Based(offset_ + 2);
      token.text = source_.substr(token.offset, offset_ - token.offset);
      return kind;
    }
    case u'.':
      afterDot_ = true;
      return taken(TokenKind::Dot);
    case u'<':
    case u'>':
    case u'=':
      ++offset_;
      return Pair(unit);
    default:
      return taken(Single(unit));
  }
}

// A sign that no other can be mistaken for.
TokenKind Lexer::Single(char16_t unit) const {
  struct Row {
    char16_t unit;
    TokenKind kind;
  };
  constexpr std::array singles = std::to_array<Row>({{u'(', TokenKind::LeftParenthesis},
                                                     {u')', TokenKind::RightParenthesis},
                                                     {u',', TokenKind::Comma},
                                                     {u':', TokenKind::Colon},
                                                     {u'+', TokenKind::Plus},
                                                     {u'-', TokenKind::Minus},
                                                     {u'*', TokenKind::Times},
                                                     {u'/', TokenKind::Divide},
                                                     {u'\\', TokenKind::IntegerDivide},
                                                     {u'^', TokenKind::Power}});
  for (const Row& single : singles) {
    if (single.unit == unit) return single.kind;
  }
  Fail(invalidCharacter, offset_, NameOfCharacter(source_, offset_));
}

// The sign's first unit has been taken; each pair may be written either way round.
TokenKind Lexer::Pair(char16_t first) {
  struct Row {
    char16_t first, second;
    TokenKind kind;
  };
  constexpr std::array pairs = std::to_array<Row>({{u'<', u'>', TokenKind::NotEqual},
                                                   {u'>', u'<', TokenKind::NotEqual},
                                                   {u'<', u'=', TokenKind::LessEqual},
                                                   {u'=', u'<', TokenKind::LessEqual},
                                                   {u'>', u'=', TokenKind::GreaterEqual},
                                                   {u'=', u'>', TokenKind::GreaterEqual}});
  for (const Row& pair : pairs) {
    if (pair.first != first || pair.second != At(offset_)) continue;
    ++offset_;
    return pair.kind;
  }
  if (first == u'=') return TokenKind::Equal;
  return first == u'<' ? TokenKind::Less : TokenKind::Greater;
}

TokenKind Lexer::Bracketed(Token& token) {
  std::size_t end = offset_ + 1;
  while (!AtLineEnd(end) && source_[end] != u']') ++end;
  if (AtLineEnd(end)) Fail(expectedRightBracket, end);
  token.text = source_.substr(offset_ + 1, end - offset_ - 1);
  if (token.text.empty()) Fail(expectedIdentifier, token.offset);
  if (token.text.size() > longestName) Fail(nameTooLong, token.offset);
  offset_ = end + 1;
  return TokenKind::Name;
}

// Two quotes inside stand for one; they are still two in the token.
TokenKind Lexer::Text(Token& token) {
  std::size_t end = offset_ + 1;
  for (;; ++end) {
    if (AtLineEnd(end)) Fail(unterminatedText, end);
    if (source_[end] != u'"') continue;
    if (At(end + 1) != u'"') break;
    ++end;
  }
  token.text = source_.substr(offset_ + 1, end - offset_ - 1);
  offset_ = end + 1;
  return TokenKind::Text;
}

TokenKind Lexer::Date(Token& token) {
  std::size_t end = offset_ + 1;
  while (!AtLineEnd(end) && source_[end] != u'#') ++end;
  if (AtLineEnd(end)) Fail(syntaxError, token.offset);
  token.text = source_.substr(offset_ + 1, end - offset_ - 1);
  offset_ = end + 1;
  return TokenKind::Date;
}

void Lexer::Fail(std::int32_t number, std::size_t offset, std::u16string_view culprit,
                 std::u16string_view hint) const {
  std::size_t start = 0;
  int line = 1;
  for (std::size_t i = 0; i < offset; ++i) {
    const bool firstOfTwo = source_[i] == u'\r' && At(i + 1) == u'\n';
    if (!IsLineBreak(source_[i]) || firstOfTwo) continue;
    start = i + 1;
    ++line;
  }
  std::size_t end = start;
  while (!AtLineEnd(end)) ++end;
  ScriptError error(number, culprit);
  error.description += hint;
  error.position = {line, static_cast<int>(offset - start)};
  error.line = source_.substr(start, end - start);
  throw error;
}

}  // namespace quarlin::vbs
