// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/posix_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <optional>

#include "support/poll_loop.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// A device on one end of a pseudo-terminal, the test on the other.
bool Never() {
  return false;
}

class PosixDeviceRig : public testing::Test {
 protected:
  PosixDeviceRig() {
    int port = -1;
    char path[64];
    EXPECT_EQ(openpty(&instrument_, &port, path, nullptr, nullptr), 0);
    path_ = path;
    close(port);
    fcntl(instrument_, F_SETFL, O_NONBLOCK);
  }

  ~PosixDeviceRig() override {
    device_.reset();
    HangUp();
  }

  OpenedDevice TryOpen(const std::string& name) {
    return source_.Open(name, [this] { ++arrivals_; });
  }

  void Open() {
    OpenedDevice opened = TryOpen(path_);
    ASSERT_FALSE(opened.error) << opened.error.message();
    device_ = std::move(opened.device);
  }

  std::error_code Set(std::string_view text) {
    SerialSettings settings = device_->Settings().settings;
    EXPECT_TRUE(BuildCommDcb(text, settings));
    return device_->Apply(settings);
  }

  void InstrumentSends(std::string_view bytes) {
    ASSERT_EQ(write(instrument_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  std::string InstrumentReads() {
    char buffer[65536];
    const ssize_t count = read(instrument_, buffer, sizeof buffer);
    return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
  }

  void HangUp() {
    if (instrument_ >= 0) close(instrument_);
    instrument_ = -1;
  }

  std::string TakeUpTo(std::size_t size) {
    std::string bytes(size, '?');
    const Transfer taken = device_->Read(bytes.data(), size);
    EXPECT_FALSE(taken.error);
    bytes.resize(taken.bytes);
    return bytes;
  }

  std::string TakeQueue() { return TakeUpTo(device_->Queue().cbInQue); }

  // Until the driver takes no more, also after it has moved bytes towards the instrument.
  void FillOutput() {
    const std::string block(4096, 'x');
    while (device_->Write(block).bytes > 0) {
      while (device_->Write(block).bytes > 0) {
      }
      pollfd moves{instrument_, POLLIN, 0};
      poll(&moves, 1, 0);
    }
  }

  bool Until(const std::function<bool()>& done) { return loop_.Run(done, 60s); }

  PollLoop loop_;
  PosixDeviceSource source_{loop_};
  int instrument_ = -1;
  std::string path_;
  TempFolder folder_;
  int arrivals_ = 0;
  std::unique_ptr<Device> device_;
};

// While one of these lives, signals come so often that they cut system calls short.
class AlarmSignals {
 public:
  AlarmSignals() {
    struct sigaction interrupt {};
    interrupt.sa_handler = [](int) {};  // without SA_RESTART
    sigaction(SIGALRM, &interrupt, &before_);
    const itimerval often{{0, 50}, {0, 50}};
    setitimer(ITIMER_REAL, &often, nullptr);
  }
  ~AlarmSignals() {
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before_, nullptr);
  }
  AlarmSignals(const AlarmSignals&) = delete;
  AlarmSignals& operator=(const AlarmSignals&) = delete;

 private:
  struct sigaction before_ {};
};

TEST(DevicePath, NamesAreTakenAsTheUserWritesThem) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"COM1", "/dev/ttyS0"},
      {"com12", "/dev/ttyS11"},
      {"COM0", "/dev/COM0"},
      {"COM", "/dev/COM"},
      {"COM1x", "/dev/COM1x"},
      {"COM-1", "/dev/COM-1"},
      {"ttyUSB0", "/dev/ttyUSB0"},
      {"serial/by-id/a b", "/dev/serial/by-id/a b"},
      {"/tmp/my port ", "/tmp/my port "},
      {"COM99999999999", "/dev/COM99999999999"},
  };
  for (const auto& [name, path] : cases) EXPECT_EQ(DevicePath(name), path);
}

TEST_F(PosixDeviceRig, APortIsHeldAlone) {
  Open();
  EXPECT_EQ(TryOpen(path_).error, std::errc::device_or_resource_busy);
  EXPECT_FALSE(device_->Close());
  const OpenedDevice again = TryOpen(path_);
  EXPECT_FALSE(again.error);
}

