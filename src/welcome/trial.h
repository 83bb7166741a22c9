// SPDX-License-Identifier: GPL-3.0-or-later
// Trying the program without an instrument: the simulated one is started and connected, and put away again.
// What the user had set for the port stands again afterwards.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "connect/connection.h"
#include "controls/status_note.h"
#include "exchange/framing_controls.h"
#include "exchange/run_controls.h"
#include "receive/receive_controls.h"
#include "transmit/cycle_controls.h"
#include "welcome/bundle.h"
#include "welcome/simulated_instrument.h"

namespace quarlin {

struct TrialParts {
  EventLoop& loop;
  Connection& connection;
  ConnectionControls& port;
  FramingControls& framing;
  ReceiveControls& receive;
  LinkControls& link;
  CycleControls& cycle;
  RunControls& run;
  StatusNote& status;
};

struct TrialHooks {
  Hook<void()> connected;  // a command can be sent
  Hook<void()> changed;    // Runs()
};

class Trial {
 public:
  Trial(TrialParts parts, const Bundle& bundle);

  TrialHooks Hooks;

  // From its beginning until the instrument is put away.
  bool Runs() const { return runs_; }

  // Why there can be none, in words; empty when there can.
  std::string Trouble() const;

  // Begins or ends it; what comes of it is told in the status bar. A link that is open or waited for is left
  // alone: then nothing begins. An end disconnects, which stops a run over the simulated instrument. Yields.
  void Toggle();

  // While one of these lives, the settings are the user's: for saving them.
  class Away;

 private:
  // What the instrument may want otherwise than the user has it.
  struct Settings {
    std::string port, speed, format;
    std::optional<std::size_t> txEnd, rxEnd;
    std::string term{};  // the code of the last character; the choice of rxEnd sets it
    bool operator==(const Settings&) const = default;
  };

  void Begin();
  void End();
  void Ready(const std::string& port);
  void Ended(std::string_view why);
  void GiveUp();
  void SayHowToGoOn();
  Settings Chosen() const;
  void Choose(const Settings& settings);
  Settings Users() const;
  void PutBack();
  void SetRuns(bool runs);

  TrialParts parts_;
  std::filesystem::path program_;
  SimulatedInstrument instrument_;
  bool runs_ = false;
  std::optional<Settings> before_;  // while the instrument's settings are chosen
  Settings tried_;                  // those
};

class Trial::Away {
 public:
  explicit Away(Trial& trial);
  ~Away();
  Away(const Away&) = delete;
  Away& operator=(const Away&) = delete;

 private:
  Trial& trial_;
  std::optional<Settings> tried_;
};

}  // namespace quarlin
