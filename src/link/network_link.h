// SPDX-License-Identifier: GPL-3.0-or-later
// The network side of the link: one UDP or TCP socket in the client or the server role, on the event
// loop, never blocking.
#pragma once

#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
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
  std::string bind{};   // the local address to listen at, as digits; empty for all; the server role only

  bool operator==(const NetworkChoice&) const = default;
};

// Whether data can pass.
enum class Passage { Closed, WaitsForPeer, Open, PeerGone };

class NetworkLink {
 public:
  // How long a TCP peer may be silent while it owes us acknowledgements.
  static constexpr Duration longestSilence = std::chrono::seconds(30);

  explicit NetworkLink(EventLoop& loop, Duration silence = longestSilence);
  ~NetworkLink();

  // Bytes wait to be taken. Must only wake somebody.
  Hook<void()> OnArrival;

  // What happened to the connection, in plain words; its state has changed, perhaps.
  Hook<void(std::string_view)> OnEvent;

  // TCP: so many of the bytes that had to wait for the peer have been taken by now, out of all since none
  // waited; also at the end, when both are the same. What is dropped with the peer counts as taken here.
  Hook<void(std::size_t taken, std::size_t total)> OnQueue;

  // What GetStringRead returns from now on is of another sender than what it returned before: a TCP peer that
  // has taken the place of one, or the sender of another datagram. Called by GetByteRead or
  // GetStringRead, once the old one's bytes have all been taken.
  Hook<void()> OnNewPeer;

  // So many bytes that Send accepted will never reach the peer.
  Hook<void(std::size_t bytes)> OnLost;

  // False, and closed, when it could not be opened, was cancelled or closed meanwhile. A client yields while
  // the name is looked up and the connection is made, 30 s at most.
  bool Open(const NetworkChoice& choice);

  // The same without a yield: a client's connection is made in the background. `over`
  // gets what Open would return, from an alarm or, where nothing has to be waited for, before this returns;
  // it is never called once the opening was cancelled or closed.
  void OpenInBackground(const NetworkChoice& choice, const std::function<void(bool opened)>& over);
  void Cancel();

  // Before a close on purpose: gives a TCP peer what waits for it, and then the end of the stream. Yields
  // until it has acknowledged all of it, or the instant has passed.
  void Finish(Instant deadline);

  // Tells OnLost what is left.
  void Close();

  Passage State() const;

  // Who is at the other end, or was last: "127.0.0.1:4001"; empty when nobody is known.
  const std::string& PeerName() const { return peerName_; }

  // A client whose peer went away. The link is still open, but nothing can be sent. A server still answers
  // a peer that has only ended its own sending.
  bool PeerGone() const { return peerGone_; }

  // What was received and not taken, and its taking, one sender's at a time: when another's waits, OnArrival
  // is called again. Once 1024 characters wait, the rest stays with the system until they are taken.
  std::int32_t GetByteRead();
  std::string GetStringRead();
  bool SenderChanges() const { return received_.size() > 1 && received_.front().empty(); }

  // UDP: one datagram, in the server role to the sender of the last one that came. TCP: what the peer does
  // not take waits, up to 1 MiB; beyond it nothing of the text is sent and the error is ENOBUFS.
  // ENOTCONN while there is no peer.
  std::error_code Send(std::string_view text);

  // Of a Send that failed: how many of its bytes the system had taken.
  std::size_t TakenOfLastSend() const { return takenOfLastSend_; }

  // TCP: what the system has not yet taken.
  std::size_t Unsent() const { return waiting_.size(); }

 private:
  bool Listen(int port, const std::string& address);
  std::optional<bool> Begin(const NetworkChoice& choice, std::function<void()> connected);
  bool TakeConnection();
  void DiscardPending();
  void AcceptPeer();
  void SetPeer(Socket socket);
  void ReadToTheEnd();
  void BeginSender();
  void CrossToNextSender();
  void Keep(std::size_t count);
  std::size_t Unacknowledged() const;
  void WatchSilence();
  void PeerMayBeSilent();
  void PeerIsLost(std::error_code error);
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
  std::string peerName_;
  std::deque<std::string> received_{1};  // by sender; the first is the one whose bytes are being taken
  std::size_t receivedBytes_ = 0;        // of all of them
  std::string waiting_;                  // TCP: not yet taken by the system
  std::size_t waitingTotal_ = 0;         // with what was taken of it since it began to wait
  std::size_t unfinished_ = 0;           // TCP: sent, and not acknowledged when Finish's time was over
  const Duration silence_;
  Alarm silenceAlarm_;  // TCP: while something is not acknowledged
  std::size_t takenOfLastSend_ = 0;
  std::error_code sendError_;  // TCP: why nothing more goes out, while the rest is still being received
  std::unique_ptr<std::array<char, 65536>> buffer_;
};

}  // namespace quarlin
