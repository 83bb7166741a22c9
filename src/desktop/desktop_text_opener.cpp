// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/desktop_text_opener.h"

#include <sys/wait.h>
#include <unistd.h>

#include "base/system_call.h"
#include "desktop/editor_lookup.h"
#include "desktop/new_process.h"

namespace quarlin {
namespace {

// A child in a session of its own whose parent has gone: the system reaps it, not we.
[[noreturn]] void StartAndLeave(char* const* words, const char* folder, int report) {
  setsid();
  const pid_t program = fork();
  if (program == 0) BecomeProgram(words, folder, -1, report);
  if (program < 0) FailToStart(report);
  _exit(0);
}

bool StartDetached(std::vector<std::string> words, const std::filesystem::path& folder) {
  const std::vector<char*> arguments = ArgumentsOf(words);
  Pipe report = MakePipe();
  if (report.readEnd.Get() < 0) return false;
  const pid_t starter = fork();
  if (starter == 0) StartAndLeave(arguments.data(), folder.c_str(), report.writeEnd.Get());
  report.writeEnd = FileHandle();
  if (starter < 0) return false;
  const bool started = !StartFailure(report.readEnd.Get());
  Uninterrupted([&] { return waitpid(starter, nullptr, 0); });
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
