// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/log_writer.h"

#include <fmt/format.h>

#include <chrono>
#include <utility>

#include "base/files.h"

namespace quarlin {
namespace {

constexpr std::size_t flushSize = std::size_t{64} << 10;
constexpr std::size_t mostPending = std::size_t{1} << 20;
constexpr auto flushDelay = std::chrono::milliseconds(50);  // so that the file is as good as the display
constexpr auto retryPause = std::chrono::seconds(1);

}  // namespace

LogWriter::LogWriter(EventLoop& loop, LogFiles files, std::function<void(std::string_view)> trouble)
    : loop_(loop),
      files_(std::move(files)),
      trouble_(std::move(trouble)),
      flushAlarm_(loop, [this] { Flush(); }) {}

LogWriter::~LogWriter() {
  trouble_ = nullptr;  // whoever would be told may be gone already
  Flush();
}

void LogWriter::Write(std::string_view text) {
  if (text.empty()) return;
  if (!failing_) files_.Present(loop_.Local());  // of the time of the text, not of the flush
  pending_ += text;
  if (!flushAlarm_.IsSet()) flushAlarm_.At(loop_.Now() + flushDelay);
  if (!failing_ && pending_.size() >= flushSize) Flush();
  DropExcess();
}

// What comes too late for the 1 MiB is lost, so the file has one gap rather than many.
void LogWriter::DropExcess() {
  if (pending_.size() <= mostPending) return;
  lostBytes_ += pending_.size() - mostPending;
  pending_.resize(mostPending);
}

void LogWriter::Flush() {
  flushAlarm_.Cancel();
  if (pending_.empty()) return;
  LogFiles::Place place = files_.Present(loop_.Local());
  std::size_t written = 0;
  if (place.fault.empty()) {
    const std::error_code error = AppendToFile(place.file, pending_, written);
    if (error) place.fault = fmt::format("{} cannot be written: {}", Name(), error.message());
    pending_.erase(0, written);
    files_.Grew(written);
  }
  if (!pending_.empty()) flushAlarm_.At(loop_.Now() + retryPause);
  if (!place.fault.empty()) {
    BeginTrouble(place.fault);
  } else {
    EndTrouble();
  }
}

bool LogWriter::LeaveFor(std::size_t bytes, std::string_view ending) {
  if (failing_ || !files_.Leaves(pending_.size(), bytes, loop_.Local())) return false;
  pending_ += ending;
  Flush();
  if (pending_.empty()) files_.Leave();
  return true;
}

void LogWriter::SetRules(LogRules rules) {
  Flush();
  files_.SetRules(std::move(rules));
}

void LogWriter::Restart() {
  Flush();
  files_.Restart();
}

std::string LogWriter::Name() const {
  return files_.Name(loop_.Local());
}

void LogWriter::BeginTrouble(std::string_view what) {
  if (std::exchange(failing_, true)) return;
  lostBefore_ = lostBytes_;
  Tell(fmt::format("{}; the run goes on", what));
}

void LogWriter::EndTrouble() {
  if (!std::exchange(failing_, false)) return;
  const std::uint64_t lost = lostBytes_ - lostBefore_;
  const std::string gap = lost == 0 ? "" : fmt::format(", {} bytes are missing", lost);
  Tell(fmt::format("{} is written again{}", Name(), gap));
}

void LogWriter::Tell(std::string_view message) const {
  if (trouble_) trouble_(message);
}

}  // namespace quarlin
