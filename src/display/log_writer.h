// A log file of the traffic, byte for byte, always appended to. What is written waits in memory for at
// most 50 ms or 64 KiB; a file that cannot be written is reported once and tried again, and never
// stops the run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

#include "controls/event_loop.h"

namespace quarlin {

class LogWriter {
 public:
  // `trouble` is told in words when writing begins to fail and when it works again.
  LogWriter(EventLoop& loop, std::filesystem::path file, std::function<void(std::string_view)> trouble);
  ~LogWriter();  // writes what is left, and tells nobody when it cannot

  void Write(std::string_view text);
  void Flush();

  // Bytes given up because the file could not be written for so long that 1 MiB was waiting.
  std::uint64_t LostBytes() const { return lostBytes_; }

  // Asked after the last Flush: bytes that the file has not got, given up or still waiting.
  std::uint64_t MissingBytes() const { return lostBytes_ + pending_.size(); }

  const std::filesystem::path& File() const { return file_; }

 private:
  void DropExcess();
  void BeginTrouble(std::error_code error);
  void EndTrouble();
  void Tell(std::string_view message) const;

  EventLoop& loop_;
  std::filesystem::path file_;
  std::function<void(std::string_view)> trouble_;
  std::string pending_;
  bool failing_ = false;
  std::uint64_t lostBytes_ = 0;
  std::uint64_t lostBefore_ = 0;  // lost until the present failure began
  Alarm flushAlarm_;
};

}  // namespace quarlin
