#include "testmodes/error_reports.h"

#include <fmt/format.h>

#include <array>
#include <limits>
#include <string>

namespace quarlin {
namespace {

// How the kinds with a message box show themselves.
struct ErrorTexts {
  ErrorKind kind;
  std::string_view line;
  std::string_view title;
  std::string_view message;
};

constexpr std::array<ErrorTexts, 3> errorTexts{{
    {ErrorKind::NotEqual, "STRING NOT EQUAL", "ERROR STRING", "STRING NOT EQUAL"},
    {ErrorKind::Length, "ERROR STRING LENGTH", "ERROR STRING", "STRING LENGTH NOT EQUAL"},
    {ErrorKind::Checksum, "ERROR CHECKSUM", "ERROR CHECKSUM", "CHECKSUM NOT EQUAL"},
}};

constexpr std::string_view timeOutLine = "TIME OUT";
constexpr std::string_view noInterval = "- -";  // what lblRxms shows after a time-out

}  // namespace

ErrorReports::ErrorReports(ErrorReportParts parts) : parts_(parts) {
  parts_.listing.lstError.SetVisible(false);
  parts_.controls.cmdErr.OnClick = [this] { cmdErr_Click(); };
}

void ErrorReports::SignalError(int kind, std::string_view detail) {
  Counters& counters = parts_.counters;
  if (kind == static_cast<int>(ErrorKind::TimeOut)) SignalTimeOut(detail);
  for (const ErrorTexts& texts : errorTexts) {
    if (kind != static_cast<int>(texts.kind)) continue;
    parts_.display.AppendError(texts.line, detail);
    // Wrong checksums are counted with the wrong lengths.
    (texts.kind == ErrorKind::NotEqual ? counters.lblErrStr : counters.lblErrorLen).Increment();
    if (parts_.controls.chkStop.Checked()) Hooks.stopWithMessage(texts.message, texts.title);
  }
  counters.lblerror.Increment();
  counters.lblllen.SetInteger(static_cast<std::int32_t>(parts_.receive.RxBuffer.size()));
  parts_.receive.RxBuffer.clear();
  parts_.receive.RxIdleTicks = 2;
  Hooks.endWait();
}

void ErrorReports::SignalTimeOut(std::string_view detail) {
  const std::string suffix = parts_.run.chkTimeout.Checked() ? CountTimeOut() : "";
  parts_.display.AppendError(std::string(timeOutLine) + suffix, detail);
  parts_.link.lblRxms.SetCaption(noInterval);
}

std::string ErrorReports::CountTimeOut() {
  std::int16_t& count = parts_.handOver.TimeoutCount;
  if (count < std::numeric_limits<std::int16_t>::max()) ++count;
  const std::string suffix = fmt::format(" ({}/{})", count, parts_.run.txtTimeout.Text());
  if (count >= parts_.run.txtTimeout.Integer() && parts_.run.CycleRuns()) Hooks.stopCycle();
  return suffix;
}

void ErrorReports::cmdErr_Click() {
  const bool visible = !parts_.listing.lstError.Visible();
  parts_.listing.lstError.SetVisible(visible);
  parts_.controls.cmdErr.SetCaption(visible ? "Close" : "Open");
}

std::string ReportText(const Counters& counters, const ListBox& errors, std::string_view faults) {
  constexpr std::string_view dashes = "---------------------------------------------------\r\n";
  std::string text;
  const auto section = [&](const std::string& lines) { (text += dashes) += lines; };
  section(fmt::format("Tx :{}\r\nRx :{}\r\n", counters.lblsend.Caption(), counters.Label7.Caption()));
  section(fmt::format("Elapsed Time :{}\r\n", counters.lbltempo.Caption()));
  section(fmt::format("Error     : {}\r\nError Str : {}\r\nError Len : {}\r\n", counters.lblerror.Caption(),
                      counters.lblErrStr.Caption(), counters.lblErrorLen.Caption()));
  if (!faults.empty()) section(fmt::format("Faults on purpose : {}\r\n", faults));
  section(fmt::format("Last {} Errors:\r\n", errors.ListCount()));
  section("");
  for (const ListEntry& entry : errors.List()) text += entry.text + "\r\n";
  if (errors.ListCount() > 0) text += "\r\n";  // the list is read one past its end
  return text;
}

}  // namespace quarlin
