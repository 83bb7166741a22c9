// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/junit_xml.h"

#include <fmt/format.h>

#include <pugixml.hpp>
#include <sstream>

#include "base/numbers.h"
#include "base/text.h"
#include "results/report_text.h"
#include "results/wire_text.h"

namespace quarlin {
namespace {

// What one case looked for.
struct Case {
  std::string_view name;
  bool on = true;  // the check was switched on
  std::uint64_t count = 0;
  std::string details;  // of the first ones, a line each
};

struct Totals {
  int tests = 0;
  int failures = 0;
  int errors = 0;
  int skipped = 0;
};

std::string Seconds(Duration time) {
  return fmt::format("{:.6f}", std::chrono::duration<double>(time).count());
}

void Set(pugi::xml_node node, const char* attribute, std::string_view bytes) {
  node.append_attribute(attribute) = VisibleText(bytes).c_str();
}

void SetText(pugi::xml_node node, std::string_view bytes) {
  node.text() = VisibleLines(bytes).c_str();
}

// Whether the settings ask for the check.
bool IsOn(const RunResult& result, Verdict verdict) {
  const auto number = [&result](std::string_view setting) { return IntegerOf(result.SettingOf(setting)); };
  switch (verdict) {
    case Verdict::TimeOut:
      return number("Check1") != 0 && number("txtAnswerTime") > 0;
    case Verdict::NotEqual:
      return number("chkSame") != 0;
    case Verdict::WrongLength:
      return number("txtlenrx") > 0;
    case Verdict::WrongChecksum:
      return result.SettingOf("cboCheckSum") != "None" && !result.SettingOf("cboCheckSum").empty();
    default:
      return true;
  }
}

std::string LineOf(const DatedExchange& failure, const std::string& detail) {
  const ExchangeRecord& exchange = failure.exchange;
  std::string line = fmt::format("{} No. {}", IsoText(failure.began), exchange.number);
  if (!detail.empty()) line += ": " + WithoutControls(detail);
  if (exchange.hasRequest || exchange.request.size > 0)
    line += "; sent " + WithoutControls(exchange.request.bytes);
  if (exchange.completed) line += "; received " + WithoutControls(exchange.answer.bytes);
  return line + "\n";
}

Case VerdictCase(const RunResult& result, Verdict verdict) {
  Case one{VerdictName(verdict), IsOn(result, verdict), result.sums.Of(verdict), ""};
  for (const DatedExchange* failure : result.Failures()) {
    for (const Finding& finding : failure->exchange.findings) {
      if (finding.verdict == verdict) one.details += LineOf(*failure, finding.detail);
    }
  }
  return one;
}

std::vector<Case> Cases(const RunResult& result) {
  std::vector<Case> cases;
  for (const Verdict verdict : {Verdict::TimeOut, Verdict::NotEqual, Verdict::WrongLength,
                                Verdict::WrongChecksum, Verdict::Err, Verdict::NotSent}) {
    cases.push_back(VerdictCase(result, verdict));
  }
  const RunFacts::ScriptErrors& script = result.facts.scriptErrors;
  cases.push_back({"script errors", result.facts.scripting, script.count, ""});
  for (const std::string& text : script.first) cases.back().details += text + "\n";
  const LineErrors line = result.facts.lineErrors.value_or(LineErrors());
  cases.push_back(
      {"line errors", result.facts.lineErrors.has_value(), line.Sum(),
       fmt::format("parity {}, framing {}, overrun {}", line.parity, line.framing, line.overrun)});
  return cases;
}

void AddCase(pugi::xml_node suite, const Case& one, const RunFacts& facts, Totals& totals) {
  pugi::xml_node node = suite.append_child("testcase");
  Set(node, "classname", "Quarlin");
  Set(node, "name", one.name);
  Set(node, "time", "0.000000");  // all were looked for all the time
  ++totals.tests;
  if (one.count > 0) {
    ++totals.failures;
    pugi::xml_node failure = node.append_child("failure");
    Set(failure, "message", fmt::format("{}: {}", one.name, one.count));
    Set(failure, "type", one.name);
    SetText(failure, one.details);
  } else if (!one.on) {
    ++totals.skipped;
    node.append_child("skipped");
  } else if (facts.how == HowEnded::SetUpFailed) {
    ++totals.errors;
    pugi::xml_node error = node.append_child("error");
    Set(error, "message", facts.reason);
    Set(error, "type", EndName(facts.how));
  }
}

void SetTotals(pugi::xml_node node, const Totals& totals, const RunResult& result) {
  node.append_attribute("tests") = totals.tests;
  node.append_attribute("failures") = totals.failures;
  node.append_attribute("errors") = totals.errors;
  node.append_attribute("skipped") = totals.skipped;
  Set(node, "time", Seconds(result.took));
}

void AddProperties(pugi::xml_node suite, const RunResult& result) {
  pugi::xml_node properties = suite.append_child("properties");
  const auto add = [&properties](std::string_view name, std::string_view value) {
    pugi::xml_node property = properties.append_child("property");
    Set(property, "name", name);
    Set(property, "value", value);
  };
  const RunFacts& facts = result.facts;
  add("version", facts.version);
  add("link", facts.link);
  add("begin", IsoText(result.began, result.utcOffset));
  if (result.ended) add("end", IsoText(*result.ended, result.utcOffset));
  add("ended", EndName(facts.how));
  if (!facts.reason.empty()) add("reason", facts.reason);
  add("exit status", fmt::format("{}", facts.exitStatus));
  for (const Setting& setting : result.settings) add(setting.name, setting.value);
}

std::string LinesJoined(std::string_view text) {
  std::string joined;
  for (const std::string& line : SplitLines(text)) joined += line + "\n";
  return joined;
}

// What a reader of the log wants to know first: how it ended, and why.
std::string EndLine(const RunFacts& facts) {
  return facts.reason.empty() ? "" : fmt::format("{}: {}\n", EndName(facts.how), facts.reason);
}

void AddSuite(pugi::xml_node suites, const RunResult& result) {
  pugi::xml_node suite = suites.append_child("testsuite");
  Totals totals;
  AddProperties(suite, result);
  for (const Case& one : Cases(result)) AddCase(suite, one, result.facts, totals);
  for (pugi::xml_node node : {suites, suite}) {
    Set(node, "name", "Quarlin");
    SetTotals(node, totals, result);
  }
  Set(suite, "timestamp", IsoText(result.began));
  Set(suite, "hostname", result.facts.host);
  SetText(suite.append_child("system-out"), LinesJoined(ReportText(result)));
  SetText(suite.append_child("system-err"), EndLine(result.facts));
}

}  // namespace

std::string JunitXml(const RunResult& result) {
  pugi::xml_document document;
  document.append_child(pugi::node_declaration).append_attribute("version") = "1.0";
  document.first_child().append_attribute("encoding") = "UTF-8";
  AddSuite(document.append_child("testsuites"), result);
  std::ostringstream text;
  document.save(text, "  ");
  return text.str();
}

}  // namespace quarlin
