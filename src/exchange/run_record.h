// SPDX-License-Identifier: GPL-3.0-or-later
// What happened, exchange by exchange: sums and latencies over the whole run, the last exchanges whole. It is
// what results, the error table and everything else that looks back at a run is made from.
//
// Only Exchange writes it; everybody may read it, or follow it live as a RunListener. The labels that scripts
// can write are counted apart and agree with it unless a script wrote one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "exchange/latency_histogram.h"
#include "exchange/verdict.h"

namespace quarlin {

// Text of the wire as a record keeps it.
struct KeptText {
  std::string bytes;     // at most RunRecord::keptBytes, from the beginning
  std::size_t size = 0;  // of the whole
};

// One request with what became of it; or an answer that nobody had asked for, or a text that could not be
// sent.
struct ExchangeRecord {
  std::uint64_t number = 0;  // from 1, in the order of their beginnings
  bool hasRequest = false;   // else an answer, or an error, that belongs to no request
  bool ended = false;
  bool open = false;                 // ended without a verdict: nobody waits for its answer any more
  Instant began{};                   // request: when it had been sent; else when the answer was complete
  std::optional<Instant> firstByte;  // of the answer
  std::optional<Instant> completed;  // the answer
  KeptText request;
  KeptText answer;
  KeptText parsed;  // empty where it is the answer itself

  // The line of the display's ring in which the request was shown; nothing for an exchange without one.
  std::optional<std::uint64_t> displayLine;
  std::vector<Finding> findings;  // at most one of each verdict

  bool Has(Verdict verdict) const;
  bool Failed() const;  // at least one of the findings is a failure

  // From the end of sending to the complete answer.
  std::optional<Duration> Latency() const;
};

struct RunSums {
  std::uint64_t requests = 0;  // good + failed + open + those that have not ended
  std::uint64_t good = 0;      // answered, and nothing to object to
  std::uint64_t failed = 0;    // with one failure or several
  std::uint64_t open = 0;      // without a verdict at the end
  std::uint64_t sent = 0;      // requests that left whole
  std::uint64_t received = 0;  // complete strings, and "ERR" answers
  std::uint64_t accepted = 0;  // strings that passed the checks of length and equality
  std::array<std::uint64_t, verdictKinds> verdicts{};  // exchanges and answers of which each was said

  std::uint64_t Of(Verdict verdict) const { return verdicts[static_cast<std::size_t>(verdict)]; }
};

class RunListener {
 public:
  virtual ~RunListener() = default;

  // A new run: everything before it is no longer in the record.
  virtual void RunBegan() {}

  // Something was said of an exchange, or it ended. Must not change the record.
  virtual void ExchangeChanged(const ExchangeRecord& exchange) = 0;
};

class RunRecord {
 public:
  static constexpr std::size_t mostKept = 10'000;
  static constexpr std::size_t keptBytes = 1024;       // of each text, also of a finding
  static constexpr std::size_t mostKeptFailures = 20;  // the first and the last ones

  explicit RunRecord(const Clock& clock) : clock_(clock) { Begin(); }

  // A listener must leave before it dies, and never while it is told. Listeners are told in the order in
  // which they came.
  void Follow(RunListener& listener);
  void Leave(RunListener& listener);

  // For readers. Until the first run begins, the record holds what is done by hand since the start of the
  // program.
  LocalTime BeganAt() const { return beganAt_; }  // the wall clock, at the instant Began()
  Instant Began() const { return began_; }
  std::optional<Instant> Ended() const { return ended_; }
  LocalTime WallClock(Instant instant) const;  // of this run
  const RunSums& Sums() const { return sums_; }
  const LatencyHistogram& Latencies() const { return latencies_; }

  // The first and the last failing exchanges whole. Of a run with few, both hold the same ones.
  const std::vector<ExchangeRecord>& FirstFailures() const { return firstFailures_; }
  const std::deque<ExchangeRecord>& LastFailures() const { return lastFailures_; }

  // The last exchanges: those of the numbers from FirstKept() to LastNumber(), none while that is 0. Find
  // gives nothing for one that is not kept.
  std::uint64_t FirstKept() const { return lastNumber_ < mostKept ? 1 : lastNumber_ - mostKept + 1; }
  std::uint64_t LastNumber() const { return lastNumber_; }
  const ExchangeRecord* Find(std::uint64_t number) const;

  // For Exchange.
  //
  // A new run, without anything of the one before.
  void Begin();

  // Every exchange without a verdict ends as open. What comes later is still added.
  void End();

  // A new exchange, begun now; returns its number.
  std::uint64_t AddRequest(std::string_view request, std::optional<std::uint64_t> displayLine = {});
  std::uint64_t AddOther();

  // The oldest request that has not ended; nothing when there is none among those kept.
  std::optional<std::uint64_t> OldestUnanswered();

  // About an exchange that has not ended; without effect on one that is no longer kept.
  //
  // SetRequest: what the text was that could not be sent. Received: a complete string, or one with "ERR",
  // now; its first byte came at `firstByte`. Accepted: it passed the checks, the parser made `parsed` of it;
  // a request is thereby answered.
  void SetRequest(std::uint64_t number, std::string_view request);
  void Received(std::uint64_t number, std::string_view answer, Instant firstByte);
  void Accepted(std::uint64_t number, std::string_view parsed);
  void Say(std::uint64_t number, Finding finding);
  void Close(std::uint64_t number);

  // A request that was called off before it had left ends as open, and was not sent.
  void CallOff(std::uint64_t number);

 private:
  ExchangeRecord& Add();
  ExchangeRecord* Unended(std::uint64_t number);
  void CloseExchange(ExchangeRecord& exchange);
  void KeepFailure(const ExchangeRecord& exchange);
  void Tell(const ExchangeRecord& exchange);

  const Clock& clock_;
  std::vector<RunListener*> listeners_;
  Instant began_{};
  std::optional<Instant> ended_;
  LocalTime beganAt_{};
  RunSums sums_;
  LatencyHistogram latencies_;
  std::vector<ExchangeRecord> exchanges_;  // number n in place (n - 1) % mostKept, used again and again
  std::uint64_t lastNumber_ = 0;
  std::uint64_t oldestUnanswered_ = 1;  // every request before it has ended
  std::vector<ExchangeRecord> firstFailures_;
  std::deque<ExchangeRecord> lastFailures_;
};

}  // namespace quarlin
