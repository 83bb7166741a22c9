// SPDX-License-Identifier: GPL-3.0-or-later
// A log of the traffic, byte for byte, always appended to. What is written waits in memory for at
// most 50 ms or 64 KiB; a file that cannot be written is reported once and tried again, and never
// stops the run.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "controls/event_loop.h"
#include "display/log_files.h"

namespace quarlin {

class LogWriter {
 public:
  // `trouble` is told in words when writing begins to fail and when it works again.
  LogWriter(EventLoop& loop, LogFiles files, std::function<void(std::string_view)> trouble);
  ~LogWriter();  // writes what is left, and tells nobody when it cannot

  // To the present file, or to the first one.
  void Write(std::string_view text);
  void Flush();

  // Begins another file where a text of so many bytes belongs to the next one, but none while writing fails.
  // True if `ending` was written before, to the present one.
  bool LeaveFor(std::size_t bytes, std::string_view ending);

  // What waits still goes to the present file, where it can be written.
  void SetRules(LogRules rules);

  // The next text is the first one of a start.
  void Restart();

  LogFiles& Files() { return files_; }
  std::string Name() const;  // of the present file, without its folder

  // Bytes given up because the file could not be written for so long that 1 MiB was waiting.
  std::uint64_t LostBytes() const { return lostBytes_; }

  // Asked after the last Flush: bytes that the file has not got, given up or still waiting.
  std::uint64_t MissingBytes() const { return lostBytes_ + pending_.size(); }

 private:
  void DropExcess();
  void BeginTrouble(std::string_view what);
  void EndTrouble();
  void Tell(std::string_view message) const;

  EventLoop& loop_;
  LogFiles files_;
  std::function<void(std::string_view)> trouble_;
  std::string pending_;
  bool failing_ = false;
  std::uint64_t lostBytes_ = 0;
  std::uint64_t lostBefore_ = 0;  // lost until the present failure began
  Alarm flushAlarm_;
};

}  // namespace quarlin
