// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/source_names.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "script/jscript/source_lexer.h"

namespace quarlin::jscript {
namespace {

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
    if (token.isMember) return;
    if (token.Is(u"function")) {
      isDeclaration_ = EndsStatement(previous_) || previous_.Is(u";") || previous_.Is(u"{") ||
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
    return token.onNewLine && token.kind != Token::Kind::Mark && EndsStatement(previous_) &&
           !IsListWord(previous_);
  }

  static bool EndsStatement(const Token& token) {
    return token.endsOperand || token.Is(u"}") || token.Is(u")");
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
