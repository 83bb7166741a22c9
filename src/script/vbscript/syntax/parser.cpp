// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/syntax/parser.h"

#include <algorithm>

#include "script/values/conversions.h"
#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {
namespace {

// Blocks and parentheses within each other. A level costs several calls here and in the compiler, and
// twice of that must fit into a stack of 8 MB in a build that checks every access.
constexpr int deepestLevel = 500;

char16_t FoldedUnit(char16_t unit) {
  if (unit >= u'A' && unit <= u'Z') return static_cast<char16_t>(unit + 32);
  return unit > 0x7F ? LowerOf(unit) : unit;
}

// What closes a block, or divides it.
bool EndsBlock(TokenKind kind) {
  switch (kind) {
    case TokenKind::EndOfText:
    case TokenKind::End:
    case TokenKind::Else:
    case TokenKind::ElseIf:
    case TokenKind::Case:
    case TokenKind::Next:
    case TokenKind::Loop:
    case TokenKind::Wend:
      return true;
    default:
      return false;
  }
}

bool StartsStatement(TokenKind kind) {
  switch (kind) {
    case TokenKind::Dot:
    case TokenKind::Me:
    case TokenKind::Call:
    case TokenKind::Class:
    case TokenKind::Const:
    case TokenKind::Dim:
    case TokenKind::Do:
    case TokenKind::Exit:
    case TokenKind::For:
    case TokenKind::Function:
    case TokenKind::If:
    case TokenKind::On:
    case TokenKind::Private:
    case TokenKind::Public:
    case TokenKind::ReDim:
    case TokenKind::Select:
    case TokenKind::Set:
    case TokenKind::Stop:
    case TokenKind::Sub:
    case TokenKind::While:
    case TokenKind::With:
      return true;
    default:
      return IsName(kind);
  }
}

}  // namespace

ast::Program Parse(std::u16string_view source) {
  return Parser(source).Script();
}

ast::ExpressionPtr ParseExpression(std::u16string_view source) {
  return Parser(source).LoneExpression();
}

std::size_t FoldedHash::operator()(std::u16string_view name) const {
  std::size_t hash = 0;
  for (const char16_t unit : name) hash = (hash ^ FoldedUnit(unit)) * 0x9E3779B97F4A7C15u;
  return hash ^ hash >> 32;
}

bool FoldedEqual::operator()(std::u16string_view left, std::u16string_view right) const {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char16_t a, char16_t b) { return FoldedUnit(a) == FoldedUnit(b); });
}

Parser::Parser(std::u16string_view source) : lexer_(source) {
  Advance();
}

Parser::Level::Level(Parser& parser) : parser_(parser) {
  if (parser_.levels_ == deepestLevel) parser_.Fail(nestedTooDeep);
  ++parser_.levels_;
}

ast::Program Parser::Script() {
  for (SkipSeparators(); Accept(TokenKind::Option); SkipSeparators()) {
    Expect(TokenKind::Explicit, syntaxError);
    RequireStatementEnd();
    program_.optionExplicit = true;
  }
  program_.body = Block();
  if (!At(TokenKind::EndOfText)) FailAtCloser(expectedStatement);
  return std::move(program_);
}

// What is evaluated may stand in a method, where Me is known.
ast::ExpressionPtr Parser::LoneExpression() {
  meIsKnown_ = true;
  ast::ExpressionPtr expression = Expression();
  while (Accept(TokenKind::EndOfLine)) {
  }
  if (!At(TokenKind::EndOfText)) Fail(expectedEndOfStatement);
  return expression;
}

bool Parser::Accept(TokenKind kind) {
  if (!At(kind)) return false;
  Advance();
  return true;
}

void Parser::Expect(TokenKind kind, std::int32_t number) {
  if (!Accept(kind)) Fail(number);
}

Token Parser::TakeName() {
  if (!IsName(token_.kind)) Fail(expectedIdentifier);
  const Token name = token_;
  Advance();
  return name;
}

void Parser::Fail(std::int32_t number, const Token& where) const {
  lexer_.Fail(number, where.offset);
}

bool Parser::AtStatementEnd() const {
  return At(TokenKind::EndOfLine) || At(TokenKind::Colon) || At(TokenKind::EndOfText);
}

// What may follow a statement on the line of its If.
bool Parser::AtInlineEnd() const {
  return At(TokenKind::EndOfLine) || At(TokenKind::EndOfText) || At(TokenKind::Else) ||
         At(TokenKind::ElseIf) || At(TokenKind::End);
}

// The end of a procedure or class needs no line of its own, unlike that of a block.
void Parser::RequireStatementEnd() const {
  if (AtStatementEnd()) return;
  if (!At(TokenKind::End)) Fail(expectedEndOfStatement);
  const TokenKind ended = lexer_.Peek().kind;
  if (ended != TokenKind::Sub && ended != TokenKind::Function && ended != TokenKind::Property &&
      ended != TokenKind::Class) {
    Fail(expectedEndOfStatement);
  }
}

void Parser::SkipSeparators() {
  while (At(TokenKind::EndOfLine) || At(TokenKind::Colon)) Advance();
}

ast::Block Parser::Block() {
  ast::Block block;
  for (SkipSeparators(); !EndsBlock(token_.kind); SkipSeparators()) {
    if (auto statement = Statement()) block.push_back(std::move(statement));
    RequireStatementEnd();
  }
  return block;
}

// Behind a Case or the head of a procedure the first statement may follow at once.
ast::Block Parser::CaseBlock() {
  if (!StartsStatement(token_.kind)) RequireStatementEnd();
  return Block();
}

// The statements that follow a Then or Else on its line.
ast::Block Parser::InlineBlock() {
  ast::Block block;
  for (;;) {
    while (Accept(TokenKind::Colon)) {
    }
    if (AtInlineEnd()) return block;
    if (auto statement = Statement()) block.push_back(std::move(statement));
    if (!At(TokenKind::Colon) && !AtInlineEnd()) Fail(expectedEndOfStatement);
  }
}

Position Parser::Close(TokenKind kind, std::int32_t number, Position opened) {
  const Position at = token_.at;
  if (!Accept(kind)) FailAtCloser(number, opened);
  return at;
}

Position Parser::CloseEnd(TokenKind kind, std::int32_t number, Position opened) {
  const Position at = Close(TokenKind::End, expectedEnd, opened);
  if (!Accept(kind)) FailToClose(number, opened);
  return at;
}

// A Next or Loop that belongs to nothing gets the blame, rather than what it was found in.
void Parser::FailAtCloser(std::int32_t otherwise, std::optional<Position> opened) const {
  if (At(TokenKind::Next) && scope_->forLoops == 0) Fail(unexpectedNext);
  if (At(TokenKind::Loop) && scope_->doLoops == 0) Fail(loopWithoutDo);
  if (opened) FailToClose(otherwise, *opened);
  Fail(otherwise);
}

// Where many blocks are open, the line where the text ends does not tell which of them was forgotten.
void Parser::FailToClose(std::int32_t number, Position opened) const {
  lexer_.Fail(number, token_.offset, {}, u" for line " + Utf16Of(std::to_string(opened.line)));
}

}  // namespace quarlin::vbs
