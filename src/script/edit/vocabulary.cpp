// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/vocabulary.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/enum_table.h"
#include "base/text.h"
#include "script/control_object.h"
#include "script/edit/help_lines.h"
#include "script/edit/jscript_words.h"
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

struct KindWords {
  ControlKind kind;
  std::string_view words;
};
constexpr auto kindWords = std::to_array<KindWords>({{ControlKind::TextBox, "a text box"},
                                                     {ControlKind::ComboBox, "a combo box"},
                                                     {ControlKind::CheckBox, "a check box"},
                                                     {ControlKind::OptionButton, "an option button"},
                                                     {ControlKind::CommandButton, "a button"},
                                                     {ControlKind::Label, "a label"},
                                                     {ControlKind::Frame, "a frame"},
                                                     {ControlKind::Shape, "a lamp"},
                                                     {ControlKind::ScrollBar, "a scroll bar"},
                                                     {ControlKind::ListBox, "a list box"},
                                                     {ControlKind::RichTextBox, "the received text"},
                                                     {ControlKind::Timer, "a timer"}});
static_assert(StandInOrder(kindWords, &KindWords::kind, ControlKind::Timer));

// Of two names that are the same to the language, the first stays.
void Sort(std::vector<Suggestion>& found, std::string_view language) {
  const bool isVbscript = language == "VBScript";
  const auto key = [](const Suggestion& one) { return ToUpper(one.name); };
  std::stable_sort(found.begin(), found.end(), [&](const Suggestion& a, const Suggestion& b) {
    const std::string left = key(a), right = key(b);
    return left == right && !isVbscript ? a.name < b.name : left < right;
  });
  const auto same = [isVbscript](const Suggestion& a, const Suggestion& b) {
    return isVbscript ? EqualsIgnoringCase(a.name, b.name) : a.name == b.name;
  };
  found.erase(std::unique(found.begin(), found.end(), same), found.end());
}

void AddJscript(std::vector<Suggestion>& found, std::string_view owner) {
  for (const JscriptWord& word : JscriptWords()) {
    if (word.owner == owner) found.push_back({std::string(word.name), std::string(word.help)});
  }
}

// "Math.abs" and "parseInt", then "indexOf" of whatever it is called of; empty for none of them.
std::string_view JscriptHelp(std::string_view owner, std::string_view name) {
  const auto words = JscriptWords();
  for (const std::string_view where : {owner, std::string_view(owner.empty() ? "" : ".")}) {
    const auto found = std::find_if(words.begin(), words.end(), [&](const JscriptWord& word) {
      return word.owner == where && word.name == name;
    });
    if (found != words.end()) return found->help;
  }
  return {};
}

}  // namespace

Vocabulary::Vocabulary(const ScriptRunner& runner, std::vector<const ControlCollection*> windows)
    : runner_(runner), windows_(std::move(windows)) {}

std::vector<Suggestion> Vocabulary::At(std::string_view language, std::string_view before,
                                       std::string_view script) const {
  const std::string_view chain = WithoutWord(before);
  std::vector<Suggestion> found;
  if (chain.ends_with('.')) {
    found = MembersOf(language, chain.substr(0, chain.size() - 1));
  } else {
    found = OwnNames(language, script);
    const std::string typed(LastWord(before));
    std::erase_if(found, [&](const Suggestion& one) { return one.name == typed; });
    AddGlobals(found, language);
  }
  Sort(found, language);
  return found;
}

