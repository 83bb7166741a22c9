// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/reg_exp.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "script/library/reg_exp_matches.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

// A piece of a replacement: text as it stands, or a part of what was found.
struct Piece {
  enum class Source { Given, Group, Before, Behind };
  Source source = Source::Given;
  std::u16string_view given = {};
  std::uint32_t group = 0;
};

// The number of a group behind a "$": two digits where there are so many groups, else one. 0 for none.
// Cuts what it used off `rest`.
std::uint32_t TakeGroupNumber(std::u16string_view& rest, std::uint32_t groups) {
  std::uint32_t group = 0;
  std::size_t used = 0;
  std::uint32_t number = 0;
  for (std::size_t at = 0; at < 2 && at < rest.size() && rest[at] >= u'0' && rest[at] <= u'9'; ++at) {
    number = number * 10 + (rest[at] - u'0');
    if (number == 0 || number > groups) continue;
    group = number;
    used = at + 1;
  }
  rest.remove_prefix(used);
  return group;
}

// Behind a "$"; cuts what it used off `rest`.
Piece TakeReference(std::u16string_view& rest, std::uint32_t groups) {
  const char16_t mark = rest.empty() ? u'\0' : rest.front();
  const std::uint32_t group = TakeGroupNumber(rest, groups);
  if (group != 0) return {Piece::Source::Group, {}, group};
  if (mark != u'&' && mark != u'`' && mark != u'\'' && mark != u'$') return {Piece::Source::Given, u"$"};
  rest.remove_prefix(1);
  if (mark == u'&') return {Piece::Source::Group};
  if (mark == u'`') return {Piece::Source::Before};
  if (mark == u'\'') return {Piece::Source::Behind};
  return {Piece::Source::Given, u"$"};
}

std::vector<Piece> PiecesOf(std::u16string_view replacement, std::uint32_t groups) {
  std::vector<Piece> pieces;
  while (!replacement.empty()) {
    const std::size_t plain = std::min(replacement.find(u'$'), replacement.size());
    if (plain > 0) pieces.push_back({Piece::Source::Given, replacement.substr(0, plain)});
    replacement.remove_prefix(plain);
    if (replacement.empty()) break;
    replacement.remove_prefix(1);
    pieces.push_back(TakeReference(replacement, groups));
  }
  return pieces;
}

std::u16string_view TextOf(const Piece& piece, const PatternSearch& found, std::u16string_view text) {
  switch (piece.source) {
    case Piece::Source::Group:
      return found.Text(piece.group);
    case Piece::Source::Before:
      return text.substr(0, found.Begin());
    case Piece::Source::Behind:
      return text.substr(found.End());
    default:
      return piece.given;
  }
}

Value TestMember(RegExp& self, Arguments arguments) {
  std::u16string scratch;
  return Value::Bool(self.Test(ToTextView(arguments[0], scratch)));
}

Value ExecuteMember(RegExp& self, Arguments arguments) {
  return self.Execute(ToTextValue(arguments[0]));
}

Value ReplaceMember(RegExp& self, Arguments arguments) {
  const Value text = ToTextValue(arguments[0]);
  return self.Replace(text.AsText(), TextArgument(arguments, 1));
}

template <bool (RegExp::*Get)() const>
Value FlagMember(RegExp& self, Arguments) {
  return Value::Bool((self.*Get)());
}

template <void (RegExp::*Set)(bool)>
void PutFlag(RegExp& self, Arguments, const Value& value) {
  (self.*Set)(ToBool(value));
}

constexpr auto members = std::to_array<Member<RegExp>>({
    {u"Test", MemberKind::Method, 1, 1, TestMember},
    {u"Execute", MemberKind::Method, 1, 1, ExecuteMember},
    {u"Replace", MemberKind::Method, 2, 2, ReplaceMember},
    {u"Pattern", MemberKind::Property, 0, 0,
     [](RegExp& self, Arguments) { return Value::String(self.Pattern()); },
     [](RegExp& self, Arguments, const Value& value) { self.SetPattern(ToText(value)); }},
    {u"IgnoreCase", MemberKind::Property, 0, 0, FlagMember<&RegExp::IgnoreCase>,
     PutFlag<&RegExp::SetIgnoreCase>},
    {u"Global", MemberKind::Property, 0, 0, FlagMember<&RegExp::Global>, PutFlag<&RegExp::SetGlobal>},
    {u"MultiLine", MemberKind::Property, 0, 0, FlagMember<&RegExp::MultiLine>,
     PutFlag<&RegExp::SetMultiLine>},
});

}  // namespace

std::span<const Member<RegExp>> RegExp::Members() {
  return members;
}

void RegExp::SetPattern(std::u16string pattern) {
  if (pattern == pattern_) return;
  share_.Resize(pattern.size() * sizeof(char16_t));
  pattern_ = std::move(pattern);
  compiled_ = nullptr;
}

void RegExp::SetIgnoreCase(bool ignore) {
  if (ignore != flags_.ignoreCase) compiled_ = nullptr;
  flags_.ignoreCase = ignore;
}

void RegExp::SetMultiLine(bool multiLine) {
  if (multiLine != flags_.multiLine) compiled_ = nullptr;
  flags_.multiLine = multiLine;
}

// The search shares the compiled pattern: while it asks to go on, the pattern may be changed.
PatternSearch RegExp::SearchIn(std::u16string_view text) {
  if (compiled_ == nullptr) compiled_ = std::make_shared<const CompiledPattern>(pattern_, flags_);
  return PatternSearch(compiled_, text, services_);
}

bool RegExp::Test(std::u16string_view text) {
  return SearchIn(text).FindNext();
}

Value RegExp::Execute(const Value& text) {
  PatternSearch search = SearchIn(text.AsText());
  const Ref<MatchList> list(new MatchList(text, search.Groups()));
  while (search.FindNext()) {
    list->Add(search);
    if (!global_) break;
  }
  return NewObject<MatchCollection>(list);
}

Value RegExp::Replace(std::u16string_view text, std::u16string_view replacement) {
  PatternSearch search = SearchIn(text);
  const std::vector<Piece> pieces = PiecesOf(replacement, search.Groups());
  Value result = Value::Adopt(TextBody::Make({}, text.size()));
  std::size_t copied = 0;
  while (search.FindNext()) {
    result.AppendText(text.substr(copied, search.Begin() - copied));
    for (const Piece& piece : pieces) result.AppendText(TextOf(piece, search, text));
    copied = search.End();
    if (!global_) break;
  }
  result.AppendText(text.substr(copied));
  return result;
}

}  // namespace quarlin::vbs
