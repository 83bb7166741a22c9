// SPDX-License-Identifier: GPL-3.0-or-later
// A started program with its output, and the instrument's end of a pseudo-terminal.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

class Program {
 public:
  // Starts a program of the build with standard output and error in files of `folder`. `output` is a
  // descriptor to take the place of the first, or -1: closed.
  Program(const std::string& name, const std::vector<std::string>& arguments,
          const std::filesystem::path& folder, const std::map<std::string, std::string>& environment = {},
          std::optional<int> output = std::nullopt);
  ~Program();  // ends it by force if it still runs

  // Its exit status, once it has ended; nothing when it did not in time.
  std::optional<int> Wait(std::chrono::milliseconds patience = std::chrono::seconds(60));
  void Signal(int number) const;
  bool Running();
  std::string Output() const;
  std::string Errors() const;
  std::string FirstOutputLine();  // waits for it

 private:
  std::filesystem::path output_;
  std::filesystem::path errors_;
  pid_t pid_ = -1;
  std::optional<int> status_;
};

class Wire {
 public:
  Wire();
  ~Wire();

  const std::string& Path() const { return path_; }
  void Send(std::string_view bytes);  // waits until all of it has been taken

  // Reads what comes and answers each line of it, its LF included, until `done` or the patience is at its
  // end. What has come by then is read, too.
  void Serve(const std::function<std::string(std::string_view line)>& answer,
             const std::function<bool()>& done,
             std::chrono::milliseconds patience = std::chrono::seconds(60));
  const std::string& Received() const { return received_; }
  void HangUp();

 private:
  bool Take(std::chrono::milliseconds patience);

  int master_ = -1;
  int slave_ = -1;
  std::string path_;
  std::string received_;
  std::size_t served_ = 0;  // the end of the last line that was answered
};

// Waits until `done`, looking every few milliseconds; false when it never came.
bool Eventually(const std::function<bool()>& done,
                std::chrono::milliseconds patience = std::chrono::seconds(60));

}  // namespace quarlin
