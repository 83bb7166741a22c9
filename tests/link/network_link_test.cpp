// SPDX-License-Identifier: GPL-3.0-or-later
// The network link over real sockets of the loopback interface.

#include "link/network_link.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "support/free_port.h"
#include "support/poll_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

int OpenDescriptors() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

// Whether nobody has the port. Bound in the same way as by a server, so a connection that has ended is
// nobody.
class NetworkRig : public testing::Test {
 protected:
  struct End {
    explicit End(EventLoop& loop) : link(loop) {
      link.OnEvent = [this](std::string_view words) {
        events.emplace_back(words);
        if (words.ends_with(" has connected")) ++newPeers;
      };
      link.OnNewPeer = [this] {
        if (!received.empty()) received += '|';
      };
    }
    // Everything received so far, taken.
    const std::string& Received() {
      while (link.GetByteRead() > 0) received += link.GetStringRead();
      return received;
    }
    std::string LastEvent() const { return events.empty() ? "" : events.back(); }

    NetworkLink link;
    std::vector<std::string> events;
    std::string received;
    int newPeers = 0;
  };

  bool Until(const std::function<bool()>& done) { return loop.Run(done, 60s); }
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

  // A peer that is no link of ours.
  Socket RawPeer(int type = SOCK_STREAM) {
    Socket made(socket(AF_INET, type, 0));
    const SocketAddress address = *SocketAddress::FromNumeric("127.0.0.1", std::stoi(port));
    EXPECT_EQ(connect(made.Get(), address.Pointer(), address.length), 0);
    return made;
  }
  // A listener whose backlog is full lets a further connection wait, as a host out of reach does.
  struct OutOfReach {
    explicit OutOfReach(NetworkRig& rig) {
      const SocketAddress address = *SocketAddress::FromNumeric("127.0.0.1", std::stoi(rig.port));
      EXPECT_EQ(bind(full.Get(), address.Pointer(), address.length), 0);
      EXPECT_EQ(listen(full.Get(), 0), 0);
      first = rig.RawPeer();
      EXPECT_EQ(connect(second.Get(), address.Pointer(), address.length), -1);
    }
    Socket full = Socket::Make(AF_INET, SOCK_STREAM);
    Socket first;
    Socket second = Socket::Make(AF_INET, SOCK_STREAM);
  };
  static std::string Waiting(const Socket& peer) {
    pollfd arrival{peer.Get(), POLLIN, 0};
    poll(&arrival, 1, 60'000);
    char bytes[64];
    const ssize_t count = recv(peer.Get(), bytes, sizeof bytes, MSG_DONTWAIT);
    return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : "(nothing)";
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
  for (const RoleCase& row : std::vector<RoleCase>{{false, "127.0.0.1"},
                                                   {true, "127.0.0.1"},
                                                   {false, "[::1]"},
                                                   {true, "::1"},
                                                   {false, "localhost"}}) {
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
  EXPECT_TRUE(Until([&] { return server.link.GetByteRead() >= 1500; }));
  loop.Pass(20ms);
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
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(client.link.Send("hello?"));
    EXPECT_TRUE(Until([&] { return client.events.size() > 1; }));
    loop.Pass(10ms);
  }
  EXPECT_EQ(client.events.size(), 2) << "connected, and that it was refused, once";
  EXPECT_EQ(client.LastEvent(), "a datagram was not taken: Connection refused");
  ASSERT_TRUE(Serve(true));
  EXPECT_FALSE(client.link.Send("hello"));
  EXPECT_TRUE(Gets(server, "hello"));
}

TEST_F(NetworkRig, AnEmptyDatagramDoesNotMoveTheAnswers) {
  ASSERT_TRUE(Serve(true));
  const Socket asks = RawPeer(SOCK_DGRAM);
  const Socket says = RawPeer(SOCK_DGRAM);
  send(asks.Get(), "READ", 4, 0);
  send(says.Get(), "", 0, 0);
  ASSERT_TRUE(Gets(server, "READ"));
  server.link.Send("12.5");
  EXPECT_EQ(Waiting(asks), "12.5");
}

TEST_F(NetworkRig, APeerThatEndedItsSendingStillGetsTheAnswer) {
  ASSERT_TRUE(Serve());
  const Socket peer = RawPeer();
  send(peer.Get(), "READ", 4, 0);
  shutdown(peer.Get(), SHUT_WR);
  ASSERT_TRUE(Until([&] { return server.LastEvent() == "the peer has closed the connection"; }));
  EXPECT_EQ(server.Received(), "READ");
  EXPECT_FALSE(server.link.Send("12.5"));
  EXPECT_EQ(Waiting(peer), "12.5");
}

TEST_F(NetworkRig, ASendThatFindsTheResetLosesNothingOfTheAnswer) {
  ASSERT_TRUE(Serve());
  Socket peer = RawPeer();
  ASSERT_TRUE(Until([&] { return server.newPeers == 1; }));
  send(peer.Get(), "12.5 kg", 7, 0);
  const linger reset{1, 0};
  setsockopt(peer.Get(), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
  peer = Socket();
  EXPECT_TRUE(server.link.Send("READ"));
  EXPECT_TRUE(Gets(server, "12.5 kg"));
  EXPECT_TRUE(Until([&] { return server.LastEvent() == "the peer has gone: Connection reset by peer"; }));
}

TEST_F(NetworkRig, WhatIsThereBeforeTheConnectionCountsIsThrownAway) {
  const Socket listener = Socket::Make(AF_INET, SOCK_STREAM);
  const SocketAddress any = SocketAddress::Any(AF_INET, std::stoi(port));
  ASSERT_EQ(bind(listener.Get(), any.Pointer(), any.length), 0);
  ASSERT_EQ(listen(listener.Get(), 1), 0);
  fcntl(listener.Get(), F_SETFL, 0);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(write(ready[1], "x", 1), 1);
  // Served before the client, and returns when the client has the greeting.
  Socket peer;
  std::unique_ptr<Watch> greets;
  greets = loop.WatchReadable(ready[0], [&] {
    peer = Socket(accept(listener.Get(), nullptr, nullptr));
    send(peer.Get(), "hello", 5, 0);
    for (int unacknowledged = 1; unacknowledged > 0; poll(nullptr, 0, 1)) {
      ASSERT_EQ(ioctl(peer.Get(), SIOCOUTQ, &unacknowledged), 0);
    }
    greets->SetEnabled(false);
  });
  ASSERT_TRUE(Connect());
  close(ready[0]);
  close(ready[1]);
  send(peer.Get(), "12.5", 4, 0);
  EXPECT_TRUE(Gets(client, "12.5"));
}

TEST_F(NetworkRig, ALackOfDescriptorsIsOutlived) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers need a descriptor themselves to look at an object";
#endif
  ASSERT_TRUE(Serve());
  const Socket peer = RawPeer();
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  rlimit none = limit;
  none.rlim_cur = 3;
  setrlimit(RLIMIT_NOFILE, &none);
  const int wakes = loop.Wakes();
  const bool said = Until([&] { return server.LastEvent() == "no peer can connect: Too many open files"; });
  loop.Pass(50ms);
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_TRUE(said);
  EXPECT_EQ(loop.Wakes(), wakes + 1);
  EXPECT_TRUE(Until([&] { return server.newPeers == 1; }));
}

TEST_F(NetworkRig, ANewPeerReplacesTheOldOneWhoseBytesAreHandedOutFirst) {
  ASSERT_TRUE(Serve());
  const Socket old = RawPeer();
  ASSERT_TRUE(Until([&] { return server.newPeers == 1; }));
  const std::string lines(100'000, 'x');
  ASSERT_EQ(send(old.Get(), lines.data(), lines.size(), 0), 100'000);
  const Socket next = RawPeer();
  send(next.Get(), "READ", 4, 0);
  ASSERT_TRUE(Until([&] { return server.newPeers == 2; }));
  EXPECT_TRUE(Gets(server, lines + "|READ"));
  EXPECT_EQ(Waiting(old), "(nothing)");
}

TEST_F(NetworkRig, DatagramsOfTwoSendersAreNeverJoined) {
  ASSERT_TRUE(Serve(true));
  const Socket one = RawPeer(SOCK_DGRAM);
  const Socket two = RawPeer(SOCK_DGRAM);
  send(one.Get(), "12.", 3, 0);
  send(one.Get(), "5", 1, 0);
  send(two.Get(), "7\r\n", 3, 0);
  send(one.Get(), "8", 1, 0);
  EXPECT_TRUE(Gets(server, "12.5|7\r\n|8"));
}

TEST_F(NetworkRig, AServerListensWhereItIsTold) {
  struct Row {
    const char* bind;
    const char* words;
    const char* reaches;
    const char* misses;
  };
  for (const Row& row : std::vector<Row>{{"", "all addresses", "127.0.0.2", nullptr},
                                         {" 127.0.0.1", "127.0.0.1", "127.0.0.1", "127.0.0.2"},
                                         {"::1", "::1", "::1", "127.0.0.1"}}) {
    SCOPED_TRACE(row.bind);
    ASSERT_TRUE(server.link.Open({false, true, "", port, row.bind}));
    EXPECT_EQ(server.LastEvent(), fmt::format("listening on {}, port {}", row.words, port));
    EXPECT_TRUE(Connect(false, row.reaches));
    if (row.misses != nullptr) {
      EXPECT_FALSE(Connect(false, row.misses));
    }
  }
  EXPECT_FALSE(server.link.Open({true, true, "", port, "weigh-bridge"}));
  EXPECT_EQ(server.LastEvent(), "weigh-bridge: no numeric address to listen at");
}

TEST_F(NetworkRig, ADatagramReachesABroadcastAddress) {
  ASSERT_TRUE(Serve(true));
  ASSERT_TRUE(Connect(true, "127.255.255.255")) << client.LastEvent();
  EXPECT_FALSE(client.link.Send("WHO?"));
  EXPECT_TRUE(Gets(server, "WHO?"));
}

TEST_F(NetworkRig, ItsStateTellsWhetherDataCanPass) {
  EXPECT_EQ(server.link.State(), Passage::Closed);
  ASSERT_TRUE(Serve());
  EXPECT_EQ(server.link.State(), Passage::WaitsForPeer);
  ASSERT_TRUE(Connect());
  ASSERT_TRUE(Until([&] { return server.link.State() == Passage::Open; }));
  EXPECT_EQ(client.link.State(), Passage::Open);
  EXPECT_EQ(client.link.PeerName(), "127.0.0.1:" + port);
  client.link.Close();
  EXPECT_TRUE(Until([&] { return server.link.State() == Passage::WaitsForPeer; }));
  ASSERT_TRUE(Connect());
  server.link.Close();
  EXPECT_TRUE(Until([&] { return client.link.State() == Passage::PeerGone; }));
  ASSERT_TRUE(server.link.Open({true, true, "", port}));
  EXPECT_EQ(server.link.State(), Passage::Open);
}

// A peer in silence: its system throws away every segment that comes, as if the cable had been pulled.
void PullCable(const Socket& peer) {
  sock_filter nothing{BPF_RET | BPF_K, 0, 0, 0};
  const sock_fprog program{1, &nothing};
  ASSERT_EQ(setsockopt(peer.Get(), SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program), 0);
}

TEST_F(NetworkRig, APulledCableIsNoticedUnderLoadAndAPeerThatDoesNotReadIsNotLost) {
  for (const bool pulled : {true, false}) {
    SCOPED_TRACE(pulled ? "pulled" : "not read");
    std::string last;
    std::size_t lost = 0;
    NetworkLink link(loop, 300ms);
    link.OnEvent = [&](std::string_view words) { last = words; };
    link.OnLost = [&](std::size_t bytes) { lost = bytes; };
    ASSERT_TRUE(link.Open({false, true, "", port}));
    const Socket peer = RawPeer();
    ASSERT_TRUE(Until([&] { return link.State() == Passage::Open; }));
    loop.Pass(400ms);  // silence without a debt is none
    if (pulled) PullCable(peer);
    const std::string piece(std::size_t{64} * 1024, 'x');
    do {
      ASSERT_FALSE(link.Send(piece));
      loop.Pass(0ms);
    } while (!pulled && link.Unsent() == 0);
    if (pulled) {
      EXPECT_TRUE(Until([&] { return last == "the peer has gone: Connection timed out"; })) << last;
      EXPECT_EQ(lost, piece.size());
    } else {
      loop.Pass(900ms);
      EXPECT_EQ(link.State(), Passage::Open) << last;
    }
  }
}

TEST_F(NetworkRig, ACloseOnPurposeGivesThePeerEverything) {
  Pair();
  std::size_t lost = 0;
  client.link.OnLost = [&](std::size_t bytes) { lost += bytes; };
  const std::string text(900'000, 'x');
  ASSERT_FALSE(server.link.Send("unread by the client"));
  ASSERT_FALSE(client.link.Send(text));
  std::size_t got = 0;
  server.link.OnArrival = [&] { got += server.link.GetStringRead().size(); };
  client.link.Finish(loop.Now() + 5s);
  client.link.Close();
  EXPECT_TRUE(Until([&] { return !server.LastEvent().ends_with("has connected"); }));
  EXPECT_EQ(server.LastEvent(), "the peer has closed the connection");
  EXPECT_EQ(got, text.size());
  EXPECT_EQ(lost, 0U);
}

TEST_F(NetworkRig, WhatAPeerDoesNotTakeIsToldAsLost) {
  ASSERT_TRUE(Serve());
  const Socket peer = RawPeer();
  ASSERT_TRUE(Until([&] { return server.newPeers == 1; }));
  PullCable(peer);
  std::size_t lost = 0;
  server.link.OnLost = [&](std::size_t bytes) { lost += bytes; };
  const std::string text(1'000'000, 'x');
  ASSERT_FALSE(server.link.Send(text));
  server.link.Finish(loop.Now() + 50ms);
  server.link.Close();
  EXPECT_EQ(lost, text.size());
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
  EXPECT_EQ(OpenDescriptors(), before + 1) << "the last one may still want to read";
  server.link.Close();
  EXPECT_EQ(OpenDescriptors(), before - 1);
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
  const std::string piece(std::size_t{64} * 1024, 'x');
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
  const std::string in = "all addresses, port " + port + ": Address already in use";
  const std::string nobody = FreePort();
  const Socket sixOnly = Socket::Make(AF_INET6, SOCK_STREAM);
  const std::string half = FreePort();
  sixOnly.SetOption(IPPROTO_IPV6, IPV6_V6ONLY, 1);
  const SocketAddress any = SocketAddress::Any(AF_INET6, std::stoi(half));
  ASSERT_EQ(bind(sixOnly.Get(), any.Pointer(), any.length), 0);
  ASSERT_EQ(listen(sixOnly.Get(), 1), 0);
  const std::string halfIn = "all addresses, port " + half + ": Address already in use";
  for (const FailureCase& row : std::vector<FailureCase>{
           {{false, false, "127.0.0.1", nobody}, "no connection: Connection refused"},
           {{false, true, "", port}, in.c_str()},
           {{false, true, "", half}, halfIn.c_str()},
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

// Cancelled, or closed and opened anew in the meantime: the opening that waits must leave that one alone.
TEST_F(NetworkRig, AnOpeningThatWaitsEndsWithoutTouchingItsSuccessor) {
  const OutOfReach host(*this);
  const std::string other = FreePort();
  const auto opensAnew = [&] {
    client.link.Close();
    EXPECT_TRUE(client.link.Open({false, true, "", other}));
  };
  for (const bool anew : {false, true}) {
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    ASSERT_EQ(write(pipeEnds[1], "x", 1), 1);
    char taken = 0;
    const auto click = loop.WatchReadable(pipeEnds[0], [&] {
      EXPECT_EQ(read(pipeEnds[0], &taken, 1), 1);
      anew ? opensAnew() : client.link.Cancel();
    });
    const Instant start = loop.Now();
    EXPECT_FALSE(Connect());
    EXPECT_LT(loop.Now() - start, 30s);
    EXPECT_EQ(client.LastEvent(), anew ? "listening on all addresses, port " + other : "cancelled");
    close(pipeEnds[0]);
    close(pipeEnds[1]);
  }
  port = other;
  const Socket peer = RawPeer();
  EXPECT_TRUE(Until([&] { return client.newPeers == 1; }));
}

TEST_F(NetworkRig, AnOpeningInTheBackgroundHoldsNoAlarmBackAndTellsItsEnd) {
  std::string ends;
  const auto open = [&](const std::string& where) {
    client.link.OpenInBackground({false, false, "localhost", where},
                                 [&](bool opened) { ends += opened ? 'y' : 'n'; });
  };
  open("0");
  EXPECT_EQ(ends, "n") << "at once, there is nothing to wait for";
  open(FreePort());
  EXPECT_TRUE(Until([&] { return ends == "nn"; }));
  EXPECT_EQ(client.LastEvent(), "no connection: Connection refused");
  {
    const OutOfReach host(*this);
    int ticks = 0;
    Alarm tick(loop, [&] {
      ++ticks;
      tick.At(loop.Now() + 5ms);
    });
    tick.At(loop.Now());
    const int wakes = loop.Wakes();
    open(port);
    EXPECT_TRUE(Until([&] { return ticks > 10; }));
    EXPECT_LT(loop.Wakes() - wakes, 20);
    client.link.Close();
  }
  ASSERT_TRUE(Serve());
  loop.Pass(50ms);
  EXPECT_EQ(ends, "nn") << "what was closed does not end";
  open(port);
  EXPECT_TRUE(Until([&] { return ends == "nny"; }));
  EXPECT_FALSE(server.link.Send("12.5"));
  EXPECT_TRUE(Gets(client, "12.5"));
}

}  // namespace
}  // namespace quarlin
