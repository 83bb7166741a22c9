// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/folder_watch.h"

#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "base/system_call.h"
#include "base/text.h"

namespace quarlin {
namespace {

// Not every write: a file that is still being written is no text yet, and the logs in the folder are written
// all the time. A new permission may make a file readable.
constexpr std::uint32_t changes = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                  IN_ATTRIB | IN_DELETE_SELF | IN_ONLYDIR;

}  // namespace

FolderWatch::FolderWatch(EventLoop& loop, const std::filesystem::path& folder)
    : loop_(loop), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), settled_(loop, [this] { Tell(); }) {
  if (events_.Get() < 0 || inotify_add_watch(events_.Get(), folder.c_str(), changes) < 0) {
    trouble_ = LastError();
  } else {
    watch_ = loop.WatchReadable(events_.Get(), [this] { TakeEvents(); });
  }
}

void FolderWatch::Follow(std::string_view name, std::function<void()> changed) {
  followers_.push_back({std::string(name), std::move(changed)});
}

// The system hands out whole events: a head and, for a file in the folder, its name, filled up with zeros.
void FolderWatch::TakeEvents() {
  alignas(inotify_event) std::array<char, std::size_t{16} * 1024> buffer;
  const ssize_t taken = Uninterrupted([&] { return read(events_.Get(), buffer.data(), buffer.size()); });
  for (ssize_t place = 0; place < taken;) {
    inotify_event event;
    std::memcpy(&event, buffer.data() + place, sizeof event);
    if (event.len > 0) {
      Note(buffer.data() + place + sizeof event);
    } else {
      NoteAll();  // the folder itself has gone, or more happened than the system could keep
    }
    if ((event.mask & IN_IGNORED) != 0) watch_->SetEnabled(false);
    place += static_cast<ssize_t>(sizeof event + event.len);
  }
}

void FolderWatch::Note(std::string_view name) {
  for (Follower& follower : followers_) {
    if (!EqualsIgnoringCase(follower.name, name)) continue;
    follower.due = true;
    Plan();
  }
}

void FolderWatch::NoteAll() {
  for (Follower& follower : followers_) follower.due = true;
  Plan();
}

void FolderWatch::Plan() {
  const Instant now = loop_.Now();
  if (!firstDue_) firstDue_ = now;
  settled_.At(std::min(now + quiet, *firstDue_ + atMost));
}

void FolderWatch::Tell() {
  firstDue_.reset();
  for (std::size_t i = 0; i < followers_.size(); ++i) {
    if (std::exchange(followers_[i].due, false)) followers_[i].changed();
  }
}

}  // namespace quarlin
