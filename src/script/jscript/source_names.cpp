// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/source_names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quarlin::jscript {
namespace {

bool StartsName(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit == u'$' ||
         unit >= 0xAA;
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool ContinuesName(char16_t unit) {
  return StartsName(unit) || IsDigit(unit);
}

bool IsNewline(char16_t unit) {
  return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029;
}

// Words behind which an expression begins, so that a slash is no division.
constexpr std::array<std::u16string_view, 12> operatorWords{u"return", u"typeof",     u"case", u"in",
                                                            u"of",     u"delete",     u"void", u"throw",
                                                            u"new",    u"instanceof", u"else", u"do"};

struct Token {
  enum class Kind : std::uint8_t { Start, Name, Literal, Mark };
  Kind kind = Kind::Start;
  std::u16string_view text;
  bool onNewLine = false;

  bool Is(std::u16string_view other) const { return kind != Kind::Literal && text == other; }
  bool IsOperatorWord() const {
    return kind == Kind::Name && std::ranges::find(operatorWords, text) != operatorWords.end();
  }
  // Something that a value ends with.
  bool EndsOperand() const {
    if (kind == Kind::Mark) return text == u")" || text == u"]" || text == u"}";
    return kind == Kind::Literal || (kind == Kind::Name && !IsOperatorWord());
  }
};

class Lexer {
 public:
  explicit Lexer(std::u16string_view source) : source_(source) {}

  std::optional<Token> Next() {
    const bool newLine = SkipBlanks();
    if (at_ >= source_.size()) return std::nullopt;
    const std::size_t begin = at_;
    previous_.kind = TakeToken();
    previous_.text = source_.substr(begin, at_ - begin);
    previous_.onNewLine = newLine;
    return previous_;
  }

 private:
  char16_t Peek(std::size_t ahead = 0) const {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : u'\0';
  }

  // Blanks and comments; true when a line ended.
  bool SkipBlanks() {
    bool newLine = false;
    while (at_ < source_.size()) {
      if (IsNewline(Peek())) {
        newLine = true;
        ++at_;
      } else if (Peek() == u'/' && Peek(1) == u'/') {
        while (at_ < source_.size() && !IsNewline(Peek())) ++at_;
      } else if (Peek() == u'/' && Peek(1) == u'*') {
        const std::size_t end = source_.find(u"*/", at_ + 2);
        at_ = end == source_.npos ? source_.size() : end + 2;
      } else if (Peek() <= u' ' || Peek() == 0xA0 || Peek() == 0xFEFF) {
        ++at_;
      } else {
        break;
      }
    }
    return newLine;
  }

  Token::Kind TakeToken() {
    const char16_t first = Peek();
    if (StartsName(first)) return TakeWhile(ContinuesName, Token::Kind::Name);
    if (IsDigit(first)) return TakeWhile(ContinuesName, Token::Kind::Literal);
    if (first == u'"' || first == u'\'' || first == u'`') return TakeQuoted(first);
    if (first == u'/' && !previous_.EndsOperand()) return TakePattern();
    at_ += first == u'=' && Peek(1) == u'>' ? 2 : 1;
    return Token::Kind::Mark;
  }

  Token::Kind TakeWhile(bool (*belongs)(char16_t), Token::Kind kind) {
    while (at_ < source_.size() && belongs(Peek())) ++at_;
    return kind;
  }

  Token::Kind TakeQuoted(char16_t quote) {
    for (++at_; at_ < source_.size() && Peek() != quote; ++at_) {
      if (Peek() == u'\\') ++at_;
      if (IsNewline(Peek()) && quote != u'`') break;
    }
    at_ = std::min(at_ + 1, source_.size());
    return Token::Kind::Literal;
  }

  Token::Kind TakePattern() {
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
    at_ = std::min(at_ + 1, source_.size());
    return TakeWhile(ContinuesName, Token::Kind::Literal);
  }

  std::u16string_view source_;
  std::size_t at_ = 0;
  Token previous_;
};

// Follows the brackets to know what belongs to the top level.
class Declarations {
 public:
  explicit Declarations(std::u16string_view source) : lexer_(source) {}

  Names Find() {
    while (const auto token = lexer_.Next()) {
      Look(*token);
      previous_ = *token;
    }
    return std::move(found_);
  }

 private:
  struct Bracket {
    bool isBody;  // of a function
  };

  bool AtTop() const { return bodies_ == 0; }

  void Look(const Token& token) {
    LookForList(token);
    if (token.kind == Token::Kind::Name) {
      LookAtName(token);
    } else if (token.Is(u"(") || token.Is(u"[") || token.Is(u"{")) {
      Open(token);
    } else if (token.Is(u")") || token.Is(u"]") || token.Is(u"}")) {
      Close();
    }
  }

  void LookAtName(const Token& token) {
    if (previous_.Is(u".")) return;
    if (token.Is(u"function")) {
      isDeclaration_ = previous_.EndsOperand() || previous_.Is(u";") || previous_.Is(u"{") ||
                       previous_.kind == Token::Kind::Start || previous_.Is(u"else");
      awaitsBody_.push_back(open_.size());
    } else if (AtTop() && ((previous_.Is(u"function") && isDeclaration_) || previous_.Is(u"class"))) {
      found_.emplace(token.text);
    }
  }

  // "var a = f(1, 2), b": each name behind the word itself or behind a comma of the list's own depth.
  void LookForList(const Token& token) {
    if (list_) {
      const bool ends = open_.size() < *list_ || (open_.size() == *list_ && EndsList(token));
      if (ends) list_.reset();
    }
    if (list_ && open_.size() == *list_ && token.kind == Token::Kind::Name &&
        (previous_.Is(u",") || IsListWord(previous_))) {
      found_.emplace(token.text);
    }
    if (AtTop() && IsListWord(token) && !previous_.Is(u".")) list_ = open_.size();
  }

  static bool IsListWord(const Token& token) {
    return token.Is(u"var") || token.Is(u"let") || token.Is(u"const");
  }

  bool EndsList(const Token& token) const {
    if (token.Is(u";") || token.Is(u"in") || token.Is(u"of")) return true;
    return token.onNewLine && token.kind != Token::Kind::Mark && previous_.EndsOperand() &&
           !IsListWord(previous_);
  }

  void Open(const Token& token) {
    bool isBody = false;
    if (token.Is(u"{")) {
      isBody = previous_.Is(u"=>");
      if (!awaitsBody_.empty() && awaitsBody_.back() == open_.size()) {
        awaitsBody_.pop_back();
        isBody = true;
      }
    }
    open_.push_back({isBody});
    if (isBody) ++bodies_;
  }

  void Close() {
    if (open_.empty()) return;
    if (open_.back().isBody) --bodies_;
    open_.pop_back();
  }

  Lexer lexer_;
  Token previous_;
  std::vector<Bracket> open_;
  std::vector<std::size_t> awaitsBody_;  // how deep the brackets were at each "function" without its body
  std::optional<std::size_t> list_;      // how deep they were at the "var" whose list goes on
  int bodies_ = 0;
  bool isDeclaration_ = false;
  Names found_;
};

}  // namespace

Names NamesIn(std::u16string_view source) {
  Names names;
  for (std::size_t at = 0; at < source.size();) {
    std::size_t end = at;
    while (end < source.size() && ContinuesName(source[end])) ++end;
    if (end > at && StartsName(source[at])) names.emplace(source.substr(at, end - at));
    at = std::max(end, at + 1);
  }
  return names;
}

Names DeclaredNames(std::u16string_view source) {
  return Declarations(source).Find();
}

}  // namespace quarlin::jscript
