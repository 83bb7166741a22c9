// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>

#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {

using ast::ExpressionKind;
using ast::StatementKind;
using ast::StatementPtr;

namespace {

bool StartsExpression(TokenKind kind) {
  switch (kind) {
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::Date:
    case TokenKind::True:
    case TokenKind::False:
    case TokenKind::Nothing:
    case TokenKind::Empty:
    case TokenKind::Null:
    case TokenKind::New:
    case TokenKind::Me:
    case TokenKind::Not:
    case TokenKind::Plus:
    case TokenKind::Minus:
    case TokenKind::Dot:
    case TokenKind::LeftParenthesis:
      return true;
    default:
      return IsName(kind);
  }
}

bool IsCallable(const ast::Expression& expression) {
  return expression.kind == ExpressionKind::Name || expression.kind == ExpressionKind::Member ||
         expression.kind == ExpressionKind::Call;
}

}  // namespace

StatementPtr Parser::Begin(StatementKind kind) const {
  auto statement = std::make_unique<ast::Statement>();
  statement->kind = kind;
  statement->at = token_.at;
  return statement;
}

StatementPtr Parser::Statement() {
  const Level level(*this);
  switch (token_.kind) {
    case TokenKind::Call:
      return Call();
    case TokenKind::Set:
      return Set();
    case TokenKind::If:
      return If();
    case TokenKind::Select:
      return Select();
    case TokenKind::For:
      return For();
    case TokenKind::While:
      return While();
    case TokenKind::Do:
      return Do();
    case TokenKind::With:
      return With();
    case TokenKind::Exit:
      return Exit();
    case TokenKind::On:
      return OnError();
    case TokenKind::Stop:
      return Stop();
    case TokenKind::ReDim:
      return ReDim();
    case TokenKind::Dim:
    case TokenKind::Const:
    case TokenKind::Public:
    case TokenKind::Private:
    case TokenKind::Sub:
    case TokenKind::Function:
    case TokenKind::Class:
      return Declaration();
    case TokenKind::Property:
      return AtProperty() ? Declaration() : AssignmentOrCall();
    case TokenKind::Erase:
      return Erase();
    default:
      return AssignmentOrCall();
  }
}

// A dot that stands off the name in front of it begins an argument: Print .Width
StatementPtr Parser::AssignmentOrCall() {
  // Behind a Then its line goes before what is around it: For i = 1 To 9 : If a Then b : Next
  if (At(TokenKind::Next)) Fail(unexpectedNext);
  if (At(TokenKind::Loop)) Fail(loopWithoutDo);
  if (!StartsTarget()) Fail(expectedStatement);
  StatementPtr statement = Begin(StatementKind::Call);
  const Token first = token_;
  Tree target = Leading();
  for (;;) {
    const bool isBare = target.root->kind != ExpressionKind::Call;
    if (At(TokenKind::Dot) && !(token_.spaced && isBare)) {
      target = MemberOf(std::move(target));
    } else if (At(TokenKind::LeftParenthesis)) {
      target = Indexed(std::move(target));
    } else {
      break;
    }
  }
  if (target.root->kind == ExpressionKind::Me) Fail(invalidMe, first);
  if (!At(TokenKind::Equal)) return BareCall(std::move(statement), std::move(target));
  Advance();
  statement->kind = StatementKind::Let;
  statement->expressions.push_back(std::move(target.root));
  statement->expressions.push_back(Expression());
  return statement;
}

StatementPtr Parser::BareCall(StatementPtr statement, Tree callee) {
  if (callee.root->kind == ExpressionKind::Call) {
    callee = WithoutParentheses(std::move(callee));
  } else if (StartsExpression(token_.kind) || At(TokenKind::Comma) || AtOctal()) {
    Tree call = Node(ExpressionKind::Call, statement->at);
    Adopt(call, std::move(callee));
    Arguments(call);
    callee = std::move(call);
  }
  statement->expressions.push_back(std::move(callee.root));
  return statement;
}

