// SPDX-License-Identifier: GPL-3.0-or-later
// The signals of the instrument as something to wait on and read, so that none interrupts it midway.
#pragma once

#include <optional>

#include "base/file_handle.h"

namespace quarlin::instrument {

enum class Signal { End, Report };

class SignalInput {
 public:
  // From here on SIGINT, SIGTERM and SIGHUP (End) and SIGUSR1 (Report) arrive here only. Throws
  // std::system_error when that cannot be had.
  SignalInput();

  int Descriptor() const { return signals_.Get(); }

  // The next signal that has arrived, if any; never blocks.
  std::optional<Signal> Next() const;

 private:
  FileHandle signals_;
};

}  // namespace quarlin::instrument
