// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/scripted_device.h"

#include <gtest/gtest.h>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class ScriptedDeviceRig : public testing::Test {
 protected:
  void Open() {
    OpenedDevice opened = ports_.Open("COM1", [this] { ++arrivals_; });
    ASSERT_FALSE(opened.error);
    device_ = std::move(opened.device);
  }

  std::string TakeQueue() {
    std::string bytes(device_->Queue().cbInQue, '?');
    bytes.resize(device_->Read(bytes.data(), bytes.size()).bytes);
    return bytes;
  }

  VirtualLoop loop_;
  ScriptedDeviceSource ports_{loop_};
  ScriptedDevice& port_ = ports_.AddPort("COM1");
  std::unique_ptr<Device> device_;
  int arrivals_ = 0;
};

TEST_F(ScriptedDeviceRig, AnswersComeWhenTheLineIsCompleteAndSent) {
  Open();
  port_.TakeAtMost(2);
  port_.SendingTakes(1ms);
  port_.AnswerLines(
      '\r', [](std::string_view line) { return "<" + std::string(line) + ">"; }, 20ms);
  EXPECT_EQ(device_->Write("W1\r").bytes, 2U);
  EXPECT_EQ(device_->Write("\rX").bytes, 2U);
  loop_.Pass(23ms);
  EXPECT_EQ(arrivals_, 0);
  loop_.Pass(1ms);
  EXPECT_EQ(TakeQueue(), "<W1\r>");
  EXPECT_EQ(port_.Written(), "W1\rX");
  EXPECT_EQ(arrivals_, 1);
}

TEST_F(ScriptedDeviceRig, ABlockedWriteWaitsForTheOutsideWorldOrTheDeadline) {
  Open();
  port_.BlockWrites();
  EXPECT_EQ(device_->Write("x").bytes, 0U);
  EXPECT_FALSE(device_->WaitWritable(loop_.Now() + 1s, [] { return false; }));
  loop_.Outside(50ms, [this] { port_.UnblockWrites(); });
  EXPECT_TRUE(device_->WaitWritable(loop_.Now() + 1s, [] { return false; }));
  EXPECT_EQ(device_->Write("x").bytes, 1U);
  EXPECT_EQ(port_.Writes().back().at, Instant(1h) + 1s + 50ms);
}

TEST_F(ScriptedDeviceRig, FailuresLastAsLongAsTold) {
  Open();
  port_.Fail(DeviceCall::Write, std::errc::io_error, 1);
  port_.Fail(DeviceCall::SetLine, std::errc::invalid_argument);
  EXPECT_EQ(device_->Write("x").error, std::errc::io_error);
  EXPECT_EQ(device_->Write("y").bytes, 1U);
  EXPECT_TRUE(device_->SetLine(OutputLine::Rts, true));
  EXPECT_TRUE(device_->SetLine(OutputLine::Rts, true));
  port_.Mend(DeviceCall::SetLine);
  EXPECT_FALSE(device_->SetLine(OutputLine::Rts, true));
  EXPECT_TRUE(port_.Line(OutputLine::Rts));
  EXPECT_EQ(port_.LineSettings().size(), 1U);
}

TEST_F(ScriptedDeviceRig, AnUnpluggedPortGivesItsLastBytesThenTheError) {
  Open();
  port_.Receive("last");
  port_.Unplug();
  EXPECT_EQ(TakeQueue(), "last");
  EXPECT_EQ(device_->Queue().error, std::errc::no_such_device);
  EXPECT_EQ(device_->Write("x").error, std::errc::no_such_device);
  EXPECT_FALSE(device_->Close());
  EXPECT_EQ(ports_.Open("COM1", [] {}).error, std::errc::no_such_file_or_directory);
  port_.PlugIn();
  Open();
  EXPECT_FALSE(device_->Queue().error);
  EXPECT_EQ(port_.Opens(), 2);
  EXPECT_EQ(port_.Closes(), 1);
}

}  // namespace
}  // namespace quarlin
