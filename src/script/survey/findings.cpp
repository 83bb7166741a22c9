// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/survey/findings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "script/script_file.h"
#include "script/survey/near_name.h"
#include "script/values/conversions.h"

namespace quarlin::survey {
namespace {

using vbs::Dispatch;
using vbs::ObjectRef;
using vbs::SameName;
using vbs::Utf8Of;

struct TopicRow {
  Topic topic;
  std::string_view word;
  bool isMissing;
};
constexpr std::array<TopicRow, topics> topicRows{{
    {Topic::Compile, "compile", true},
    {Topic::Program, "program", true},
    {Topic::Member, "member", true},
    {Topic::Object, "object", true},
    {Topic::Procedure, "procedure", true},
    {Topic::Drive, "drive", true},
    {Topic::Hook, "hook", false},
    {Topic::Unread, "unread", false},
    {Topic::Locale, "locale", false},
}};

const TopicRow& RowOf(Topic topic) {
  return *std::ranges::find(topicRows, topic, &TopicRow::topic);
}

bool IsLetter(char16_t unit) {
  const char16_t upper = vbs::UpperOf(unit);
  return upper >= u'A' && upper <= u'Z';
}

// "C:\" and "C:/", not the end of "http://".
bool NamesDrive(std::u16string_view text) {
  for (std::size_t at = 1; at + 1 < text.size(); ++at) {
    const bool isDrive =
        text[at] == u':' && IsLetter(text[at - 1]) && (text[at + 1] == u'\\' || text[at + 1] == u'/');
    if (isDrive && (at == 1 || !IsLetter(text[at - 2])) && !text.substr(at + 1).starts_with(u"//"))
      return true;
  }
  return false;
}

ObjectRef ObjectIn(Dispatch& object, int member, bool indexed) {
  if (object.KindOf(member) == vbs::MemberKind::Method) return {};
  const vbs::Value value = object.Invoke(member, {});
  if (!value.IsObject() || value.IsNothing()) return {};
  ObjectRef found(value.AsObject());
  if (!indexed) return found;
  const auto items = found->Enumerate();
  const auto first = items == nullptr ? std::nullopt : items->Next();
  return first && first->IsObject() ? ObjectRef(first->AsObject()) : ObjectRef();
}

// The object that a member of one of the program's objects stands for: a control, of an array its first.
// Empty where that is not known.
ObjectRef ObjectBehind(Dispatch& object, int member, bool indexed) {
  try {
    return ObjectIn(object, member, indexed);
  } catch (const vbs::ScriptError&) {
    return {};
  }
}

class Judge {
 public:
  Judge(const Mentions& mentions, const Surroundings& surroundings, ScriptReport& report)
      : mentions_(mentions), surroundings_(surroundings), report_(report) {}

  void All() {
    for (const Named& program : mentions_.programs) LookAtProgram(program);
    for (const Chain& chain : mentions_.chains) LookAt(chain);
    for (const Named& text : mentions_.texts) {
      if (NamesDrive(text.name)) {
        Add(Topic::Drive, text.name, text.at,
            fmt::format("\"{}\" names a drive, and there are none here", Utf8Of(text.name)));
      }
    }
    for (const Procedure& procedure : mentions_.procedures) LookAt(procedure);
    for (const Named& name : mentions_.unread) {
      Add(Topic::Unread, name.name, name.at,
          fmt::format("'{}' is assigned once and never read", Utf8Of(name.name)));
    }
    if (mentions_.choosesLocale) return;
    for (const Named& call : mentions_.conversions) {
      Add(Topic::Locale, call.name, call.at,
          fmt::format("{} goes by the locale, at first en-us", Utf8Of(call.name)));
    }
  }

 private:
  void Add(Topic topic, std::u16string_view name, vbs::Position at, std::string text) {
    report_.findings.push_back({topic, Utf8Of(name), std::move(text), at});
  }

  void LookAtProgram(const Named& program) {
    const bool isHere = static_cast<bool>(surroundings_.make(program.name));
    report_.programs.push_back({Utf8Of(program.name), isHere, program.at.line});
    if (isHere) return;
    Add(Topic::Program, program.name, program.at,
        fmt::format("'{}' cannot be made here", Utf8Of(program.name)));
  }

