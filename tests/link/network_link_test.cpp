// The network link over real sockets of the loopback interface.

#include "link/network_link.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <unistd.h>

#include <filesystem>

#include "support/poll_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

int OpenDescriptors() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

// A port that was free a moment ago.
std::string FreePort() {
  const Socket socket = Socket::Make(AF_INET, SOCK_STREAM);
  SocketAddress address = SocketAddress::Any(AF_INET, 0);
  EXPECT_EQ(bind(socket.Get(), address.Pointer(), address.length), 0);
  getsockname(socket.Get(), address.Pointer(), &address.length);
  const std::string text = address.Text();
  return text.substr(text.rfind(':') + 1);
}

class NetworkRig : public testing::Test {
 protected:
  struct End {
    explicit End(EventLoop& loop) : link(loop) {
      link.OnEvent = [this](std::string_view words) { events.emplace_back(words); };
      link.OnNewPeer = [this] { ++newPeers; };
    }
    // Everything received so far, taken.
    const std::string& Received() { return received += link.GetStringRead(); }
    std::string LastEvent() const { return events.empty() ? "" : events.back(); }

    NetworkLink link;
    std::vector<std::string> events;
    std::string received;
    int newPeers = 0;
  };

  bool Until(const std::function<bool()>& done) { return loop.Run(done, 5s); }
  bool Gets(End& end, const std::string& text) {
    return Until([&] { return end.Received() == text; });
  }
  bool Serve(bool udp = false) { return server.link.Open({udp, true, "", port}); }
  bool Connect(bool udp = false, const std::string& host = "127.0.0.1") {
    return client.link.Open({udp, false, host, port});
  }
  void Pair() {
    ASSERT_TRUE(Serve());
    ASSERT_TRUE(Connect());
    ASSERT_TRUE(Until([&] { return server.newPeers == 1; }));
  }

  PollLoop loop;
  std::string port = FreePort();
  End server{loop};
  End client{loop};
};

struct RoleCase {
  bool udp;
  const char* host;
};

TEST_F(NetworkRig, BothProtocolsTalkBothWaysOverEveryKindOfAddress) {
  for (const RoleCase& row : std::vector<RoleCase>{
           {false, "127.0.0.1"}, {true, "127.0.0.1"}, {false, "::1"}, {true, "::1"}, {false, "localhost"}}) {
    SCOPED_TRACE(std::string(row.udp ? "udp " : "tcp ") + row.host);
    ASSERT_TRUE(Serve(row.udp));
    ASSERT_TRUE(Connect(row.udp, row.host)) << client.LastEvent();
    server.received.clear();
    client.received.clear();
    EXPECT_FALSE(client.link.Send(std::string("READ\0\xFF", 6)));
    EXPECT_TRUE(Gets(server, std::string("READ\0\xFF", 6)));
    EXPECT_FALSE(server.link.Send("12.5 kg\r\n"));
    EXPECT_TRUE(Gets(client, "12.5 kg\r\n"));
  }
}

TEST_F(NetworkRig, TakesNoMoreOnceEnoughWaits) {
  ASSERT_TRUE(Serve(true));
  ASSERT_TRUE(Connect(true));
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(client.link.Send(std::string(500, static_cast<char>('a' + i))));
  EXPECT_FALSE(client.link.Send("more"));
  loop.Pass(100ms);
  EXPECT_EQ(server.link.GetByteRead(), 1500) << "the datagram that passes 1024 is the last one taken";
  server.Received();
  EXPECT_TRUE(Until([&] { return server.link.GetByteRead() == 4; }));
}

TEST_F(NetworkRig, DatagramsOfEverySize) {
  ASSERT_TRUE(Serve(true));
  ASSERT_TRUE(Connect(true));
  EXPECT_FALSE(client.link.Send(""));
  EXPECT_FALSE(client.link.Send(std::string(65507, 'x')));
  EXPECT_TRUE(Gets(server, std::string(65507, 'x')));
  EXPECT_EQ(client.link.Send(std::string(65508, 'x')), std::errc::message_size);
}

TEST_F(NetworkRig, ADatagramThatNobodyTakesIsNoEnd) {
  ASSERT_TRUE(Connect(true));
  client.link.Send("hello?");
  EXPECT_TRUE(Until([&] { return client.LastEvent().starts_with("a datagram was not taken"); }));
  ASSERT_TRUE(Serve(true));
  EXPECT_FALSE(client.link.Send("hello"));
  EXPECT_TRUE(Gets(server, "hello"));
}

