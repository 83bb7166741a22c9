#include "link/network_link.h"

#include <fmt/format.h>
#include <netinet/in.h>
#include <netinet/tcp.h>

#include <cerrno>
#include <utility>

#include "base/numbers.h"
#include "base/system_call.h"
#include "link/connector.h"

namespace quarlin {
namespace {

constexpr std::size_t enoughReceived = 1024;               // nothing more is taken before that has gone
constexpr std::size_t mostWaiting = std::size_t{1} << 20;  // to be sent
constexpr Duration acceptPause = std::chrono::seconds(1);
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

struct Listener {
  Socket socket;
  std::error_code error;
};

// A stream listens again while old connections fade. A datagram socket must not: it would share the port
// with another program.
Listener ListenOn(int family, int type, int port) {
  Listener made{Socket::Make(family, type), {}};
  if (!made.socket) return {{}, LastError()};
  const bool stream = type == SOCK_STREAM;
  if (family == AF_INET6) made.socket.SetOption(IPPROTO_IPV6, IPV6_V6ONLY, 0);
  if (stream) made.socket.SetOption(SOL_SOCKET, SO_REUSEADDR, 1);
  const SocketAddress any = SocketAddress::Any(family, port);
  const int descriptor = made.socket.Get();
  if (bind(descriptor, any.Pointer(), any.length) != 0 || (stream && listen(descriptor, SOMAXCONN) != 0)) {
    return {{}, LastError()};
  }
  return made;
}

}  // namespace

NetworkLink::NetworkLink(EventLoop& loop)
    : loop_(loop),
      acceptAgain_(loop, [this] { listenerWatch_->SetEnabled(true); }),
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

void NetworkLink::OpenInBackground(const NetworkChoice& choice, std::function<void(bool)> over) {
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
  if (choice.listen) return Listen(port);
  connector_ = std::make_unique<Connector>(loop_, Peer{choice.udp, choice.host, port}, std::move(connected));
  return std::nullopt;
}

void NetworkLink::Cancel() {
  if (connector_) Fail("cancelled");
}

// On IPv6 and IPv4 at once, or on IPv4 where the system has nothing else.
bool NetworkLink::Listen(int port) {
  const int type = udp_ ? SOCK_DGRAM : SOCK_STREAM;
  Listener made = ListenOn(AF_INET6, type, port);
  if (made.error == std::errc::address_family_not_supported ||
      made.error == std::errc::address_not_available) {
    made = ListenOn(AF_INET, type, port);
  }
  if (made.error) return Fail(fmt::format("port {}: {}", port, made.error.message()));
  if (udp_) {
    SetPeer(std::move(made.socket));
  } else {
    listener_ = std::move(made.socket);
    listenerWatch_ = loop_.WatchReadable(listener_.Get(), [this] { AcceptPeer(); });
  }
  Tell(fmt::format("listening on port {}", port));
  return true;
}

bool NetworkLink::TakeConnection() {
  const std::unique_ptr<Connector> connector = std::move(connector_);
  Socket socket = connector->TakeSocket();
  if (!socket) return Fail(connector->Failure());
  SetPeer(std::move(socket));
  DiscardPending();
  const std::uint64_t opening = openings_;
  Tell("connected to " + connector->Address().Text());
  return opening == openings_;
}

// What came before the link counts as open is nobody's. An end that came with it stays with the system.
void NetworkLink::DiscardPending() {
  recv(peer_.Get(), buffer_->data(), buffer_->size(), 0);
}

void NetworkLink::SetPeer(Socket socket) {
  readableWatch_.reset();
  writableWatch_.reset();
  received_.clear();
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
  SetPeer(std::move(accepted));
  OnNewPeer();
  Tell(address.Text() + " has connected");
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
  received_.clear();
  DropWaiting();
  sendError_ = {};
  peerGone_ = false;
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
    if (!peer_ || received_.size() >= enoughReceived || !TakeOnce()) break;
  }
  WatchWhileThereIsRoom();
  if (!received_.empty() && OnArrival) OnArrival();
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
  received_.append(buffer_->data(), static_cast<std::size_t>(count));
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
  lastSender_ = sender;
  refusalTold_ = false;
  received_.append(buffer_->data(), static_cast<std::size_t>(count));
  return true;
}

// The echo of an earlier datagram that nobody took. The next one may find somebody, so it is told once.
void NetworkLink::TellRefusal(std::error_code error) {
  if (!std::exchange(refusalTold_, true)) Tell("a datagram was not taken: " + error.message());
}

void NetworkLink::WatchWhileThereIsRoom() {
  if (readableWatch_) readableWatch_->SetEnabled(received_.size() < enoughReceived);
}

std::string NetworkLink::GetStringRead() {
  std::string text = std::exchange(received_, {});
  WatchWhileThereIsRoom();
  return text;
}

std::error_code NetworkLink::Send(std::string_view text) {
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
  waiting_ += text;
  waitingTotal_ += text.size();
  return writableWatch_ ? std::error_code() : SendWaiting();
}

std::error_code NetworkLink::SendWaiting() {
  while (!waiting_.empty()) {
    const ssize_t sent = send(peer_.Get(), waiting_.data(), waiting_.size(), MSG_NOSIGNAL);
    if (sent < 0 && !WouldBlock()) {
      const std::error_code error = LastError();
      EndOfSending(error);
      return error;
    }
    if (sent < 0) break;
    waiting_.erase(0, static_cast<std::size_t>(sent));
  }
  if (waiting_.empty()) {
    writableWatch_.reset();
  } else if (!writableWatch_) {
    writableWatch_ = loop_.WatchWritable(peer_.Get(), [this] { SendWaiting(); });
  }
  TellQueue();
  return {};
}

void NetworkLink::TellQueue() {
  const std::size_t total = waitingTotal_;
  if (waiting_.empty()) waitingTotal_ = 0;
  if (total > 0) OnQueue(total - waiting_.size(), total);
}

void NetworkLink::DropWaiting() {
  waiting_.clear();
  TellQueue();
}

}  // namespace quarlin
