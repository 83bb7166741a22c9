// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/scripted_device.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace quarlin {

// One opening of the port, as the program holds it.
class ScriptedDevice::Handle : public Device {
 public:
  explicit Handle(ScriptedDevice& port) : port_(port) {}

  ~Handle() override {
    EXPECT_EQ(waits_, 0) << port_.name_ << " ends while a wait of it is on the stack";
    if (!closed_) End();
  }

  std::error_code SetupQueues(std::size_t input, std::size_t output) override {
    return Begin(DeviceCall::SetupQueues, fmt::format("queues {} {}", input, output));
  }

  std::error_code Purge() override {
    if (const auto error = Begin(DeviceCall::Purge, "purge")) return error;
    port_.queue_.clear();
    return {};
  }

  std::error_code SetTimeouts() override { return Begin(DeviceCall::SetTimeouts, "timeouts"); }

  CurrentSettings Settings() override { return {port_.settings_, Begin(DeviceCall::Settings)}; }

  std::error_code Apply(const SerialSettings& settings) override {
    if (const auto error = Begin(DeviceCall::Apply, "apply")) return error;
    port_.settings_ = settings;
    return {};
  }

  QueueStatus Queue() override {
    if (const auto error = Begin(DeviceCall::Queue)) return {0, error};
    return {port_.queue_.size(), ErrorWhenDry()};
  }

  Transfer Read(char* buffer, std::size_t size) override {
    if (const auto error = Begin(DeviceCall::Read)) return {0, error};
    if (const auto error = ErrorWhenDry()) return {0, error};
    const std::size_t count = port_.queue_.copy(buffer, size);
    port_.queue_.erase(0, count);
    return {count, {}};
  }

  Transfer Write(std::string_view bytes) override {
    if (const auto error = Begin(DeviceCall::Write)) return {0, error};
    return port_.Take(bytes);
  }

  bool Writable() const override { return port_.room_ > 0; }

  bool WaitWritable(Instant deadline, const std::function<bool()>& givenUp) override {
    return Wait([&] { return port_.room_ > 0 || givenUp(); }, deadline);
  }

  void CallWhileWritable(std::function<void()> room) override {
    roomCall_ = std::move(room);
    roomAlarm_.Cancel();
    OfferRoom();
  }

  // As a real driver, again and again while there is room.
  void OfferRoom() {
    if (roomCall_ && waits_ == 0 && port_.room_ > 0 && !closed_) roomAlarm_.At(port_.loop_.Now());
  }

  void WaitSent(Instant deadline) override {
    Wait([this] { return port_.held_ == 0 && port_.loop_.Now() >= port_.lineFree_; },
         port_.held_ > 0 ? deadline : std::min(deadline, port_.lineFree_));
    if (!closed_) port_.journal_.emplace_back("sent");
  }

  std::size_t Unsent() const override {
    if (port_.byteTime_ == Duration::zero()) return port_.held_;
    const Duration left = std::max(port_.lineFree_ - port_.loop_.Now(), Duration::zero());
    return static_cast<std::size_t>((left + port_.byteTime_ - Duration(1)) / port_.byteTime_);
  }

  std::optional<LineErrors> Errors() override {
    ++port_.errorQueries_;
    if (!port_.lineErrors_) return std::nullopt;
    return *port_.lineErrors_ - before_;
  }

  ModemStatus Modem() override {
    const auto error = Begin(DeviceCall::Modem);
    return {error ? std::uint16_t{0} : port_.modemLines_, error};
  }

  std::error_code SetLine(OutputLine line, bool asserted) override {
    const std::string_view name = line == OutputLine::Break ? "break"
                                  : line == OutputLine::Dtr ? "dtr"
                                                            : "rts";
    const std::string words = fmt::format("{} {}", name, asserted ? "on" : "off");
    if (const auto error = Begin(DeviceCall::SetLine, words)) return error;
    port_.lines_[line] = asserted;
    port_.lineSettings_.push_back({port_.loop_.Now(), line, asserted});
    return {};
  }

  std::error_code SetLowLatency(bool on) override {
    if (!port_.lowLatency_) return std::make_error_code(std::errc::not_supported);
    port_.lowLatency_ = on;
    return {};
  }

  std::uint32_t TakeErrorFlags() override { return std::exchange(port_.errorFlags_, 0); }

  std::error_code Close() override {
    if (const auto error = Begin(DeviceCall::Close, "close")) return error;
    End();
    return {};
  }

 private:
  // What every call has in common: it may be too late, noted, or told to fail.
  std::error_code Begin(DeviceCall call, std::string words = {}) {
    EXPECT_FALSE(closed_) << port_.name_ << " is used after its end";
    if (!words.empty()) port_.journal_.push_back(std::move(words));
    if (const auto error = port_.FailureOf(call)) return error;
    if (NeedsTheLine(call) && port_.lost_) return std::make_error_code(std::errc::no_such_device);
    return {};
  }

  // The others work on what has arrived, or end it all.
  static bool NeedsTheLine(DeviceCall call) {
    return call != DeviceCall::Queue && call != DeviceCall::Read && call != DeviceCall::Close;
  }

  std::error_code ErrorWhenDry() const {
    if (!port_.queue_.empty() || !port_.lost_) return {};
    return std::make_error_code(std::errc::no_such_device);
  }

