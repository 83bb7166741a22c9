#include "display/traffic_logs.h"

#include <fmt/format.h>

#include <string>

namespace quarlin {

TrafficLogs::TrafficLogs(EventLoop& loop, DisplayControls& controls, const ProgramFolder& folder,
                         const std::function<void(std::string_view)>& trouble)
    : controls_(controls),
      traffic_(loop, folder.File("LOG.TXT"), trouble),
      parser_(loop, folder.File("LOGPAR.TXT"), trouble) {
  controls_.chkLog.Click = [this] { traffic_.Flush(); };
  controls_.chkLogPar.Click = [this] { parser_.Flush(); };
}

void TrafficLogs::WriteTraffic(std::string_view text) {
  if (controls_.chkLog.Checked()) traffic_.Write(text);
}

void TrafficLogs::WriteParser(std::string_view text) {
  if (controls_.chkLogPar.Checked()) parser_.Write(text);
}

void TrafficLogs::WriteStamp(LocalTime now) {
  WriteTraffic(std::string(stampMark) + DateTimeText(now) + "\r\n");
}

void TrafficLogs::Flush() {
  traffic_.Flush();
  parser_.Flush();
}

std::string TrafficLogs::Missing() const {
  std::string text;
  for (const LogWriter* log : {&traffic_, &parser_}) {
    if (log->MissingBytes() == 0) continue;
    const std::string separator = text.empty() ? "" : ", ";
    text +=
        fmt::format("{}{} lacks {} bytes", separator, log->File().filename().string(), log->MissingBytes());
  }
  return text;
}

}  // namespace quarlin
