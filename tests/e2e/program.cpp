// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/program.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>

#include "base/files.h"

namespace quarlin {
namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

bool Eventually(const std::function<bool()>& done, std::chrono::milliseconds patience) {
  const auto end = Clock::now() + patience;
  while (!done()) {
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

Program::Program(const std::string& name, const std::vector<std::string>& arguments,
                 const std::filesystem::path& folder, const std::map<std::string, std::string>& environment,
                 std::optional<int> output)
    : output_(folder / (name + ".out")), errors_(folder / (name + ".err")) {
  std::vector<std::string> words{std::string(BIN_FOLDER) + "/" + name};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string variable = *entry;
    if (!environment.contains(variable.substr(0, variable.find('=')))) variables.push_back(variable);
  }
  for (const auto& [key, value] : environment) variables.push_back(fmt::format("{}={}", key, value));
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int writeNew = O_WRONLY | O_CREAT | O_TRUNC;
  if (!output) {
    posix_spawn_file_actions_addopen(&actions, 1, output_.c_str(), writeNew, 0600);
  } else if (*output >= 0) {
    posix_spawn_file_actions_adddup2(&actions, *output, 1);
  } else {
    posix_spawn_file_actions_addclose(&actions, 1);
  }
  posix_spawn_file_actions_addopen(&actions, 2, errors_.c_str(), writeNew, 0600);
  const int failed = posix_spawn(&pid_, words[0].c_str(), &actions, nullptr, Pointers(words).data(),
                                 Pointers(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw std::runtime_error("cannot start " + words[0]);
}

Program::~Program() {
  if (!Running()) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

bool Program::Running() {
  int status = 0;
  if (!status_ && waitpid(pid_, &status, WNOHANG) == pid_) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return !status_;
}

std::optional<int> Program::Wait(std::chrono::milliseconds patience) {
  Eventually([this] { return !Running(); }, patience);
  return status_;
}

void Program::Signal(int number) const {
  kill(pid_, number);
}

std::string Program::Output() const {
  return ReadWholeFile(output_).value_or("");
}

std::string Program::Errors() const {
  return ReadWholeFile(errors_).value_or("");
}

std::string Program::FirstOutputLine() {
  Eventually([this] { return Output().find('\n') != std::string::npos; });
  const std::string output = Output();
  return output.substr(0, output.find('\n'));
}

Wire::Wire() {
  char name[128];
  termios raw{};
  cfmakeraw(&raw);
  if (openpty(&master_, &slave_, name, &raw, nullptr) != 0) throw std::runtime_error("no pseudo-terminal");
  fcntl(master_, F_SETFL, O_NONBLOCK);
  for (const int end : {master_, slave_})
    fcntl(end, F_SETFD, FD_CLOEXEC);  // or the program could not be hung up
  path_ = name;
}

Wire::~Wire() {
  HangUp();
}

void Wire::HangUp() {
  if (master_ < 0) return;
  close(master_);
  close(slave_);
  master_ = -1;
}

void Wire::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    pollfd ready{master_, POLLOUT, 0};
    if (poll(&ready, 1, 20000) != 1) throw std::runtime_error("nobody reads");
    const ssize_t wrote = write(master_, bytes.data(), bytes.size());
    if (wrote > 0) bytes.remove_prefix(static_cast<std::size_t>(wrote));
  }
}

bool Wire::Take(std::chrono::milliseconds patience) {
  pollfd ready{master_, POLLIN, 0};
  if (poll(&ready, 1, static_cast<int>(patience.count())) != 1) return false;
  char buffer[4096];
  const ssize_t got = read(master_, buffer, sizeof buffer);
  if (got > 0) received_.append(buffer, static_cast<std::size_t>(got));
  return got > 0;
}

void Wire::Serve(const std::function<std::string(std::string_view line)>& answer,
                 const std::function<bool()>& done, std::chrono::milliseconds patience) {
  const auto end = Clock::now() + patience;
  while (!done() && Clock::now() < end) {
    Take(std::chrono::milliseconds(5));
    for (std::size_t lf; (lf = received_.find('\n', served_)) != std::string::npos;) {
      const std::string line = received_.substr(served_, lf + 1 - served_);
      served_ = lf + 1;
      Send(answer(line));
    }
  }
  while (Take(std::chrono::milliseconds(0))) {  // the last words of a program that has ended
  }
}

}  // namespace quarlin
