// SPDX-License-Identifier: GPL-3.0-or-later
// What came of a run, as a value: everything that the report in its forms says. Gathered once, so that all
// forms say the same, also while the run goes on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/controls.h"
#include "controls/setting.h"
#include "exchange/counters.h"
#include "exchange/run_record.h"
#include "link/line_errors.h"

namespace quarlin {

enum class HowEnded {
  StillRuns,   // the report was asked for in the middle
  Completed,   // what was asked for was done
  Stopped,     // by the user, or by time-outs in a row
  Signal,      // or the window was closed
  Message,     // a stop with a message
  LinkLost,    // and not waited for
  SetUpFailed  // nothing was begun, also because the link could not be opened
};

// "still runs", "completed", "stopped", "signal", "message", "link lost", "set-up failed".
std::string_view EndName(HowEnded how);

// What the caller alone knows. Texts are byte strings.
struct RunFacts {
  struct ScriptErrors {
    std::uint64_t count = 0;
    std::vector<std::string> first{};  // the texts of the first ones
  };

  std::string version{};  // "1.0.0"
  std::string host{};
  std::string link{};  // in words, such as "/dev/ttyUSB0 9600 n,8,1"
  HowEnded how = HowEnded::StillRuns;
  std::string reason{};  // in words; empty where there is nothing to say
  int exitStatus = 0;
  bool scripting = false;  // a script was there that could fail
  ScriptErrors scriptErrors{};
  std::optional<LineErrors> lineErrors{};  // nothing where the link does not count them
  std::string faultsOnPurpose{};           // of the dialog test; empty without
  std::vector<std::string> logLosses{};    // what is missing in the logs, a line each
};

// An exchange with its instants as times of day.
struct DatedExchange {
  ExchangeRecord exchange;
  LocalTime began{};
  std::optional<LocalTime> firstByte;
  std::optional<LocalTime> completed;
};

struct RunResult {
  struct Latencies {
    Duration least{};
    Duration mean{};
    Duration p50{};
    Duration p95{};
    Duration p99{};
    Duration p999{};
    Duration greatest{};
  };

  RunFacts facts;
  LocalTime began{};
  std::optional<LocalTime> ended;  // nothing while it runs
  Duration took{};                 // up to now while it runs
  std::chrono::seconds utcOffset{0};
  std::vector<Setting> settings;
  std::vector<Setting> counters;  // the labels of Counters, as they are shown
  std::vector<ListEntry> errors;  // the error list
  RunSums sums;
  std::uint64_t latencyCount = 0;
  std::optional<Latencies> latencies;        // nothing when no request was answered
  std::vector<DatedExchange> firstFailures;  // at most 20 each; the last ones may be the first ones, too
  std::vector<DatedExchange> lastFailures;

  // The shown counter, or the setting, of that name; empty when there is none.
  std::string_view Counter(std::string_view name) const;
  std::string_view SettingOf(std::string_view name) const;

  // The failures that are known whole, each once, the oldest first.
  std::vector<const DatedExchange*> Failures() const;
};

// Where a result is read from, all at one moment.
struct RunParts {
  const RunRecord& record;
  const Counters& counters;
  const ListBox& errors;
  const ControlCollection& settings;
  const Clock& clock;
};

// A run that the record does not know as ended has ended now, unless it still runs.
RunResult GatherResult(const RunParts& parts, RunFacts facts);

// The counters alone.
std::vector<Setting> ShownCounters(const Counters& counters);

// The name of this machine.
std::string HostName();

}  // namespace quarlin
