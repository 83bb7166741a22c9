// SPDX-License-Identifier: GPL-3.0-or-later
// The driver over a scripted device: what it records, in which order it works, and what a yield may do.

#include "link/link.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>

#include "support/scripted_device.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

class LinkRig : public testing::Test {
 protected:
  std::int32_t Open() { return link.CommOpen("COM1", "9600,n,8,1"); }
  std::string Receive() {
    std::string all;
    while (!link.CommRxEmpty()) all += link.ReceiveChar();
    return all;
  }
  void Send(std::string text) { link.SendString(text); }
  const LinkState& State() { return link.State; }

  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& port = ports.AddPort("COM1");
  LinkControls controls{loop};
  Link link{loop, ports, controls};
};

TEST_F(LinkRig, OpensInOrder) {
  controls.chkRTS.SetChecked(true);
  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(port.Journal(), (Words{"open", "queues 1024 1024", "purge", "timeouts", "apply"}));
  EXPECT_TRUE(port.Settings().ctsFlow);
  EXPECT_TRUE(port.Settings().rtsToggle);
  EXPECT_GE(State().CommHandle, 3);
}

TEST_F(LinkRig, TheChoiceOfTheFlowControlMovesItsBoxAndIsTakenAtTheOpening) {
  struct Step {
    std::function<void()> does;
    std::string choice;
    bool box;
  };
  const std::vector<Step> steps{
      {[&] { controls.chkRTS.SetValue(2); }, "RTS/CTS", true},
      {[&] { controls.cboFlow.SetText("xon/xoff"); }, "XON/XOFF", false},
      {[&] { controls.chkRTS.SetChecked(false); }, "XON/XOFF", false},
      {[&] { controls.chkRTS.SetChecked(true); }, "RTS/CTS", true},
      {[&] { controls.chkRTS.SetChecked(false); }, "none", false},
      {[&] { controls.cboFlow.SetListIndex(1); }, "RTS/CTS", true},
      {[&] { controls.cboFlow.SetText("DTR"); }, "DTR", false},
  };
  for (const Step& step : steps) {
    step.does();
    SCOPED_TRACE(step.choice);
    EXPECT_EQ(controls.cboFlow.Text(), step.choice);
    EXPECT_EQ(controls.chkRTS.Checked(), step.box);
    EXPECT_EQ(Open(), step.choice == "DTR" ? EINVAL : 0);
    if (!link.CommIsOpen()) continue;
    EXPECT_EQ(port.Settings().xonXoff, step.choice == "XON/XOFF");
    EXPECT_EQ(port.Settings().ctsFlow, step.box);
    link.CommClose();
    port.ForgetSettings();
  }
  EXPECT_EQ(State().CommLastErrorSource, "CommOpen (BuildCommDCB) COM1 ");
}

struct OpenFault {
  DeviceCall call;
  const char* source;
};

TEST_F(LinkRig, AFailedStepLeavesThePortClosedAndSaysWhich) {
  const std::vector<OpenFault> cases{
      {DeviceCall::Open, "CommOpen (CreateFile) COM1 "},
      {DeviceCall::SetupQueues, "CommOpen (SetupComm) COM1 "},
      {DeviceCall::Purge, "CommOpen (PurgeComm) COM1 "},
      {DeviceCall::SetTimeouts, "CommOpen (SetCommTimeouts) COM1 "},
      {DeviceCall::Settings, "CommOpen (GetCommState) COM1 "},
      {DeviceCall::Apply, "CommOpen (SetCommState) COM1 "},
  };
  for (const OpenFault& row : cases) {
    port.Fail(row.call, std::errc::io_error, 1);
    EXPECT_EQ(Open(), EIO);
    EXPECT_EQ(State().CommLastErrorSource, row.source);
    EXPECT_EQ(State().CommLastErrorText, Link::CommErrorText(EIO));
    EXPECT_FALSE(link.CommIsOpen());
    EXPECT_FALSE(port.IsOpen());
  }
  EXPECT_NE(link.CommOpen("COM1", "9600,n,9,1"), 0);
  EXPECT_EQ(State().CommLastErrorSource, "CommOpen (BuildCommDCB) COM1 ");
  EXPECT_NE(link.CommOpen("COM7", "9600,n,8,1"), 0);
  EXPECT_EQ(State().CommHandle, -1);
  EXPECT_EQ(State().CommLastErrorSource, "CommOpen (CreateFile) COM7 ");
}

