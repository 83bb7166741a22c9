// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/resolver.h"

#include <ares.h>
#include <fmt/format.h>

#include <cstring>
#include <map>
#include <utility>

namespace quarlin {

// The library tells which of its descriptors to watch.
class LookUp::Query {
 public:
  Query(EventLoop& loop, std::function<void()> found) : loop_(loop), found_(std::move(found)) {
    ares_library_init(ARES_LIB_INIT_ALL);
    ares_options options{};
    options.sock_state_cb = [](void* self, ares_socket_t descriptor, int readable, int writable) {
      static_cast<Query*>(self)->Watch(descriptor, readable != 0, writable != 0);
    };
    options.sock_state_cb_data = this;
    ready_ = ares_init_options(&channel_, &options, ARES_OPT_SOCK_STATE_CB) == ARES_SUCCESS;
  }

  // What is still being asked for ends with nothing found, and nobody wants to know it.
  ~Query() {
    found_ = nullptr;
    if (ready_) ares_destroy(channel_);
    ares_library_cleanup();
  }

  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  void Ask(const std::string& host, int port) {
    over_ = !ready_;
    if (over_) return;
    ares_addrinfo_hints hints{};
    hints.ai_flags = ARES_AI_NUMERICSERV;
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    ares_getaddrinfo(
        channel_, host.c_str(), fmt::to_string(port).c_str(), &hints,
        [](void* self, int, int, ares_addrinfo* found) { static_cast<Query*>(self)->Found(found); }, this);
  }

  bool Over() const { return over_; }
  const std::vector<SocketAddress>& Addresses() const { return addresses_; }

  Instant NextTimeOut() const {
    timeval longest{1, 0};
    timeval wait{};
    const timeval* next = ares_timeout(channel_, &longest, &wait);
    return loop_.Now() + std::chrono::seconds(next->tv_sec) + std::chrono::microseconds(next->tv_usec);
  }

  void ServeTimeOuts() { ares_process_fd(channel_, ARES_SOCKET_BAD, ARES_SOCKET_BAD); }

 private:
  using Watches = std::vector<std::unique_ptr<quarlin::Watch>>;

  void Watch(ares_socket_t descriptor, bool readable, bool writable) {
    Watches& watches = watches_[descriptor];
    watches.clear();
    if (readable) {
      watches.push_back(loop_.WatchReadable(
          descriptor, [this, descriptor] { ares_process_fd(channel_, descriptor, ARES_SOCKET_BAD); }));
    }
    if (writable) {
      watches.push_back(loop_.WatchWritable(
          descriptor, [this, descriptor] { ares_process_fd(channel_, ARES_SOCKET_BAD, descriptor); }));
    }
  }

  void Found(ares_addrinfo* found) {
    over_ = true;
    if (found != nullptr) {
      for (const ares_addrinfo_node* node = found->nodes; node != nullptr; node = node->ai_next) {
        SocketAddress address;
        std::memcpy(&address.storage, node->ai_addr, node->ai_addrlen);
        address.length = node->ai_addrlen;
        addresses_.push_back(address);
      }
      ares_freeaddrinfo(found);
    }
    if (found_) found_();
  }

  EventLoop& loop_;
  std::function<void()> found_;
  ares_channel channel_{};
  bool ready_ = false;
  bool over_ = false;
  std::map<ares_socket_t, Watches> watches_;
  std::vector<SocketAddress> addresses_;
};

LookUp::LookUp(EventLoop& loop, const std::string& host, int port, std::function<void()> found) {
  const bool brackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
  const std::string bare = brackets ? host.substr(1, host.size() - 2) : host;
  if (const auto numeric = SocketAddress::FromNumeric(bare, port)) {
    numeric_ = {*numeric};
    return;
  }
  query_ = std::make_unique<Query>(loop, std::move(found));
  query_->Ask(host, port);
}

LookUp::~LookUp() = default;

bool LookUp::Over() const {
  return !query_ || query_->Over();
}

const std::vector<SocketAddress>& LookUp::Addresses() const {
  return query_ ? query_->Addresses() : numeric_;
}

Instant LookUp::NextTimeOut() const {
  return query_->NextTimeOut();
}

void LookUp::ServeTimeOuts() {
  query_->ServeTimeOuts();
}

}  // namespace quarlin
