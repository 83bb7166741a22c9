// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/network_link.h"

#include <fmt/format.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/numbers.h"
#include "base/system_call.h"
#include "base/text.h"
#include "link/connector.h"

namespace quarlin {
namespace {

constexpr std::size_t enoughReceived = 1024;  // nothing more is taken before that has gone
constexpr std::size_t mostReceived = std::size_t{4}
                                     << 20;                // of peers that come and go while nothing is taken
constexpr std::size_t mostWaiting = std::size_t{1} << 20;  // to be sent
constexpr Duration acceptPause = std::chrono::seconds(1);
constexpr Duration acknowledgementPause = std::chrono::milliseconds(2);
constexpr int mostTakes = 64;  // at once, so that a flood of empty datagrams leaves others their turn

std::error_code NotConnected() {
  return std::make_error_code(std::errc::not_connected);
}

bool WouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

bool LacksResources() {
  return errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
}

// Requests are short and wait for answers, so they go out at once. A peer whose cable was pulled says
// nothing more: it is asked, and found gone after half a minute.
void SetUpStream(const Socket& socket) {
  socket.SetOption(IPPROTO_TCP, TCP_NODELAY, 1);
  socket.SetOption(SOL_SOCKET, SO_KEEPALIVE, 1);
  socket.SetOption(IPPROTO_TCP, TCP_KEEPIDLE, 15);
  socket.SetOption(IPPROTO_TCP, TCP_KEEPINTVL, 5);
  socket.SetOption(IPPROTO_TCP, TCP_KEEPCNT, 3);
}

bool IsSame(const SocketAddress& left, const SocketAddress& right) {
  return left.length == right.length && std::memcmp(&left.storage, &right.storage, left.length) == 0;
}

struct Listener {
  Socket socket;
  std::error_code error;
};

// A stream listens again while old connections fade. A datagram socket must not: it would share the port
// with another program.
Listener ListenOn(const SocketAddress& at, int type) {
  const int family = at.storage.ss_family;
  Listener made{Socket::Make(family, type), {}};
  if (!made.socket) return {{}, LastError()};
  const bool stream = type == SOCK_STREAM;
  if (family == AF_INET6) made.socket.SetOption(IPPROTO_IPV6, IPV6_V6ONLY, 0);
  if (stream) made.socket.SetOption(SOL_SOCKET, SO_REUSEADDR, 1);
  if (!stream) made.socket.SetOption(SOL_SOCKET, SO_BROADCAST, 1);
  const int descriptor = made.socket.Get();
  if (bind(descriptor, at.Pointer(), at.length) != 0 || (stream && listen(descriptor, SOMAXCONN) != 0)) {
    return {{}, LastError()};
  }
  return made;
}

}  // namespace

NetworkLink::NetworkLink(EventLoop& loop, Duration silence)
    : loop_(loop),
      acceptAgain_(loop, [this] { listenerWatch_->SetEnabled(true); }),
      silence_(silence),
      silenceAlarm_(loop, [this] { PeerMayBeSilent(); }),
      buffer_(std::make_unique<std::array<char, 65536>>()) {}

NetworkLink::~NetworkLink() = default;

void NetworkLink::Tell(std::string_view words) const {
  OnEvent(words);
}

bool NetworkLink::Fail(std::string_view words) {
  Close();
  Tell(words);
  return false;
}

bool NetworkLink::Open(const NetworkChoice& choice) {
  if (const auto opened = Begin(choice, nullptr)) return *opened;
  const std::uint64_t opening = openings_;
  while (opening == openings_ && !connector_->Over()) {
    const auto isDue = [&] { return opening != openings_ || connector_->Due() <= loop_.Now(); };
    loop_.WaitUntil(isDue, connector_->Due());
    if (opening == openings_) connector_->Step();
  }
  return opening == openings_ && TakeConnection();
}

void NetworkLink::OpenInBackground(const NetworkChoice& choice, const std::function<void(bool)>& over) {
  const auto opened = Begin(choice, [this, over] { over(TakeConnection()); });
  if (opened) over(*opened);
}

// Nothing yet while a client's connection is being made, at the end of which it calls.
std::optional<bool> NetworkLink::Begin(const NetworkChoice& choice, std::function<void()> connected) {
  Close();
  udp_ = choice.udp;
  listening_ = choice.listen;
  const double number = Val(choice.port);
  if (!(number >= 1 && number <= 65535)) {
    return Fail(fmt::format("port {}: a port is a number from 1 to 65535", choice.port));
  }
  const int port = static_cast<int>(number);
  if (choice.listen) return Listen(port, choice.bind);
  connector_ = std::make_unique<Connector>(loop_, Peer{choice.udp, choice.host, port}, std::move(connected));
  return std::nullopt;
}

void NetworkLink::Cancel() {
  if (connector_) Fail("cancelled");
}

// Without an address on IPv6 and IPv4 at once, or on IPv4 where the system has nothing else.
bool NetworkLink::Listen(int port, const std::string& address) {
  const int type = udp_ ? SOCK_DGRAM : SOCK_STREAM;
  const std::string host(TrimBlanks(address));
  const std::string where = fmt::format("{}, port {}", host.empty() ? "all addresses" : host, port);
  Listener made;
  if (!host.empty()) {
    const auto at = SocketAddress::FromNumeric(host, port);
    if (!at) return Fail(fmt::format("{}: no numeric address to listen at", host));
    made = ListenOn(*at, type);
  } else {
    made = ListenOn(SocketAddress::Any(AF_INET6, port), type);
    if (made.error == std::errc::address_family_not_supported ||
        made.error == std::errc::address_not_available) {
      made = ListenOn(SocketAddress::Any(AF_INET, port), type);
    }
  }
  if (made.error) return Fail(fmt::format("{}: {}", where, made.error.message()));
  if (udp_) {
    SetPeer(std::move(made.socket));
  } else {
    listener_ = std::move(made.socket);
    listenerWatch_ = loop_.WatchReadable(listener_.Get(), [this] { AcceptPeer(); });
  }
  Tell("listening on " + where);
  return true;
}

bool NetworkLink::TakeConnection() {
  const std::unique_ptr<Connector> connector = std::move(connector_);
  Socket socket = connector->TakeSocket();
  if (!socket) return Fail(connector->Failure());
  SetPeer(std::move(socket));
  DiscardPending();
  peerName_ = connector->Address().Text();
  const std::uint64_t opening = openings_;
  Tell("connected to " + peerName_);
  return opening == openings_;
}

// What came before the link counts as open is nobody's. An end that came with it stays with the system.
void NetworkLink::DiscardPending() {
  recv(peer_.Get(), buffer_->data(), buffer_->size(), 0);
}

void NetworkLink::SetPeer(Socket socket) {
  readableWatch_.reset();
  writableWatch_.reset();
  DropWaiting();
  sendError_ = {};
  peerGone_ = false;
  refusalTold_ = false;
  peer_ = std::move(socket);
  if (!udp_) SetUpStream(peer_);
  readableWatch_ = loop_.WatchReadable(peer_.Get(), [this] { Take(); });
}

void NetworkLink::AcceptPeer() {
  SocketAddress address;
  address.length = sizeof address.storage;
  Socket accepted(accept4(listener_.Get(), address.Pointer(), &address.length, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!accepted) {
    if (!LacksResources()) return;      // that peer has gone already
    listenerWatch_->SetEnabled(false);  // it would wake us again and again
    acceptAgain_.At(loop_.Now() + acceptPause);
    Tell("no peer can connect: " + LastError().message());
    return;
  }
  if (peer_) ReadToTheEnd();
  SetPeer(std::move(accepted));
  BeginSender();
  peerName_ = address.Text();
  Tell(peerName_ + " has connected");
}

void NetworkLink::Close() {
  ++openings_;
  connector_.reset();
  acceptAgain_.Cancel();
  listenerWatch_.reset();
  readableWatch_.reset();
  writableWatch_.reset();
  listener_ = Socket();
  peer_ = Socket();
  lastSender_ = SocketAddress();
  peerName_.clear();
  received_.assign(1, {});
  receivedBytes_ = 0;
  DropWaiting();
  sendError_ = {};
  peerGone_ = false;
}

// Lines that a peer sent before it was replaced are as good as any.
void NetworkLink::ReadToTheEnd() {
  for (int takes = 0; peer_ && readableWatch_ && takes < mostTakes; ++takes) {
    if (receivedBytes_ >= mostReceived) break;
    const ssize_t count = recv(peer_.Get(), buffer_->data(), buffer_->size(), 0);
    if (count <= 0) break;
    Keep(static_cast<std::size_t>(count));
  }
  if (receivedBytes_ > 0) OnArrival();
}

Passage NetworkLink::State() const {
  if (peerGone_) return Passage::PeerGone;
  if (!peer_) return listener_ ? Passage::WaitsForPeer : Passage::Closed;
  return readableWatch_ ? Passage::Open : Passage::WaitsForPeer;
}

// What comes from here on is another's.
void NetworkLink::BeginSender() {
  if (received_.size() == 1 || !received_.back().empty()) received_.emplace_back();
}

void NetworkLink::CrossToNextSender() {
  while (SenderChanges()) {
    received_.pop_front();
    OnNewPeer();
  }
}

// So many bytes of the buffer.
void NetworkLink::Keep(std::size_t count) {
  received_.back().append(buffer_->data(), count);
  receivedBytes_ += count;
}

void NetworkLink::DropPeer() {
  readableWatch_.reset();
  writableWatch_.reset();
  DropWaiting();
  peer_ = Socket();
}

// The last byte has been taken. A peer that ended only its own sending, as one does that sends a request
// and waits for the answer, still gets that from a server; an end stays readable, so the watch ends.
void NetworkLink::EndOfReceiving(std::error_code error) {
  if (!error) error = sendError_;
  readableWatch_.reset();
  if (error || !listening_) DropPeer();
  peerGone_ = !listening_;
  Tell(error ? "the peer has gone: " + error.message() : "the peer has closed the connection");
}

// What has come before the connection broke can still be received.
void NetworkLink::EndOfSending(std::error_code error) {
  sendError_ = error;
  writableWatch_.reset();
  DropWaiting();
  if (!readableWatch_) DropPeer();
}

void NetworkLink::Take() {
  for (int takes = 0; takes < mostTakes; ++takes) {
    if (!peer_ || receivedBytes_ >= enoughReceived || !TakeOnce()) break;
  }
  WatchWhileThereIsRoom();
  if (receivedBytes_ > 0) OnArrival();
}

// False when there is nothing more at present.
bool NetworkLink::TakeOnce() {
  if (udp_) return TakeDatagram();
  const ssize_t count = recv(peer_.Get(), buffer_->data(), buffer_->size(), 0);
  if (count < 0 && WouldBlock()) return false;
  if (count <= 0) {
    EndOfReceiving(count < 0 ? LastError() : std::error_code());
    return false;
  }
  Keep(static_cast<std::size_t>(count));
  return static_cast<std::size_t>(count) == buffer_->size();
}

// An empty one says nothing, not even who is to be answered.
bool NetworkLink::TakeDatagram() {
  SocketAddress sender;
  sender.length = sizeof sender.storage;
  const ssize_t count =
      recvfrom(peer_.Get(), buffer_->data(), buffer_->size(), 0, sender.Pointer(), &sender.length);
  if (count < 0 && WouldBlock()) return false;
  if (count < 0) TellRefusal(LastError());
  if (count <= 0) return true;
  refusalTold_ = false;
  if (!IsSame(lastSender_, sender)) {
    if (lastSender_.length != 0) BeginSender();
    lastSender_ = sender;
    peerName_ = sender.Text();
  }
  Keep(static_cast<std::size_t>(count));
  return true;
}

// The echo of an earlier datagram that nobody took. The next one may find somebody, so it is told once.
void NetworkLink::TellRefusal(std::error_code error) {
  if (!std::exchange(refusalTold_, true)) Tell("a datagram was not taken: " + error.message());
}

void NetworkLink::WatchWhileThereIsRoom() {
  if (readableWatch_) readableWatch_->SetEnabled(receivedBytes_ < enoughReceived);
}

std::int32_t NetworkLink::GetByteRead() {
  CrossToNextSender();
  return static_cast<std::int32_t>(received_.front().size());
}

std::string NetworkLink::GetStringRead() {
  CrossToNextSender();
  std::string text = std::exchange(received_.front(), {});
  receivedBytes_ -= text.size();
  WatchWhileThereIsRoom();
  if (receivedBytes_ > 0) OnArrival();
  return text;
}

std::error_code NetworkLink::Send(std::string_view text) {
  takenOfLastSend_ = 0;
  if (!peer_) return NotConnected();
  return udp_ ? SendDatagram(text) : SendStream(text);
}

std::error_code NetworkLink::SendDatagram(std::string_view text) {
  if (listening_ && lastSender_.length == 0) return NotConnected();
  const sockaddr* to = listening_ ? lastSender_.Pointer() : nullptr;
  const socklen_t toLength = listening_ ? lastSender_.length : 0;
  const auto send = [&] { return sendto(peer_.Get(), text.data(), text.size(), MSG_NOSIGNAL, to, toLength); };
  ssize_t sent = send();
  // The first send after a refused one reports that one and sends nothing.
  if (sent < 0 && errno == ECONNREFUSED) {
    TellRefusal(LastError());
    if (!peer_) return NotConnected();
    sent = send();
  }
  return sent < 0 ? LastError() : std::error_code();
}

std::error_code NetworkLink::SendStream(std::string_view text) {
  if (waiting_.size() + text.size() > mostWaiting) return std::make_error_code(std::errc::no_buffer_space);
  const bool othersWait = writableWatch_ != nullptr;
  waiting_ += text;
  waitingTotal_ += text.size();
  if (othersWait) return {};
  const std::error_code error = SendWaiting();
  if (!error) return {};
  takenOfLastSend_ = text.size() - waiting_.size();
  waiting_.clear();  // all of it is this text's, whose sender is told
  EndOfSending(error);
  return error;
}

std::error_code NetworkLink::SendWaiting() {
  while (!waiting_.empty()) {
    const ssize_t sent = send(peer_.Get(), waiting_.data(), waiting_.size(), MSG_NOSIGNAL);
    if (sent < 0 && !WouldBlock()) return LastError();
    if (sent < 0) break;
    waiting_.erase(0, static_cast<std::size_t>(sent));
    WatchSilence();
  }
  if (waiting_.empty()) {
    writableWatch_.reset();
  } else if (!writableWatch_) {
    writableWatch_ = loop_.WatchWritable(peer_.Get(), [this] {
      if (const auto error = SendWaiting()) EndOfSending(error);
    });
  }
  TellQueue();
  return {};
}

// Keep-alive says nothing while something is on its way, and the system itself gives up only after a quarter
// of an hour.
void NetworkLink::WatchSilence() {
  if (!silenceAlarm_.IsSet()) silenceAlarm_.At(loop_.Now() + silence_);
}

void NetworkLink::PeerMayBeSilent() {
  tcp_info info{};
  socklen_t length = sizeof info;
  if (!peer_ || getsockopt(peer_.Get(), IPPROTO_TCP, TCP_INFO, &info, &length) != 0) return;
  if (Unacknowledged() == 0 && waiting_.empty()) return;
  const Duration silent =
      std::chrono::milliseconds(std::min(info.tcpi_last_ack_recv, info.tcpi_last_data_recv));
  // One that reads nothing answers our questions all the same: it is alive.
  const bool owesAnswers = info.tcpi_unacked > 0 || info.tcpi_probes > 1;
  if (owesAnswers && silent >= silence_) return PeerIsLost(SystemError(ETIMEDOUT));
  silenceAlarm_.At(loop_.Now() + (owesAnswers ? silence_ - silent : silence_));
}

void NetworkLink::PeerIsLost(std::error_code error) {
  unfinished_ = Unacknowledged();
  EndOfSending(error);
  if (peer_) return EndOfReceiving(error);
  Tell("the peer has gone: " + error.message());
}

// The end of the stream counts as one more, once it was given.
std::size_t NetworkLink::Unacknowledged() const {
  int bytes = 0;
  return ioctl(peer_.Get(), SIOCOUTQ, &bytes) == 0 ? static_cast<std::size_t>(bytes) : 0;
}

void NetworkLink::Finish(Instant deadline) {
  const std::uint64_t opening = openings_;
  const auto over = [&] { return opening != openings_ || !peer_; };
  if (udp_ || over() || peerGone_) return;
  loop_.WaitUntil([&] { return over() || waiting_.empty(); }, deadline);
  if (over()) return;
  if (waiting_.empty()) shutdown(peer_.Get(), SHUT_WR);
  const std::size_t end = waiting_.empty() ? 1 : 0;
  while (!over() && Unacknowledged() > 0 && loop_.Now() < deadline) {
    loop_.WaitUntil(over, std::min(deadline, loop_.Now() + acknowledgementPause));
  }
  if (over()) return;
  unfinished_ = Unacknowledged();
  unfinished_ -= std::min(unfinished_, end);
  // A close with unread data would tell the peer that all is void, and it might throw away what it has.
  for (int takes = 0; takes < mostTakes; ++takes) {
    if (recv(peer_.Get(), buffer_->data(), buffer_->size(), 0) <= 0) break;
  }
}

void NetworkLink::TellQueue() {
  const std::size_t total = waitingTotal_;
  if (waiting_.empty()) waitingTotal_ = 0;
  if (total > 0) OnQueue(total - waiting_.size(), total);
}

void NetworkLink::DropWaiting() {
  silenceAlarm_.Cancel();
  const std::size_t lost = waiting_.size() + std::exchange(unfinished_, 0);
  waiting_.clear();
  if (lost > 0) OnLost(lost);
  TellQueue();
}

}  // namespace quarlin
