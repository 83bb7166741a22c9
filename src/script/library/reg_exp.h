// SPDX-License-Identifier: GPL-3.0-or-later
// VBScript.RegExp: searching and replacing in texts by a pattern.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "script/library/reg_exp_search.h"
#include "script/values/dispatch.h"
#include "script/values/heap_share.h"
#include "script/values/services.h"

namespace quarlin::vbs {

class RegExp final : public TableObject<RegExp> {
 public:
  explicit RegExp(Services& services) : services_(services) {}
  static std::span<const Member<RegExp>> Members();
  std::u16string_view TypeName() const override { return u"IRegExp2"; }

  // A pattern that is wrong shows when it is first used.
  const std::u16string& Pattern() const { return pattern_; }
  void SetPattern(std::u16string pattern);
  bool IgnoreCase() const { return flags_.ignoreCase; }
  void SetIgnoreCase(bool ignore);
  bool MultiLine() const { return flags_.multiLine; }
  void SetMultiLine(bool multiLine);
  bool Global() const { return global_; }
  void SetGlobal(bool global) { global_ = global; }

  bool Test(std::u16string_view text);
  Value Execute(const Value& text);  // of a String; a MatchCollection

  // `replacement` may hold $1 to $99, $& for the match, $` and $' for what stands before and behind it,
  // and $$. Any other $ is itself, also one with the number of a group that is not there.
  Value Replace(std::u16string_view text, std::u16string_view replacement);

 private:
  PatternSearch SearchIn(std::u16string_view text);

  Services& services_;
  std::u16string pattern_;
  CompiledPattern::Flags flags_;
  bool global_ = false;
  HeapShare share_;                                  // of the pattern
  std::shared_ptr<const CompiledPattern> compiled_;  // none: to be compiled
};

}  // namespace quarlin::vbs
