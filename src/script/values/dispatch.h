// SPDX-License-Identifier: GPL-3.0-or-later
// The one way in which scripts of either language reach an object: get, set and call by name.
//
// An object numbers its members. Number 0 is the default member; names are looked up without regard to
// case. Arguments are values; an argument that was left out is Value::Missing().
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/value.h"

namespace quarlin::vbs {

using Arguments = std::span<const Value>;

enum class MemberKind {
  Property,  // read (and perhaps written) without arguments
  Indexed,   // a property that takes arguments, or that has an item to pick: TextIO(3), dictionary("key")
  Method
};

// Let copies the value, Set the reference to an object.
enum class PutKind { Let, Set };

// Steps through a collection, as For Each does.
class Enumerator {
 public:
  virtual ~Enumerator() = default;
  // The next item, or nothing behind the last one.
  virtual std::optional<Value> Next() = 0;
};

class Holder;
class Instance;

class Dispatch : public Counted {
 public:
  static constexpr int defaultMember = 0;

  // What TypeName tells.
  virtual std::u16string_view TypeName() const = 0;

  // The number of the member, or nothing.
  virtual std::optional<int> Find(std::u16string_view name) = 0;

  // Of a member that can be used without the object's name, where that is so for the object at all.
  virtual std::optional<int> FindBare(std::u16string_view name) { return Find(name); }

  // Objects that return the same Shape number their members alike, so that a caller may remember the
  // number. Null: never remember. Must stay unique as long as the program runs.
  virtual const void* Shape() const { return nullptr; }

  // Of a number that Find returned. The default member, when there is none, is a Method.
  virtual MemberKind KindOf(int member) = 0;

  // Reads a property or calls a method; the machine does not tell them apart. Errors: 438 for a default
  // member that is not there, 450 for a wrong count of arguments.
  virtual Value Invoke(int member, Arguments arguments) = 0;

  // Writes a property. Error 438 where there is none to write.
  virtual void Put(int member, Arguments indices, const Value& value, PutKind kind) = 0;

  // For collections; null (the default) where For Each gives error 451.
  virtual std::unique_ptr<Enumerator> Enumerate() { return nullptr; }

  // Whether the default member exists, so that using the object as a value makes sense.
  virtual bool HasDefault() { return false; }

  // The object as one of a script's own classes, whose procedures the machine runs itself; null for others.
  virtual Instance* AsInstance() { return nullptr; }

  // The object as one that holds values, see holders.h; null for others.
  virtual Holder* AsHolder() { return nullptr; }

  // The names of the members, for listings; the default member stands under its own name.
  virtual std::vector<std::u16string> MemberNames() { return {}; }
};

// For callers without a remembered number. 438 with the name as culprit where there is no such member.
Value InvokeByName(Dispatch& object, std::u16string_view name, Arguments arguments = {});

// Indexes what a variable or a property holds: an element of an array, or the default member of an object.
// Error 13, with the name as culprit, for anything else.
Value IndexValue(const Value& target, Arguments indices, std::u16string_view name = {});

// One row for each member of a class whose members are known when the program is built.
template <class Self>
struct Member {
  std::u16string_view name;
  MemberKind kind;
  int fewest;  // arguments
  int most;
  Value (*get)(Self& self, Arguments arguments);                             // null: cannot be read, 438
  void (*put)(Self& self, Arguments indices, const Value& value) = nullptr;  // null: cannot be written, 438
  bool isDefault = false;
};

// Letters of both cases and accents as Unicode has them (Latin, Greek and Cyrillic).
bool SameName(std::u16string_view left, std::u16string_view right);

// An object whose members stand in `Self::Members()`, a static table of Member<Self>; the numbers are the
// rows from 1 on.
template <class Self, class Base = Dispatch>
class TableObject : public Base {
 public:
  using Base::Base;
  using Base::defaultMember;
  std::optional<int> Find(std::u16string_view name) override {
    int number = 1;
    for (const Member<Self>& member : Self::Members()) {
      if (SameName(member.name, name)) return number;
      ++number;
    }
    return std::nullopt;
  }
  const void* Shape() const override { return std::data(Self::Members()); }
  MemberKind KindOf(int member) override {
    const Member<Self>* row = Row(member);
    return row == nullptr ? MemberKind::Method : row->kind;
  }
  Value Invoke(int member, Arguments arguments) override {
    const Member<Self>* row = Row(member);
    if (row == nullptr || row->get == nullptr) throw ScriptError(noSuchMember);
    const int count = static_cast<int>(arguments.size());
    if (count > 0 && row->most == 0 && row->kind == MemberKind::Property) {
      return IndexValue(row->get(static_cast<Self&>(*this), {}), arguments, row->name);
    }
    if (count < row->fewest || count > row->most) throw ScriptError(wrongArgumentCount);
    return row->get(static_cast<Self&>(*this), arguments);
  }
  void Put(int member, Arguments indices, const Value& value, PutKind) override {
    const Member<Self>* row = Row(member);
    if (row == nullptr || row->put == nullptr) throw ScriptError(noSuchMember);
    row->put(static_cast<Self&>(*this), indices, value);
  }
  bool HasDefault() override { return Row(defaultMember) != nullptr; }
  std::vector<std::u16string> MemberNames() override {
    std::vector<std::u16string> names;
    for (const Member<Self>& member : Self::Members()) names.emplace_back(member.name);
    return names;
  }

 private:
  static const Member<Self>* Row(int member) {
    if (member != defaultMember) return std::data(Self::Members()) + (member - 1);
    static const Member<Self>* const found = DefaultRow();
    return found;
  }
  static const Member<Self>* DefaultRow() {
    for (const Member<Self>& row : Self::Members()) {
      if (row.isDefault) return &row;
    }
    return nullptr;
  }
};

}  // namespace quarlin::vbs
