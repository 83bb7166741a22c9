// SPDX-License-Identifier: GPL-3.0-or-later
// A serial port of the tests. It lives in virtual time and outlasts every opening, so a test holds the
// instrument's end of the cable: it reads what was written, answers, takes bytes slowly, breaks, and
// can be unplugged. The program sees it through a ScriptedDeviceSource as its only way to ports.
//
//   ScriptedDeviceSource ports(loop);
//   ScriptedDevice& scale = ports.AddPort("COM1");
//   scale.AnswerLines('\r', [](std::string_view) { return "12.5 kg\r\n"; }, 20ms);
//   ... the program opens "COM1", sends "W\r" ...
//   EXPECT_EQ(scale.Written(), "W\r");
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "link/device.h"
#include "support/virtual_loop.h"

namespace quarlin {

enum class DeviceCall {
  Open,
  SetupQueues,
  Purge,
  SetTimeouts,
  Settings,
  Apply,
  Queue,
  Read,
  Write,
  Modem,
  SetLine,
  Close
};

class ScriptedDevice {
 public:
  using Answer = std::function<std::string(std::string_view written)>;

  struct Writing {
    Instant at;
    std::string bytes;  // those that were taken
  };
  struct LineSetting {
    Instant at;
    OutputLine line;
    bool asserted;
  };

  ScriptedDevice(VirtualLoop& loop, std::string name);

  // The instrument talks. While the port is closed nobody hears it.
  void Receive(std::string_view bytes);
  void ReceiveAfter(Duration after, std::string bytes);

  // The instrument answers each write, or each line, so long after its last byte was sent; an empty answer
  // is silence. The last call of either holds.
  void AnswerWrites(Answer answer, Duration after = Duration::zero());
  void AnswerLines(char end, Answer answer, Duration after = Duration::zero());
  static Answer InTurn(std::vector<std::string> answers);  // each once, then silence
  void StopAnswering();

  // How the driver takes what is written. To end a wait, have the outside world unblock:
  // loop.Outside(50ms, [&] { port.UnblockWrites(); }).
  void TakeAtMost(std::size_t bytesPerWrite) { takesAtMost_ = bytesPerWrite; }
  void BlockWrites(std::size_t afterBytes = 0) { room_ = afterBytes; }
  void UnblockWrites();
  void HoldBack(std::size_t bytes) { held_ = bytes; }           // in the driver; a wait for them never ends
  void SendingTakes(Duration perByte) { byteTime_ = perByte; }  // what WaitSent waits for

  // What goes wrong: the call fails so many times with that error, or until Mend. A close that fails
  // leaves the port open.
  void Fail(DeviceCall call, std::errc error, int times = always);
  void Mend(DeviceCall call) { failures_.erase(call); }
  void Unplug();  // what has arrived can still be taken; then ENODEV, at an opening ENOENT
  void PlugIn() { plugged_ = true; }
  void CountLineErrors(std::uint32_t flags) { errorFlags_ |= flags; }
  void CountLineErrors(const LineErrors& errors) {
    lineErrors_ = lineErrors_.value_or(LineErrors()) + errors;
  }
  void SetModemLines(std::uint16_t lines) { modemLines_ = lines; }
  void HasLowLatencyMode() { lowLatency_ = false; }

  // What the program did.
  const std::string& Written() const { return written_; }  // every byte since the start or ForgetWritten
  const std::vector<Writing>& Writes() const { return writes_; }
  void ForgetWritten();
  const std::vector<LineSetting>& LineSettings() const { return lineSettings_; }
  bool Line(OutputLine line) const { return lines_.contains(line) && lines_.at(line); }
  const SerialSettings& Settings() const { return settings_; }  // as last applied
  void ForgetSettings() { settings_ = {}; }
  std::size_t Unread() const { return queue_.size(); }
  std::optional<bool> LowLatency() const { return lowLatency_; }
  bool IsOpen() const { return handle_ != nullptr; }
  int Opens() const { return opens_; }  // successful ones
  int Closes() const { return closes_; }

  // Every call that reached the device but queries of queue, modem lines and settings, in order, in words:
  // "open", "queues 1024 1024", "purge", "timeouts", "apply", "rts on", "write AB", "sent", "rts off",
  // "close".
  int ErrorQueries() const { return errorQueries_; }
  const std::vector<std::string>& Journal() const { return journal_; }
  void ForgetJournal() { journal_.clear(); }

  static constexpr int always = -1;

 private:
  friend class ScriptedDeviceSource;
  class Handle;

  struct Failure {
    std::error_code error;
    int timesLeft;
  };

  OpenedDevice Open(std::function<void()> arrived);
  std::error_code FailureOf(DeviceCall call);
  Transfer Take(std::string_view bytes);
  void AnswerTo(std::string_view bytes);
  void SendAnswer(std::string_view request);
  void Wake();

  VirtualLoop& loop_;
  std::string name_;
  Handle* handle_ = nullptr;  // the opening in progress
  std::function<void()> arrived_;
  bool plugged_ = true;
  bool lost_ = false;  // unplugged since it was opened
  std::string queue_;  // received and not taken
  SerialSettings settings_;
  std::uint16_t modemLines_ = 0;
  std::uint32_t errorFlags_ = 0;
  std::optional<bool> lowLatency_;        // nothing: no such mode
  std::optional<LineErrors> lineErrors_;  // since the port exists
  std::map<OutputLine, bool> lines_;
  std::map<DeviceCall, Failure> failures_;

  Answer answer_;
  Duration answersAfter_{};
  std::optional<char> lineEnd_;
  std::string line_;  // of a request, not complete

  std::size_t takesAtMost_ = std::string::npos;
  std::size_t room_ = std::string::npos;  // until writes block
  std::size_t held_ = 0;
  Duration byteTime_{};
  Instant lineFree_{};

  std::string written_;
  std::vector<Writing> writes_;
  std::vector<LineSetting> lineSettings_;
  std::vector<std::string> journal_;
  int errorQueries_ = 0;
  int opens_ = 0;
  int closes_ = 0;
};

class ScriptedDeviceSource : public DeviceSource {
 public:
  explicit ScriptedDeviceSource(VirtualLoop& loop) : loop_(loop) {}

  ScriptedDevice& AddPort(const std::string& name);
  ScriptedDevice& Port(const std::string& name) { return *ports_.at(name); }

  // The names that were asked for, also of ports that do not exist.
  const std::vector<std::string>& Tried() const { return tried_; }

  // Fails with ENOENT for a port that does not exist or is unplugged, with EBUSY for one that is open.
  OpenedDevice Open(const std::string& portName, std::function<void()> arrived) override;

 private:
  VirtualLoop& loop_;
  std::map<std::string, std::unique_ptr<ScriptedDevice>> ports_;
  std::vector<std::string> tried_;
};

}  // namespace quarlin
