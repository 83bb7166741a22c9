// SPDX-License-Identifier: GPL-3.0-or-later
// Any text is rewritten by insertions alone, in its order, on its own lines and never inside a text of the
// script; what has been rewritten is not rewritten again, and columns find their way back. The bytes choose
// pieces of the language, so that most texts hold calls, assignments, patterns and templates.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "script/jscript/call_assignments.h"
#include "script/jscript/source_lexer.h"
#include "script/jscript/source_names.h"

namespace quarlin::jscript {
namespace {

constexpr std::array<std::u16string_view, 48> pieces{
    u"a",    u"b.c",  u"d.Item", u"(",    u")",   u"(1)", u"[",    u"]",       u"{",        u"}",
    u"=",    u"+=",   u"==",     u"=>",   u"++",  u"--",  u"/",    u"/g",      u"*/",       u"/*",
    u"//",   u"\n",   u"\r\n",   u";",    u",",   u".",   u"`",    u"${",      u"'",        u"\"",
    u"\\",   u"if",   u"while",  u"var ", u"for", u"new", u"in",   u"return ", u"function", u"else",
    u"x(y)", u"f(1)", u" ",      u"1.5",  u"?",   u":",   u"let ", u"class "};

void Demand(bool holds) {
  if (!holds) std::abort();
}

void CheckRewriting(std::u16string_view source) {
  const std::vector<Insertion> insertions = CallAssignments(source);
  const std::u16string rewritten = WithInsertions(source, insertions);
  std::size_t added = 0;
  std::size_t last = 0;
  for (const Insertion& insertion : insertions) {
    Demand(insertion.at >= last && insertion.at <= source.size());
    Demand(insertion.text.find_first_of(u"\r\n") == insertion.text.npos);
    last = insertion.at;
    added += insertion.text.size();
  }
  Demand(rewritten.size() == source.size() + added);
  Demand(OriginalColumn(static_cast<int>(rewritten.size()), 0, source.size(), insertions) ==
         static_cast<int>(source.size()));
  Demand(CallAssignments(rewritten).empty());

  Lexer lexer(source);
  std::size_t end = 0;
  auto next = insertions.begin();
  while (const auto token = lexer.Next()) {
    Demand(token->at >= end && !token->text.empty() && token->End() <= source.size());
    for (; next != insertions.end() && next->at < token->End(); ++next)
      Demand(next->at <= token->at);  // between two parts of the text, not within one
    end = token->End();
  }
}

}  // namespace
}  // namespace quarlin::jscript

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quarlin::jscript;
  std::u16string source;
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t choice = data[i];
    if (choice < 2 * pieces.size())
      source += pieces[choice % pieces.size()];
    else
      source += static_cast<char16_t>(choice);
  }
  CheckRewriting(source);
  const Names all = NamesIn(source);
  for (const std::u16string& name : DeclaredNames(source)) Demand(all.contains(name));
  return 0;
}
