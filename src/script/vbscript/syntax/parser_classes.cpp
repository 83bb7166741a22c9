// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "script/vbscript/syntax/syntax.h"

namespace quarlin::vbs {

using ast::ProcedureKind;

void Parser::Class(const Access& access) {
  ast::Class declared;
  declared.at = access.at;
  Advance();
  const Token name = TakeName();
  if (!classNames_.insert(name.text).second) Fail(nameRedefined, name);
  declared.name = name.text;
  ClassShape shape;
  meIsKnown_ = true;
  for (SkipSeparators(); !At(TokenKind::End) && !At(TokenKind::EndOfText); SkipSeparators()) {
    Member(declared, shape);
    RequireStatementEnd();
  }
  meIsKnown_ = false;
  CloseEnd(TokenKind::Class, expectedClass, declared.at);
  program_.classes.push_back(std::move(declared));
}

void Parser::Member(ast::Class& declared, ClassShape& shape) {
  const Access access = TakeAccess();
  const bool hasAccess = access.isPublic || access.isPrivate;
  if (At(TokenKind::Sub) || At(TokenKind::Function) || AtProperty()) {
    declared.procedures.push_back(Procedure(access, &shape));
    return;
  }
  if (At(TokenKind::Property) && (!hasAccess || IsName(lexer_.Peek().kind))) {
    Fail(expectedLetSetOrGet, lexer_.Peek());
  }
  if (!hasAccess && !At(TokenKind::Dim)) FailAtCloser(expectedEnd, declared.at);
  Fields(declared, shape, access);
}

void Parser::Fields(ast::Class& declared, ClassShape& shape, const Access& access) {
  if (At(TokenKind::Dim) && !access.isPublic && !access.isPrivate) Advance();
  do {
    const Token name = TakeName();
    NoteField(shape, name);
    declared.fields.push_back({Declarator(name), access.isPrivate});
  } while (Accept(TokenKind::Comma));
}

void Parser::NoteField(ClassShape& shape, const Token& name) const {
  if (!shape.members.try_emplace(name.text).second) Fail(nameRedefined, name);
}

// Get, Let and Set of one name are three routines of one member, and everything else stands alone.
void Parser::Note(ClassShape& shape, const ast::Procedure& procedure, const Token& name) const {
  CheckArguments(procedure, name);
  if (procedure.isDefault) {
    if (shape.hasDefault) Fail(secondDefault, name);
    shape.hasDefault = true;
  }
  const bool isProperty = procedure.kind >= ProcedureKind::PropertyGet;
  const bool takesValue = procedure.kind > ProcedureKind::PropertyGet;
  const std::size_t arguments = procedure.parameters.size() - (takesValue ? 1 : 0);
  const auto [entry, isNew] = shape.members.try_emplace(name.text);
  MemberShape& member = entry->second;
  if (!isNew) {
    const bool isTwice = std::count(member.kinds.begin(), member.kinds.end(), procedure.kind) > 0;
    if (!isProperty || !member.isProperty || isTwice) Fail(nameRedefined, name);
    if (member.arguments != arguments) Fail(argumentsDiffer, name);
  }
  member.isProperty = isProperty;
  member.arguments = arguments;
  member.kinds.push_back(procedure.kind);
}

void Parser::CheckArguments(const ast::Procedure& procedure, const Token& name) const {
  const bool takesValue = procedure.kind > ProcedureKind::PropertyGet;
  if (takesValue && procedure.isDefault) Fail(defaultNotOnGet, name);
  if (takesValue && procedure.parameters.empty()) Fail(propertyWithoutValue, name);
  const FoldedEqual same;
  const bool isLifetime = same(name.text, u"Class_Initialize") || same(name.text, u"Class_Terminate");
  if (isLifetime && procedure.kind == ProcedureKind::Sub && !procedure.parameters.empty()) {
    Fail(lifetimeWithArguments, name);
  }
}

}  // namespace quarlin::vbs
