// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/end_verdict.h"

#include <fmt/format.h>

#include <string_view>

namespace quarlin {
namespace {

void Add(std::string& reasons, std::string_view reason) {
  if (reason.empty()) return;
  if (!reasons.empty()) reasons += "; ";
  reasons += reason;
}

std::string Counted(std::uint64_t count, std::string_view one, std::string_view many) {
  return count == 0 ? "" : fmt::format("{} {}", count, count == 1 ? one : many);
}

std::uint64_t AtLeastNone(std::int32_t count) {
  return count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

}  // namespace

EndVerdict Judge(const EndFacts& facts) {
  if (facts.finished) {
    return {*facts.finished,
            *facts.finished == 0 ? "" : fmt::format("the script finished with status {}", *facts.finished)};
  }
  if (!facts.setUpFailure.empty()) return {2, facts.setUpFailure};
  if (!facts.linkFailure.empty()) return {2, "the link could not be opened: " + facts.linkFailure};
  std::string reasons;
  Add(reasons, facts.cutShort);
  Add(reasons, Counted(AtLeastNone(facts.errors), "error", "errors"));
  Add(reasons, Counted(AtLeastNone(facts.notSent), "string not sent", "strings not sent"));
  Add(reasons, Counted(facts.scriptErrors, "script error", "script errors"));
  Add(reasons, facts.logLosses);
  if (facts.runAsked && !facts.exchanged) Add(reasons, "nothing was exchanged");
  return {reasons.empty() ? 0 : 1, reasons};
}

}  // namespace quarlin
