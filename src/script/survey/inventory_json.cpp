// SPDX-License-Identifier: GPL-3.0-or-later
#include <nlohmann/json.hpp>

#include "script/survey/inventory.h"

namespace quarlin::survey {
namespace {

using Json = nlohmann::ordered_json;

constexpr int indent = 2;

Json Row(const ScriptReport& script) {
  Json findings = Json::array();
  for (const Finding& finding : script.findings) {
    findings.push_back({{"topic", WordOf(finding.topic)},
                        {"missing", IsMissing(finding.topic)},
                        {"line", finding.at.line},
                        {"column", finding.at.column},
                        {"name", finding.name},
                        {"text", finding.text}});
  }
  Json programs = Json::array();
  for (const ProgramUse& use : script.programs) {
    programs.push_back({{"name", use.name}, {"here", use.isHere}, {"line", use.line}});
  }
  return {{"file", script.file},
          {"language", script.language},
          {"compiles", script.Compiles()},
          {"findings", findings},
          {"programs", programs}};
}

// Names of files may hold any byte.
std::string TextOf(const Json& json) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string JsonOf(const Inventory& inventory) {
  Json counts{{"scripts", inventory.scripts.size()}};
  for (int i = 0; i < topics; ++i) {
    const auto topic = static_cast<Topic>(i);
    counts[std::string(WordOf(topic))] = inventory.Count(topic);
  }
  Json scripts = Json::array();
  for (const ScriptReport& script : inventory.scripts) scripts.push_back(Row(script));
  return TextOf({{"folder", inventory.folder},
                 {"missing", inventory.AnythingMissing()},
                 {"counts", counts},
                 {"unreadFolders", inventory.unread},
                 {"scripts", scripts}});
}

std::string JsonOf(const ScriptReport& report) {
  return TextOf(Row(report));
}

}  // namespace quarlin::survey
