// SPDX-License-Identifier: GPL-3.0-or-later
// What goes out around a text: the initial string before it, the terminator behind it.
#pragma once

#include <string>
#include <string_view>

#include "exchange/framing_controls.h"

namespace quarlin {

class Framing {
 public:
  explicit Framing(FramingControls& controls);

  // Behind every string that is sent: CR, CR LF, one character, or nothing.
  const std::string& TxTerminator() const { return txTerminator_; }
  void ComputeTxTerminator();

  // The text with initial string and terminator.
  std::string Framed(std::string_view text) const;

 private:
  std::string InitialString() const;

  FramingControls& controls_;
  std::string txTerminator_;
};

}  // namespace quarlin
