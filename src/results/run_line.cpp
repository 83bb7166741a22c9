// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/run_line.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

std::uint64_t Errors(const RunSums& sums) {
  std::uint64_t errors = 0;
  for (const Verdict verdict : allVerdicts) {
    if (IsFailure(verdict) && verdict != Verdict::NotSent) errors += sums.Of(verdict);
  }
  return errors;
}

std::string Beginning(HowEnded how, std::string_view why) {
  if (how == HowEnded::Completed) return "finished: ";
  return why.empty() ? "stopped: " : fmt::format("stopped ({}): ", why);
}

std::string MeanText(const LatencyHistogram& latencies) {
  return fmt::format(", {:.1f} ms mean", std::chrono::duration<double, std::milli>(latencies.Mean()).count());
}

}  // namespace

std::string RunInOneLine(const RunRecord& record, HowEnded how, std::string_view why) {
  const RunSums& sums = record.Sums();
  std::string line = Beginning(how, why);
  if (sums.requests == 0) return line + "nothing was sent";
  const std::uint64_t answered = sums.Of(Verdict::Answered);
  line += fmt::format("{} sent, {} answered", sums.sent, answered);
  if (answered > 0 && sums.open > 0) line += fmt::format(", {} without an answer", sums.open);
  if (sums.Of(Verdict::NotSent) > 0) line += fmt::format(", {} not sent", sums.Of(Verdict::NotSent));
  const std::uint64_t errors = Errors(sums);
  line += errors == 1 ? ", 1 error" : fmt::format(", {} errors", errors);
  if (record.Latencies().Count() > 0) line += MeanText(record.Latencies());
  return line;
}

}  // namespace quarlin
