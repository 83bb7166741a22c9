// SPDX-License-Identifier: GPL-3.0-or-later
#include "testmodes/error_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/control_names.h"

namespace quarlin {
namespace {

struct KindOfVerdict {
  Verdict verdict;
  ErrorKind kind;
};

constexpr std::array<KindOfVerdict, 6> kinds{{
    {Verdict::TimeOut, ErrorKind::TimeOut},
    {Verdict::NotEqual, ErrorKind::NotEqual},
    {Verdict::WrongLength, ErrorKind::WrongLength},
    {Verdict::WrongChecksum, ErrorKind::WrongChecksum},
    {Verdict::Err, ErrorKind::Err},
    {Verdict::NotSent, ErrorKind::NotSent},
}};

constexpr std::array<std::string_view, errorKinds> kindNames{
    "time-out", "string not equal", "wrong length", "wrong checksum", "ERR", "not sent", "link lost"};
constexpr std::array<std::string_view, errorColumns> columnTitles{"Time", "No.", "What",   "Expected",
                                                                  "Got",  "ms",  "Request"};

constexpr std::string_view cut = "...";
constexpr std::size_t shownBefore = 24;  // of what two texts have in common, where that is long

std::optional<ErrorKind> KindOf(Verdict verdict) {
  for (const KindOfVerdict& row : kinds) {
    if (row.verdict == verdict) return row.kind;
  }
  return std::nullopt;
}

std::string Readable(std::string_view bytes) {
  std::string text = WithControlNames(bytes.substr(0, ErrorRows::keptText));
  if (bytes.size() > ErrorRows::keptText) text += cut;
  return text;
}

// Both texts from shortly before the first byte that differs.
void LaySideBySide(const Finding& finding, ErrorRow& row) {
  const auto [expected, got] =
      std::mismatch(finding.expected.begin(), finding.expected.end(), finding.got.begin(), finding.got.end());
  const auto common = static_cast<std::size_t>(expected - finding.expected.begin());
  const std::size_t begin = common <= 2 * shownBefore ? 0 : common - shownBefore;
  const std::string front(begin == 0 ? "" : cut);
  row.expected = front + Readable(std::string_view(finding.expected).substr(begin));
  row.got = front + Readable(std::string_view(finding.got).substr(begin));
  if (expected == finding.expected.end() && got == finding.got.end()) return;  // not in what is kept
  const auto same = std::string_view(finding.expected).substr(begin, common - begin);
  row.differsAt = front.size() + WithControlNames(same).size();
}

void Explain(const ExchangeRecord& exchange, const Finding& finding, ErrorRow& row) {
  if (ComparesBytes(finding.verdict) && !(finding.expected.empty() && finding.got.empty())) {
    LaySideBySide(finding, row);
    return;
  }
  row.expected = Readable(finding.expected);
  row.got = Readable(finding.got.empty() ? finding.detail : finding.got);
  if (exchange.answer.size == 0) return;
  row.got += (row.got.empty() ? "" : ": ") + Readable(exchange.answer.bytes);
}

std::string TimeWithMilliseconds(LocalTime at) {
  const auto second = std::chrono::floor<std::chrono::seconds>(at);
  return fmt::format("{}.{:03}", TimeText(at), (at - second) / std::chrono::milliseconds(1));
}

std::string Milliseconds(Duration duration) {
  return fmt::format("{:.1f}", std::chrono::duration<double, std::milli>(duration).count());
}

}  // namespace

std::string_view ErrorKindName(ErrorKind kind) {
  return kindNames[static_cast<std::size_t>(kind)];
}

std::string_view ErrorColumnTitle(ErrorColumn column) {
  return columnTitles[static_cast<std::size_t>(column)];
}

std::string ErrorCell(const ErrorRow& row, ErrorColumn column) {
  if (row.IsHeading()) return column == ErrorColumn::Time ? row.heading : "";
  switch (column) {
    case ErrorColumn::Time:
      return TimeWithMilliseconds(row.at);
    case ErrorColumn::Number:
      return row.number == 0 ? "" : std::to_string(row.number);
    case ErrorColumn::What:
      return std::string(ErrorKindName(*row.kind));
    case ErrorColumn::Expected:
      return row.expected;
    case ErrorColumn::Got:
      return row.got;
    case ErrorColumn::Latency:
      return row.latency ? Milliseconds(*row.latency) : "";
    case ErrorColumn::Request:
      break;
  }
  return row.request;
}

std::string ErrorTitleLine() {
  return fmt::format("{}", fmt::join(columnTitles, "\t"));
}

std::string ErrorLine(const ErrorRow& row) {
  if (row.IsHeading()) return row.heading;
  std::string line;
  for (std::size_t column = 0; column < errorColumns; ++column) {
    if (column > 0) line += '\t';
    line += ErrorCell(row, static_cast<ErrorColumn>(column));
  }
  return line;
}

ErrorRows::ErrorRows(const Clock& clock, RunRecord& record, const DisplayText& display)
    : clock_(clock), record_(record), display_(display) {
  record_.Follow(*this);
}

ErrorRows::~ErrorRows() {
  record_.Leave(*this);
}

void ErrorRows::RunBegan() {
  ++run_;
  const std::string what = DescribeRun();
  runHeading_ = EndRow();
  AddHeading(
      fmt::format("Run {}, {}{}{}", run_, DateTimeText(clock_.Local()), what.empty() ? "" : ", ", what));
}

void ErrorRows::ExchangeChanged(const ExchangeRecord& exchange) {
  if (exchange.ended) return;
  const Finding& finding = exchange.findings.back();  // the one that was just said
  const auto kind = KindOf(finding.verdict);
  if (!kind) return;
  ErrorRow row{kind};
  row.number = exchange.number;
  row.request = Readable(exchange.request.bytes);
  row.latency = exchange.Latency();
  row.displayLine = exchange.displayLine.value_or(LastShownLine());
  Explain(exchange, finding, row);
  AddError(std::move(row));
}

void ErrorRows::LinkGone(std::string_view line) {
  ErrorRow row{ErrorKind::LinkLost};
  row.got = Readable(line);
  row.displayLine = LastShownLine();
  AddError(std::move(row));
}

void ErrorRows::ShowVerdict(std::string_view line) {
  underHeading_ = false;
  const auto heading = std::exchange(runHeading_, std::nullopt);
  if (!heading || *heading < firstRow_) return;
  rows_[*heading - firstRow_].heading += fmt::format(" - {}", line);
  OnChanged();
}

void ErrorRows::AddHeading(std::string text) {
  ErrorRow row;
  row.heading = std::move(text);
  row.at = clock_.Local();
  row.displayLine = display_.NextLine();
  Add(std::move(row));
  underHeading_ = true;
}

void ErrorRows::AddError(ErrorRow row) {
  if (!underHeading_) AddHeading(run_ == 0 ? "Before the first run" : fmt::format("After run {}", run_));
  row.at = clock_.Local();
  Add(std::move(row));
}

void ErrorRows::Add(ErrorRow row) {
  if (rows_.size() == mostRows) {
    Count(rows_.front(), false);
    if (!rows_.front().IsHeading()) ++forgotten_;
    rows_.pop_front();
    ++firstRow_;
  }
  Count(row, true);
  rows_.push_back(std::move(row));
  OnChanged();
}

void ErrorRows::Count(const ErrorRow& row, bool added) {
  if (row.IsHeading()) return;
  std::uint64_t& ofKind = ofKind_[static_cast<std::size_t>(*row.kind)];
  if (added) {
    ++errors_;
    ++ofKind;
  } else {
    --errors_;
    --ofKind;
  }
}

std::uint64_t ErrorRows::LastShownLine() const {
  const std::uint64_t next = display_.NextLine();
  return next == 0 ? 0 : next - 1;
}

// A run that goes on keeps its heading.
void ErrorRows::Clear() {
  std::optional<ErrorRow> heading;
  if (runHeading_ && *runHeading_ >= firstRow_) heading = rows_[*runHeading_ - firstRow_];
  firstRow_ = EndRow();
  rows_.clear();
  errors_ = forgotten_ = 0;
  ofKind_.fill(0);
  runHeading_.reset();
  underHeading_ = underHeading_ && heading;
  if (!heading) return OnChanged();
  runHeading_ = EndRow();
  Add(std::move(*heading));
}

}  // namespace quarlin
