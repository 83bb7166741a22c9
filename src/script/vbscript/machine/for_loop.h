// SPDX-License-Identifier: GPL-3.0-or-later
// The counting of For ... Next and the walking of For Each.
#pragma once

#include <memory>

#include "script/values/array.h"
#include "script/values/dispatch.h"
#include "script/values/value.h"

namespace quarlin::vbs {

// For: sets the counter to `from`; limit and step (bounds[0] and bounds[1]) become numbers. Tells whether
// there is a first round. When one of the three is no number the bounds are left Empty.
bool StartCounting(Value& counter, const Value& from, Value* bounds);

// Next: one step further; whether there is another round. Error 92 with bounds that are Empty.
bool Count(Value& counter, const Value* bounds);

// What For Each holds while it walks: over an array as it was at the start, or over a collection.
class Walk final : public Dispatch {
 public:
  // Error 451 for what cannot be walked over.
  static Value Over(const Value& collection);

  // Puts the next item into `item`. Behind the last one it says false; the item is then Empty after a
  // collection, and what it was after an array.
  bool Next(Value& item);

  std::u16string_view TypeName() const override { return u"Object"; }
  std::optional<int> Find(std::u16string_view) override { return std::nullopt; }
  MemberKind KindOf(int) override { return MemberKind::Method; }
  Value Invoke(int, Arguments) override { throw ScriptError(noSuchMember); }
  void Put(int, Arguments, const Value&, PutKind) override { throw ScriptError(noSuchMember); }

 private:
  ArrayRef array_;
  std::size_t next_ = 0;
  ObjectRef collection_;
  std::unique_ptr<Enumerator> enumerator_;
};

}  // namespace quarlin::vbs