TEST_F(PosixDeviceRig, APortLockedByAnotherProgramIsBusyAndUntouched) {
  const int other = open(path_.c_str(), O_RDWR | O_NOCTTY);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_EQ(TryOpen(path_).error, std::errc::device_or_resource_busy);
  int exclusive = -1;
  EXPECT_EQ(ioctl(other, TIOCGEXCL, &exclusive), 0);
  EXPECT_EQ(exclusive, 0);
  close(other);
}

TEST_F(PosixDeviceRig, WhatIsNoSerialLineIsRefused) {
  close(creat((folder_ / "file").c_str(), 0600));
  EXPECT_EQ(TryOpen(folder_ / "file").error, std::errc::inappropriate_io_control_operation);
  EXPECT_EQ(TryOpen(folder_ / "missing").error, std::errc::no_such_file_or_directory);
  EXPECT_EQ(TryOpen(folder_.Path()).error, std::errc::is_a_directory);
}

TEST_F(PosixDeviceRig, APathWithBlanksOpens) {
  fs::create_symlink(path_, folder_ / " my port ");
  EXPECT_FALSE(TryOpen(folder_ / " my port ").error);
}

TEST_F(PosixDeviceRig, SettingsAreTakenOrRefusedWhole) {
  const std::vector<std::pair<std::string, std::error_code>> cases = {
      {"9600,n,8,1", {}},
      {"250000,n,8,1", {}},
      {"12345,e,7,2", {}},  // a pseudo-terminal keeps 8 bits without parity and says so
      {"115200,n,8,1,p", {}},
      {"115200,n,8,1,x", {}},
      {"baud=300 odsr=on", std::make_error_code(std::errc::operation_not_supported)},
      {"baud=300 dtr=hs", std::make_error_code(std::errc::operation_not_supported)},
      {"baud=300 octs=off rts=tg", std::make_error_code(std::errc::operation_not_supported)},
      {"300,n,8,1.5", std::make_error_code(std::errc::operation_not_supported)},
      {"300,n,5,2", std::make_error_code(std::errc::operation_not_supported)},
  };
  Open();
  for (const auto& [text, error] : cases) {
    SerialSettings wanted = device_->Settings().settings;
    EXPECT_TRUE(BuildCommDcb(text, wanted));
    EXPECT_EQ(device_->Apply(wanted), error) << text;
    const SerialSettings now = device_->Settings().settings;
    EXPECT_EQ(now.baud == wanted.baud, !error) << text;
    if (!error) {
      EXPECT_EQ(now.ctsFlow, wanted.ctsFlow) << text;
      EXPECT_EQ(now.xonXoff, wanted.xonXoff) << text;
    }
  }
}

TEST_F(PosixDeviceRig, APortThatAnotherProgramLeftInAnyModeStartsPlain) {
  const int other = open(path_.c_str(), O_RDWR | O_NOCTTY);
  termios left{};
  tcgetattr(other, &left);
  left.c_iflag |= IXON | IXOFF | ICRNL | ISTRIP;
  left.c_lflag |= ICANON | ECHO | ISIG;
  left.c_cflag |= CRTSCTS;
  left.c_cc[VMIN] = 0;  // a read of an empty line would then look like a hang-up
  tcsetattr(other, TCSANOW, &left);
  Open();
  close(other);
  EXPECT_FALSE(device_->Settings().settings.ctsFlow);
  EXPECT_FALSE(device_->Settings().settings.xonXoff);
  EXPECT_FALSE(device_->Queue().error);
  const std::string special("\x03\x04\r\n\x11\x13\x1A\x7F\0\xFF\xFF", 11);
  InstrumentSends(special);
  EXPECT_EQ(TakeQueue(), special);
  EXPECT_EQ(InstrumentReads(), "");  // no echo
  EXPECT_EQ(device_->Write(special).bytes, special.size());
  EXPECT_EQ(InstrumentReads(), special);
}