std::vector<Suggestion> Vocabulary::MembersOf(std::string_view language, std::string_view chain) const {
  std::vector<Suggestion> found;
  const bool isJscript = language != "VBScript";
  const bool indexed = DropBrackets(chain);
  const std::string name(LastWord(chain));
  const bool standsAlone = !indexed && !WithoutWord(chain).ends_with('.');
  if (isJscript && standsAlone && !name.empty()) AddJscript(found, name);
  if (!isJscript && EqualsIgnoringCase(name, "Err")) {
    for (const std::string_view member : errMembers) {
      found.push_back({std::string(member), std::string(HelpLine("Err", member))});
    }
  }
  if (standsAlone && found.empty()) {
    for (const ScriptRunner::NamedObject& object : runner_.Objects()) {
      if (EqualsIgnoringCase(vbs::Utf8Of(object.name), name)) AddMembers(found, object, false);
    }
  }
  if (!found.empty()) return found;
  if (const Control* control = FindControl(name)) return MembersOfControl(*control, indexed);
  if (isJscript) AddJscript(found, ".");
  return found;
}

std::vector<Suggestion> Vocabulary::MembersOfControl(const Control& control, bool indexed) const {
  std::vector<Suggestion> found;
  if (control.Index() && !indexed) {
    for (const std::string_view member : arrayMembers) {
      found.push_back({std::string(member), HelpOf("Control", member)});
    }
    return found;
  }
  const vbs::ObjectRef object(new ControlObject(const_cast<Control&>(control)));
  for (const std::u16string& member : object->MemberNames()) {
    const std::string text = vbs::Utf8Of(member);
    found.push_back({text, HelpOf("Control", text)});
  }
  return found;
}

void Vocabulary::AddMembers(std::vector<Suggestion>& found, const ScriptRunner::NamedObject& object,
                            bool bareOnly) const {
  const std::string owner = vbs::Utf8Of(object.name);
  for (const std::u16string& member : object.object->MemberNames()) {
    if (bareOnly && !object.object->FindBare(member)) continue;
    const std::string text = vbs::Utf8Of(member);
    found.push_back({text, HelpOf(owner, text)});
  }
}

void Vocabulary::AddGlobals(std::vector<Suggestion>& found, std::string_view language) const {
  for (const ScriptRunner::NamedObject& object : runner_.Objects()) {
    const std::string name = vbs::Utf8Of(object.name);
    found.push_back({name, HelpOf("", name)});
    AddMembers(found, object, true);
  }
  if (language == "VBScript") {
    AddVbscript(found);
  } else {
    AddJscript(found, "");
  }
}

void Vocabulary::AddVbscript(std::vector<Suggestion>& found) const {
  const auto add = [&](const std::string& name, std::string_view key) {
    found.push_back({name, std::string(HelpLine("", key))});
  };
  for (const std::string& keyword : KeywordNames()) add(Spelled(keyword), keyword);
  for (const std::string& function : FunctionNames()) add(function, function);
  for (const std::string_view name : extraNames) add(std::string(name), name);
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
  std::string_view help = ProgramHelpLine(owner, name);
  if (help.empty()) help = ProgramHelpLine("", name);
  if (!help.empty()) return std::string(help);
  const Control* control = FindControl(name);
  if (control == nullptr) return {};
  const std::string told = controlHelp_ ? controlHelp_(*control) : "";
  return fmt::format(
      "{}: {}", name,
      told.empty() ? kindWords[static_cast<std::size_t>(control->Kind())].words : std::string_view(told));
}

std::string Vocabulary::CallHelp(std::string_view language, std::string_view before,
                                 std::string_view script) const {
  int depth = 0;
  for (std::size_t i = before.size(); i-- > 0;) {
    depth += before[i] == ')' ? 1 : before[i] == '(' ? -1 : 0;
    if (depth >= 0) continue;
    const std::string_view chain = before.substr(0, i);
    const std::string name(LastWord(chain));
    if (name.empty()) return {};
    const std::string_view left = WithoutWord(chain);
    const std::string_view owner = left.ends_with('.') ? LastWord(left.substr(0, left.size() - 1)) : "";
    const std::string_view ofLanguage =
        language == "VBScript" ? HelpLine(owner, name) : JscriptHelp(owner, name);
    if (!ofLanguage.empty()) return std::string(ofLanguage);
    if (std::string help = HelpOf(owner, name); !help.empty()) return help;
    for (const Suggestion& own : OwnNames(language, script)) {
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
