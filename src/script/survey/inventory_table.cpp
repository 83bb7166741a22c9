// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "base/text.h"
#include "script/survey/inventory.h"

namespace quarlin::survey {
namespace {

struct TopicLine {
  Topic topic;
  std::string_view shown;
};
constexpr std::array<TopicLine, topics> topicLines{{
    {Topic::Compile, "scripts that do not compile"},
    {Topic::Program, "objects that cannot be made"},
    {Topic::Member, "members that are not there"},
    {Topic::Object, "objects that are not there"},
    {Topic::Procedure, "procedures that are not there"},
    {Topic::Drive, "texts with a drive's letter"},
    {Topic::Hook, "procedures that are nearly named like a hook"},
    {Topic::Unread, "names that are assigned once and never read"},
    {Topic::Locale, "conversions that go by the locale"},
}};

// The lines of what stands in several of them.
std::string LinesOf(const std::vector<int>& lines) {
  constexpr std::size_t mostShown = 8;
  std::vector<int> shown = lines;
  shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
  const std::size_t others = shown.size() > mostShown ? shown.size() - mostShown : 0;
  shown.resize(shown.size() - others);
  const std::string more = others == 0 ? "" : fmt::format(" and {} more", others);
  return fmt::format("{}{}", fmt::join(shown, ", "), more);
}

// What is found again and again is one row.
std::string Rows(const ScriptReport& script) {
  struct Row {
    const Finding* first;
    std::vector<int> lines;
  };
  std::vector<Row> rows;
  std::map<std::pair<Topic, std::string>, std::size_t> known;
  for (const Finding& finding : script.findings) {
    const auto [entry, isNew] = known.try_emplace({finding.topic, finding.text}, rows.size());
    if (isNew) rows.push_back({&finding, {}});
    rows[entry->second].lines.push_back(finding.at.line);
  }
  std::string text;
  for (const Row& row : rows) {
    const std::string_view before = row.first->topic == Topic::Compile ? "does not compile: " : "";
    text += fmt::format("  {:<9} {}{}; line {}\n", WordOf(row.first->topic), before,
                        OnOneLine(row.first->text), LinesOf(row.lines));
  }
  return text.empty() ? "" : fmt::format("{} ({})\n{}\n", script.file, script.language, text);
}

std::string Programs(const Inventory& inventory) {
  struct Uses {
    std::string name;  // as it is written first
    bool isHere = false;
    std::size_t uses = 0;
    std::set<std::string> scripts;
  };
  std::map<std::string, Uses> programs;
  for (const ScriptReport& script : inventory.scripts) {
    for (const ProgramUse& use : script.programs) {
      Uses& uses = programs[ToUpper(use.name)];
      if (uses.uses == 0) uses.name = use.name;
      uses.isHere = use.isHere;
      ++uses.uses;
      uses.scripts.insert(script.file);
    }
  }
  if (programs.empty()) return {};
  std::string text = fmt::format("{:<36} {:>5} {:>8}  here\n", "objects that are made", "uses", "scripts");
  for (const auto& [folded, uses] : programs) {
    text += fmt::format("  {:<34} {:>5} {:>8}  {}\n", uses.name, uses.uses, uses.scripts.size(),
                        uses.isHere ? "yes" : "no");
  }
  return text + "\n";
}

}  // namespace

std::string TableOf(const Inventory& inventory) {
  std::string text;
  for (const ScriptReport& script : inventory.scripts) text += Rows(script);
  text += Programs(inventory);
  for (const std::string& folder : inventory.unread) text += fmt::format("not looked into: {}\n", folder);
  const auto good = std::ranges::count_if(inventory.scripts, &ScriptReport::Compiles);
  text += fmt::format("{:<46} {:>6}\n", "scripts", inventory.scripts.size());
  text += fmt::format("{:<46} {:>6}\n", "scripts that compile", good);
  for (const TopicLine& line : topicLines) {
    text += fmt::format("{:<46} {:>6}\n", line.shown, inventory.Count(line.topic));
  }
  return text;
}

}  // namespace quarlin::survey