TEST_F(PosixDeviceRig, XoffHoldsTheLineUntilXonOrTheNextOpening) {
  Open();
  EXPECT_FALSE(Set("9600,n,8,1,x"));
  termios modes{};
  EXPECT_EQ(tcgetattr(instrument_, &modes), 0);
  EXPECT_EQ(modes.c_iflag & (IXON | IXOFF), static_cast<tcflag_t>(IXON | IXOFF));
  InstrumentSends("\x13");
  ASSERT_TRUE(Until([&] { return !device_->Writable(); }));
  EXPECT_EQ(device_->Write("READ").bytes, 0U);
  InstrumentSends("\x11");
  ASSERT_TRUE(Until([&] { return device_->Writable(); }));
  EXPECT_EQ(device_->Write("READ").bytes, 4U);
  EXPECT_EQ(InstrumentReads(), "READ");
  InstrumentSends(
      "a\x13"
      "b");
  ASSERT_TRUE(Until([&] { return !device_->Writable(); }));
  EXPECT_EQ(TakeQueue(), "ab") << "both bytes are the line's, not data";
  device_.reset();
  Open();
  EXPECT_TRUE(device_->Writable());
}

TEST_F(PosixDeviceRig, APseudoTerminalHasNoLowLatencyMode) {
  Open();
  EXPECT_EQ(device_->SetLowLatency(true), std::errc::not_supported);
  EXPECT_FALSE(device_->SetLowLatency(false)) << "nothing to put back";
}