TEST_F(LinkRig, OpeningAnOpenPortFailsAndClosesIt) {
  Open();
  EXPECT_EQ(Open(), -1);
  EXPECT_EQ(State().CommLastErrorSource + ": " + State().CommLastErrorText, "CommOpen: Port in use.");
  EXPECT_FALSE(link.CommIsOpen());
  EXPECT_FALSE(port.IsOpen());
}

TEST_F(LinkRig, ATokenIsNeverUsedTwiceAndNothingIsTouchedAfterTheClose) {
  Open();
  const std::int32_t first = State().CommHandle;
  link.CommClose();
  EXPECT_EQ(State().CommHandle, first);
  port.ForgetJournal();
  bool state = true;
  EXPECT_EQ(link.CommFlush(), EBADF);
  EXPECT_EQ(link.CommSetLine(2, 1), EBADF);
  EXPECT_EQ(link.CommReadCD(cts, state), EBADF);
  EXPECT_TRUE(state);
  EXPECT_EQ(link.CommWrite("x"), -1);
  EXPECT_EQ(State().CommLastErrorSource, "CommWrite (WriteFile)");
  EXPECT_TRUE(port.Journal().empty());
  Open();
  EXPECT_GT(State().CommHandle, first);
}

TEST_F(LinkRig, ACloseThatFailsLeavesThePortOpen) {
  Open();
  port.Fail(DeviceCall::Close, std::errc::io_error, 1);
  EXPECT_EQ(link.CommClose(), EIO);
  EXPECT_EQ(State().CommLastErrorSource, "CommClose (CloseHandle)");
  EXPECT_TRUE(link.CommIsOpen());
  EXPECT_EQ(link.CommClose(), 0);
}

TEST_F(LinkRig, ReadsWhatTheQueueQueryFound) {
  Open();
  std::string text;
  port.Receive(std::string(700, 'x'));
  EXPECT_EQ(link.CommRead(text, 256), 0) << "no query yet";
  EXPECT_FALSE(link.CommRxEmpty());
  EXPECT_EQ(link.CommRead(text, 256), 256);
  EXPECT_EQ(link.CommRead(text, 5000), 444) << "never more than is there";
  EXPECT_TRUE(link.CommRxEmpty());
}

TEST_F(LinkRig, AReadErrorIsRecordedWithTheLineErrorsAndLeavesThePortOpen) {
  Open();
  port.Receive("x");
  link.CommRxEmpty();
  port.CountLineErrors(0xA);
  port.Fail(DeviceCall::Read, std::errc::resource_unavailable_try_again, 1);
  std::string text;
  EXPECT_EQ(link.CommRead(text, 256), -1);
  EXPECT_EQ(State().CommLastErrorSource, "CommRead (ReadFile)");
  EXPECT_EQ(State().CommLastErrorText, Link::CommErrorText(EAGAIN) + "  COMM Error Flags = A");
  EXPECT_TRUE(link.CommIsOpen());
  EXPECT_FALSE(State().DeviceGone);
}

TEST_F(LinkRig, NothingIsSentBeforeTheFirstOpen) {
  std::string text = "READ";
  EXPECT_EQ(link.SendString(text), 0);
  EXPECT_EQ(State().CommLastError, 0);
}

