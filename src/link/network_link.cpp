#include "link/network_link.h"

#include <fmt/format.h>
#include <netinet/in.h>
#include <netinet/tcp.h>

#include <cerrno>

#include "base/numbers.h"
#include "link/resolver.h"

namespace quarlin {
namespace {

constexpr std::size_t enoughReceived = 1024;               // nothing more is taken before that has gone
constexpr std::size_t mostWaiting = std::size_t{1} << 20;  // to be sent
constexpr Duration connectTime = std::chrono::seconds(30);

std::error_code NotConnected() {
  return std::make_error_code(std::errc::not_connected);
}

bool WouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

NetworkLink::NetworkLink(EventLoop& loop)
    : loop_(loop), buffer_(std::make_unique<std::array<char, 65536>>()) {}

NetworkLink::~NetworkLink() = default;

void NetworkLink::Tell(std::string_view words) const {
  if (OnEvent) OnEvent(words);
}

bool NetworkLink::Fail(std::string_view words) {
  Close();
  Tell(words);
  return false;
}

bool NetworkLink::Open(const NetworkChoice& choice) {
  Close();
  cancelled_ = false;
  udp_ = choice.udp;
  const double port = Val(choice.port);
  if (!(port >= 1 && port <= 65535)) {
    return Fail(fmt::format("port {}: a port is a number from 1 to 65535", choice.port));
  }
  if (choice.listen) return Listen(static_cast<int>(port));
  connecting_ = true;
  const bool opened = Connect(choice.host, static_cast<int>(port));
  connecting_ = false;
  return opened;
}

// On IPv6 and IPv4 at once, or on IPv4 where the system has nothing else.
bool NetworkLink::Listen(int port) {
  const int type = udp_ ? SOCK_DGRAM : SOCK_STREAM;
  std::error_code error;
  for (const int family : {AF_INET6, AF_INET}) {
    Socket made = Socket::Make(family, type);
    if (!made) continue;
    if (family == AF_INET6) made.SetOption(IPPROTO_IPV6, IPV6_V6ONLY, 0);
    if (!udp_) made.SetOption(SOL_SOCKET, SO_REUSEADDR, 1);
    const SocketAddress any = SocketAddress::Any(family, port);
    if (bind(made.Get(), any.Pointer(), any.length) != 0 || (!udp_ && listen(made.Get(), 16) != 0)) {
      error = LastSocketError();
      continue;
    }
    if (udp_) {
      SetPeer(std::move(made));
    } else {
      listener_ = std::move(made);
      listenerWatch_ = loop_.WatchReadable(listener_.Get(), [this] { AcceptPeer(); });
    }
    Tell(fmt::format("listening on port {}", port));
    return true;
  }
  return Fail(fmt::format("port {}: {}", port, error.message()));
}

bool NetworkLink::Connect(const std::string& host, int port) {
  const Instant deadline = loop_.Now() + connectTime;
  const auto addresses = Resolve(loop_, host, port, deadline, [this] { return cancelled_; });
  if (cancelled_) return Fail("cancelled");
  if (addresses.empty()) return Fail("no such host: " + host);
  std::error_code error;
  for (const SocketAddress& address : addresses) {
    error = ConnectTo(address, deadline);
    if (cancelled_) return Fail("cancelled");
    if (error) continue;
    Tell("connected to " + address.Text());
    return true;
  }
  return Fail("no connection: " + error.message());
}

std::error_code NetworkLink::ConnectTo(const SocketAddress& address, Instant deadline) {
  Socket made = Socket::Make(address.storage.ss_family, udp_ ? SOCK_DGRAM : SOCK_STREAM);
  if (!made) return LastSocketError();
  if (connect(made.Get(), address.Pointer(), address.length) != 0) {
    if (errno != EINPROGRESS) return LastSocketError();
    bool finished = false;
    const auto watch = loop_.WatchWritable(made.Get(), [&] { finished = true; });
    loop_.WaitUntil([&] { return finished || cancelled_; }, deadline);
    if (!finished) return std::make_error_code(std::errc::timed_out);
    int failure = 0;
    socklen_t length = sizeof failure;
    getsockopt(made.Get(), SOL_SOCKET, SO_ERROR, &failure, &length);
    if (failure != 0) return {failure, std::system_category()};
  }
  SetPeer(std::move(made));
  return {};
}

void NetworkLink::SetPeer(Socket socket) {
  readableWatch_.reset();
  writableWatch_.reset();
  received_.clear();
  waiting_.clear();
  peerGone_ = false;
  peer_ = std::move(socket);
  if (!udp_) peer_.SetOption(IPPROTO_TCP, TCP_NODELAY, 1);
  readableWatch_ = loop_.WatchReadable(peer_.Get(), [this] { Take(); });
}

void NetworkLink::AcceptPeer() {
  SocketAddress address;
  address.length = sizeof address.storage;
  Socket accepted(accept4(listener_.Get(), address.Pointer(), &address.length, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!accepted) {
    if (WouldBlock() || errno == ECONNABORTED) return;
    listenerWatch_->SetEnabled(false);  // a lack of descriptors would wake us again and again
    Tell("no peer can connect: " + LastSocketError().message());
    return;
  }
  SetPeer(std::move(accepted));
  if (OnNewPeer) OnNewPeer();
  Tell(address.Text() + " has connected");
}

void NetworkLink::Close() {
  cancelled_ = true;  // for an opening that waits on the stack
  listenerWatch_.reset();
  readableWatch_.reset();
  writableWatch_.reset();
  listener_ = Socket();
  peer_ = Socket();
  lastSender_ = SocketAddress();
  received_.clear();
  waiting_.clear();
  peerGone_ = false;
}

void NetworkLink::LosePeer(std::error_code error) {
  readableWatch_.reset();
  writableWatch_.reset();
  waiting_.clear();
  peer_ = Socket();
  peerGone_ = !listener_;
  if (listenerWatch_) listenerWatch_->SetEnabled(true);
  Tell(error ? "the peer has gone: " + error.message() : "the peer has closed the connection");
}

void NetworkLink::Take() {
  while (peer_ && received_.size() < enoughReceived && TakeOnce()) {
  }
  WatchWhileThereIsRoom();
  if (!received_.empty() && OnArrival) OnArrival();
}

// False when there is nothing more at present.
bool NetworkLink::TakeOnce() {
  SocketAddress sender;
  sender.length = sizeof sender.storage;
  const ssize_t count =
      recvfrom(peer_.Get(), buffer_->data(), buffer_->size(), 0, sender.Pointer(), &sender.length);
  if (count < 0 && WouldBlock()) return false;
  if (udp_) {
    // An error is the echo of an earlier datagram that nobody took; the next one may find somebody.
    if (count < 0) {
      Tell("a datagram was not taken: " + LastSocketError().message());
    } else {
      lastSender_ = sender;
      received_.append(buffer_->data(), static_cast<std::size_t>(count));
    }
    return count >= 0;
  }
  if (count <= 0) {
    LosePeer(count < 0 ? LastSocketError() : std::error_code());
    return false;
  }
  received_.append(buffer_->data(), static_cast<std::size_t>(count));
  return true;
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
  // A connected socket has its peer already; a bound one answers.
  sockaddr_storage connectedTo{};
  socklen_t length = sizeof connectedTo;
  const bool isConnected = getpeername(peer_.Get(), reinterpret_cast<sockaddr*>(&connectedTo), &length) == 0;
  if (!isConnected && lastSender_.length == 0) return NotConnected();
  const sockaddr* to = isConnected ? nullptr : lastSender_.Pointer();
  const socklen_t toLength = isConnected ? 0 : lastSender_.length;
  ssize_t sent = sendto(peer_.Get(), text.data(), text.size(), MSG_NOSIGNAL, to, toLength);
  // The first send after a refused one reports that one and sends nothing.
  if (sent < 0 && errno == ECONNREFUSED)
    sent = sendto(peer_.Get(), text.data(), text.size(), MSG_NOSIGNAL, to, toLength);
  return sent < 0 ? LastSocketError() : std::error_code();
}

std::error_code NetworkLink::SendStream(std::string_view text) {
  if (waiting_.size() + text.size() > mostWaiting) return std::make_error_code(std::errc::no_buffer_space);
  waiting_ += text;
  return writableWatch_ ? std::error_code() : SendWaiting();
}

std::error_code NetworkLink::SendWaiting() {
  while (!waiting_.empty()) {
    const ssize_t sent = send(peer_.Get(), waiting_.data(), waiting_.size(), MSG_NOSIGNAL);
    if (sent < 0 && !WouldBlock()) {
      const std::error_code error = LastSocketError();
      LosePeer(error);
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
  return {};
}

}  // namespace quarlin
