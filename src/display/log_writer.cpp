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

LogWriter::LogWriter(EventLoop& loop, std::filesystem::path file,
                     std::function<void(std::string_view)> trouble)
    : loop_(loop),
      file_(std::move(file)),
      trouble_(std::move(trouble)),
      flushAlarm_(loop, [this] { Flush(); }) {}

LogWriter::~LogWriter() {
  trouble_ = nullptr;  // whoever would be told may be gone already
  Flush();
}

void LogWriter::Write(std::string_view text) {
  if (text.empty()) return;
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
  std::size_t written = 0;
  const std::error_code error = AppendToFile(file_, pending_, written);
  pending_.erase(0, written);
  if (!pending_.empty()) flushAlarm_.At(loop_.Now() + retryPause);
  if (error) {
    BeginTrouble(error);
  } else {
    EndTrouble();
  }
}

void LogWriter::BeginTrouble(std::error_code error) {
  if (std::exchange(failing_, true)) return;
  lostBefore_ = lostBytes_;
  Tell(fmt::format("{} cannot be written: {}; the run goes on", file_.filename().string(), error.message()));
}

void LogWriter::EndTrouble() {
  if (!std::exchange(failing_, false)) return;
  const std::uint64_t lost = lostBytes_ - lostBefore_;
  const std::string gap = lost == 0 ? "" : fmt::format(", {} bytes are missing", lost);
  Tell(fmt::format("{} is written again{}", file_.filename().string(), gap));
}

void LogWriter::Tell(std::string_view message) const {
  if (trouble_) trouble_(message);
}

}  // namespace quarlin
