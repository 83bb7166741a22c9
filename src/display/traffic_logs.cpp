// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/traffic_logs.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

namespace quarlin {
namespace {

constexpr std::string_view parserLog = "LOGPAR.TXT";
constexpr std::uint64_t kibibyte = 1024;

// Files that the program reads or writes for something else.
constexpr std::array<std::string_view, 13> takenNames{
    "config.cfg",  "position.ini", "Command.txt",    "Parser.txt", "sequence.txt",
    "Quick.txt",   "History.txt",  "Conversion.txt", "Dialog.txt", "Report.txt",
    "Report.json", "junit.xml",    parserLog};

LogRules PlainRules(std::string_view name) {
  LogRules rules;
  rules.name = name;
  return rules;
}

}  // namespace

TrafficLogs::TrafficLogs(EventLoop& loop, DisplayControls& controls, const ProgramFolder& folder,
                         const std::function<void(std::string_view)>& trouble)
    : loop_(loop),
      controls_(controls),
      trouble_(trouble),
      traffic_(loop, LogFiles(folder, Rules()), trouble),
      parser_(loop, LogFiles(folder, PlainRules(parserLog)), trouble) {
  traffic_.Files().OnChosen = [this](const std::string& name) { controls_.lblLogFile.SetCaption(name); };
  controls_.chkLog.Click = [this] { chkLog_Click(); };
  controls_.chkLogPar.Click = [this] { parser_.Flush(); };
  for (TextBox* box : {&controls_.txtLogName, &controls_.txtLogSize, &controls_.txtLogKeep}) {
    box->Change = [this] { TakeRules(); };
  }
  for (CheckBox* box : {&controls_.chkLogNew, &controls_.chkLogDay}) box->Click = [this] { TakeRules(); };
  controls_.chkLogRows.Click = [this] { traffic_.Write(rows_.End()); };
  controls_.lblLogFile.SetCaption(traffic_.Name());
}

LogRules TrafficLogs::Rules() const {
  LogRules rules;
  rules.name = controls_.txtLogName.Text();
  rules.newAtStart = controls_.chkLogNew.Checked();
  rules.newEachDay = controls_.chkLogDay.Checked();
  rules.largest = static_cast<std::uint64_t>(std::max(controls_.txtLogSize.Integer(), 0)) * kibibyte;
  rules.keep = static_cast<std::size_t>(std::max(controls_.txtLogKeep.Integer(), 0));
  rules.taken = takenNames;
  return rules;
}

void TrafficLogs::TakeRules() {
  const std::string before = traffic_.Files().Rules().name;
  traffic_.Write(rows_.End());
  traffic_.SetRules(Rules());
  controls_.lblLogFile.SetCaption(traffic_.Name());
  const std::string fault = traffic_.Files().Fault();
  if (!fault.empty() && before != traffic_.Files().Rules().name) trouble_(fault);
}

void TrafficLogs::chkLog_Click() {
  traffic_.Write(rows_.End());
  if (controls_.chkLog.Checked()) {
    traffic_.Restart();
  } else {
    traffic_.Flush();
  }
}

void TrafficLogs::WriteTraffic(Direction direction, std::string_view bytes) {
  if (!controls_.chkLog.Checked()) return;
  if (controls_.chkLogRows.Checked()) {
    WriteRows(direction, bytes);
  } else {
    WriteRaw(bytes);
  }
}

void TrafficLogs::WriteRaw(std::string_view text) {
  traffic_.LeaveFor(text.size(), "");
  traffic_.Write(text);
}

// No row is cut in two by a new file.
void TrafficLogs::WriteRows(Direction direction, std::string_view bytes) {
  LogRows going = rows_;
  std::string text = going.Add(direction, bytes, loop_.Local());
  if (traffic_.LeaveFor(text.size(), rows_.End())) {
    going = LogRows();
    text = going.Add(direction, bytes, loop_.Local());
  }
  rows_ = going;
  traffic_.Write(text);
}

void TrafficLogs::WriteRowEnd() {
  if (controls_.chkLog.Checked() && !controls_.chkLogRows.Checked()) WriteRaw("\r\n");
}

void TrafficLogs::WriteStamp(LocalTime now) {
  if (!controls_.chkLog.Checked() || controls_.chkLogRows.Checked()) return;
  WriteRaw(std::string(stampMark) + DateTimeText(now) + "\r\n");
}

void TrafficLogs::WriteParser(std::string_view text) {
  if (controls_.chkLogPar.Checked()) parser_.Write(text);
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
    text += fmt::format("{}{} lacks {} bytes", separator, log->Name(), log->MissingBytes());
  }
  return text;
}

}  // namespace quarlin
