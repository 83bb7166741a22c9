// SPDX-License-Identifier: GPL-3.0-or-later
// The course of one start of the program: what the command line asks for, what ends it, and with which exit
// status.
#pragma once

#include <string>
#include <string_view>

#include "base/hook.h"
#include "config/command_line.h"
#include "connect/connection.h"
#include "controls/status_note.h"
#include "display/traffic_logs.h"
#include "exchange/counters.h"
#include "exchange/exchange.h"
#include "link/link.h"
#include "results/run_result.h"
#include "script/script_host.h"
#include "script/timed_prompts.h"
#include "session/end_verdict.h"
#include "transmit/cycle.h"

namespace quarlin {

struct SessionParts {
  EventLoop& loop;
  Connection& connection;
  Link& link;
  Cycle& cycle;
  Exchange& exchange;
  Sequence& sequence;
  ScriptHost& script;
  TrafficLogs& logs;
  TimedPrompts& prompts;
  StatusNote& status;
  const Counters& counters;
  bool headless = false;  // nobody can press a button
};

enum class ConfigState { Loaded, Missing, Unreadable };

struct SessionHooks {
  Hook<std::string()> folderTrouble;  // why the program folder cannot be used; empty when it can
  Hook<ConfigState()> loadConfiguration;
  Hook<std::string()> settingTrouble;  // what is wrong with the settings that were loaded; empty for nothing
  Hook<void(const CommandLine& words)> switchModes;
  Hook<void()> closeWindow;  // timers stop, secondary windows go: the last word before the link is closed
  Hook<void()> closed;       // everything has ended; the verdict stands
  Hook<void(std::string_view line)> complain;  // a line for somebody who sees no window
  Hook<void(std::string_view line)> runEnded;  // what came of the run, in one line
};

// What ends the program.
enum class EndCause { Done, WindowClosed, Signal };

class Session {
 public:
  explicit Session(SessionParts parts) : parts_(parts) {}

  SessionHooks Hooks;

  // Does what the command line asks for. Without a window, a set-up that fails ends the program before the
  // link is opened, and so does a link that cannot be opened, for nobody could try again.
  void Start(const CommandLine& words);

  // A run begins: what cut the one before short is past.
  void RunBegins();

  // The cycle has stopped. With "EXIT" that is the end of the program: of any that completed, and without a
  // window of every one.
  void RunStopped(RunEnd end);

  // The record has the last word on the run.
  void RunRecorded() { TellRun(); }

  // The link is open again, or for the first time.
  void LinkOpened();

  // The link went away by itself and is not waited for: that cuts a run short, or whatever else the link was
  // open for. After a run it changes nothing any more.
  void LinkLost(std::string_view what);

  // Disconnects and tells why, which cuts a run short. Yields.
  void StopWithMessage(std::string_view message, std::string_view title);

  // Ends the program in order, once every handler on the stack has returned. Open boxes are answered at once.
  // After a signal, later boxes are lines on standard error; otherwise those of the script's "EndTask" are
  // shown, and a second request dismisses them.
  void RequestEnd(EndCause cause);
  bool Ending() const { return ending_; }

  // The script has said with which status the program is to end, and it ends.
  void Finish();

  // As things stand.
  EndVerdict Verdict() const;
  HowEnded How() const;

 private:
  void SetUp();
  void LoadConfiguration();
  bool EndsAfterSetUp();
  void Connect();
  void TellRun();
  void CutShort(HowEnded how, std::string_view why);
  void CloseDown();

  SessionParts parts_;
  CommandLine words_;
  std::string setUpFailure_;
  std::string linkFailure_;
  std::string cutShort_;
  HowEnded how_ = HowEnded::StillRuns;
  bool runUntold_ = false;    // what came of the run has still to be told
  bool cutRunShort_ = false;  // a run was going on when the link was lost
  bool ending_ = false;
  EndCause cause_ = EndCause::Done;
};

}  // namespace quarlin
