// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/session.h"

#include <fmt/format.h>

#include <utility>

#include "base/text.h"
#include "results/run_line.h"

namespace quarlin {
namespace {

constexpr std::string_view stopped = "stopped: ";

}  // namespace

void Session::Start(const CommandLine& words) {
  words_ = words;  // known before the run begins, which may fail at once
  SetUp();
  if (EndsAfterSetUp()) return;
  if (words.load) Connect();
  Hooks.switchModes(words);
  if (words.run && !ending_ && !parts_.link.CommIsOpen()) Connect();
  if (!linkFailure_.empty() && parts_.headless) RequestEnd(EndCause::Done);
  if (words.run && !ending_) parts_.cycle.Command1_Click();
}

void Session::SetUp() {
  setUpFailure_ = Hooks.folderTrouble();
  if (setUpFailure_.empty() && words_.load) LoadConfiguration();
  if (setUpFailure_.empty() && words_.sequence) {
    parts_.sequence.Restart();
    if (parts_.sequence.Empty()) setUpFailure_ = "SEQUENCE: sequence.txt has no line to send";
  }
  if (!setUpFailure_.empty()) parts_.status.Say(setUpFailure_);
}

void Session::LoadConfiguration() {
  switch (Hooks.loadConfiguration()) {
    case ConfigState::Missing:
      Hooks.complain("there is no config.cfg in the program folder; nothing was loaded");
      if (parts_.headless && words_.run && words_.exit) setUpFailure_ = "LOAD: there is no config.cfg";
      return;
    case ConfigState::Unreadable:
      setUpFailure_ = "LOAD: config.cfg cannot be read";
      return;
    case ConfigState::Loaded:
      break;
  }
  setUpFailure_ = parts_.script.StartFailure();
  if (setUpFailure_.empty()) setUpFailure_ = Hooks.settingTrouble();
}

bool Session::EndsAfterSetUp() {
  const bool ends = parts_.headless && !setUpFailure_.empty();
  if (ends) RequestEnd(EndCause::Done);
  return ending_ || parts_.script.FinishStatus();
}

void Session::Connect() {
  parts_.connection.cmdOpen_Click();
  if (parts_.link.CommIsOpen()) return;
  linkFailure_ = parts_.connection.Failure();
}

void Session::RunBegins() {
  cutShort_.clear();
  how_ = HowEnded::StillRuns;
  runUntold_ = true;
}

void Session::RunStopped(RunEnd end) {
  if (how_ == HowEnded::StillRuns) how_ = end == RunEnd::Completed ? HowEnded::Completed : HowEnded::Stopped;
  TellRun();
  if (!words_.exit || ending_) return;
  if (end == RunEnd::Completed) {
    RequestEnd(EndCause::Done);
  } else if (parts_.headless) {
    CutShort(HowEnded::Stopped, "the run was stopped before its end");
    RequestEnd(EndCause::Done);
  }
}

// Once it is known how the run ended and all is recorded: a stop within the last string comes before the
// verdicts on it.
void Session::TellRun() {
  const RunRecord& record = parts_.exchange.Record();
  if (!runUntold_ || how_ == HowEnded::StillRuns || !record.Ended()) return;
  runUntold_ = false;
  std::string_view why = cutShort_;
  if (why.starts_with(stopped)) why.remove_prefix(stopped.size());  // the line begins with that word
  const std::string line = RunInOneLine(record, how_, why);
  const bool saidWhy = how_ == HowEnded::Completed && record.Sums().requests == 0;  // no requests were left
  if (!saidWhy) parts_.status.Say(line);
  Hooks.runEnded(line);
}

void Session::LinkOpened() {
  linkFailure_.clear();
  if (how_ != HowEnded::LinkLost || cutRunShort_) return;
  cutShort_.clear();
  how_ = HowEnded::StillRuns;
}

void Session::LinkLost(std::string_view what) {
  const bool runIsOver = how_ != HowEnded::StillRuns;
  if (runIsOver && !parts_.exchange.Running()) return;
  cutRunShort_ = parts_.exchange.Running();
  CutShort(HowEnded::LinkLost, what);
}

void Session::StopWithMessage(std::string_view message, std::string_view title) {
  if (parts_.exchange.Running())
    CutShort(HowEnded::Message, fmt::format("{}{}: {}", stopped, title, message));
  parts_.connection.StopWithMessage(message, title);
}

// The first reason holds: the others follow from it.
void Session::CutShort(HowEnded how, std::string_view why) {
  if (!cutShort_.empty()) return;
  cutShort_ = OnOneLine(why);
  how_ = how;
}

void Session::RequestEnd(EndCause cause) {
  parts_.prompts.Dismiss();
  if (cause == EndCause::Signal || !ending_) cause_ = cause;
  if (cause == EndCause::Signal) parts_.script.EndProgram();
  parts_.connection.CancelWaits();
  parts_.link.GiveUpWaiting();  // what is on the stack must return first
  parts_.script.Runner().ForbidWaits();
  if (std::exchange(ending_, true)) return;
  Exchange& exchange = parts_.exchange;
  if (cause != EndCause::Done && exchange.Running() && exchange.Requests().Limited()) {
    CutShort(HowEnded::Signal, fmt::format("{} ended the run, {} requests were left",
                                           cause == EndCause::Signal ? "a signal" : "closing the window",
                                           exchange.Requests().RequestsLeft()));
  }
  parts_.script.CloseList();
  parts_.loop.Post([this] { CloseDown(); });
}

// The link is not given up: a string that is on its way through the script still goes out.
void Session::Finish() {
  if (parts_.exchange.Running() && how_ == HowEnded::StillRuns) how_ = HowEnded::Stopped;
  parts_.prompts.Dismiss();
  parts_.script.Runner().ForbidWaits();
  parts_.loop.Post([this] { RequestEnd(EndCause::Done); });
}

void Session::CloseDown() {
  parts_.cycle.ShowElapsed();
  if (cause_ != EndCause::Signal) parts_.prompts.Readmit();
  Hooks.closeWindow();
  parts_.exchange.EndRun(false);
  parts_.link.Finish();
  parts_.link.CommClose();
  parts_.logs.Flush();
  if (how_ == HowEnded::StillRuns) {
    how_ = cause_ == EndCause::Done ? HowEnded::Completed : HowEnded::Signal;
  }
  Hooks.closed();
  parts_.loop.Quit(Verdict().status);
}

HowEnded Session::How() const {
  const bool begun = setUpFailure_.empty() && linkFailure_.empty();
  return begun || parts_.script.FinishStatus() ? how_ : HowEnded::SetUpFailed;
}

EndVerdict Session::Verdict() const {
  const RunSums& sums = parts_.exchange.Record().Sums();
  EndFacts facts;
  facts.finished = parts_.script.FinishStatus();
  facts.setUpFailure = setUpFailure_;
  facts.linkFailure = linkFailure_;
  facts.cutShort = cutShort_;
  facts.errors = parts_.counters.lblerror.Integer();
  facts.notSent = parts_.counters.lblNotSent.Integer();
  facts.scriptErrors = parts_.script.Errors().count;
  facts.logLosses = parts_.logs.Missing();
  facts.runAsked = words_.run;
  facts.exchanged = parts_.exchange.AnyLeft() || sums.received > 0;
  return Judge(facts);
}

}  // namespace quarlin