TEST_F(LinkRig, EveryByteValueGoesBothWays) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  Open();
  port.AnswerWrites([](std::string_view written) { return std::string(written); });
  Send(all + all);
  loop.Settle();
  EXPECT_EQ(Receive(), all + all);
}

struct PauseCase {
  const char* text;
  std::size_t writes;
  Duration apart;
};

TEST_F(LinkRig, ThePauseBetweenCharacters) {
  const std::vector<PauseCase> cases{{"abc", 1, 0ms}, {"0", 1, 0ms},     {"", 1, 0ms},
                                     {"5", 4, 5ms},   {"0.5", 4, 500us}, {"-1", 4, 0ms}};
  Open();
  for (const PauseCase& row : cases) {
    SCOPED_TRACE(row.text);
    controls.txtcharrit.SetText(row.text);
    port.ForgetWritten();
    Send("READ");
    ASSERT_EQ(port.Writes().size(), row.writes);
    EXPECT_EQ(port.Written(), "READ");
    if (row.writes > 1) {
      EXPECT_EQ(port.Writes()[3].at - port.Writes()[0].at, 3 * row.apart);
    }
  }
}

TEST_F(LinkRig, TerminalModeWritesEachCharacterByItself) {
  Open();
  controls.chkTerminal.SetChecked(true);
  Send("READ");
  EXPECT_EQ(port.Writes().size(), 4U);
}

TEST_F(LinkRig, RtsIsRaisedAroundAWriteUntilTheLastBitHasLeft) {
  Open();
  controls.ChkRtsTx.SetChecked(true);
  port.SendingTakes(1ms);
  port.ForgetJournal();
  Send("READ");
  EXPECT_EQ(port.Journal(), (Words{"rts on", "write READ", "sent", "rts off"}));
  EXPECT_GE(port.LineSettings().back().at - port.LineSettings().front().at, 4ms);
}

TEST_F(LinkRig, APartialWriteIsFinished) {
  Open();
  port.TakeAtMost(3);
  EXPECT_EQ(link.CommWrite("0123456789"), 10);
  EXPECT_EQ(port.Written(), "0123456789");
}

TEST_F(LinkRig, ABlockedWriteTimesOutAfterASecondAByte) {
  Open();
  port.BlockWrites();
  const Instant start = loop.Now();
  EXPECT_EQ(link.CommWrite("READ"), -1);
  EXPECT_EQ(loop.Now() - start, 4s);
  EXPECT_EQ(State().CommLastErrorSource, "CommWrite (GetOverlappedResult)");
  EXPECT_TRUE(link.CommIsOpen());
}

TEST_F(LinkRig, ASecondSendWhileAWriteWaitsGoesOutBehindIt) {
  Open();
  for (const char* way : {"whole", "RTS raised", "by character", "with pauses"}) {
    SCOPED_TRACE(way);
    controls.ChkRtsTx.SetChecked(way == std::string_view("RTS raised"));
    controls.chkTerminal.SetChecked(way == std::string_view("by character"));
    controls.txtcharrit.SetText(way == std::string_view("with pauses") ? "5" : "0");
    port.ForgetWritten();
    port.ForgetJournal();
    port.BlockWrites();
    std::string log;
    loop.Outside(100ms, [&] { link.Send("second", [&](const SendOutcome& sent) { log += sent.text; }); });
    loop.Outside(200ms, [&] { port.UnblockWrites(); });
    link.Send("first ", [&](const SendOutcome& sent) { log += sent.text; });
    EXPECT_EQ(port.Written(), "first second");
    EXPECT_EQ(log, "first second") << "logged as it went out";
    if (controls.ChkRtsTx.Checked()) {
      EXPECT_EQ(port.Journal(), (Words{"rts on", "write first ", "sent", "rts off", "rts on", "write second",
                                       "sent", "rts off"}));
    }
  }
}

