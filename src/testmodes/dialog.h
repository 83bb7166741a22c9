// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog test: the program plays the instrument and answers each request from the table Dialog.txt
// (docs/dialog.md describes it to the user).
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/hook.h"
#include "base/profile_file.h"
#include "controls/status_note.h"
#include "display/traffic.h"
#include "exchange/sender.h"
#include "link/link.h"
#include "macro/expander.h"
#include "testmodes/answer_faults.h"

namespace quarlin {

// A request in the form in which the table can name it: characters below 32, or all of them, as "{XX}".
std::string EncodeDialogKey(std::string_view text, bool allCoded);

// The text of a first table, with what can stand in it explained in comments.
std::string CommentedFirstDialog();

struct DialogParts {
  EventLoop& loop;
  Link& link;
  Expander& expander;
  Sender& sender;
  Traffic& traffic;
  StatusNote& status;
};

class Dialog {
 public:
  static constexpr std::size_t mostDelayed = 1000;

  // The name of the table in the program folder.
  static constexpr std::string_view tableName = "Dialog.txt";

  Dialog(DialogParts parts, const ProgramFolder& folder);

  FaultCounts Faults;  // since the start of the program

  // Told which faults of the table cannot be read; for the status bar and standard error.
  Hook<void(std::string_view text)> OnTrouble;

  // Answers a request, given without its terminator, as the table has it now; what is not in the table gets
  // no answer. An answer with a delay is sent later, also when the mode has been switched off. Yields.
  void DialogAnswer(std::string_view request);

  // The link was closed: answers that still wait for their time are thrown away.
  void LinkClosed();

 private:
  struct Delayed {
    FaultyAnswer answer;
    std::string terminator;
    std::int32_t link;  // CommHandle when the request came
  };

  void TakeTable();
  std::string AnswerTo(std::string_view request);
  std::string_view LookUp(std::string_view section, std::string_view request) const;
  FaultPlan* PlanFor(std::string_view request);
  void SendLater(FaultyAnswer answer, std::string terminator);
  void SendDue();
  void SendFaulty(const FaultyAnswer& answer, const std::string& terminator);
  void Announce(Fault fault);

  DialogParts parts_;
  ProfileFile table_;

  // Made from the table, and made anew when it has changed.
  std::uint64_t tableRevision_ = 0;
  std::vector<std::string> variantSections_;            // COMMAND, COMMAND2, ... as far as there are any
  std::unordered_map<std::string, std::size_t> turns_;  // by key in capitals: requests answered so far
  std::unordered_map<std::string, FaultPlan> plans_;    // by key in capitals

  std::multimap<Instant, Delayed> delayed_;
  Alarm delayAlarm_;
  bool toldDiscarded_ = false;  // since the table changed
};

}  // namespace quarlin