  bool Wait(const std::function<bool()>& done, Instant deadline) {
    EXPECT_FALSE(closed_) << port_.name_ << " is waited for after its end";
    ++waits_;
    const bool ended = port_.loop_.WaitUntil([&] { return closed_ || port_.lost_ || done(); }, deadline);
    --waits_;
    OfferRoom();
    return ended;
  }

  void End() {
    closed_ = true;
    if (port_.lowLatency_) port_.lowLatency_ = false;
    roomAlarm_.Cancel();
    port_.handle_ = nullptr;
    port_.arrived_ = nullptr;
    port_.queue_.clear();
    ++port_.closes_;
  }

  ScriptedDevice& port_;
  const LineErrors before_ = port_.lineErrors_.value_or(LineErrors());
  bool closed_ = false;
  int waits_ = 0;
  std::function<void()> roomCall_;
  Alarm roomAlarm_{port_.loop_, [this] {
                     if (!roomCall_) return;
                     const auto call = roomCall_;
                     OfferRoom();
                     call();
                   }};
};

ScriptedDevice::ScriptedDevice(VirtualLoop& loop, std::string name) : loop_(loop), name_(std::move(name)) {}

OpenedDevice ScriptedDevice::Open(std::function<void()> arrived) {
  if (!plugged_) return {nullptr, std::make_error_code(std::errc::no_such_file_or_directory)};
  if (IsOpen()) return {nullptr, std::make_error_code(std::errc::device_or_resource_busy)};
  if (const auto error = FailureOf(DeviceCall::Open)) return {nullptr, error};
  auto handle = std::make_unique<Handle>(*this);
  handle_ = handle.get();
  arrived_ = std::move(arrived);
  lost_ = false;
  lineFree_ = loop_.Now();
  ++opens_;
  journal_.emplace_back("open");
  return {std::move(handle), {}};
}

void ScriptedDevice::Receive(std::string_view bytes) {
  if (!IsOpen() || lost_) return;
  queue_ += bytes;
  Wake();
}

void ScriptedDevice::ReceiveAfter(Duration after, std::string bytes) {
  loop_.Outside(after, [this, bytes = std::move(bytes)] { Receive(bytes); });
}

void ScriptedDevice::Wake() {
  const auto arrived = arrived_;  // the call may close the port
  if (arrived) arrived();
}

void ScriptedDevice::AnswerWrites(Answer answer, Duration after) {
  answer_ = std::move(answer);
  answersAfter_ = after;
  lineEnd_.reset();
  line_.clear();
}

void ScriptedDevice::AnswerLines(char end, Answer answer, Duration after) {
  AnswerWrites(std::move(answer), after);
  lineEnd_ = end;
}

ScriptedDevice::Answer ScriptedDevice::InTurn(std::vector<std::string> answers) {
  return [answers = std::move(answers), next = std::size_t{0}](std::string_view) mutable {
    return next < answers.size() ? answers[next++] : std::string();
  };
}

void ScriptedDevice::StopAnswering() {
  AnswerWrites(nullptr);
}

Transfer ScriptedDevice::Take(std::string_view bytes) {
  bytes = bytes.substr(0, std::min(room_, takesAtMost_));
  if (bytes.empty()) return {};
  if (room_ != std::string::npos) room_ -= bytes.size();
  written_ += bytes;
  writes_.push_back({loop_.Now(), std::string(bytes)});
  journal_.push_back("write " + std::string(bytes));
  lineFree_ = std::max(lineFree_, loop_.Now()) + static_cast<Duration::rep>(bytes.size()) * byteTime_;
  AnswerTo(bytes);
  return {bytes.size(), {}};
}

void ScriptedDevice::AnswerTo(std::string_view bytes) {
  if (!answer_) return;
  if (!lineEnd_) return SendAnswer(bytes);
  for (const char byte : bytes) {
    line_ += byte;
    if (byte == *lineEnd_) SendAnswer(std::exchange(line_, {}));
  }
}

void ScriptedDevice::SendAnswer(std::string_view request) {
  std::string answer = answer_(request);
  if (answer.empty()) return;
  const Duration sending = std::max(lineFree_ - loop_.Now(), Duration::zero());
  ReceiveAfter(sending + answersAfter_, std::move(answer));
}

void ScriptedDevice::Fail(DeviceCall call, std::errc error, int times) {
  failures_[call] = {std::make_error_code(error), times};
}

std::error_code ScriptedDevice::FailureOf(DeviceCall call) {
  const auto found = failures_.find(call);
  if (found == failures_.end()) return {};
  const std::error_code error = found->second.error;
  if (found->second.timesLeft != always && --found->second.timesLeft == 0) failures_.erase(found);
  return error;
}

void ScriptedDevice::Unplug() {
  plugged_ = false;
  lost_ = true;
  Wake();
}

void ScriptedDevice::UnblockWrites() {
  room_ = std::string::npos;
  if (handle_ != nullptr) handle_->OfferRoom();
}

void ScriptedDevice::ForgetWritten() {
  written_.clear();
  writes_.clear();
}

ScriptedDevice& ScriptedDeviceSource::AddPort(const std::string& name) {
  auto& port = ports_[name];
  port = std::make_unique<ScriptedDevice>(loop_, name);
  return *port;
}

OpenedDevice ScriptedDeviceSource::Open(const std::string& portName, std::function<void()> arrived) {
  tried_.push_back(portName);
  const auto port = ports_.find(portName);
  if (port == ports_.end()) return {nullptr, std::make_error_code(std::errc::no_such_file_or_directory)};
  return port->second->Open(std::move(arrived));
}

}  // namespace quarlin
