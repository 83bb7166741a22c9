// The network side of the link: one UDP or TCP socket in the client or the server role, on the event
// loop, never blocking.
#pragma once

#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/hook.h"
#include "controls/alarms.h"
#include "controls/event_loop.h"
#include "link/socket.h"

namespace quarlin {

class Connector;

struct NetworkChoice {
  bool udp = false;
  bool listen = false;  // the server role: wait for the peer on this port
  std::string host;     // name or address of the peer; the client role only
  std::string port;     // a number from 1 to 65535, read as Val does
};

class NetworkLink {
 public:
  explicit NetworkLink(EventLoop& loop);
  ~NetworkLink();

  // Bytes wait to be taken. Must only wake somebody.
  Hook<void()> OnArrival;

  // What happened to the connection, in plain words.
  Hook<void(std::string_view)> OnEvent;

  // TCP: so many of the bytes that had to wait for the peer have been taken by now, out of all since none
  // waited; also at the end, when both are the same. What is dropped with the peer counts as taken here.
  Hook<void(std::size_t taken, std::size_t total)> OnQueue;

  // Another TCP peer has taken the place of the one before: what is being assembled is not its.
  Hook<void()> OnNewPeer;

  // False, and closed, when it could not be opened, was cancelled or closed meanwhile. A client yields while
  // the name is looked up and the connection is made, 30 s at most.
  bool Open(const NetworkChoice& choice);

  // The same without a yield: a client's connection is made in the background. `over`
  // gets what Open would return, from an alarm or, where nothing has to be waited for, before this returns;
  // it is never called once the opening was cancelled or closed.
  void OpenInBackground(const NetworkChoice& choice, std::function<void(bool opened)> over);
  void Cancel();
  void Close();

  // A client whose peer went away. The link is still open, but nothing can be sent. A server still answers
  // a peer that has only ended its own sending.
  bool PeerGone() const { return peerGone_; }

  // What was received and not taken, and its taking. Once 1024 characters wait, the rest stays with the
  // system until they are taken.
  std::int32_t GetByteRead() const { return static_cast<std::int32_t>(received_.size()); }
  std::string GetStringRead();

  // UDP: one datagram, in the server role to the sender of the last one that came. TCP: what the peer does
  // not take waits, up to 1 MiB; beyond it nothing of the text is sent and the error is ENOBUFS.
  // ENOTCONN while there is no peer.
  std::error_code Send(std::string_view text);

  // TCP: what the system has not yet taken.
  std::size_t Unsent() const { return waiting_.size(); }

 private:
  bool Listen(int port);
  std::optional<bool> Begin(const NetworkChoice& choice, std::function<void()> connected);
  bool TakeConnection();
  void DiscardPending();
  void AcceptPeer();
  void SetPeer(Socket socket);
  void EndOfReceiving(std::error_code error);
  void EndOfSending(std::error_code error);
  void DropPeer();
  void Take();
  bool TakeOnce();
  bool TakeDatagram();
  void TellRefusal(std::error_code error);
  void WatchWhileThereIsRoom();
  std::error_code SendDatagram(std::string_view text);
  std::error_code SendStream(std::string_view text);
  std::error_code SendWaiting();
  void TellQueue();
  void DropWaiting();
  bool Fail(std::string_view words);
  void Tell(std::string_view words) const;

  EventLoop& loop_;
  bool udp_ = false;
  bool listening_ = false;  // the server role
  bool peerGone_ = false;
  bool refusalTold_ = false;    // UDP: nothing has come since
  std::uint64_t openings_ = 0;  // counts closes, too: an opening that waits sees that it is over

  std::unique_ptr<Connector> connector_;  // while a client's connection is being made

  Socket listener_;  // TCP server
  std::unique_ptr<Watch> listenerWatch_;
  Alarm acceptAgain_;                     // after a lack of descriptors
  Socket peer_;                           // the connection, or the UDP socket
  std::unique_ptr<Watch> readableWatch_;  // none once the peer has ended its sending
  std::unique_ptr<Watch> writableWatch_;  // while something waits to be sent
  SocketAddress lastSender_;              // UDP server: where answers go
  std::string received_;
  std::string waiting_;           // TCP: not yet taken by the system
  std::size_t waitingTotal_ = 0;  // with what was taken of it since it began to wait
  std::error_code sendError_;     // TCP: why nothing more goes out, while the rest is still being received
  std::unique_ptr<std::array<char, 65536>> buffer_;
};

}  // namespace quarlin
