// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/vocabulary.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/text.h"
#include "script/control_object.h"
#include "script/edit/help_lines.h"
#include "script/edit/language_names.h"
#include "script/values/conversions.h"
#include "script/vbscript/functions/library.h"

namespace quarlin {
namespace {

constexpr std::array<std::string_view, 7> errMembers{"Clear",  "Description", "HelpContext", "HelpFile",
                                                     "Number", "Raise",       "Source"};
constexpr std::array<std::string_view, 4> arrayMembers{"Count", "Item", "LBound", "UBound"};
constexpr std::array<std::string_view, 5> extraNames{"Err", "Eval", "Execute", "ExecuteGlobal", "GetRef"};

bool IsNameCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

// Without the word at its end, which is being typed.
std::string_view WithoutWord(std::string_view text) {
  while (!text.empty() && IsNameCharacter(text.back())) text.remove_suffix(1);
  return text;
}

// Without a pair of round brackets at its end and what stands in them; says whether there was one.
bool DropBrackets(std::string_view& text) {
  if (!text.ends_with(')')) return false;
  int depth = 0;
  for (std::size_t i = text.size(); i-- > 0;) {
    depth += text[i] == ')' ? 1 : text[i] == '(' ? -1 : 0;
    if (depth == 0) {
      text = text.substr(0, i);
      return true;
    }
  }
  return false;
}

std::string_view LastWord(std::string_view text) {
  return text.substr(WithoutWord(text).size());
}

// "ElseIf" as its help line writes it, where that begins with the word.
std::string Spelled(const std::string& keyword) {
  const std::string_view help = HelpLine("", keyword);
  for (std::size_t at = 0; at + keyword.size() <= help.size(); ++at) {
    const std::string_view part = help.substr(at, keyword.size());
    if (EqualsIgnoringCase(part, keyword)) return std::string(part);
  }
  return keyword;
}

std::string_view KindWords(ControlKind kind) {
  constexpr std::array<std::string_view, 12> words{
      "a text box", "a combo box", "a check box",  "an option button", "a button",          "a label",
      "a frame",    "a lamp",      "a scroll bar", "a list box",       "the received text", "a timer"};
  return words[static_cast<std::size_t>(kind)];
}

void Sort(std::vector<Suggestion>& found) {
  const auto key = [](const Suggestion& one) { return ToUpper(one.name); };
  std::stable_sort(found.begin(), found.end(),
                   [&](const Suggestion& a, const Suggestion& b) { return key(a) < key(b); });
  const auto same = [](const Suggestion& a, const Suggestion& b) {
    return EqualsIgnoringCase(a.name, b.name);
  };
  found.erase(std::unique(found.begin(), found.end(), same), found.end());
}

}  // namespace

Vocabulary::Vocabulary(const ScriptRunner& runner, std::vector<const ControlCollection*> windows)
    : runner_(runner), windows_(std::move(windows)) {}

std::vector<Suggestion> Vocabulary::At(std::string_view language, std::string_view before,
                                       std::string_view script) const {
  const std::string_view chain = WithoutWord(before);
  std::vector<Suggestion> found;
  if (chain.ends_with('.')) {
    found = MembersOf(chain.substr(0, chain.size() - 1));
  } else {
    found = OwnNames(language, script);
    const std::string typed(LastWord(before));
    std::erase_if(found, [&](const Suggestion& one) { return one.name == typed; });
    AddGlobals(found, language);
  }
  Sort(found);
  return found;
}

std::vector<Suggestion> Vocabulary::MembersOf(std::string_view chain) const {
  std::vector<Suggestion> found;
  const bool indexed = DropBrackets(chain);
  const std::string name(LastWord(chain));
  if (EqualsIgnoringCase(name, "Err")) {
    for (const std::string_view member : errMembers)
      found.push_back({std::string(member), HelpOf("Err", member)});
    return found;
  }
  const bool isMember = WithoutWord(chain).ends_with('.');
  if (!indexed && !isMember) AddObject(found, name);
  const Control* control = found.empty() ? FindControl(name) : nullptr;
  if (control == nullptr) return found;
  if (control->Index() && !indexed) {
    for (const std::string_view member : arrayMembers) {
      found.push_back({std::string(member), HelpOf("Control", member)});
    }
    return found;
  }
  const vbs::ObjectRef object(new ControlObject(const_cast<Control&>(*control)));
  for (const std::u16string& member : object->MemberNames()) {
    const std::string text = vbs::Utf8Of(member);
    found.push_back({text, HelpOf("Control", text)});
  }
  return found;
}

void Vocabulary::AddObject(std::vector<Suggestion>& found, std::string_view name) const {
  for (const ScriptRunner::NamedObject& named : runner_.Objects()) {
    const std::string owner = vbs::Utf8Of(named.name);
    if (!EqualsIgnoringCase(owner, name)) continue;
    for (const std::u16string& member : named.object->MemberNames()) {
      const std::string text = vbs::Utf8Of(member);
      found.push_back({text, HelpOf(owner, text)});
    }
  }
}

void Vocabulary::AddGlobals(std::vector<Suggestion>& found, std::string_view language) const {
  for (const ScriptRunner::NamedObject& named : runner_.Objects()) {
    const std::string owner = vbs::Utf8Of(named.name);
    found.push_back({owner, HelpOf("", owner)});
    AddObject(found, owner);
  }
  if (language != "VBScript") return;
  for (const std::string& keyword : KeywordNames()) found.push_back({Spelled(keyword), HelpOf("", keyword)});
  for (const std::string& function : FunctionNames()) found.push_back({function, HelpOf("", function)});
  for (const std::string_view name : extraNames) found.push_back({std::string(name), HelpOf("", name)});
  for (const vbs::NamedConstant& constant : vbs::LibraryConstants()) {
    const std::string name = vbs::Utf8Of(constant.name);
    const bool isText = constant.value.IsString();
    found.push_back({name, isText ? fmt::format("{}: a text", name)
                                  : fmt::format("{} is {}", name, vbs::Utf8Of(vbs::ToText(constant.value)))});
  }
}

const Control* Vocabulary::FindControl(std::string_view name) const {
  for (const ControlCollection* window : windows_) {
    for (const Control* control : window->All()) {
      if (EqualsIgnoringCase(control->Name(), name)) return control;
    }
  }
  return nullptr;
}

std::string Vocabulary::HelpOf(std::string_view owner, std::string_view name) const {
  std::string_view help = HelpLine(owner, name);
  if (help.empty()) help = HelpLine("", name);
  if (!help.empty()) return std::string(help);
  const Control* control = FindControl(name);
  if (control == nullptr) return {};
  const std::string told = controlHelp_ ? controlHelp_(*control) : "";
  return fmt::format("{}: {}", name, told.empty() ? KindWords(control->Kind()) : std::string_view(told));
}

std::string Vocabulary::CallHelp(std::string_view before, std::string_view script) const {
  int depth = 0;
  for (std::size_t i = before.size(); i-- > 0;) {
    depth += before[i] == ')' ? 1 : before[i] == '(' ? -1 : 0;
    if (depth >= 0) continue;
    const std::string_view chain = before.substr(0, i);
    const std::string name(LastWord(chain));
    if (name.empty()) return {};
    const std::string_view left = WithoutWord(chain);
    const std::string_view owner = left.ends_with('.') ? LastWord(left.substr(0, left.size() - 1)) : "";
    if (std::string help = HelpOf(owner, name); !help.empty()) return help;
    for (const Suggestion& own : OwnNames("VBScript", script)) {
      if (EqualsIgnoringCase(own.name, name)) return own.help;
    }
    return {};
  }
  return {};
}

std::vector<std::string> Vocabulary::QualifiedNames() const {
  std::vector<std::string> names;
  for (const ScriptRunner::NamedObject& named : runner_.Objects()) {
    const std::string owner = vbs::Utf8Of(named.name);
    names.push_back(owner);
    for (const std::u16string& member : named.object->MemberNames()) {
      names.push_back(owner + "." + vbs::Utf8Of(member));
    }
  }
  return names;
}

}  // namespace quarlin
