// SPDX-License-Identifier: GPL-3.0-or-later
#include "testmodes/error_reports.h"

#include <fmt/format.h>

#include <array>
#include <string>

namespace quarlin {
namespace {

// How the kinds with a message box show themselves.
struct ErrorTexts {
  Verdict verdict;
  std::string_view line;
  std::string_view title;
  std::string_view message;
};

constexpr std::array<ErrorTexts, 3> errorTexts{{
    {Verdict::NotEqual, "STRING NOT EQUAL", "ERROR STRING", "STRING NOT EQUAL"},
    {Verdict::WrongLength, "ERROR STRING LENGTH", "ERROR STRING", "STRING LENGTH NOT EQUAL"},
    {Verdict::WrongChecksum, "ERROR CHECKSUM", "ERROR CHECKSUM", "CHECKSUM NOT EQUAL"},
}};

constexpr std::array kinds{Verdict::TimeOut, Verdict::NotEqual, Verdict::WrongLength, Verdict::WrongChecksum};

constexpr std::string_view timeOutLine = "TIME OUT";
constexpr std::string_view noInterval = "- -";  // what lblRxms shows after a time-out

}  // namespace

ErrorReports::ErrorReports(ErrorReportParts parts) : parts_(parts) {
  parts_.listing.lstError.SetVisible(false);
  parts_.controls.cmdErr.OnClick = [this] { cmdErr_Click(); };
}

void ErrorReports::SignalError(int kind) {
  if (kind >= 0 && kind < static_cast<int>(kinds.size())) {
    SignalError(Finding{kinds[static_cast<std::size_t>(kind)]});
  } else {
    parts_.exchange.EndWait();
    Count();
  }
}

void ErrorReports::SignalError(const Finding& finding) {
  Counters& counters = parts_.counters;
  const auto& [verdict, detail, expected, got] = finding;
  const std::uint64_t number = parts_.exchange.Fault(finding);  // first: what follows may end the run
  if (verdict == Verdict::TimeOut) ShowTimeOut(detail, number);
  for (const ErrorTexts& texts : errorTexts) {
    if (verdict != texts.verdict) continue;
    parts_.traffic.AppendError(texts.line, detail, number);
    // Wrong checksums are counted with the wrong lengths.
    (verdict == Verdict::NotEqual ? counters.lblErrStr : counters.lblErrorLen).Increment();
    if (parts_.controls.chkStop.Checked()) Hooks.stopWithMessage(texts.message, texts.title);
  }
  Count();
}

void ErrorReports::Count() {
  parts_.counters.lblerror.Increment();
  parts_.counters.lblllen.SetInteger(static_cast<std::int32_t>(Hooks.giveUpString()));
}

void ErrorReports::ShowTimeOut(std::string_view detail, std::uint64_t number) {
  const std::string suffix = parts_.run.chkTimeout.Checked() ? CountTimeOut() : "";
  parts_.traffic.AppendError(std::string(timeOutLine) + suffix, detail, number);
  parts_.link.lblRxms.SetCaption(noInterval);
}

std::string ErrorReports::CountTimeOut() {
  const std::int16_t count = parts_.exchange.CountTimeOut();
  std::string suffix = fmt::format(" ({}/{})", count, parts_.run.txtTimeout.Text());
  if (count >= parts_.run.txtTimeout.Integer() && parts_.exchange.Running()) Hooks.stopCycle();
  return suffix;
}

void ErrorReports::cmdErr_Click() {
  const bool visible = !parts_.listing.lstError.Visible();
  parts_.listing.lstError.SetVisible(visible);
  parts_.controls.cmdErr.SetCaption(visible ? "Close" : "Open");
}

}  // namespace quarlin
