// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <limits>

#include "script/values/conversions.h"
#include "script/values/locale.h"
#include "script/vbscript/syntax/literals.h"
#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {

using ast::ExpressionKind;

namespace {

// Of a tree of expressions: a + a + a ... is one as deep as it has operands.
constexpr int deepestTree = 2000;

// How tightly operators hold their operands; 0 is no operator.
constexpr int notBinding = 6;
constexpr int signBinding = 14;

struct Infix {
  int binding = 0;
  Operator operation = Operator::Add;
};

constexpr std::array infixes = [] {
  struct Row {
    TokenKind kind;
    int binding;
    Operator operation;
  };
  constexpr std::array rows = std::to_array<Row>({
      {TokenKind::Imp, 1, Operator::Imp},
      {TokenKind::Eqv, 2, Operator::Eqv},
      {TokenKind::Xor, 3, Operator::Xor},
      {TokenKind::Or, 4, Operator::Or},
      {TokenKind::And, 5, Operator::And},
      {TokenKind::Equal, 7, Operator::Equal},
      {TokenKind::NotEqual, 7, Operator::NotEqual},
      {TokenKind::Less, 7, Operator::Less},
      {TokenKind::Greater, 7, Operator::Greater},
      {TokenKind::LessEqual, 7, Operator::LessEqual},
      {TokenKind::GreaterEqual, 7, Operator::GreaterEqual},
      {TokenKind::Is, 7, Operator::Is},
      {TokenKind::Concatenate, 8, Operator::Concatenate},
      {TokenKind::Plus, 9, Operator::Add},
      {TokenKind::Minus, 9, Operator::Subtract},
      {TokenKind::Mod, 10, Operator::Modulo},
      {TokenKind::IntegerDivide, 11, Operator::IntegerDivide},
      {TokenKind::Times, 12, Operator::Multiply},
      {TokenKind::Divide, 12, Operator::Divide},
      {TokenKind::Power, 13, Operator::Power},
  });
  std::array<Infix, tokenKinds> table{};
  for (const Row& row : rows) table[static_cast<std::size_t>(row.kind)] = {row.binding, row.operation};
  return table;
}();

}  // namespace

Parser::Tree Parser::Node(ExpressionKind kind, Position at) const {
  Tree tree{std::make_unique<ast::Expression>()};
  tree.root->kind = kind;
  tree.root->at = at;
  return tree;
}

void Parser::Adopt(Tree& parent, Tree child) const {
  parent.height = std::max(parent.height, child.height + 1);
  if (parent.height > deepestTree) Fail(nestedTooDeep);
  parent.root->operands.push_back(std::move(child.root));
}

// Operators wait until one comes that binds no tighter, so a long formula needs no nested calls. With
// `first` the leftmost operand has been taken already.
Parser::Tree Parser::Formula(std::optional<Tree> first) {
  const Level level(*this);
  const std::size_t base = waiting_.size();
  if (first) {
    operands_.push_back(std::move(*first));
  } else {
    Prefixes();
    operands_.push_back(Operand());
  }
  for (;;) {
    const Infix& infix = infixes[static_cast<std::size_t>(token_.kind)];
    Reduce(base, infix.binding);
    if (infix.binding == 0) break;
    waiting_.push_back({ExpressionKind::Binary, infix.operation, infix.binding, token_.at});
    Advance();
    Prefixes();
    operands_.push_back(Operand());
  }
  Tree whole = std::move(operands_.back());
  operands_.pop_back();
  return whole;
}

// They hold what comes behind them, so nothing in front is completed by them: 2 ^ -1.
void Parser::Prefixes() {
  for (;; Advance()) {
    ExpressionKind kind = ExpressionKind::Not;
    if (At(TokenKind::Minus)) {
      kind = ExpressionKind::Negate;
    } else if (At(TokenKind::Plus)) {
      kind = ExpressionKind::Plus;
    } else if (!At(TokenKind::Not)) {
      return;
    }
    const int binding = kind == ExpressionKind::Not ? notBinding : signBinding;
    waiting_.push_back({kind, Operator::Add, binding, token_.at});
  }
}

// Completes the operators of this formula that bind at least as tightly.
void Parser::Reduce(std::size_t base, int binding) {
  while (waiting_.size() > base && waiting_.back().binding >= binding) {
    const Waiting top = waiting_.back();
    waiting_.pop_back();
    Tree right = std::move(operands_.back());
    operands_.pop_back();
    Tree whole = Node(top.kind, top.at);
    if (top.kind == ExpressionKind::Binary) {
      whole.root->operation = top.operation;
      whole.root->at = operands_.back().root->at;
      whole.root->operands.reserve(2);
      Adopt(whole, std::move(operands_.back()));
      operands_.pop_back();
    }
    Adopt(whole, std::move(right));
    operands_.push_back(std::move(whole));
  }
}

// Where an operand must stand, an & with digits behind it is a number.
bool Parser::AtOctal() {
  if (!At(TokenKind::Concatenate)) return false;
  token_ = lexer_.OctalAt(token_);
  return At(TokenKind::Number);
}

