// SPDX-License-Identifier: GPL-3.0-or-later
// What helps somebody who is here for the first time: the offer at the first start, and what it offers, which
// can be had at any time.
#pragma once

#include <string>
#include <string_view>

#include "base/hook.h"
#include "base/program_folder.h"
#include "controls/status_note.h"
#include "welcome/bundle.h"
#include "welcome/trial.h"

namespace quarlin {

struct FirstStepsHooks {
  Hook<bool(std::string_view question)> confirm;  // Yields
  Hook<bool()> mayLoad;                           // settings may be lost by loading others: asks. Yields
  Hook<void(bool withConfiguration)> takeUp;      // of the files that were copied, and config.cfg if it was
  Hook<void()> changed;                           // Offered()
};

class FirstSteps {
 public:
  FirstSteps(Bundle bundle, ProgramFolder folder, StatusNote& status, TrialParts trialParts);

  FirstStepsHooks Hooks;
  Trial Try;

  // Somebody who can answer begins without a word about what to do. Where nobody has worked in the program
  // folder yet, and there is something to offer, it is offered, once.
  void Offer();

  // It is offered, and has not been answered yet.
  bool Offered() const { return offered_; }

  // The answers.
  void Decline();
  void TakeExamples();
  void TakeTrial();

  // Copies the examples into the program folder, once the user has confirmed that, and takes them up. What
  // became of it is told in the status bar. Yields.
  void CopyExamples();

  // Why they cannot be copied, in words; empty when they can.
  std::string ExamplesTrouble() const;

 private:
  void Copy();

  Bundle bundle_;
  ProgramFolder folder_;
  StatusNote& status_;
  bool offered_ = false;
};

}  // namespace quarlin