TEST_F(LinkRig, WhatIsLeftOfATextIsNotForAPortOpenedMeanwhile) {
  Open();
  controls.chkTerminal.SetChecked(true);
  port.BlockWrites();
  loop.Outside(100ms, [&] {
    link.CommClose();
    port.UnblockWrites();
    Open();
  });
  Send("old");
  EXPECT_EQ(port.Written(), "");
}

TEST_F(LinkRig, ACloseDuringTheYieldOfAReadIsNoError) {
  Open();
  port.Receive("abc");
  link.CommRxEmpty();
  loop.Outside(0ms, [&] { link.CommClose(); });
  std::string text;
  EXPECT_EQ(link.CommRead(text, 256), 0);
  EXPECT_EQ(State().CommLastError, 0);
}

TEST_F(LinkRig, ADisconnectWhileAWriteWaitsEndsItAndIsNoError) {
  Open();
  port.BlockWrites();
  loop.Outside(100ms, [&] { link.CommClose(); });
  EXPECT_EQ(link.CommWrite("READ"), -1);
  EXPECT_EQ(State().CommLastError, 0);
}

std::string InWords(const SendOutcome& outcome) {
  constexpr std::array<std::string_view, 3> ends{"sent", "failed", "cancelled"};
  return fmt::format("{} {} of {}{}\n", ends.at(static_cast<std::size_t>(outcome.end)), outcome.taken,
                     outcome.text, outcome.reason.empty() ? "" : ": " + outcome.reason);
}