StatementPtr Parser::Call() {
  StatementPtr statement = Begin(StatementKind::Call);
  Advance();
  if (!StartsTarget() && !At(TokenKind::LeftParenthesis)) Fail(expectedIdentifier);
  const Token first = token_;
  Tree callee = Suffixes(Atom());
  if (!IsCallable(*callee.root)) Fail(syntaxError, first);
  statement->expressions.push_back(std::move(callee.root));
  return statement;
}

StatementPtr Parser::Set() {
  StatementPtr statement = Begin(StatementKind::Set);
  Advance();
  if (!StartsTarget()) Fail(expectedIdentifier);
  const Token first = token_;
  Tree target = Suffixes(Leading());
  if (!IsCallable(*target.root)) Fail(invalidMe, first);
  statement->expressions.push_back(std::move(target.root));
  Expect(TokenKind::Equal, expectedEqual);
  statement->expressions.push_back(Expression());
  return statement;
}

StatementPtr Parser::Exit() {
  struct Row {
    TokenKind word;
    ast::ExitKind kind;
  };
  constexpr std::array rows = std::to_array<Row>({{TokenKind::Do, ast::ExitKind::Do},
                                                  {TokenKind::For, ast::ExitKind::For},
                                                  {TokenKind::Sub, ast::ExitKind::Sub},
                                                  {TokenKind::Function, ast::ExitKind::Function},
                                                  {TokenKind::Property, ast::ExitKind::Property}});
  StatementPtr statement = Begin(StatementKind::Exit);
  const Token first = token_;
  Advance();
  const auto row =
      std::find_if(rows.begin(), rows.end(), [this](const Row& candidate) { return At(candidate.word); });
  if (row == rows.end() || !MayExit(row->kind)) Fail(invalidExit, first);
  statement->exit = row->kind;
  Advance();
  return statement;
}

bool Parser::MayExit(ast::ExitKind kind) const {
  switch (kind) {
    case ast::ExitKind::Do:
      return scope_->doLoops > 0;
    case ast::ExitKind::For:
      return scope_->forLoops > 0;
    case ast::ExitKind::Sub:
      return scope_->procedure == ast::ProcedureKind::Sub;
    case ast::ExitKind::Function:
      return scope_->procedure == ast::ProcedureKind::Function;
    case ast::ExitKind::Property:
      return scope_->procedure && *scope_->procedure >= ast::ProcedureKind::PropertyGet;
  }
  return false;
}

StatementPtr Parser::OnError() {
  StatementPtr statement = Begin(StatementKind::OnError);
  Advance();
  Expect(TokenKind::Error, syntaxError);
  if (Accept(TokenKind::Resume)) {
    statement->resumeNext = true;
    Expect(TokenKind::Next, expectedNext);
    return statement;
  }
  Expect(TokenKind::GoTo, syntaxError);
  if (token_.kind != TokenKind::Number || token_.text != u"0") Fail(syntaxError);
  Advance();
  return statement;
}

StatementPtr Parser::Erase() {
  const Token array = lexer_.Peek();
  if (!IsName(array.kind) && array.kind != TokenKind::Me && !(array.kind == TokenKind::Dot && array.spaced)) {
    return AssignmentOrCall();
  }
  StatementPtr statement = Begin(StatementKind::Erase);
  Advance();
  do {
    if (!StartsTarget()) Fail(expectedIdentifier);
    const Token first = token_;
    Tree target = Suffixes(Leading());
    if (!IsCallable(*target.root)) Fail(invalidMe, first);
    statement->expressions.push_back(std::move(target.root));
  } while (Accept(TokenKind::Comma));
  return statement;
}

// A debugger would take over here.
StatementPtr Parser::Stop() {
  StatementPtr statement = Begin(StatementKind::Nop);
  Advance();
  return statement;
}

}  // namespace quarlin::vbs
