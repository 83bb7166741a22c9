// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {

using ast::LoopKind;
using ast::StatementKind;
using ast::StatementPtr;

StatementPtr Parser::If() {
  StatementPtr statement = Begin(StatementKind::If);
  Condition(*statement);
  while (Accept(TokenKind::Colon)) {
  }
  const bool isBlock = At(TokenKind::EndOfLine) || At(TokenKind::EndOfText);
  if (isBlock) {
    BlockIf(*statement);
  } else {
    InlineIf(*statement);
  }
  return statement;
}

// At the If or ElseIf; to behind Then.
void Parser::Condition(ast::Statement& statement) {
  ast::Branch branch;
  branch.at = token_.at;
  Advance();
  branch.tests.push_back(Expression());
  Expect(TokenKind::Then, expectedThen);
  statement.branches.push_back(std::move(branch));
}

// All that follows on the line belongs to it, and Else to the innermost. An End If may close it.
void Parser::InlineIf(ast::Statement& statement) {
  statement.branches.back().body = InlineBlock();
  while (At(TokenKind::ElseIf)) {
    Condition(statement);
    statement.branches.back().body = InlineBlock();
  }
  if (Accept(TokenKind::Else)) {
    statement.hasOtherwise = true;
    statement.otherwise = InlineBlock();
  }
  statement.endAt = token_.at;
  if (!At(TokenKind::End) || lexer_.Peek().kind != TokenKind::If) return;
  Advance();
  Advance();
}

void Parser::BlockIf(ast::Statement& statement) {
  statement.branches.back().body = Block();
  while (At(TokenKind::ElseIf)) {
    Condition(statement);
    statement.branches.back().body = Block();
  }
  if (Accept(TokenKind::Else)) {
    statement.hasOtherwise = true;
    statement.otherwise = Block();
  }
  statement.endAt = CloseEnd(TokenKind::If, expectedIf, statement.at);
}

StatementPtr Parser::Select() {
  StatementPtr statement = Begin(StatementKind::Select);
  Advance();
  Expect(TokenKind::Case, expectedCase);
  statement->expressions.push_back(Expression());
  RequireStatementEnd();
  SkipSeparators();
  if (!At(TokenKind::Case) && !At(TokenKind::End)) Fail(expectedCase);
  while (At(TokenKind::Case)) {
    ast::Branch branch;
    branch.at = token_.at;
    Advance();
    if (Accept(TokenKind::Else)) {
      statement->hasOtherwise = true;
      statement->otherwise = CaseBlock();
      break;
    }
    do {
      branch.tests.push_back(Expression());
    } while (Accept(TokenKind::Comma));
    branch.body = CaseBlock();
    statement->branches.push_back(std::move(branch));
  }
  statement->endAt = CloseEnd(TokenKind::Select, expectedSelect, statement->at);
  return statement;
}

StatementPtr Parser::For() {
  StatementPtr statement = Begin(StatementKind::For);
  Advance();
  if (At(TokenKind::Each)) return ForEach(std::move(statement));
  LoopVariable(*statement);
  Expect(TokenKind::Equal, expectedEqual);
  statement->expressions.push_back(Expression());
  Expect(TokenKind::To, expectedTo);
  statement->expressions.push_back(Expression());
  if (Accept(TokenKind::Step)) statement->expressions.push_back(Expression());
  ForBody(*statement);
  return statement;
}

StatementPtr Parser::ForEach(StatementPtr statement) {
  statement->kind = StatementKind::ForEach;
  Advance();
  LoopVariable(*statement);
  Expect(TokenKind::In, expectedIn);
  statement->expressions.push_back(Expression());
  ForBody(*statement);
  return statement;
}

// Neither an element nor a property can count.
void Parser::LoopVariable(ast::Statement& statement) {
  if (!IsName(token_.kind)) Fail(expectedIdentifier);
  const Token name = token_;
  Tree variable = Suffixes(Leading());
  if (variable.root->kind != ast::ExpressionKind::Name) Fail(invalidLoopVariable, name);
  statement.expressions.push_back(std::move(variable.root));
}

void Parser::ForBody(ast::Statement& statement) {
  RequireStatementEnd();
  ++scope_->forLoops;
  statement.body = Block();
  statement.endAt = Close(TokenKind::Next, expectedNext, statement.at);
  --scope_->forLoops;
}

StatementPtr Parser::While() {
  StatementPtr statement = Begin(StatementKind::While);
  Advance();
  statement->expressions.push_back(Expression());
  RequireStatementEnd();
  statement->body = Block();
  statement->endAt = Close(TokenKind::Wend, expectedWend, statement->at);
  return statement;
}

StatementPtr Parser::Do() {
  StatementPtr statement = Begin(StatementKind::Do);
  Advance();
  if (DoCondition(*statement, LoopKind::WhileFirst, LoopKind::UntilFirst)) {
    RequireStatementEnd();
  } else if (!AtStatementEnd()) {
    Fail(expectedConditionOrEnd);
  }
  ++scope_->doLoops;
  statement->body = Block();
  statement->endAt = Close(TokenKind::Loop, expectedLoop, statement->at);
  --scope_->doLoops;
  if (statement->loop == LoopKind::Forever) {
    const bool isConditional = DoCondition(*statement, LoopKind::WhileLast, LoopKind::UntilLast);
    if (!isConditional && !AtStatementEnd() && !AtInlineEnd()) Fail(expectedConditionOrEnd);
  }
  return statement;
}

// False where there is none.
bool Parser::DoCondition(ast::Statement& statement, LoopKind asLong, LoopKind until) {
  if (!At(TokenKind::While) && !At(TokenKind::Until)) return false;
  statement.loop = At(TokenKind::While) ? asLong : until;
  Advance();
  statement.expressions.push_back(Expression());
  return true;
}

StatementPtr Parser::With() {
  StatementPtr statement = Begin(StatementKind::With);
  Advance();
  statement->expressions.push_back(Expression());
  RequireStatementEnd();
  statement->body = Block();
  statement->endAt = CloseEnd(TokenKind::With, expectedWith, statement->at);
  return statement;
}

}  // namespace quarlin::vbs
