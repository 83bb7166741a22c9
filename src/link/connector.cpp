// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/connector.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/system_call.h"

namespace quarlin {

Connector::Connector(EventLoop& loop, Peer peer, std::function<void()> over)
    : loop_(loop),
      peer_(std::move(peer)),
      deadline_(loop.Now() + longest),
      due_(loop.Now()),
      alarm_(loop, [this, over = std::move(over)] {
        Step();
        if (over_ && over) over();
      }) {
  alarm_.At(due_);
  lookUp_ = std::make_unique<LookUp>(loop, peer_.host, peer_.port, [this] { SetDue(loop_.Now()); });
}

void Connector::SetDue(Instant due) {
  due_ = due;
  alarm_.At(due);
}

void Connector::Step() {
  if (over_ || (lookUp_ && !AddressesKnown())) return;
  while (!over_ && !StillConnecting()) TryNext();
}

// False as well when there are none, and all is over.
bool Connector::AddressesKnown() {
  if (!lookUp_->Over()) lookUp_->ServeTimeOuts();
  const bool inTime = loop_.Now() < deadline_;
  if (!lookUp_->Over() && inTime) {
    SetDue(std::min(deadline_, lookUp_->NextTimeOut()));
    return false;
  }
  addresses_ = lookUp_->Addresses();
  lookUp_.reset();
  if (addresses_.empty()) Fail((inTime ? "no such host: " : "no name server answers for ") + peer_.host);
  // A datagram socket cannot tell whether anybody is there; most instruments speak only the older family.
  const auto isIPv4 = [](const SocketAddress& address) { return address.storage.ss_family == AF_INET; };
  if (peer_.udp) std::stable_partition(addresses_.begin(), addresses_.end(), isIPv4);
  return !over_;
}

void Connector::TryNext() {
  if (addresses_.empty()) return Fail("no connection: " + lastError_.message());
  const auto triesLeft = static_cast<Duration::rep>(addresses_.size());
  tryEnds_ = loop_.Now() + (deadline_ - loop_.Now()) / triesLeft;
  address_ = addresses_.front();
  addresses_.erase(addresses_.begin());
  socket_ = Socket::Make(address_.storage.ss_family, peer_.udp ? SOCK_DGRAM : SOCK_STREAM);
  if (!socket_) return TakeResult(LastError());
  if (peer_.udp) socket_.SetOption(SOL_SOCKET, SO_BROADCAST, 1);
  if (connect(socket_.Get(), address_.Pointer(), address_.length) == 0) return TakeResult({});
  if (errno != EINPROGRESS) return TakeResult(LastError());
  answered_ = false;
  watch_ = loop_.WatchWritable(socket_.Get(), [this] {
    answered_ = true;
    watch_->SetEnabled(false);  // it would call without an end during a yield
    SetDue(loop_.Now());
  });
}

bool Connector::StillConnecting() {
  if (!watch_) return false;
  if (!answered_ && loop_.Now() < tryEnds_) {
    SetDue(tryEnds_);
    return true;
  }
  watch_.reset();
  int failure = 0;
  socklen_t length = sizeof failure;
  getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, &failure, &length);
  TakeResult(answered_ ? SystemError(failure) : std::make_error_code(std::errc::timed_out));
  return false;
}

void Connector::TakeResult(std::error_code error) {
  if (!error && !peer_.udp && socket_.MeetsItself())
    error = std::make_error_code(std::errc::connection_refused);
  lastError_ = error;
  over_ = !error;
  if (error) socket_ = Socket();
}

void Connector::Fail(std::string words) {
  failure_ = std::move(words);
  over_ = true;
}

}  // namespace quarlin