  void LookAt(const Chain& chain) {
    if (!chain.program.empty()) {
      const ObjectRef made = surroundings_.make(chain.program);
      // What a collection holds is not known from how the collection was made.
      if (made && !chain.root.indexed) Follow(chain, made, 0);
      return;
    }
    for (const Surroundings::Object& object : surroundings_.objects) {
      if (SameName(object.name, chain.root.name)) return Follow(chain, object.object, 0);
    }
    for (const Surroundings::Object& object : surroundings_.objects) {
      const auto member = object.object->Find(chain.root.name);
      if (!member) continue;
      const ObjectRef behind = ObjectBehind(*object.object, *member, chain.root.indexed);
      if (behind) Follow(chain, behind, 0);
      return;
    }
    if (mentions_.runsTexts) return;
    const std::string name = Utf8Of(chain.root.name);
    if (chain.members.empty()) {
      Add(Topic::Procedure, chain.root.name, chain.at, fmt::format("there is no procedure '{}'", name));
    } else {
      Add(Topic::Object, chain.root.name, chain.at, fmt::format("there is no object '{}'", name));
    }
  }

  void Follow(const Chain& chain, ObjectRef object, std::size_t from) {
    for (std::size_t i = from; i < chain.members.size(); ++i) {
      const auto member = object->Find(chain.members[i].name);
      if (!member) return MissesMember(chain, i);
      object = ObjectBehind(*object, *member, chain.members[i].indexed);
      if (!object) return;
    }
  }

  void MissesMember(const Chain& chain, std::size_t index) {
    std::u16string path = chain.root.name;
    for (std::size_t i = 0; i <= index; ++i) path += u"." + chain.members[i].name;
    const std::string whose = chain.program.empty() ? "" : fmt::format(" ({})", Utf8Of(chain.program));
    Add(Topic::Member, path, chain.at, fmt::format("there is no member {}{}", Utf8Of(path), whose));
  }

  // A hook's name is right where the script has that hook, too; and what is called has its own purpose.
  void LookAt(const Procedure& procedure) {
    if (procedure.takesArguments || mentions_.used.contains(FoldedName(procedure.name))) return;
    const auto hook = HookMeantBy(procedure.name);
    if (!hook || Has(*hook)) return;
    Add(Topic::Hook, procedure.name, procedure.at,
        fmt::format("'{}' is never called; was {} meant?", Utf8Of(procedure.name), Utf8Of(*hook)));
  }

  bool Has(std::u16string_view hook) const {
    return std::ranges::any_of(mentions_.procedures,
                               [&](const Procedure& other) { return SameName(other.name, hook); });
  }

  const Mentions& mentions_;
  const Surroundings& surroundings_;
  ScriptReport& report_;
};

Mentions MentionsIn(const std::filesystem::path& file, std::string_view language, const IsKnown& isHosts) {
  const std::u16string source = ReadScript(file).text;
  return language == "VBScript" ? MentionsOfVbscript(source, isHosts) : MentionsOfJscript(source, isHosts);
}

bool IsHosts(const Surroundings& surroundings, std::u16string_view name) {
  return std::ranges::any_of(surroundings.objects, [&](const Surroundings::Object& object) {
    return SameName(object.name, name) || object.object->Find(name).has_value();
  });
}

}  // namespace

std::string_view WordOf(Topic topic) {
  return RowOf(topic).word;
}

bool IsMissing(Topic topic) {
  return RowOf(topic).isMissing;
}

bool ScriptReport::Compiles() const {
  return std::ranges::none_of(findings,
                              [](const Finding& finding) { return finding.topic == Topic::Compile; });
}

ScriptReport ReportOn(const std::filesystem::path& file, const std::string& shownName,
                      const Surroundings& surroundings) {
  ScriptReport report{shownName, std::string(LanguageOf(file.filename().string())), {}, {}};
  if (const auto error = surroundings.compile(file)) {
    report.findings.push_back(
        {Topic::Compile, std::to_string(error->number), Utf8Of(error->FullDescription()), error->position});
    return report;
  }
  const Mentions mentions = MentionsIn(file, report.language,
                                       [&](std::u16string_view name) { return IsHosts(surroundings, name); });
  Judge(mentions, surroundings, report).All();
  std::ranges::stable_sort(report.findings, {}, [](const Finding& finding) { return finding.at.line; });
  return report;
}

}  // namespace quarlin::survey
