// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/indentation.h"

#include <algorithm>
#include <vector>

#include "script/vbscript/syntax/lexer.h"

namespace quarlin {
namespace {

using vbs::TokenKind;
using Kinds = std::vector<TokenKind>;

// What can be read of the line; a text without its end stops it.
Kinds KindsOf(std::u16string_view line) {
  Kinds kinds;
  try {
    vbs::Lexer lexer(line);
    for (vbs::Token token = lexer.Next(); token.kind != TokenKind::EndOfText; token = lexer.Next()) {
      if (token.kind != TokenKind::EndOfLine) kinds.push_back(token.kind);
    }
  } catch (const vbs::ScriptError&) {
  }
  return kinds;
}

bool EndsBlock(TokenKind behindEnd) {
  switch (behindEnd) {
    case TokenKind::If:
    case TokenKind::Sub:
    case TokenKind::Function:
    case TokenKind::Property:
    case TokenKind::Class:
    case TokenKind::Select:
    case TokenKind::With:
      return true;
    default:
      return false;
  }
}

// One statement, between two colons.
class Statement {
 public:
  Statement(Kinds::const_iterator begin, Kinds::const_iterator end) : begin_(begin), end_(end) {
    const auto isModifier = [](TokenKind kind) {
      return kind == TokenKind::Public || kind == TokenKind::Private || kind == TokenKind::Default;
    };
    while (begin_ != end_ && isModifier(*begin_)) ++begin_;
  }

  bool Opens() const {
    if (begin_ == end_) return false;
    switch (*begin_) {
      case TokenKind::If:
        return *(end_ - 1) == TokenKind::Then;
      case TokenKind::For:
      case TokenKind::Do:
      case TokenKind::While:
      case TokenKind::With:
      case TokenKind::Select:
      case TokenKind::Sub:
      case TokenKind::Function:
      case TokenKind::Class:
        return true;
      case TokenKind::Property:
        return end_ - begin_ > 1 && *(begin_ + 1) != TokenKind::Equal;
      default:
        return false;
    }
  }
  bool Closes() const {
    if (begin_ == end_) return false;
    if (*begin_ == TokenKind::End) return end_ - begin_ > 1 && EndsBlock(*(begin_ + 1));
    return *begin_ == TokenKind::Next || *begin_ == TokenKind::Loop || *begin_ == TokenKind::Wend;
  }
  bool Branches() const {
    return begin_ != end_ &&
           (*begin_ == TokenKind::Else || *begin_ == TokenKind::ElseIf || *begin_ == TokenKind::Case);
  }
  bool Is(TokenKind kind) const { return begin_ != end_ && *begin_ == kind; }

 private:
  Kinds::const_iterator begin_;
  Kinds::const_iterator end_;
};

}  // namespace

LineShape ShapeOf(std::u16string_view line) {
  const Kinds kinds = KindsOf(line);
  LineShape shape;
  for (auto begin = kinds.begin(); begin != kinds.end();) {
    const auto end = std::find(begin, kinds.end(), TokenKind::Colon);
    const Statement statement(begin, end);
    if (statement.Branches() && shape.opens == 0) {
      shape.isBranch = true;
      shape.isCase = statement.Is(TokenKind::Case);
      if (end == kinds.end()) ++shape.opens;  // "Case 1 : x = 2" stands for itself
    } else if (statement.Opens()) {
      ++shape.opens;
      shape.isSelect = statement.Is(TokenKind::Select);
    } else if (statement.Closes()) {
      if (shape.opens > 0) {
        --shape.opens;
      } else {
        ++shape.closes;
      }
    }
    begin = end == kinds.end() ? end : end + 1;
  }
  return shape;
}

std::optional<int> OpenerOf(int line, const LineAt& lineAt) {
  const LineShape here = ShapeOf(lineAt(line));
  if (here.closes == 0 && !here.isBranch) return std::nullopt;
  int pending = std::max(here.closes, 1) - 1;
  for (int above = line - 1; above >= 0; --above) {
    const LineShape shape = ShapeOf(lineAt(above));
    const int opens = shape.isBranch && shape.opens > 0 ? shape.opens - 1 : shape.opens;
    if (opens > pending) return above;
    pending += shape.closes - opens;
  }
  return std::nullopt;
}

}  // namespace quarlin