TEST_F(PosixDeviceRig, ALongStreamKeepsEveryByteWhileTheReaderIsSlow) {
  Open();
  std::string sent;
  for (std::uint32_t i = 0; i < 200'000; ++i) sent += static_cast<char>(i * 2654435761U >> 24U);
  std::size_t offered = 0;
  const auto sender = loop_.WatchWritable(instrument_, [&] {
    const ssize_t count = write(instrument_, sent.data() + offered, sent.size() - offered);
    if (count > 0) offered += static_cast<std::size_t>(count);
  });
  std::string received;
  std::size_t longest = 0;
  ASSERT_TRUE(Until([&] {
    longest = std::max(longest, device_->Queue().cbInQue);
    received += TakeUpTo(777);
    return received.size() >= sent.size();
  }));
  EXPECT_EQ(received, sent);
  EXPECT_EQ(longest, 65536U);
}

TEST_F(PosixDeviceRig, AFullQueueSleepsUntilSomethingIsTaken) {
  Open();
  const auto sender = loop_.WatchWritable(instrument_, [&] {
    if (write(instrument_, path_.data(), path_.size()) < 0) FAIL();
  });
  ASSERT_TRUE(Until([&] { return device_->Queue().cbInQue == 65536; }));
  loop_.Pass(20ms);  // the driver's own buffer fills, too
  const int arrivals = arrivals_;
  loop_.Pass(50ms);
  EXPECT_EQ(arrivals_, arrivals);
  TakeUpTo(1);
  EXPECT_TRUE(Until([&] { return arrivals_ > arrivals; }));
}

TEST_F(PosixDeviceRig, BytesAreSeenBeforeTheLoopNoticesThem) {
  Open();
  InstrumentSends("abc");
  EXPECT_EQ(device_->Queue().cbInQue, 3U);
  EXPECT_EQ(TakeUpTo(2), "ab");
  InstrumentSends("de");
  EXPECT_EQ(device_->Queue().cbInQue, 1U) << "the driver is not asked while there is something";
  EXPECT_EQ(TakeUpTo(99), "c");
  EXPECT_EQ(device_->Queue().cbInQue, 2U);
  EXPECT_EQ(TakeUpTo(99), "de");
  EXPECT_EQ(TakeUpTo(99), "");
  InstrumentSends("f");
  EXPECT_TRUE(Until([&] { return arrivals_ == 1; }));
}

TEST_F(PosixDeviceRig, APurgeEmptiesEveryQueue) {
  Open();
  InstrumentSends("old");
  EXPECT_EQ(device_->Queue().cbInQue, 3U);
  InstrumentSends("older");
  EXPECT_FALSE(device_->Purge());
  EXPECT_EQ(device_->Queue().cbInQue, 0U);
  InstrumentSends("new");
  EXPECT_EQ(TakeQueue(), "new");
}

TEST_F(PosixDeviceRig, AHangUpIsToldOnceAfterTheLastBytesAndNeverSpins) {
  Open();
  InstrumentSends("last");
  ASSERT_TRUE(Until([&] { return arrivals_ > 0; }));
  const int wakesBefore = loop_.Wakes();
  HangUp();
  ASSERT_TRUE(Until([&] { return loop_.Wakes() > wakesBefore; }));
  const int wakes = loop_.Wakes();
  EXPECT_LE(arrivals_, 2);
  loop_.Pass(50ms);
  EXPECT_EQ(loop_.Wakes(), wakes);
  EXPECT_EQ(device_->Queue().cbInQue, 4U);
  EXPECT_FALSE(device_->Queue().error);
  EXPECT_EQ(TakeQueue(), "last");
  EXPECT_EQ(device_->Queue().error, std::errc::io_error);
  char byte = 0;
  EXPECT_EQ(device_->Read(&byte, 1).error, std::errc::io_error);
  EXPECT_EQ(device_->Write("x").error, std::errc::io_error);
  loop_.Pass(20ms);
  EXPECT_EQ(loop_.Wakes(), wakes);
  EXPECT_FALSE(device_->Close());
}

TEST_F(PosixDeviceRig, AFullLineTakesNothingAndTheWaitEndsInTime) {
  Open();
  Instant start{};
  do {
    FillOutput();
    start = loop_.Now();
  } while (device_->WaitWritable(start + 30ms, Never));  // the driver found room for more after all
  EXPECT_GE(loop_.Now() - start, 30ms);
  EXPECT_LT(loop_.Now() - start, 20s);
  const Transfer refused = device_->Write("x");
  EXPECT_EQ(refused.bytes, 0U);
  EXPECT_FALSE(refused.error);
  while (!InstrumentReads().empty()) {
  }
  EXPECT_TRUE(device_->WaitWritable(loop_.Now() + 60s, Never));
  EXPECT_EQ(device_->Write("x").bytes, 1U);
}

TEST_F(PosixDeviceRig, WhateverEndsTheLineEndsTheWait) {
  for (const bool byClosing : {true, false}) {
    Open();
    FillOutput();
    int events[2];
    ASSERT_EQ(pipe2(events, O_CLOEXEC), 0);
    ASSERT_EQ(write(events[1], "!", 1), 1);
    std::unique_ptr<Watch> user;
    user = loop_.WatchReadable(events[0], [&] {
      if (byClosing) {
        EXPECT_FALSE(device_->Close());
      } else {
        HangUp();
      }
      user->SetEnabled(false);
    });
    const Instant start = loop_.Now();
    EXPECT_TRUE(device_->WaitWritable(start + 60s, Never));
    device_->WaitSent(start + 60s);
    EXPECT_LT(loop_.Now() - start, 30s);
    device_.reset();
    close(events[0]);
    close(events[1]);
  }
}

TEST_F(PosixDeviceRig, ASignalIsNoError) {
  Open();
  const AlarmSignals signals;
  std::size_t received = 0;
  for (int i = 0; i < 5000; ++i) {
    ASSERT_EQ(device_->Write("ping").bytes, 4U) << i;
    std::string echo;
    while (echo.size() < 4) echo += InstrumentReads();
    while (write(instrument_, echo.data(), 4) < 0 && errno == EINTR) {
    }
    received += TakeQueue().size();
    ASSERT_FALSE(device_->Queue().error) << i;
  }
  received += TakeQueue().size();
  EXPECT_EQ(received, 20000U);
}

// A pseudo-terminal has none, which is not the end of it.
TEST_F(PosixDeviceRig, ALineWithoutModemLinesAndCountersWorksOn) {
  Open();
  EXPECT_TRUE(device_->Modem().error);
  EXPECT_TRUE(device_->SetLine(OutputLine::Rts, true));
  EXPECT_EQ(device_->TakeErrorFlags(), 0U);
  EXPECT_FALSE(device_->Queue().error);
  EXPECT_FALSE(Set("300,n,8,1"));
  const Instant start = loop_.Now();
  EXPECT_EQ(device_->Write(std::string(1000, 'x')).bytes, 1000U);
  device_->WaitSent(start + 60s);
  EXPECT_LT(loop_.Now() - start, 20s);  // no line that would need half a minute for it
}

}  // namespace
}  // namespace quarlin
