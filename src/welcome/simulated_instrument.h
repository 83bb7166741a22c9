// SPDX-License-Identifier: GPL-3.0-or-later
// The simulated instrument as a program of our own: started, found by its port, ended.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "desktop/child_process.h"

namespace quarlin {

struct SimulatedInstrumentHooks {
  Hook<void(const std::string& port)> ready;  // it answers at this port
  Hook<void(std::string_view why)> ended;     // `why` is empty when it was asked to
};

class SimulatedInstrument {
 public:
  // Its port is a link in the folder of what nobody keeps. The instrument removes it, also when we crash.
  SimulatedInstrument(EventLoop& loop, std::filesystem::path program, const std::filesystem::path& scratch);

  // Ends it with us: takes two seconds at most.
  ~SimulatedInstrument();
  SimulatedInstrument(const SimulatedInstrument&) = delete;
  SimulatedInstrument& operator=(const SimulatedInstrument&) = delete;

  // Told from the loop, never during a yield.
  SimulatedInstrumentHooks Hooks;

  // From Start until it was told that it has ended.
  bool Runs() const { return child_ != nullptr; }

  // Begins to start it; Hooks tell the rest. Returns why that cannot be, and nothing when it can. Only while
  // it does not run.
  std::string Start();

  // Asks it to end. It is made to when it does not within two seconds.
  void End();

 private:
  void TakeOutput();
  void TakeNews();
  void PatienceEnds();
  void TellEnd();
  std::string WhyItEnded() const;

  EventLoop& loop_;
  std::filesystem::path program_;
  std::filesystem::path link_;
  std::unique_ptr<ChildProcess> child_;
  std::unique_ptr<Watch> outputWatch_;
  std::unique_ptr<Watch> endWatch_;
  std::string printed_;  // its first lines
  bool ready_ = false;
  bool asked_ = false;  // to end
  bool late_ = false;   // its port did not come in time
  Alarm newsAlarm_;     // something was printed, or it has ended
  Alarm patienceAlarm_;
};

}  // namespace quarlin
