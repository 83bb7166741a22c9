// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/report_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr std::string_view dashes = "---------------------------------------------------\r\n";

std::string Section(std::string_view lines) {
  return fmt::format("{}{}", dashes, lines);
}

std::string CounterSections(const RunResult& result) {
  std::string text =
      Section(fmt::format("Tx :{}\r\nRx :{}\r\n", result.Counter("lblsend"), result.Counter("Label7")));
  text += Section(fmt::format("Elapsed Time :{}\r\n", result.Counter("lbltempo")));
  text += Section(fmt::format("Error     : {}\r\nError Str : {}\r\nError Len : {}\r\n",
                              result.Counter("lblerror"), result.Counter("lblErrStr"),
                              result.Counter("lblErrorLen")));
  return text;
}

std::string ErrorList(const std::vector<ListEntry>& errors) {
  std::string text = Section(fmt::format("Last {} Errors:\r\n", errors.size()));
  text += dashes;
  for (const ListEntry& entry : errors) text += entry.text + "\r\n";
  if (!errors.empty()) text += "\r\n";  // the list is read one past its end
  return text;
}

std::string FurtherCounts(const RunResult& result) {
  std::string text;
  const std::string_view notSent = result.Counter("lblNotSent");
  if (IntegerOf(notSent) > 0) text += fmt::format("Not sent : {}\r\n", notSent);
  if (const auto count = result.facts.scriptErrors.count; count > 0) {
    text += fmt::format("Script errors : {}\r\n", count);
  }
  const LineErrors line = result.facts.lineErrors.value_or(LineErrors());
  if (line.Sum() > 0) {
    text += fmt::format("Line errors : {} (parity {}, framing {}, overrun {})\r\n", line.Sum(), line.parity,
                        line.framing, line.overrun);
  }
  for (const std::string& loss : result.facts.logLosses) text += loss + "\r\n";
  return text;
}

std::string ErrorDetails(const std::vector<ListEntry>& errors) {
  std::string text;
  for (const ListEntry& entry : errors) {
    if (!entry.toolTip.empty()) text += fmt::format("{}  {}\r\n", entry.text, entry.toolTip);
  }
  return text;
}

}  // namespace

std::string ReportText(const RunResult& result) {
  std::string text = CounterSections(result);
  if (!result.facts.faultsOnPurpose.empty()) {
    text += Section(fmt::format("Faults on purpose : {}\r\n", result.facts.faultsOnPurpose));
  }
  text += ErrorList(result.errors);
  const std::string counts = FurtherCounts(result);
  if (!counts.empty()) text += Section(counts);
  const std::string details = ErrorDetails(result.errors);
  if (!details.empty()) text += Section("Errors in detail:\r\n") + Section(details);
  return text;
}

}  // namespace quarlin
