// LOG.TXT and LOGPAR.TXT, each written while its box is checked.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/program_folder.h"
#include "display/display_controls.h"
#include "display/log_writer.h"

namespace quarlin {

class TrafficLogs {
 public:
  TrafficLogs(EventLoop& loop, DisplayControls& controls, const ProgramFolder& folder,
              const std::function<void(std::string_view)>& trouble);

  void WriteTraffic(std::string_view text);  // LOG.TXT: both directions, byte for byte
  void WriteParser(std::string_view text);   // LOGPAR.TXT: the parser's output

  // The line "-->dd/mm/yy hh:mm:ss" in LOG.TXT.
  void WriteStamp(LocalTime now);
  void Flush();

  // Asked after the last Flush: what the files have not got, as "LOG.TXT lacks 12 bytes"; empty when they
  // have everything.
  std::string Missing() const;

 private:
  DisplayControls& controls_;
  LogWriter traffic_;
  LogWriter parser_;
};

// The mark in front of a date and time.
inline constexpr std::string_view stampMark = "-->";

}  // namespace quarlin
