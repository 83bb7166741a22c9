// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/desktop_text_opener.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "base/system_call.h"
#include "desktop/editor_lookup.h"

namespace quarlin {
namespace {

// Tells the parent why nothing was started, and ends.
[[noreturn]] void Fail(int report) {
  const int error = errno;
  _exit(write(report, &error, sizeof error) < 0 ? 126 : 127);
}

// Runs in the new process, between fork and exec: plain system calls only.
[[noreturn]] void BecomeProgram(char* const* words, const char* folder, int report) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : {SIGPIPE, SIGXFSZ}) signal(number, SIG_DFL);
  const int nowhere = open("/dev/null", O_RDWR);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, standard);
  // A serial port that the program inherited would stay taken after we have closed it.
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  if (chdir(folder) == 0) execv(words[0], words);
  Fail(report);
}

// A child in a session of its own whose parent has gone: the system reaps it, not we.
[[noreturn]] void StartAndLeave(char* const* words, const char* folder, int report) {
  setsid();
  const pid_t program = fork();
  if (program == 0) BecomeProgram(words, folder, report);
  if (program < 0) Fail(report);
  _exit(0);
}

// The pipe closes by itself when the program has begun; only a failure is written to it.
bool ReportsFailure(int report) {
  int error = 0;
  return Uninterrupted([&] { return read(report, &error, sizeof error); }) > 0;
}

bool StartDetached(std::vector<std::string> words, const std::filesystem::path& folder) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return false;
  const pid_t starter = fork();
  if (starter == 0) StartAndLeave(arguments.data(), folder.c_str(), report[1]);
  close(report[1]);
  bool started = starter > 0;
  if (started) {
    started = !ReportsFailure(report[0]);
    Uninterrupted([&] { return waitpid(starter, nullptr, 0); });
  }
  close(report[0]);
  return started;
}

}  // namespace

DesktopTextOpener::DesktopTextOpener(const Environment& environment) : editor_(FindTextEditor(environment)) {
  if (const auto opener = FindProgram("xdg-open", environment)) opener_ = {opener->string()};
}

bool DesktopTextOpener::OpenText(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(file, error);
  for (const auto& command : {editor_, opener_}) {
    if (!command) continue;
    std::vector<std::string> words = *command;
    words.push_back(whole.string());
    if (StartDetached(std::move(words), whole.parent_path())) return true;
  }
  return false;
}

}  // namespace quarlin
