// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>

#include "base/enum_table.h"
#include "script/vbscript/syntax/literals.h"
#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {

using ast::ExpressionKind;
using ast::ProcedureKind;
using ast::StatementKind;
using ast::StatementPtr;

namespace {

// -"x" would be an error, and -Nothing too.
bool MayHaveSign(const ast::Expression& literal) {
  return literal.kind != ExpressionKind::Literal || !(literal.value.IsString() || literal.value.IsObject());
}

}  // namespace

// Everything that brings in a name. Procedures and classes stand outside of procedures, though perhaps in
// a block.
StatementPtr Parser::Declaration() {
  const Token first = token_;
  const Access access = TakeAccess();
  const bool isVariable = At(TokenKind::Dim) || At(TokenKind::Const);
  const bool hasAccess = access.isPublic || access.isPrivate;
  if (scope_->procedure && (hasAccess || !isVariable)) Fail(syntaxError, first);
  if (AtProperty()) Fail(outsideClass);
  switch (token_.kind) {
    case TokenKind::Const:
      return Const(access);
    case TokenKind::Sub:
    case TokenKind::Function:
      program_.procedures.push_back(Procedure(access, nullptr));
      return nullptr;
    case TokenKind::Class:
      if (hasAccess) Fail(expectedIdentifier);
      Class(access);
      return nullptr;
    default:
      return Dim(access);
  }
}

Parser::Access Parser::TakeAccess() {
  Access access{.at = token_.at};
  access.isPrivate = At(TokenKind::Private);
  access.isPublic = At(TokenKind::Public);
  if (access.isPrivate || access.isPublic) Advance();
  access.isDefault = TakeDefault(access);
  return access;
}

// With nothing behind it that could be declared, Default is the name of a variable.
bool Parser::TakeDefault(const Access& access) {
  if (!At(TokenKind::Default)) return false;
  const TokenKind next = lexer_.Peek().kind;
  if (!IsName(next) && next != TokenKind::Sub && next != TokenKind::Function && next != TokenKind::Public &&
      next != TokenKind::Private && next != TokenKind::Dim) {
    return false;
  }
  if (!access.isPublic) Fail(defaultNotPublic);
  Advance();
  if (!At(TokenKind::Sub) && !At(TokenKind::Function) && !AtProperty()) Fail(defaultNotOnProcedure);
  return true;
}

// Only where it says what it is for; otherwise it is a name like any other.
bool Parser::AtProperty() const {
  if (!At(TokenKind::Property)) return false;
  const TokenKind next = lexer_.Peek().kind;
  return next == TokenKind::Get || next == TokenKind::Let || next == TokenKind::Set;
}

void Parser::Declare(const Token& name) {
  if (!scope_->names.insert(name.text).second) Fail(nameRedefined, name);
}

StatementPtr Parser::Dim(const Access& access) {
  StatementPtr statement = Begin(StatementKind::Dim);
  statement->at = access.at;
  statement->isPrivate = access.isPrivate;
  if (At(TokenKind::Dim) && !access.isPublic && !access.isPrivate) Advance();
  do {
    const Token name = TakeName();
    Declare(name);
    statement->declarators.push_back(Declarator(name));
  } while (Accept(TokenKind::Comma));
  return statement;
}

// Behind its name.
ast::Declarator Parser::Declarator(const Token& name) {
  ast::Declarator declarator{std::u16string(name.text), name.at, false, {}};
  if (!Accept(TokenKind::LeftParenthesis)) return declarator;
  declarator.isArray = true;
  if (Accept(TokenKind::RightParenthesis)) return declarator;
  do {
    declarator.bounds.push_back(Bound());
  } while (Accept(TokenKind::Comma));
  Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
  return declarator;
}

ast::ExpressionPtr Parser::Bound() {
  const Token number = token_;
  if (!At(TokenKind::Number) && !AtOctal()) Fail(expectedInteger);
  Tree bound = Literal();
  const Value& value = bound.root->value;
  const bool isWhole = value.Is(Kind::Integer) || value.Is(Kind::Long);
  if (!isWhole || value.AsWhole() < 0) Fail(expectedInteger, number);
  return std::move(bound.root);
}

StatementPtr Parser::Const(const Access& access) {
  StatementPtr statement = Begin(StatementKind::Const);
  statement->at = access.at;
  statement->isPrivate = access.isPrivate;
  Advance();
  do {
    const Token name = TakeName();
    Declare(name);
    statement->declarators.push_back({std::u16string(name.text), name.at, false, {}});
    Expect(TokenKind::Equal, expectedEqual);
    statement->expressions.push_back(Constant().root);
  } while (Accept(TokenKind::Comma));
  return statement;
}

