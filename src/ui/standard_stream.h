// SPDX-License-Identifier: GPL-3.0-or-later
// Standard output or error, read by somebody who may be slow, or may not read at all. The program never waits
// for them: what has not been taken yet is kept, and beyond 4 MiB lines are lost whole, and counted.
//
// The stream is asked before it is written, in pieces that a pipe takes at once. Its flags are left alone,
// since other programs share them; where the system allows it, the stream is opened a second time, without
// blocking, because a terminal may have room for less than it is asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/file_handle.h"
#include "base/hook.h"
#include "controls/event_loop.h"

namespace quarlin {

class StandardStream {
 public:
  // The stream is open when the program begins and stays so.
  StandardStream(EventLoop& loop, int descriptor);

  // Takes UTF-8, any part of a line or any number of them. On a terminal a control character other than the
  // line end is shown as \xNN, so that a peer's bytes cannot command it. A stream that fails loses the text.
  void Write(std::string_view utf8);

  // Before the program ends: adds the last words, for which there is always room, and waits until all has
  // been taken, till the deadline at most, or until the descriptor `impatience` can be read (-1: none). What
  // is left then is lost.
  void Finish(std::string_view lastWords, Instant deadline, int impatience);

  // Lines that were not printed, or not to their end.
  std::uint64_t LostLines() const { return lostLines_; }

  // Told at the first of them.
  Hook<void()> OnFirstLoss;

 private:
  std::size_t Waiting() const { return queue_.size() - taken_; }
  void Add(std::string_view piece);
  void Pump();
  bool Takes() const;
  void LoseQueue();
  void CountLost(std::uint64_t lines);

  EventLoop& loop_;
  FileHandle own_;  // the stream, opened once more; none where it cannot be
  int descriptor_;  // what is written to
  bool isTerminal_;
  std::string queue_;
  std::size_t taken_ = 0;    // bytes at the beginning of the queue that are out
  bool lineIsOpen_ = false;  // the queue ends in the middle of a line
  bool lineIsLost_ = false;  // the rest of the line that is being written is not taken
  std::uint64_t lostLines_ = 0;
  std::unique_ptr<Watch> watch_;
};

}  // namespace quarlin
