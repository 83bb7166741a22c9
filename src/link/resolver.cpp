#include "link/resolver.h"

#include <ares.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>

namespace quarlin {
namespace {

// One look-up. The library tells which of its descriptors to watch; its time-outs are served by whoever
// waits, because no alarm fires during a yield.
class LookUp {
 public:
  explicit LookUp(EventLoop& loop) : loop_(loop) {
    ares_library_init(ARES_LIB_INIT_ALL);
    ares_options options{};
    options.sock_state_cb = [](void* self, ares_socket_t descriptor, int readable, int writable) {
      static_cast<LookUp*>(self)->Watch(descriptor, readable != 0, writable != 0);
    };
    options.sock_state_cb_data = this;
    ready_ = ares_init_options(&channel_, &options, ARES_OPT_SOCK_STATE_CB) == ARES_SUCCESS;
  }

  ~LookUp() {
    if (ready_) ares_destroy(channel_);
    ares_library_cleanup();
  }

  LookUp(const LookUp&) = delete;
  LookUp& operator=(const LookUp&) = delete;

  std::vector<SocketAddress> Run(const std::string& host, int port, Instant deadline,
                                 const std::function<bool()>& cancelled) {
    if (!ready_) return {};
    ares_addrinfo_hints hints{};
    hints.ai_flags = ARES_AI_NUMERICSERV;
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    ares_getaddrinfo(
        channel_, host.c_str(), fmt::to_string(port).c_str(), &hints,
        [](void* self, int, int, ares_addrinfo* found) { static_cast<LookUp*>(self)->Found(found); }, this);
    while (!done_ && !cancelled() && loop_.Now() < deadline) {
      loop_.WaitUntil([&] { return done_ || cancelled(); }, std::min(deadline, NextTimeOut()));
      ares_process_fd(channel_, ARES_SOCKET_BAD, ARES_SOCKET_BAD);
    }
    return addresses_;
  }

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

  Instant NextTimeOut() const {
    timeval longest{1, 0};
    timeval wait{};
    const timeval* next = ares_timeout(channel_, &longest, &wait);
    return loop_.Now() + std::chrono::seconds(next->tv_sec) + std::chrono::microseconds(next->tv_usec);
  }

  void Found(ares_addrinfo* found) {
    done_ = true;
    if (found == nullptr) return;
    for (const ares_addrinfo_node* node = found->nodes; node != nullptr; node = node->ai_next) {
      SocketAddress address;
      std::memcpy(&address.storage, node->ai_addr, node->ai_addrlen);
      address.length = node->ai_addrlen;
      addresses_.push_back(address);
    }
    ares_freeaddrinfo(found);
  }

  EventLoop& loop_;
  ares_channel channel_{};
  bool ready_ = false;
  bool done_ = false;
  std::map<ares_socket_t, Watches> watches_;
  std::vector<SocketAddress> addresses_;
};

}  // namespace

std::vector<SocketAddress> Resolve(EventLoop& loop, const std::string& host, int port, Instant deadline,
                                   const std::function<bool()>& cancelled) {
  const bool brackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
  const std::string bare = brackets ? host.substr(1, host.size() - 2) : host;
  if (const auto numeric = SocketAddress::FromNumeric(bare, port)) return {*numeric};
  return LookUp(loop).Run(host, port, deadline, cancelled);
}

}  // namespace quarlin
