// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "base/system_call.h"
#include "desktop/new_process.h"

namespace quarlin {
namespace {

constexpr int patience = 2000;  // milliseconds for an end in order
constexpr std::size_t mostTaken = 4096;

// Becomes readable when the process has ended. The C library's own call lacks C linkage in some versions.
FileHandle EndOf(pid_t process) {
  return FileHandle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

// Waits until the parent holds the handle of our end: where nobody waits for children (SIGCHLD is ignored)
// one that has ended by then cannot be found any more. The parent may have gone before the system was told to
// watch it.
[[noreturn]] void BecomeChild(char* const* words, int output, int report, Pipe& leave, pid_t parent) {
  if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) FailToStart(report);
  leave.writeEnd = FileHandle();
  char given = 0;
  Uninterrupted([&] { return read(leave.readEnd.Get(), &given, sizeof given); });
  if (getppid() != parent) _exit(0);
  BecomeProgram(words, "/", output, report);
}

}  // namespace

StartedChild ChildProcess::Start(std::vector<std::string> words) {
  const std::vector<char*> arguments = ArgumentsOf(words);
  Pipe report = MakePipe();
  Pipe output = MakePipe();
  Pipe leave = MakePipe();
  for (const Pipe* pipe : {&report, &output, &leave}) {
    if (pipe->readEnd.Get() < 0) return {nullptr, LastError()};
  }
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process < 0) return {nullptr, LastError()};
  if (process == 0) {
    BecomeChild(arguments.data(), output.writeEnd.Get(), report.writeEnd.Get(), leave, parent);
  }
  report.writeEnd = FileHandle();
  FileHandle end = EndOf(process);
  std::error_code error = end.Get() < 0 ? LastError() : std::error_code();
  // Not by closing it: a process that another thread has just started may still hold a copy.
  if (!error && write(leave.writeEnd.Get(), "", 1) < 0) error = LastError();
  if (!error) error = StartFailure(report.readEnd.Get());
  if (error) {
    kill(process, SIGKILL);
    Uninterrupted([&] { return waitpid(process, nullptr, 0); });
    return {nullptr, error};
  }
  fcntl(output.readEnd.Get(), F_SETFL, O_NONBLOCK);
  return {std::unique_ptr<ChildProcess>(new ChildProcess(process, std::move(end), std::move(output.readEnd))),
          {}};
}

ChildProcess::ChildProcess(pid_t process, FileHandle end, FileHandle output)
    : process_(process), end_(std::move(end)), output_(std::move(output)) {}

ChildProcess::~ChildProcess() {
  if (Ended()) return;
  AskToEnd();
  pollfd ended{end_.Get(), POLLIN, 0};
  if (Uninterrupted([&] { return poll(&ended, 1, patience); }) <= 0) MakeItEnd();
  Uninterrupted([&] { return waitpid(process_, nullptr, 0); });
}

// An error means that the system has reaped it, which it does where SIGCHLD was ignored by whoever started
// us.
bool ChildProcess::Ended() {
  if (process_ != 0 && waitpid(process_, nullptr, WNOHANG) != 0) process_ = 0;
  return process_ == 0;
}

std::optional<std::string> ChildProcess::TakeOutput() {
  std::array<char, mostTaken> printed;
  const ssize_t taken = Uninterrupted([&] { return read(output_.Get(), printed.data(), printed.size()); });
  if (taken == 0 || (taken < 0 && errno != EAGAIN)) return std::nullopt;
  return std::string(printed.data(), taken < 0 ? 0 : static_cast<std::size_t>(taken));
}

void ChildProcess::AskToEnd() const {
  Signal(SIGTERM);
}

void ChildProcess::MakeItEnd() const {
  Signal(SIGKILL);
}

// Until it was waited for, the number is nobody else's.
void ChildProcess::Signal(int number) const {
  if (process_ != 0) kill(process_, number);
}

}  // namespace quarlin
