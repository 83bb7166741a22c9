// SPDX-License-Identifier: GPL-3.0-or-later
// What went wrong, row by row, for a table: the errors of the runs and those between them, under a heading
// for each run. The run record forgets a run when the next one begins; here the rows stay until they are
// cleared or too many.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/hook.h"
#include "display/display_controls.h"
#include "exchange/run_record.h"

namespace quarlin {

enum class ErrorKind : std::uint8_t { TimeOut, NotEqual, WrongLength, WrongChecksum, Err, NotSent, LinkLost };
inline constexpr std::size_t errorKinds = 7;

// "time-out", "string not equal", "wrong length", "wrong checksum", "ERR", "not sent", "link lost".
std::string_view ErrorKindName(ErrorKind kind);

// Texts are readable: control characters stand as "<CR>".
struct ErrorRow {
  std::optional<ErrorKind> kind;  // nothing: a heading, of which only `at` and `heading` say something
  std::string heading{};          // "Run 3, 19:04:14, READ every 500 ms"
  LocalTime at{};                 // when it was found
  std::uint64_t number = 0;       // of the exchange in its run; 0 for none
  std::string request{};
  std::string expected{};
  std::string got{};
  std::optional<Duration> latency{};
  std::uint64_t displayLine = 0;  // of the display's ring: the request, else what was shown last

  // Where `expected` and `got` begin to differ, if they can be laid side by side; one of them may end there.
  std::optional<std::size_t> differsAt{};

  bool IsHeading() const { return !kind; }
};

// The columns of a row as texts.
enum class ErrorColumn : std::uint8_t { Time, Number, What, Expected, Got, Latency, Request };
inline constexpr std::size_t errorColumns = 7;
std::string_view ErrorColumnTitle(ErrorColumn column);
std::string ErrorCell(const ErrorRow& row, ErrorColumn column);

// All columns between tabulators, without a line end; and the same of a heading, which is one text.
std::string ErrorTitleLine();
std::string ErrorLine(const ErrorRow& row);

class ErrorRows : private RunListener {
 public:
  static constexpr std::size_t mostRows = 10'000;
  static constexpr std::size_t keptText = 200;  // bytes of the wire of each text; what differs is among them

  // All outlive this object.
  ErrorRows(const Clock& clock, RunRecord& record, const DisplayText& display);
  ~ErrorRows() override;
  ErrorRows(const ErrorRows&) = delete;
  ErrorRows& operator=(const ErrorRows&) = delete;

  Hook<std::string()> DescribeRun;  // what the run that begins sends, and how often
  Hook<void()> OnChanged;           // rows came, went, or a heading has its verdict

  // The link went away, or is waited for: `line` says so.
  void LinkGone(std::string_view line);

  // The run has ended, and this is what came of it, for its heading.
  void ShowVerdict(std::string_view line);

  // Rows are numbered from the start of the program; those from FirstRow() to EndRow() - 1 are kept. A
  // cleared table goes on counting.
  std::uint64_t FirstRow() const { return firstRow_; }
  std::uint64_t EndRow() const { return firstRow_ + rows_.size(); }
  const ErrorRow& Row(std::uint64_t row) const { return rows_[row - firstRow_]; }

  std::uint64_t Errors() const { return errors_; }        // kept rows but for the headings
  std::uint64_t Forgotten() const { return forgotten_; }  // rows that had to leave since the last Clear
  std::uint64_t Of(ErrorKind kind) const { return ofKind_[static_cast<std::size_t>(kind)]; }  // kept

  // Counters and record stay as they are.
  void Clear();

 private:
  void RunBegan() override;
  void ExchangeChanged(const ExchangeRecord& exchange) override;

  void AddHeading(std::string text);
  void AddError(ErrorRow row);
  void Add(ErrorRow row);
  void Count(const ErrorRow& row, bool added);
  std::uint64_t LastShownLine() const;

  const Clock& clock_;
  RunRecord& record_;
  const DisplayText& display_;
  std::deque<ErrorRow> rows_;
  std::uint64_t firstRow_ = 0;
  std::uint64_t errors_ = 0;
  std::uint64_t forgotten_ = 0;
  std::array<std::uint64_t, errorKinds> ofKind_{};
  std::uint32_t run_ = 0;
  std::optional<std::uint64_t> runHeading_;  // the row of the last run's
  bool underHeading_ = false;                // what comes now belongs under the last heading
};

}  // namespace quarlin
