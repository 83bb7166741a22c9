// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/run_result.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quarlin {
namespace {

std::string_view ValueIn(const std::vector<Setting>& settings, std::string_view name) {
  const auto found = std::find_if(settings.begin(), settings.end(),
                                  [name](const Setting& setting) { return setting.name == name; });
  return found == settings.end() ? std::string_view() : found->value;
}

RunResult::Latencies LatenciesOf(const LatencyHistogram& histogram) {
  return {histogram.Least(),        histogram.Mean(),         histogram.Quantile(0.5),
          histogram.Quantile(0.95), histogram.Quantile(0.99), histogram.Quantile(0.999),
          histogram.Greatest()};
}

template <typename Exchanges>
std::vector<DatedExchange> Dated(const RunRecord& record, const Exchanges& exchanges) {
  const auto date = [&record](const std::optional<Instant>& instant) -> std::optional<LocalTime> {
    if (!instant) return std::nullopt;
    return record.WallClock(*instant);
  };
  std::vector<DatedExchange> dated;
  dated.reserve(exchanges.size());
  for (const ExchangeRecord& exchange : exchanges) {
    dated.push_back(
        {exchange, record.WallClock(exchange.began), date(exchange.firstByte), date(exchange.completed)});
  }
  return dated;
}

}  // namespace

std::string_view EndName(HowEnded how) {
  switch (how) {
    case HowEnded::StillRuns:
      return "still runs";
    case HowEnded::Completed:
      return "completed";
    case HowEnded::Stopped:
      return "stopped";
    case HowEnded::Signal:
      return "signal";
    case HowEnded::Message:
      return "message";
    case HowEnded::LinkLost:
      return "link lost";
    case HowEnded::SetUpFailed:
      break;
  }
  return "set-up failed";
}

std::string_view RunResult::Counter(std::string_view name) const {
  return ValueIn(counters, name);
}

std::string_view RunResult::SettingOf(std::string_view name) const {
  return ValueIn(settings, name);
}

std::vector<const DatedExchange*> RunResult::Failures() const {
  std::vector<const DatedExchange*> failures;
  for (const auto* list : {&firstFailures, &lastFailures}) {
    for (const DatedExchange& failure : *list) {
      const auto same = [&failure](const DatedExchange* listed) {
        return listed->exchange.number == failure.exchange.number;
      };
      if (std::none_of(failures.begin(), failures.end(), same)) failures.push_back(&failure);
    }
  }
  return failures;
}

RunResult GatherResult(const RunParts& parts, RunFacts facts) {
  const RunRecord& record = parts.record;
  RunResult result;
  const bool runs = facts.how == HowEnded::StillRuns;
  const Instant end = runs ? parts.clock.Now() : record.Ended().value_or(parts.clock.Now());
  result.facts = std::move(facts);
  result.began = record.BeganAt();
  if (!runs) result.ended = record.WallClock(end);
  result.took = end - record.Began();
  result.utcOffset = UtcOffsetAt(record.BeganAt());
  result.settings = SettingsOf(parts.settings);
  result.counters = ShownCounters(parts.counters);
  result.errors = parts.errors.List();
  result.sums = record.Sums();
  result.latencyCount = record.Latencies().Count();
  if (result.latencyCount > 0) result.latencies = LatenciesOf(record.Latencies());
  result.firstFailures = Dated(record, record.FirstFailures());
  result.lastFailures = Dated(record, record.LastFailures());
  return result;
}

std::vector<Setting> ShownCounters(const Counters& counters) {
  std::vector<Setting> shown;
  for (const Control* control : counters.Members()) {
    if (control->Kind() != ControlKind::Label) continue;
    shown.push_back({control->Name(), static_cast<const Label*>(control)->Caption()});
  }
  return shown;
}

std::string HostName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace quarlin
