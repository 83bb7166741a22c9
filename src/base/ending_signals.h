// SPDX-License-Identifier: GPL-3.0-or-later
// The signals that end the program in order: SIGINT, SIGTERM and SIGHUP.
#pragma once

namespace quarlin {

class EndingSignals {
 public:
  // From here on they arrive here only; before any thread starts.
  EndingSignals();
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  // Readable while one waits to be taken.
  int Descriptor() const { return descriptor_; }

  // From any thread: whether one waits, which stays there.
  bool Wait() const;

  // Takes one; false when there is none.
  bool Take();

 private:
  int descriptor_;
};

}  // namespace quarlin
