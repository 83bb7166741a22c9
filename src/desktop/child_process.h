// SPDX-License-Identifier: GPL-3.0-or-later
// A program that works for us: it runs beside us and not without us.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "base/file_handle.h"

namespace quarlin {

class ChildProcess;

struct StartedChild {
  std::unique_ptr<ChildProcess> child;
  std::error_code error;  // why there is none
};

class ChildProcess {
 public:
  // Starts the program words[0] with the other words. It reads nothing. When the thread that started it ends
  // first, by a crash for instance, the program gets SIGTERM. Waits only until the program has begun.
  static StartedChild Start(std::vector<std::string> words);

  // Asks it to end, gives it two seconds, and then makes it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Can be read once the program has ended.
  int EndDescriptor() const { return end_.Get(); }

  // Whether it has ended. Never waits.
  bool Ended();

  // Can be read when TakeOutput has news.
  int OutputDescriptor() const { return output_.Get(); }

  // What it has printed since, on either stream, up to 4 KiB at once; nothing when no more will come. Never
  // waits.
  std::optional<std::string> TakeOutput();

  void AskToEnd() const;  // SIGTERM
  void MakeItEnd() const;

 private:
  ChildProcess(pid_t process, FileHandle end, FileHandle output);

  void Signal(int number) const;

  pid_t process_;  // 0 when it has ended
  FileHandle end_;
  FileHandle output_;
};

}  // namespace quarlin
