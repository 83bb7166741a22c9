// SPDX-License-Identifier: GPL-3.0-or-later
// How a script's text is taken apart: a function for each construct of the language, each of which begins
// at the current token and leaves behind its own last one.
#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "script/vbscript/syntax/ast.h"
#include "script/vbscript/syntax/lexer.h"
#include "script/vbscript/syntax/syntax_errors.h"

namespace quarlin::vbs {

// Names are equal whatever their case.
struct FoldedHash {
  std::size_t operator()(std::u16string_view name) const;
};
struct FoldedEqual {
  bool operator()(std::u16string_view left, std::u16string_view right) const;
};

using NameSet = std::unordered_set<std::u16string_view, FoldedHash, FoldedEqual>;

class Parser {
 public:
  explicit Parser(std::u16string_view source);

  ast::Program Script();
  ast::ExpressionPtr LoneExpression();

 private:
  // An expression with the length of its longest branch, which whoever walks the tree needs on the stack.
  struct Tree {
    ast::ExpressionPtr root;
    int height = 1;
  };

  // An operator that still waits for its right operand to be complete.
  struct Waiting {
    ast::ExpressionKind kind;
    Operator operation;
    int binding;
    Position at;
  };

  // The script itself, or the procedure that is being taken apart.
  struct Scope {
    std::optional<ast::ProcedureKind> procedure;
    NameSet names;
    int doLoops = 0;
    int forLoops = 0;
  };

  // What may stand in front of a declaration.
  struct Access {
    Position at;
    bool isPublic = false;
    bool isPrivate = false;
    bool isDefault = false;
  };

  // What a class already has under one name.
  struct MemberShape {
    bool isProperty = false;
    std::size_t arguments = 0;  // of a property, without the value that is assigned
    std::vector<ast::ProcedureKind> kinds;
  };
  struct ClassShape {
    std::unordered_map<std::u16string_view, MemberShape, FoldedHash, FoldedEqual> members;
    bool hasDefault = false;
  };

  // As long as it lives, one level of nesting more.
  class Level {
   public:
    explicit Level(Parser& parser);
    ~Level() { --parser_.levels_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    Parser& parser_;
  };

  // Tokens.
  void Advance() { token_ = lexer_.Next(); }
  bool AtOctal();
  bool At(TokenKind kind) const { return token_.kind == kind; }
  bool Accept(TokenKind kind);
  void Expect(TokenKind kind, std::int32_t number);
  Token TakeName();
  [[noreturn]] void Fail(std::int32_t number) const { Fail(number, token_); }
  [[noreturn]] void Fail(std::int32_t number, const Token& where) const;

  // Statements in a row.
  ast::Block Block();
  ast::Block CaseBlock();
  ast::Block InlineBlock();
  bool AtStatementEnd() const;
  bool AtInlineEnd() const;
  void RequireStatementEnd() const;
  void SkipSeparators();
  Position Close(TokenKind kind, std::int32_t number, Position opened);
  Position CloseEnd(TokenKind kind, std::int32_t number, Position opened);
  [[noreturn]] void FailAtCloser(std::int32_t otherwise, std::optional<Position> opened = {}) const;
  [[noreturn]] void FailToClose(std::int32_t number, Position opened) const;

  // Statements. Null for one that only declares a procedure or a class.
  ast::StatementPtr Statement();
  ast::StatementPtr Begin(ast::StatementKind kind) const;
  ast::StatementPtr AssignmentOrCall();
  ast::StatementPtr BareCall(ast::StatementPtr statement, Tree callee);
  ast::StatementPtr Call();
  ast::StatementPtr Set();
  ast::StatementPtr If();
  void InlineIf(ast::Statement& statement);
  void BlockIf(ast::Statement& statement);
  void Condition(ast::Statement& statement);
  ast::StatementPtr Select();
  ast::StatementPtr For();
  ast::StatementPtr ForEach(ast::StatementPtr statement);
  void LoopVariable(ast::Statement& statement);
  void ForBody(ast::Statement& statement);
  ast::StatementPtr While();
  ast::StatementPtr Do();
  bool DoCondition(ast::Statement& statement, ast::LoopKind asLong, ast::LoopKind until);
  ast::StatementPtr With();
  ast::StatementPtr Exit();
  bool MayExit(ast::ExitKind kind) const;
  ast::StatementPtr OnError();
  ast::StatementPtr Erase();
  ast::StatementPtr Stop();

  // Declarations.
  ast::StatementPtr Declaration();
  ast::StatementPtr Dim(const Access& access);
  ast::StatementPtr Const(const Access& access);
  ast::StatementPtr ReDim();
  void ReDimOne(ast::Statement& statement);
  ast::Declarator Declarator(const Token& name);
  ast::ExpressionPtr Bound();
  Tree Constant();
  void Declare(const Token& name);
  Access TakeAccess();
  bool TakeDefault(const Access& access);
  bool AtProperty() const;
  ast::Procedure Procedure(const Access& access, ClassShape* owner);
  ast::ProcedureKind ProcedureStart();
  std::vector<ast::Parameter> Parameters();
  void ProcedureEnd(ast::Procedure& procedure);
  void Class(const Access& access);
  void Member(ast::Class& declared, ClassShape& shape);
  void Fields(ast::Class& declared, ClassShape& shape, const Access& access);
  void Note(ClassShape& shape, const ast::Procedure& procedure, const Token& name) const;
  void NoteField(ClassShape& shape, const Token& name) const;
  void CheckArguments(const ast::Procedure& procedure, const Token& name) const;

  // Expressions.
  ast::ExpressionPtr Expression() { return Formula(std::nullopt).root; }
  Tree Formula(std::optional<Tree> first);
  void Prefixes();
  void Reduce(std::size_t base, int binding);
  Tree Operand();
  Tree Atom();
  bool StartsTarget() const;
  Tree Leading();
  Tree Suffixes(Tree target);
  Tree MemberOf(Tree object);
  Tree Indexed(Tree callee);
  Tree WithoutParentheses(Tree call);
  void Arguments(Tree& call);
  Tree Literal();
  Tree Literal(Value value);
  Tree New();
  Tree Node(ast::ExpressionKind kind, Position at) const;
  void Adopt(Tree& parent, Tree child) const;

  Lexer lexer_;
  Token token_;
  Scope script_;
  Scope* scope_ = &script_;
  NameSet classNames_;
  ast::Program program_;
  bool meIsKnown_ = false;
  int levels_ = 0;
  std::vector<Waiting> waiting_;  // of all expressions that are begun, the innermost last
  std::vector<Tree> operands_;
};

}  // namespace quarlin::vbs
