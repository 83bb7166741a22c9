// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/report_json.h"

#include <nlohmann/json.hpp>

#include "base/text.h"
#include "results/wire_text.h"

namespace quarlin {
namespace {

using Json = nlohmann::ordered_json;  // members stay in the order in which they are told

constexpr int formatNumber = 1;  // grows when a reader of the present format would go wrong

double Seconds(Duration time) {
  return std::chrono::duration<double>(time).count();
}

double Milliseconds(Duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Writes one result; knows the zone of its times.
class Writer {
 public:
  explicit Writer(const RunResult& result) : result_(result) {}

  Json Whole() const {
    const RunFacts& facts = result_.facts;
    return {{"format", formatNumber},
            {"program", "Quarlin"},
            {"version", Text(facts.version)},
            {"host", Text(facts.host)},
            {"link", Text(facts.link)},
            {"begin", Time(result_.began)},
            {"end", OptionalTime(result_.ended)},
            {"seconds", Seconds(result_.took)},
            {"ended", EndName(facts.how)},
            {"reason", Text(facts.reason)},
            {"exitStatus", facts.exitStatus},
            {"sums", Sums()},
            {"verdicts", Verdicts()},
            {"latencyMs", Latencies()},
            {"scriptErrors", ScriptErrors()},
            {"lineErrors", ErrorsOfTheLine()},
            {"faultsOnPurpose", Text(facts.faultsOnPurpose)},
            {"logLosses", Texts(facts.logLosses)},
            {"counters", Settings(result_.counters)},
            {"settings", Settings(result_.settings)},
            {"firstFailures", Exchanges(result_.firstFailures)},
            {"lastFailures", Exchanges(result_.lastFailures)}};
  }

 private:
  static std::string Text(std::string_view bytes) { return Utf8FromBytes(bytes); }

  static Json Texts(const std::vector<std::string>& texts) {
    Json list = Json::array();
    for (const std::string& text : texts) list.push_back(Text(text));
    return list;
  }

  static Json Settings(const std::vector<Setting>& settings) {
    Json object = Json::object();
    for (const Setting& setting : settings) object[Text(setting.name)] = Text(setting.value);
    return object;
  }

  Json Time(LocalTime time) const { return IsoText(time, result_.utcOffset); }
  Json OptionalTime(const std::optional<LocalTime>& time) const { return time ? Time(*time) : Json(); }

  Json Sums() const {
    const RunSums& sums = result_.sums;
    return {{"requests", sums.requests},
            {"good", sums.good},
            {"failed", sums.failed},
            {"open", sums.open},
            {"unended", sums.requests - sums.good - sums.failed - sums.open},
            {"sent", sums.sent},
            {"notSent", sums.Of(Verdict::NotSent)},
            {"received", sums.received},
            {"accepted", sums.accepted},
            {"unsolicited", sums.Of(Verdict::Unsolicited)}};
  }

  Json Verdicts() const {
    Json counts = Json::object();
    for (const Verdict verdict : allVerdicts)
      counts[std::string(VerdictName(verdict))] = result_.sums.Of(verdict);
    return counts;
  }

  Json Latencies() const {
    if (!result_.latencies) return nullptr;
    const RunResult::Latencies& times = *result_.latencies;
    return {{"count", result_.latencyCount},     {"min", Milliseconds(times.least)},
            {"mean", Milliseconds(times.mean)},  {"p50", Milliseconds(times.p50)},
            {"p95", Milliseconds(times.p95)},    {"p99", Milliseconds(times.p99)},
            {"p99.9", Milliseconds(times.p999)}, {"max", Milliseconds(times.greatest)}};
  }

  Json ScriptErrors() const {
    const RunFacts::ScriptErrors& errors = result_.facts.scriptErrors;
    return {{"count", errors.count}, {"first", Texts(errors.first)}};
  }

  Json ErrorsOfTheLine() const {
    const std::optional<LineErrors>& errors = result_.facts.lineErrors;
    if (!errors) return nullptr;
    return {{"parity", errors->parity}, {"framing", errors->framing}, {"overrun", errors->overrun}};
  }

  static Json Wire(const KeptText& text) {
    return {{"size", text.size}, {"text", VisibleText(text.bytes)}, {"hex", HexText(text.bytes)}};
  }

  // A request, or another text that could not be sent.
  static bool HasText(const ExchangeRecord& exchange) {
    return exchange.hasRequest || exchange.request.size > 0;
  }

  Json Exchange(const DatedExchange& dated) const {
    const ExchangeRecord& exchange = dated.exchange;
    const auto latency = exchange.Latency();
    Json findings = Json::array();
    for (const Finding& finding : exchange.findings) {
      findings.push_back(
          {{"verdict", VerdictName(finding.verdict)}, {"detail", VisibleText(finding.detail)}});
    }
    return {{"number", exchange.number},
            {"begin", Time(dated.began)},
            {"firstByte", OptionalTime(dated.firstByte)},
            {"completed", OptionalTime(dated.completed)},
            {"latencyMs", latency ? Json(Milliseconds(*latency)) : Json()},
            {"request", HasText(exchange) ? Wire(exchange.request) : Json()},
            {"answer", exchange.completed ? Wire(exchange.answer) : Json()},
            {"findings", findings}};
  }

  Json Exchanges(const std::vector<DatedExchange>& exchanges) const {
    Json list = Json::array();
    for (const DatedExchange& exchange : exchanges) list.push_back(Exchange(exchange));
    return list;
  }

  const RunResult& result_;
};

}  // namespace

std::string ReportJson(const RunResult& result) {
  return Writer(result).Whole().dump(2) + "\n";
}

}  // namespace quarlin
