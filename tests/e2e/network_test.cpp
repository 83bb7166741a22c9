// SPDX-License-Identifier: GPL-3.0-or-later
// The real program over the network, with peers that come, go and speak at the same time.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>

#include <string>
#include <string_view>

#include "base/file_handle.h"
#include "e2e/real_program.h"

namespace quarlin {
namespace {

sockaddr_in Local(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

const sockaddr* Pointer(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

class RealNetwork : public RealProgram {
 protected:
  // A socket on a port of the system's choice.
  static FileHandle Bound(int type, int& port) {
    FileHandle made(socket(AF_INET, type | SOCK_CLOEXEC, 0));
    sockaddr_in address = Local(0);
    socklen_t length = sizeof address;
    EXPECT_EQ(bind(made.Get(), Pointer(address), length), 0);
    getsockname(made.Get(), reinterpret_cast<sockaddr*>(&address), &length);
    port = ntohs(address.sin_port);
    return made;
  }
  static int FreePort(int type) {
    int port = 0;
    Bound(type, port);
    return port;
  }

  static void Say(const FileHandle& peer, std::string_view text) {
    ASSERT_EQ(send(peer.Get(), text.data(), text.size(), MSG_NOSIGNAL), static_cast<ssize_t>(text.size()));
  }

  // Connects as soon as the program listens.
  static FileHandle Reach(int port) {
    FileHandle peer;
    EXPECT_TRUE(Eventually([&] {
      peer = FileHandle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
      const sockaddr_in address = Local(port);
      return connect(peer.Get(), Pointer(address), sizeof address) == 0;
    }));
    return peer;
  }

  Program& Serve(int port, bool udp) {
    Configure("cboSerial", "net");
    Configure("chkListen", "1");
    Configure("chkUDP", udp ? "1" : "0");
    Configure("txtBind", "127.0.0.1");
    Configure("txtPort", std::to_string(port));
    return Start({"LOAD", "x", "LOG", "LOGPAR"});
  }
};

TEST_F(RealNetwork, APeerThatClosesEndsARunThatDoesNotReconnect) {
  int port = 0;
  const FileHandle listener = Bound(SOCK_STREAM, port);
  ASSERT_EQ(listen(listener.Get(), 1), 0);
  ConfigureRun("NET", "1000");
  Configure("txtPort", std::to_string(port));
  Configure("chkUDP", "0");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  {
    const FileHandle peer(accept(listener.Get(), nullptr, nullptr));
    char request[16];
    for (int i = 0; i < 3; ++i) {
      ASSERT_GT(recv(peer.Get(), request, sizeof request, 0), 0);
      Say(peer, "12.5 kg\r\n");
    }
  }
  EXPECT_EQ(program.Wait(), 1);
  const std::string line = "TCP 127.0.0.1:" + std::to_string(port) + ": the peer has";
  EXPECT_NE(program.Errors().find(line), std::string::npos) << program.Errors();
  EXPECT_NE(program.Output().find(line), std::string::npos) << "in the report's error list";
}

TEST_F(RealNetwork, LinesOfAPeerThatIsReplacedAtOnceAreStrings) {
  const int port = FreePort(SOCK_STREAM);
  Program& program = Serve(port, false);
  std::string lines;
  for (int i = 0; i < 50; ++i) {
    FileHandle peer = Reach(port);
    lines += std::to_string(i) + "\r\n";
    Say(peer, std::to_string(i) + "\r\n");
  }
  EXPECT_TRUE(LogHolds(lines));
  program.Signal(SIGTERM);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(FileText("LOGPAR.TXT"), lines);
}

TEST_F(RealNetwork, HalfAStringOfOneSenderIsNoBeginningOfAnothers) {
  const int port = FreePort(SOCK_DGRAM);
  Program& program = Serve(port, true);
  int unused = 0;
  const FileHandle one = Bound(SOCK_DGRAM, unused);
  const FileHandle two = Bound(SOCK_DGRAM, unused);
  const sockaddr_in address = Local(port);
  for (const FileHandle* peer : {&one, &two}) {
    ASSERT_EQ(connect(peer->Get(), Pointer(address), sizeof address), 0);
  }
  // Heard as soon as the program listens; a refused datagram is reported with the next one.
  EXPECT_TRUE(Eventually([&] {
    send(one.Get(), "knock\r\n", 7, MSG_NOSIGNAL);
    return FileText("LOG.TXT").find("knock") != std::string::npos;
  }));
  Say(two, "go\r\n");
  ASSERT_TRUE(LogHolds("go\r\n")) << "no knock is on its way any more";
  Say(one, "12.");
  Say(two, "7\r\n");
  EXPECT_TRUE(LogHolds("12.7\r\n")) << "the log has everything as it came";
  program.Signal(SIGTERM);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_TRUE(FileText("LOGPAR.TXT").ends_with("go\r\n7\r\n")) << FileText("LOGPAR.TXT");
}

}  // namespace
}  // namespace quarlin
