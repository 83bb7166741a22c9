// SPDX-License-Identifier: GPL-3.0-or-later
// "Number of Request": how many requests a run still has, shown in Text1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "exchange/run_controls.h"

namespace quarlin {

class RequestCount {
 public:
  explicit RequestCount(RunControls& controls);

  // A run begins with the number in Text1; or, where that is the 0 which a completed run has left and nobody
  // has touched, with the number of that run again.
  void Begin();

  // The run ended because no request was left: its number is remembered.
  void Complete();

  // A configuration was loaded: what Text1 shows now is meant.
  void Loaded() { completed_ = false; }

  bool Limited() const { return controls_.CountsRequests(); }
  std::int32_t RequestsLeft() const { return requestsLeft_; }
  void TakeOne();

  // What a configuration is to hold for Text1; and while a Saving lives, Text1 has that text.
  std::string TextToSave() const;
  class Saving {
   public:
    explicit Saving(RequestCount& count);
    ~Saving();
    Saving(const Saving&) = delete;
    Saving& operator=(const Saving&) = delete;

   private:
    RequestCount& count_;
    std::string shown_;
  };

 private:
  void Show(std::string_view text);
  void TextChanged();

  RunControls& controls_;
  std::int32_t requestsLeft_ = 0;
  std::string began_;       // the text with which the run began
  bool completed_ = false;  // Text1 shows what the run left of it
  bool showing_ = false;    // Text1 is changed by this object
};

}  // namespace quarlin
