// SPDX-License-Identifier: GPL-3.0-or-later
// For functions that may work long on large values: asks after every piece of the work whether the script
// may go on. A final error when not.
#pragma once

#include <cstddef>

#include "script/values/services.h"

namespace quarlin::vbs {

class Pace {
 public:
  // Small enough for a piece of the slowest work to take less than a millisecond.
  static constexpr std::size_t piece = std::size_t{1} << 16;

  explicit Pace(Services& services) : services_(services) {}
  Pace(const Pace&) = delete;
  Pace& operator=(const Pace&) = delete;

  // So many characters or items more have been worked on.
  void Done(std::size_t count) {
    done_ += count;
    if (done_ < piece) return;
    done_ = 0;
    AskToGoOn(services_);
  }

 private:
  Services& services_;
  std::size_t done_ = 0;
};

}  // namespace quarlin::vbs