TEST_F(LinkRig, EverySendTellsItsEndOnce) {
  struct Case {
    const char* happens;
    const char* options;  // "terminal", "slow"
    std::function<void()> does;
    std::string ends;  // of READ, and then of MORE, sent while READ waits
  };
  const auto breaks = [&] { port.Fail(DeviceCall::Write, std::errc::io_error, 1); };
  const std::string broken = ": " + Link::CommErrorText(EIO) + "\n";
  const std::string timedOut = ": " + Link::CommErrorText(ETIMEDOUT) + "\n";
  const std::vector<Case> cases{
      {"the driver goes on", "", [&] { port.UnblockWrites(); }, "sent 4 of READ\nsent 4 of MORE\n"},
      {"it breaks", "", breaks, "failed 3 of READ" + broken + "sent 4 of MORE\n"},
      {"it breaks", "terminal", breaks, "failed 3 of READ" + broken + "sent 4 of MORE\n"},
      {"it breaks", "slow", breaks, "failed 3 of READ" + broken + "sent 4 of MORE\n"},
      {"it never goes on", "", [] {}, "failed 3 of READ" + timedOut + "failed 0 of MORE" + timedOut},
      {"it never goes on", "terminal", [] {}, "failed 3 of READ" + timedOut + "failed 0 of MORE" + timedOut},
      {"it is closed", "", [&] { link.CommClose(); }, "cancelled 3 of READ\ncancelled 0 of MORE\n"},
      {"it is closed", "slow", [&] { link.CommClose(); }, "cancelled 3 of READ\ncancelled 0 of MORE\n"},
      {"another port is opened", "terminal",
       [&] {
         link.CommClose();
         Open();
       },
       "cancelled 3 of READ\ncancelled 0 of MORE\n"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(fmt::format("{} {}", row.happens, row.options));
    controls.chkTerminal.SetChecked(row.options == std::string_view("terminal"));
    controls.txtcharrit.SetText(row.options == std::string_view("slow") ? "1" : "0");
    if (!link.CommIsOpen()) Open();
    port.BlockWrites(3);
    std::string told;
    const auto tell = [&](const SendOutcome& outcome) { told += InWords(outcome); };
    loop.Outside(10ms, [&] { link.Send("MORE", tell); });
    loop.Outside(20ms, row.does);
    if (row.ends.find("sent 4") != std::string::npos) loop.Outside(20ms, [&] { port.UnblockWrites(); });
    link.Send("READ", tell);
    EXPECT_EQ(told, row.ends);
    EXPECT_FALSE(link.Busy());
  }
}

TEST_F(LinkRig, AClosedLinkAndAFullQueueFailTheSend) {
  std::string told;
  const auto tell = [&](const SendOutcome& outcome) {
    told += fmt::format("{} {} {}\n", outcome.text.size(), outcome.taken, outcome.reason);
  };
  const std::string bad = Link::CommErrorText(EBADF);
  link.Send("READ", tell);
  Open();
  link.CommClose();
  link.Send("READ", tell);
  EXPECT_EQ(std::exchange(told, ""), fmt::format("4 0 {0}\n4 0 {0}\n", bad));
  Open();
  port.BlockWrites();
  loop.Outside(10ms, [&] { link.Send(std::string(1'048'577, 'x'), tell); });
  loop.Outside(20ms, [&] { port.UnblockWrites(); });
  link.Send("READ", tell);
  EXPECT_EQ(told, fmt::format("1048577 0 {}\n4 4 \n", Link::CommErrorText(ENOBUFS)));
}

TEST_F(LinkRig, AWriteThatWaitsTellsHowFarItHasComeAndWhenTheLinkIsFree) {
  std::string told;
  link.Hooks.progress = [&](std::size_t taken, std::size_t total) {
    EXPECT_TRUE(link.Busy());
    told += fmt::format("{}/{} ", taken, total);
  };
  link.Hooks.free = [&] { told += "free "; };
  Open();
  Send("READ");
  EXPECT_EQ(std::exchange(told, ""), "free ") << "nothing to show of a write that does not wait";
  port.BlockWrites(1);
  for (int i = 1; i <= 30; ++i) loop.Outside(i * 100ms, [&] { port.BlockWrites(1); });
  Send(std::string(11, 'x'));
  EXPECT_EQ(told, "1/11 4/11 7/11 10/11 0/0 free ") << "at once, then at most every 250 ms, and at its end";
}

TEST_F(LinkRig, ACloseOnPurposeWaitsForWhatTheLinkHasTaken) {
  struct Case {
    const char* name;
    std::size_t held;      // back by the driver for ever
    Duration closesAfter;  // somebody loses patience
    Duration takes;
    std::size_t lost;
  };
  std::size_t lost = 0;
  std::string late;
  link.Hooks.lost = [&](std::size_t bytes) { lost += bytes; };
  for (const Case& row : std::vector<Case>{{"sent in time", 0, 1h, 4'000'000us, 0},
                                           {"held back", 7, 1h, 2s + 7 * 1'250us, 7},
                                           {"given up", 7, 300ms, 300ms, 7}}) {
    SCOPED_TRACE(row.name);
    lost = 0;
    late.clear();
    Open();
    port.HoldBack(row.held);
    port.SendingTakes(row.held > 0 ? 0ms : 1ms);
    Send(std::string(4'000, 'x'));
    const Instant start = loop.Now();
    loop.Outside(100ms, [&] { link.Send("late", [&](const SendOutcome& end) { late = InWords(end); }); });
    loop.Outside(row.closesAfter, [&] { link.CommClose(); });
    link.Finish();
    link.CommClose();
    EXPECT_EQ(loop.Now() - start, row.takes);
    EXPECT_EQ(lost, row.lost);
    EXPECT_EQ(late, "cancelled 0 of late\n");
    loop.Pass(2h);
  }
}

TEST_F(LinkRig, WhatArrivesWhileAWriteWaitsCanBeShown) {
  std::string shown;
  link.Hooks.arrivedWhileWriting = [&] { shown += Receive(); };
  Open();
  port.BlockWrites();
  loop.Outside(10ms, [&] { port.Receive("12.5 kg\r\n"); });
  loop.Outside(20ms, [&] {
    EXPECT_EQ(shown, "12.5 kg\r\n");
    port.UnblockWrites();
  });
  Send("READ");
  port.Receive("12.6 kg\r\n");
  EXPECT_EQ(shown, "12.5 kg\r\n") << "what comes at other times is taken by the ticks";
}

TEST_F(LinkRig, LineErrorsAreCountedOverAllPortsAndAskedForOnlyWhileDataCome) {
  std::string told;
  link.Hooks.lineErrors = [&] { told += InWords(link.Errors().value()) + "; "; };
  EXPECT_FALSE(link.Errors().has_value());
  port.CountLineErrors({5, 5, 5, 5});  // before the opening: not ours
  Open();
  for (int i = 0; i < 100; ++i) {
    if (i == 50) port.CountLineErrors({0, 2, 0, 0});
    port.Receive("x");
    loop.Pass(10ms);
  }
  port.CountLineErrors({1, 0, 0, 1});
  port.Receive("x");
  loop.Pass(1s);
  EXPECT_EQ(told, "2 framing; 1 parity, 2 framing, 1 break; ");
  EXPECT_LE(port.ErrorQueries(), 8);
  const int before = port.ErrorQueries();
  loop.Pass(1h);
  EXPECT_EQ(port.ErrorQueries(), before);
  link.CommClose();
  Open();
  port.CountLineErrors({0, 0, 3, 0});
  port.Receive("x");
  link.CommClose();
  EXPECT_EQ(InWords(link.Errors().value()), "1 parity, 2 framing, 3 overrun, 1 break");
}

TEST_F(LinkRig, AnotherOpeningOfTheSameLinkKeepsItsSettings) {
  controls.chkRTS.SetChecked(true);
  Open();
  const LinkTarget before = link.Target();
  link.CommClose();
  controls.chkRTS.SetChecked(false);
  link.OpenInBackground(before, [] {});
  EXPECT_TRUE(link.CommIsOpen());
  EXPECT_TRUE(port.Settings().ctsFlow);
  EXPECT_EQ(link.CommOpen("COM2", "300,n,8,1"), -1) << "in use";
  EXPECT_EQ(link.Target(), before);
}

// A driver keeps short strings to itself, and one that is full makes the write wait: both are found out.
TEST_F(LinkRig, WhoHoldsTheLineIsToldWhileAnythingWaitsForIt) {
  std::string told;
  std::string reason;
  link.Hooks.held = [&] { told += fmt::format("{};", static_cast<int>(link.HeldBy())); };
  const auto send = [&] { link.Send("READ", [&](const SendOutcome& sent) { reason = sent.reason; }); };
  controls.cboFlow.SetText("RTS/CTS");
  Open();
  send();
  loop.Pass(499ms);
  EXPECT_EQ(told, "") << "an instrument may take its time";
  loop.Pass(1ms);
  EXPECT_EQ(std::exchange(told, ""), "1;") << "CTS is off, whatever the driver says of its queue";
  port.SetModemLines(cts);
  loop.Pass(500ms);
  EXPECT_EQ(std::exchange(told, ""), "0;");
  const int turns = loop.Turns();
  loop.Pass(1h);
  EXPECT_EQ(loop.Turns(), turns) << "nothing waits, so nobody looks";
  link.CommClose();

  controls.cboFlow.SetText("XON/XOFF");
  Open();
  port.HoldBack(4);
  send();
  loop.Pass(500ms);
  EXPECT_EQ(told, "") << "the bytes may be on the line";
  loop.Pass(500ms);
  EXPECT_EQ(std::exchange(told, ""), "2;");
  port.HoldBack(0);
  loop.Pass(500ms);
  EXPECT_EQ(std::exchange(told, ""), "0;");
  port.BlockWrites();
  send();
  EXPECT_EQ(told, "2;");
  EXPECT_EQ(link.WaitsFor(), "XON");
  EXPECT_EQ(reason,
            Link::CommErrorText(ETIMEDOUT) + "; the instrument holds the line: it has probably sent XOFF");
  port.UnblockWrites();
  loop.Pass(500ms);
  EXPECT_EQ(told, "2;0;");
}

TEST_F(LinkRig, AnUnpluggedDeviceIsToldOnce) {
  int told = 0;
  link.OnError = [&] { ++told; };
  Open();
  port.Receive("last");
  port.Unplug();
  EXPECT_EQ(Receive(), "last");
  for (int i = 0; i < 10; ++i) link.CommRxEmpty();
  EXPECT_TRUE(State().DeviceGone);
  EXPECT_EQ(told, 1);
}

TEST_F(LinkRig, WhoeverIsToldOfAnErrorSeesAllOfIt) {
  std::string told;
  link.OnError = [&] { told = State().CommLastErrorText; };
  Open();
  port.CountLineErrors(2);
  port.Fail(DeviceCall::Write, std::errc::io_error, 1);
  Send("x");
  EXPECT_EQ(told, Link::CommErrorText(EIO) + "  COMM Error Flags = 2");
}

struct LineCase {
  std::int16_t line;
  std::int16_t state;
  const char* journal;
};

TEST_F(LinkRig, LinesAreSetByNumberAndAnyNonzeroStateAsserts) {
  Open();
  for (const LineCase& row : std::vector<LineCase>{
           {1, 1, "break on"}, {2, -1, "dtr on"}, {3, 1, "rts on"}, {3, -1, "rts on"}, {3, 0, "rts off"}}) {
    port.ForgetJournal();
    EXPECT_EQ(link.CommSetLine(row.line, row.state), 0);
    EXPECT_EQ(port.Journal(), Words{row.journal});
  }
  EXPECT_NE(link.CommSetLine(4, 1), 0);
  EXPECT_EQ(State().CommLastErrorSource, "CommSetLine (EscapeCommFunction)");
}

TEST_F(LinkRig, ModemLinesAreReadByMask) {
  Open();
  port.SetModemLines(cts | ring);
  for (const auto& [mask, on] :
       std::vector<std::pair<std::uint16_t, bool>>{{cts, true}, {dsr, false}, {ring, true}, {rlsd, false}}) {
    bool state = !on;
    EXPECT_EQ(link.CommReadCD(mask, state), 0);
    EXPECT_EQ(state, on);
  }
}

TEST_F(LinkRig, TheScriptSeesEveryCharacterAndEveryStringSent) {
  Open();
  link.Hooks.scripting = [] { return true; };
  link.Hooks.receiveChar = [](std::string& text) { text = text == "x" ? "" : text + text; };
  link.Hooks.sendString = [](std::string& text) { text += "!"; };
  port.Receive("axb");
  EXPECT_EQ(Receive(), "aabb");
  std::string text = "READ";
  link.SendString(text);
  EXPECT_EQ(text, "READ!");
  EXPECT_EQ(port.Written(), "READ!");
}

TEST_F(LinkRig, AScriptThatFailsInASendHoldsNoLaterOneUp) {
  Open();
  bool fails = true;
  link.Hooks.scripting = [] { return true; };
  link.Hooks.sendString = [&](std::string&) {
    if (std::exchange(fails, false)) throw std::runtime_error("in the script");
  };
  EXPECT_THROW(Send("first"), std::runtime_error);
  EXPECT_FALSE(link.Busy());
  Send("second");
  EXPECT_EQ(port.Written(), "second");
}

TEST_F(LinkRig, NetDoesNotOpenYetAndClosesWhatIsOpen) {
  Open();
  EXPECT_EQ(link.CommOpen("net", ""), 0) << "in any case";
  EXPECT_FALSE(link.CommIsOpen());
  EXPECT_FALSE(port.IsOpen());
  EXPECT_TRUE(State().CommNetMode);
  link.CommClose();
  EXPECT_FALSE(State().CommNetMode);
}

}  // namespace
}  // namespace quarlin
