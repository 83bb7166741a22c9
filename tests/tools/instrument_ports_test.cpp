// SPDX-License-Identifier: GPL-3.0-or-later
// The ports of the simulated instrument: pseudo-terminal, TCP, UDP, and two pseudo-terminals joined.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <time.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>

#include "base/clock.h"
#include "base/file_handle.h"
#include "instrument/instrument.h"
#include "instrument/joint.h"
#include "instrument/pty_port.h"
#include "instrument/server.h"
#include "instrument/tcp_port.h"
#include "instrument/udp_port.h"
#include "instrument/waiter.h"
#include "support/temp_folder.h"

namespace quarlin::instrument {
namespace {

using namespace std::chrono_literals;

constexpr const char* here = "127.0.0.1";

FileHandle Connected(int type, const std::string& name) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(name.substr(name.find(':') + 1))));
  FileHandle client(socket(AF_INET, type, 0));
  const timeval patience{60, 0};
  setsockopt(client.Get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  EXPECT_EQ(connect(client.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return client;
}

void Send(const FileHandle& client, std::string_view bytes) {
  ASSERT_EQ(send(client.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), std::ssize(bytes));
}

// The next datagram, or of a stream what has come; empty at its end.
std::string Take(const FileHandle& client) {
  std::array<char, 256> bytes;
  const auto size = recv(client.Get(), bytes.data(), bytes.size(), 0);
  return size < 0 ? "nothing" : std::string(bytes.data(), static_cast<std::size_t>(size));
}

void Reset(FileHandle client) {
  const linger now{1, 0};
  setsockopt(client.Get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

// Something that carries bytes beside the test, until SIGTERM.
class Beside {
 public:
  using Carrier = std::function<void(const SignalInput&)>;

  explicit Beside(const Carrier& carrier) : thread_([this, carrier] { carrier(signals_); }) {}
  ~Beside() {
    if (thread_.joinable()) End();
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

  void End() {
    kill(getpid(), SIGTERM);
    thread_.join();
  }

  // The processor time that it has taken so far.
  Duration CpuTime() {
    clockid_t clock{};
    timespec time{};
    pthread_getcpuclockid(thread_.native_handle(), &clock);
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  }

 private:
  static sigset_t SignalsBefore() {
    sigset_t signals;
    pthread_sigmask(SIG_BLOCK, nullptr, &signals);
    return signals;
  }

  sigset_t before_ = SignalsBefore();
  SignalInput signals_;
  std::thread thread_;
};

TEST(PtyPortTest, ClientsComeAndGoAndNoByteIsChanged) {
  PtyPort port;
  std::string every;
  for (int code = 0; code < 256; ++code) every += static_cast<char>(code);
  std::array<char, 1024> buffer{};
  for (int visit = 0; visit < 2; ++visit) {
    const FileHandle client(open(port.Name().c_str(), O_RDWR | O_NOCTTY));
    pollfd ours{port.Descriptor(), POLLIN, 0};
    ASSERT_EQ(poll(&ours, 1, 0), 0) << "nobody has written, and nobody has hung up";
    ASSERT_EQ(write(client.Get(), every.data(), every.size()), 256);
    ASSERT_EQ(poll(&ours, 1, 60'000), 1);
    EXPECT_EQ(std::string(buffer.data(), port.Read(buffer).bytes), every);
    EXPECT_EQ(port.Read(buffer).bytes, 0U);
    EXPECT_EQ(port.Write(every).bytes, 256U);
    EXPECT_TRUE(port.Unfetched());
    ASSERT_EQ(read(client.Get(), buffer.data(), buffer.size()), 256);
    EXPECT_EQ(std::string(buffer.data(), 256), every);
    EXPECT_FALSE(port.Unfetched());
  }
}

TEST(WaiterTest, AnInstrumentOnARealPortIsWokenOnceForEachRequest) {
  PtyPort port;
  const PtyPort signals;
  const FileHandle client(open(port.Name().c_str(), O_RDWR | O_NOCTTY));
  const FileHandle signaller(open(signals.Name().c_str(), O_RDWR | O_NOCTTY));
  Waiter waiter(signals.Descriptor());
  waiter.Carry(port.Descriptor());
  Instrument instrument({}, Instant{});
  std::array<char, 64> buffer{};
  const Waiter::Interest input{true, false};
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(waiter.Wait(input, 1ms).port);
    ASSERT_EQ(write(client.Get(), "VER\r", 4), 4);
    ASSERT_TRUE(waiter.Wait(input, 60s).port);
    ASSERT_FALSE(waiter.Wait(input, 0ms).port) << "told already";
    waiter.LookAgain();
    ASSERT_TRUE(waiter.Wait(input, 0ms).port) << "nothing was read yet";
    instrument.Receive({buffer.data(), port.Read(buffer).bytes}, Instant{});
    instrument.Sent(port.Write(instrument.Output(Instant{})).bytes);
    ASSERT_EQ(read(client.Get(), buffer.data(), buffer.size()), 10);
    EXPECT_EQ(std::string(buffer.data(), 10), "VER,1.00\r\n");
  }
  EXPECT_TRUE(waiter.Wait({true, true}, 60s).port) << "there is room to write";
  ASSERT_EQ(write(signaller.Get(), "s", 1), 1);
  EXPECT_TRUE(waiter.Wait({}, 60s).signals);
}

TEST(TcpPortTest, ClientsComeGoResetAndReplaceEachOther) {
  TcpPort port(here, 0);
  Settings settings;
  settings.delay = 5ms;
  Instrument instrument(settings, SystemClock().Now());
  Beside server(
      [&](const SignalInput& signals) { Server(instrument, port, signals, SystemClock(), [] {}).Run(); });
  const FileHandle first = Connected(SOCK_STREAM, port.Name());
  Send(first, "VER\rVE");
  EXPECT_EQ(Take(first), "VER,1.00\r\n");
  FileHandle second = Connected(SOCK_STREAM, port.Name());
  Send(second, "R\r");
  EXPECT_EQ(Take(second), "ERR\r\n") << "it must not end a line that the first began";
  EXPECT_EQ(Take(first), "") << "replaced";
  Send(second, "VER\r");
  Reset(std::move(second));
  for (int i = 0; i < 200; ++i) {
    FileHandle visitor = Connected(SOCK_STREAM, port.Name());
    Send(visitor, "READ\rREAD\r");
    if (i % 2 == 0) Reset(std::move(visitor));
  }
  const FileHandle last = Connected(SOCK_STREAM, port.Name());
  Send(last, "VER\r");
  shutdown(last.Get(), SHUT_WR);
  EXPECT_EQ(Take(last), "VER,1.00\r\n") << "one that says no more still gets its answer";
  EXPECT_EQ(Take(last), "");
  const FileHandle idle = Connected(SOCK_STREAM, port.Name());
  Send(idle, "VER\r");
  EXPECT_EQ(Take(idle), "VER,1.00\r\n");
  const Duration before = server.CpuTime();
  std::this_thread::sleep_for(300ms);
  EXPECT_LT(server.CpuTime() - before, 50ms) << "it must sleep while nobody asks";
}

TEST(UdpPortTest, AnswersGoToTheSenderOfTheLastDatagramAndStayApart) {
  UdpPort port(here, 0);
  EXPECT_EQ(port.Write("to nobody").bytes, 9U);
  const FileHandle first = Connected(SOCK_DGRAM, port.Name());
  FileHandle second = Connected(SOCK_DGRAM, port.Name());
  std::array<char, 65536> buffer;
  const auto arrived = [&] { return std::string(buffer.data(), port.Read(buffer).bytes); };
  const std::string longest(65507, 'x');
  Send(first, longest);
  Send(second, "SN\r");
  EXPECT_TRUE(arrived() == longest);
  ASSERT_EQ(port.Write("one").bytes, 3U);
  ASSERT_EQ(port.Write("two").bytes, 3U);
  EXPECT_EQ(Take(first), "one");
  EXPECT_EQ(Take(first), "two");
  EXPECT_EQ(arrived(), "SN\r");
  Send(first, "");
  EXPECT_TRUE(port.Read(buffer).more) << "an empty datagram is no end";
  port.Write("three");
  EXPECT_EQ(Take(first), "three");
  Send(second, "VER\r");
  EXPECT_EQ(arrived(), "VER\r");
  second = FileHandle();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(port.Write("to one that has gone").error);
  EXPECT_FALSE(port.Read(buffer).error);
}

TEST(TcpPortTest, APortInUseIsSaid) {
  const TcpPort tcp(here, 0);
  const UdpPort udp(here, 0);
  const auto number = [](const Port& port) {
    return static_cast<std::uint16_t>(std::stoi(port.Name().substr(port.Name().find(':') + 1)));
  };
  EXPECT_THROW(TcpPort(here, number(tcp)), std::system_error);
  EXPECT_THROW(UdpPort(here, number(udp)), std::system_error);
}

TEST(JointTest, EveryByteArrivesOnTheOtherSideAlsoWhenItIsFetchedLate) {
  Joint joint;
  Beside carrier([&](const SignalInput& signals) { EXPECT_FALSE(joint.Run(signals)); });
  std::mt19937 random(5);
  std::string sent(300000, ' ');
  for (char& character : sent) character = static_cast<char>(random() % 256);
  for (const std::size_t side : {0U, 1U}) {
    const FileHandle from(open(joint.Plug(side).Name().c_str(), O_RDWR | O_NOCTTY));
    const FileHandle to(open(joint.Plug(1 - side).Name().c_str(), O_RDWR | O_NOCTTY));
    std::thread sender([&] {
      std::string_view left = sent;
      while (!left.empty())
        left.remove_prefix(static_cast<std::size_t>(write(from.Get(), left.data(), left.size())));
    });
    std::this_thread::sleep_for(100ms);  // the sender is held up by now
    std::string got;
    std::array<char, 4096> bytes;
    for (pollfd watched{to.Get(), POLLIN, 0}; got.size() < sent.size() && poll(&watched, 1, 60'000) == 1;) {
      got.append(bytes.data(), static_cast<std::size_t>(read(to.Get(), bytes.data(), bytes.size())));
    }
    sender.join();
    EXPECT_TRUE(got == sent) << got.size();
  }
}

TEST(PortLinkTest, OnlyALinkThatAnInstrumentLeftIsReplaced) {
  namespace fs = std::filesystem;
  const TempFolder temporary;
  const fs::path& folder = temporary.Path();
  std::ofstream(folder / "file") << "kept";
  fs::create_symlink(folder / "file", folder / "other");
  fs::create_symlink("/dev/pts/4000000", folder / "stale");
  const fs::path target = "/dev/pts/ptmx";
  for (const char* kept : {"file", "other"}) {
    EXPECT_THROW(PortLink(folder / kept, target), std::system_error) << kept;
    EXPECT_EQ(fs::file_size(folder / kept), 4U) << kept;
  }
  for (const char* made : {"stale", "new"}) {
    {
      const PortLink link(folder / made, target);
      EXPECT_EQ(fs::read_symlink(folder / made), target) << made;
    }
    EXPECT_FALSE(fs::is_symlink(folder / made)) << made;
  }
  {
    const PortLink link(folder / "taken", target);
    const PortLink successor(folder / "taken", "/dev/pts/4000000");
  }
  EXPECT_FALSE(fs::is_symlink(folder / "taken"));
}

}  // namespace
}  // namespace quarlin::instrument
