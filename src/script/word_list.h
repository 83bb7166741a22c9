// SPDX-License-Identifier: GPL-3.0-or-later
// The arguments of a script: all of them, and apart from each other those of the form "/name:value" and the
// rest.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "script/values/dispatch.h"

namespace quarlin {

class WordList : public vbs::TableObject<WordList> {
 public:
  explicit WordList(std::vector<std::u16string> words) : words_(std::move(words)) {}

  static std::span<const vbs::Member<WordList>> Members();
  std::u16string_view TypeName() const override { return u"Arguments"; }
  std::unique_ptr<vbs::Enumerator> Enumerate() override;

 private:
  static vbs::Value Item(WordList& self, vbs::Arguments arguments);
  static vbs::Value Count(WordList& self, vbs::Arguments arguments);
  static vbs::Value Unnamed(WordList& self, vbs::Arguments arguments);
  static vbs::Value Named(WordList& self, vbs::Arguments arguments);

  std::vector<std::u16string> words_;
};

// "/rate:9600", "/log+" and "/log-" for True and False, "/log" for Empty; the first of two of one name.
class NamedWords : public vbs::TableObject<NamedWords> {
 public:
  explicit NamedWords(const std::vector<std::u16string>& words);

  static std::span<const vbs::Member<NamedWords>> Members();
  std::u16string_view TypeName() const override { return u"NamedArguments"; }
  std::unique_ptr<vbs::Enumerator> Enumerate() override;  // the names

 private:
  static vbs::Value Item(NamedWords& self, vbs::Arguments arguments);
  static vbs::Value Count(NamedWords& self, vbs::Arguments arguments);
  static vbs::Value Exists(NamedWords& self, vbs::Arguments arguments);
  const vbs::Value* ValueOf(const vbs::Value& name) const;  // null where there is none

  std::vector<std::pair<std::u16string, vbs::Value>> named_;
};

}  // namespace quarlin