TEST_F(NetworkRig, ANewPeerReplacesTheOldOneAndInheritsNothing) {
  Pair();
  client.link.Send("half of a requ");
  ASSERT_TRUE(Until([&] { return server.link.GetByteRead() > 0; }));
  End other(loop);
  ASSERT_TRUE(other.link.Open({false, false, "127.0.0.1", port}));
  ASSERT_TRUE(Until([&] { return server.newPeers == 2; }));
  EXPECT_EQ(server.link.GetByteRead(), 0);
  EXPECT_TRUE(Until([&] { return client.link.PeerGone(); }));
  other.link.Send("READ");
  EXPECT_TRUE(Gets(server, "READ"));
}

TEST_F(NetworkRig, AThousandConnectsLeaveNothingBehind) {
  ASSERT_TRUE(Serve());
  const int before = OpenDescriptors();
  for (int i = 1; i <= 1000; ++i) {
    ASSERT_TRUE(Connect()) << i;
    ASSERT_TRUE(Until([&] { return server.newPeers == i; }));
  }
  client.link.Close();
  EXPECT_TRUE(Until([&] { return server.LastEvent() == "the peer has closed the connection"; }));
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(NetworkRig, AResetHandsOutWhatCameBeforeAndNeverSpins) {
  Pair();
  server.link.Send("12.5 k");
  ASSERT_TRUE(Until([&] { return client.link.GetByteRead() == 6; }));
  client.link.Send("unread, so that the close is a reset");
  loop.Pass(20ms);
  server.link.Close();
  EXPECT_TRUE(Until([&] { return client.link.PeerGone(); }));
  EXPECT_EQ(client.Received(), "12.5 k");
  EXPECT_EQ(client.link.Send("x"), std::errc::not_connected);
  const int wakes = loop.Wakes();
  loop.Pass(50ms);
  EXPECT_EQ(loop.Wakes(), wakes);
}

TEST_F(NetworkRig, APeerThatNeverReadsFillsABoundedQueue) {
  Pair();
  const std::string piece(64 * 1024, 'x');
  std::error_code error;
  std::size_t taken = 0;
  while (!error && taken < (std::size_t{64} << 20)) {
    error = client.link.Send(piece);
    if (!error) taken += piece.size();
  }
  EXPECT_EQ(error, std::errc::no_buffer_space);
  std::size_t got = 0;
  EXPECT_TRUE(Until([&] { return (got += server.link.GetStringRead().size()) == taken; }))
      << "what was taken arrives";
}

struct FailureCase {
  NetworkChoice choice;
  const char* words;
};

TEST_F(NetworkRig, WhatCannotBeOpenedSaysWhy) {
  ASSERT_TRUE(Serve());
  const std::string in = "port " + port + ": Address already in use";
  const std::string nobody = FreePort();
  for (const FailureCase& row : std::vector<FailureCase>{
           {{false, false, "127.0.0.1", nobody}, "no connection: Connection refused"},
           {{false, true, "", port}, in.c_str()},
           {{true, false, "127.0.0.1", "0"}, "port 0: a port is a number from 1 to 65535"},
           {{false, true, "", "70000"}, "port 70000: a port is a number from 1 to 65535"},
           {{false, false, "127.0.0.1", "http"}, "port http: a port is a number from 1 to 65535"},
           {{false, false, "nosuch.invalid", "80"}, "no such host: nosuch.invalid"}}) {
    End end(loop);
    const Instant start = loop.Now();
    EXPECT_FALSE(end.link.Open(row.choice));
    EXPECT_EQ(end.LastEvent(), row.words);
    EXPECT_LT(loop.Now() - start, 20s);
  }
}

TEST_F(NetworkRig, AnOpeningThatWaitsCanBeCancelled) {
  // A backlog that is full lets a further connection wait.
  const Socket full = Socket::Make(AF_INET, SOCK_STREAM);
  SocketAddress address = *SocketAddress::FromNumeric("127.0.0.1", std::stoi(port));
  ASSERT_EQ(bind(full.Get(), address.Pointer(), address.length), 0);
  ASSERT_EQ(listen(full.Get(), 0), 0);
  const Socket first = Socket::Make(AF_INET, SOCK_STREAM);
  connect(first.Get(), address.Pointer(), address.length);
  const Socket second = Socket::Make(AF_INET, SOCK_STREAM);
  connect(second.Get(), address.Pointer(), address.length);

  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  const auto click = loop.WatchReadable(pipeEnds[0], [&] { client.link.Cancel(); });
  ASSERT_EQ(write(pipeEnds[1], "x", 1), 1);
  const Instant start = loop.Now();
  EXPECT_FALSE(Connect());
  EXPECT_LT(loop.Now() - start, 5s);
  EXPECT_EQ(client.LastEvent(), "cancelled");
  close(pipeEnds[0]);
  close(pipeEnds[1]);
}

}  // namespace
}  // namespace quarlin