Parser::Tree Parser::Operand() {
  switch (token_.kind) {
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::Date:
    case TokenKind::True:
    case TokenKind::False:
    case TokenKind::Nothing:
    case TokenKind::Empty:
    case TokenKind::Null:
      return Literal();
    case TokenKind::New:
      return New();
    case TokenKind::Concatenate:
      if (AtOctal()) return Literal();
      [[fallthrough]];
    default:
      return Suffixes(Atom());
  }
}

Parser::Tree Parser::Atom() {
  if (!At(TokenKind::LeftParenthesis)) return Leading();
  Tree group = Node(ExpressionKind::Parenthesis, token_.at);
  Advance();
  Adopt(group, Formula(std::nullopt));
  Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
  return group;
}

// What an assignment or a call begins with.
bool Parser::StartsTarget() const {
  return IsName(token_.kind) || At(TokenKind::Dot) || At(TokenKind::Me);
}

Parser::Tree Parser::Leading() {
  if (At(TokenKind::Dot)) return MemberOf(Tree{});
  if (At(TokenKind::Me)) {
    if (!meIsKnown_) Fail(invalidMe);
    Tree me = Node(ExpressionKind::Me, token_.at);
    Advance();
    return me;
  }
  if (!IsName(token_.kind)) Fail(syntaxError);
  Tree name = Node(ExpressionKind::Name, token_.at);
  name.root->name = token_.text;
  Advance();
  return name;
}

Parser::Tree Parser::Suffixes(Tree target) {
  for (;;) {
    if (At(TokenKind::Dot)) {
      target = MemberOf(std::move(target));
    } else if (At(TokenKind::LeftParenthesis)) {
      target = Indexed(std::move(target));
    } else {
      return target;
    }
  }
}

// At the dot; without an object it is a member of what With names.
Parser::Tree Parser::MemberOf(Tree object) {
  Tree member = Node(ExpressionKind::Member, object.root ? object.root->at : token_.at);
  if (object.root) Adopt(member, std::move(object));
  Advance();
  member.root->name = TakeName().text;
  return member;
}

// At the parenthesis.
Parser::Tree Parser::Indexed(Tree callee) {
  Tree call = Node(ExpressionKind::Call, callee.root->at);
  Adopt(call, std::move(callee));
  Advance();
  if (Accept(TokenKind::RightParenthesis)) return call;
  do {
    const bool isOmitted = At(TokenKind::Comma) || At(TokenKind::RightParenthesis);
    Adopt(call, isOmitted ? Node(ExpressionKind::Omitted, token_.at) : Formula(std::nullopt));
  } while (Accept(TokenKind::Comma));
  Expect(TokenKind::RightParenthesis, expectedRightParenthesis);
  return call;
}

// The arguments of a statement that calls, without parentheses around them.
void Parser::Arguments(Tree& call) {
  do {
    Adopt(call, At(TokenKind::Comma) ? Node(ExpressionKind::Omitted, token_.at) : Formula(std::nullopt));
  } while (Accept(TokenKind::Comma));
}

// A statement's `S (a)`: the parentheses belong to the first argument, which may go on behind them, and
// not to the call.
Parser::Tree Parser::WithoutParentheses(Tree call) {
  std::vector<ast::ExpressionPtr>& operands = call.root->operands;
  if (operands.size() > 2) Fail(parenthesesAroundArguments);
  if (operands.size() < 2) return call;
  Tree first = Node(ExpressionKind::Parenthesis, operands[1]->at);
  first.root->operands.push_back(std::move(operands[1]));
  first.height = call.height;
  operands.pop_back();
  Adopt(call, Formula(std::move(first)));
  if (Accept(TokenKind::Comma)) Arguments(call);
  return call;
}

Parser::Tree Parser::Literal() {
  const auto known = [this](std::optional<Value> value, std::int32_t number) {
    if (!value) Fail(number);
    return Literal(std::move(*value));
  };
  switch (token_.kind) {
    case TokenKind::Number:
      return known(NumberLiteral(token_.text), invalidNumber);
    case TokenKind::Text:
      return Literal(TextLiteral(token_.text));
    case TokenKind::Date: {
      const auto days = DateOfText(token_.text, {}, UsualLocale());
      return known(days ? std::optional(Value::Date(*days)) : std::nullopt, syntaxError);
    }
    case TokenKind::True:
      return Literal(Value::Bool(true));
    case TokenKind::False:
      return Literal(Value::Bool(false));
    case TokenKind::Nothing:
      return Literal(Value::Nothing());
    case TokenKind::Null:
      return Literal(Value::Null());
    default:
      return Literal(Value());
  }
}

Parser::Tree Parser::Literal(Value value) {
  Tree literal = Node(ExpressionKind::Literal, token_.at);
  literal.root->value = std::move(value);
  Advance();
  return literal;
}

// What follows a dot is about the new object: New Point.At(1, 2)
Parser::Tree Parser::New() {
  Tree made = Node(ExpressionKind::New, token_.at);
  Advance();
  made.root->name = TakeName().text;
  return At(TokenKind::Dot) ? Suffixes(std::move(made)) : std::move(made);
}

}  // namespace quarlin::vbs