// A literal, perhaps with a sign or in parentheses.
Parser::Tree Parser::Constant() {
  const Level level(*this);
  const Token first = token_;
  switch (token_.kind) {
    case TokenKind::Minus:
    case TokenKind::Plus: {
      Tree tree = Node(At(TokenKind::Minus) ? ExpressionKind::Negate : ExpressionKind::Plus, token_.at);
      Advance();
      Tree operand = Constant();
      if (!MayHaveSign(*operand.root)) Fail(expectedLiteral, first);
      Adopt(tree, std::move(operand));
      return tree;
    }
    case TokenKind::LeftParenthesis: {
      Advance();
      Tree inner = Constant();
      Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
      return inner;
    }
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::Date:
    case TokenKind::True:
    case TokenKind::False:
    case TokenKind::Nothing:
    case TokenKind::Empty:
    case TokenKind::Null:
      return Literal();
    default:
      if (AtOctal()) return Literal();
      Fail(expectedLiteral);
  }
}

StatementPtr Parser::ReDim() {
  StatementPtr statement = Begin(StatementKind::ReDim);
  Advance();
  if (At(TokenKind::Preserve) && lexer_.Peek().kind != TokenKind::LeftParenthesis) {
    statement->preserve = true;
    Advance();
  }
  do {
    ReDimOne(*statement);
  } while (Accept(TokenKind::Comma));
  return statement;
}

// The last parentheses hold the bounds: ReDim list(1).items(5)
void Parser::ReDimOne(ast::Statement& statement) {
  if (!StartsTarget()) Fail(expectedIdentifier);
  ast::Declarator declarator{{}, token_.at, true, {}};
  Tree target = Suffixes(Leading());
  if (target.root->kind != ExpressionKind::Call) Fail(expectedLeftParenthesis);
  std::vector<ast::ExpressionPtr>& operands = target.root->operands;
  const bool isComplete = std::none_of(operands.begin(), operands.end(), [](const auto& operand) {
    return operand->kind == ExpressionKind::Omitted;
  });
  if (operands.size() < 2 || !isComplete) Fail(expectedExpression);
  ast::ExpressionPtr sized = std::move(operands.front());
  if (sized->kind != ExpressionKind::Name && sized->kind != ExpressionKind::Member) Fail(syntaxError);
  declarator.name = sized->kind == ExpressionKind::Name ? sized->name : std::u16string();
  std::move(operands.begin() + 1, operands.end(), std::back_inserter(declarator.bounds));
  statement.declarators.push_back(std::move(declarator));
  statement.expressions.push_back(std::move(sized));
}

// At Sub, Function or Property. The class that it belongs to, if there is one, has to agree.
ast::Procedure Parser::Procedure(const Access& access, ClassShape* owner) {
  ast::Procedure procedure;
  procedure.at = access.at;
  procedure.isPrivate = access.isPrivate;
  procedure.isDefault = access.isDefault;
  procedure.kind = ProcedureStart();
  const Token name = TakeName();
  procedure.name = name.text;
  Scope inner;
  inner.procedure = procedure.kind;
  Scope* const outer = std::exchange(scope_, &inner);
  procedure.parameters = Parameters();
  if (owner != nullptr) Note(*owner, procedure, name);
  procedure.body = CaseBlock();
  ProcedureEnd(procedure);
  scope_ = outer;
  return procedure;
}

ProcedureKind Parser::ProcedureStart() {
  if (Accept(TokenKind::Sub)) return ProcedureKind::Sub;
  if (Accept(TokenKind::Function)) return ProcedureKind::Function;
  Advance();
  if (Accept(TokenKind::Get)) return ProcedureKind::PropertyGet;
  if (Accept(TokenKind::Let)) return ProcedureKind::PropertyLet;
  Expect(TokenKind::Set, expectedLetSetOrGet);
  return ProcedureKind::PropertySet;
}

std::vector<ast::Parameter> Parser::Parameters() {
  std::vector<ast::Parameter> parameters;
  if (!Accept(TokenKind::LeftParenthesis) || Accept(TokenKind::RightParenthesis)) return parameters;
  do {
    ast::Parameter parameter;
    parameter.byValue = Accept(TokenKind::ByVal);
    if (!parameter.byValue) Accept(TokenKind::ByRef);
    const Token name = TakeName();
    Declare(name);
    parameter.name = name.text;
    parameter.isArray = Accept(TokenKind::LeftParenthesis);
    if (parameter.isArray) Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
    parameters.push_back(std::move(parameter));
  } while (Accept(TokenKind::Comma));
  Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
  return parameters;
}

void Parser::ProcedureEnd(ast::Procedure& procedure) {
  struct Row {
    ast::ProcedureKind kind;
    TokenKind word;
    std::int32_t missing;
  };
  using ast::ProcedureKind;
  constexpr auto rows =
      std::to_array<Row>({{ProcedureKind::Sub, TokenKind::Sub, expectedSub},
                          {ProcedureKind::Function, TokenKind::Function, expectedFunction},
                          {ProcedureKind::PropertyGet, TokenKind::Property, expectedProperty},
                          {ProcedureKind::PropertyLet, TokenKind::Property, expectedProperty},
                          {ProcedureKind::PropertySet, TokenKind::Property, expectedProperty}});
  static_assert(StandInOrder(rows, &Row::kind, ProcedureKind::PropertySet));
  const Row& row = rows[static_cast<std::size_t>(procedure.kind)];
  procedure.endAt = CloseEnd(row.word, row.missing, procedure.at);
}

}  // namespace quarlin::vbs
