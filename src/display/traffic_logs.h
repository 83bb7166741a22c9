// SPDX-License-Identifier: GPL-3.0-or-later
// The log of the traffic, LOG.TXT unless it is called otherwise, and that of the parser, LOGPAR.TXT, each
// written while its box is checked.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/program_folder.h"
#include "display/display_controls.h"
#include "display/log_rows.h"
#include "display/log_writer.h"

namespace quarlin {

class TrafficLogs {
 public:
  TrafficLogs(EventLoop& loop, DisplayControls& controls, const ProgramFolder& folder,
              const std::function<void(std::string_view)>& trouble);

  // Both directions of the wire: byte for byte, or as rows with their time and direction.
  void WriteTraffic(Direction direction, std::string_view bytes);

  // The line break that "Append Row" adds, and the line "-->dd/mm/yy hh:mm:ss". Rows have no need of either.
  void WriteRowEnd();
  void WriteStamp(LocalTime now);

  void WriteParser(std::string_view text);  // the parser's output
  void Flush();

  // Asked after the last Flush: what the files have not got, as "LOG.TXT lacks 12 bytes"; empty when they
  // have everything.
  std::string Missing() const;

 private:
  void WriteRaw(std::string_view text);
  void WriteRows(Direction direction, std::string_view bytes);
  void chkLog_Click();
  void TakeRules();
  LogRules Rules() const;

  EventLoop& loop_;
  DisplayControls& controls_;
  std::function<void(std::string_view)> trouble_;
  LogWriter traffic_;
  LogRows rows_;
  LogWriter parser_;
};

// The mark in front of a date and time.
inline constexpr std::string_view stampMark = "-->";

}  // namespace quarlin
