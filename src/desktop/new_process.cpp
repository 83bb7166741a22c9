// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/new_process.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "base/system_call.h"

namespace quarlin {

Pipe MakePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {FileHandle(), FileHandle()};
  return {FileHandle(ends[0]), FileHandle(ends[1])};
}

std::vector<char*> ArgumentsOf(std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

void BecomeProgram(char* const* words, const char* folder, int output, int report) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : {SIGPIPE, SIGXFSZ}) signal(number, SIG_DFL);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDIN_FILENO);
  for (const int printed : {STDOUT_FILENO, STDERR_FILENO}) dup2(output < 0 ? nowhere : output, printed);
  // A serial port that the program inherited would stay taken after we have closed it.
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  if (chdir(folder) == 0) execv(words[0], words);
  FailToStart(report);
}

void FailToStart(int report) {
  const int error = errno;
  _exit(write(report, &error, sizeof error) < 0 ? 126 : 127);
}

std::error_code StartFailure(int report) {
  int error = 0;
  const auto got = Uninterrupted([&] { return read(report, &error, sizeof error); });
  return got > 0 ? SystemError(error) : std::error_code();
}

}  // namespace quarlin
