// SPDX-License-Identifier: GPL-3.0-or-later
// Connect, Disconnect, the search, and what the window tells of a link that comes and goes.

#include "connect/connection.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <type_traits>

#include "support/free_port.h"
#include "support/listed_prompts.h"
#include "support/poll_loop.h"
#include "support/scripted_device.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

template <typename Loop>
class ConnectionRig : public testing::Test {
 protected:
  ConnectionRig() {
    ConnectionHooks& hooks = connection.Hooks;
    hooks.showLink = [this](std::string_view words) { shown = words; };
    hooks.outage = [this](std::string_view line) { told.push_back("outage: " + std::string(line)); };
    hooks.lost = [this](std::string_view line) { told.push_back("lost: " + std::string(line)); };
    hooks.stateChanged = [this] { connection.ShowLink(); };
    hooks.whoseIsIt = [](const std::string& port, std::int32_t error) {
      return error != EACCES ? "" : port == "COM3" ? "is root's" : "is anna's";
    };
    hooks.missingPermission = [](const std::string& port) { return port == "COM2" ? "is anna's" : ""; };
    hooks.held = [this](std::string_view line) { told.push_back("held: " + std::string(line)); };
    hooks.systemPorts = [this] { return systemPorts; };
    hooks.stablePath = [this](const std::string& port) { return stablePaths[port]; };
  }

  void Click() { controls.cmdOpen.Click(); }
  std::string Note() { return status.lblStatusNote.Caption(); }
  Color Lamp() { return controls.shpLink.FillColor(); }

  Loop loop;
  VirtualLoop deviceTime;
  LinkControls linkControls{loop};
  ConnectionControls controls{loop};
  StatusControls status{loop};
  StatusNote note{loop, status};
  ListedPrompts prompts;
  std::vector<FoundPort> systemPorts;
  std::map<std::string, std::string> stablePaths;
  std::string shown;
  Lines told;
  ScriptedDeviceSource ports{Devices()};
  Link link{loop, ports, linkControls};
  Connection connection{loop, link, controls, prompts, note};

 private:
  VirtualLoop& Devices() {
    if constexpr (std::is_same_v<Loop, VirtualLoop>) {
      return loop;
    } else {
      return deviceTime;
    }
  }
};

class SerialConnection : public ConnectionRig<VirtualLoop> {
 protected:
  SerialConnection() { controls.cboSerial.SetText("COM1"); }
  ScriptedDevice& port = ports.AddPort("COM1");

  void Unplug() {
    port.Unplug();
    link.CommRxEmpty();
    connection.LinkLost(link.State.CommLastErrorText);
  }
};

TEST_F(SerialConnection, TheSearchDoesNotLoseThePortThatWasOpenAndTellsWhoseTheOthersAre) {
  ports.AddPort("ttyUSB0");
  for (const char* name : {"COM2", "COM3", "COM4", "COM5"}) {
    ports.AddPort(name).Fail(DeviceCall::Open, std::errc::permission_denied);
  }
  systemPorts = {{"ttyUSB0", "Scale maker", "0403:6001"}};
  Click();
  controls.cmdsearchcom.Click();
  EXPECT_EQ(controls.cboSerial.List(), (Lines{"NET", "COM1", "ttyUSB0"}));
  EXPECT_EQ(controls.cboSerial.ItemToolTip(2), "Scale maker\nadapter 0403:6001");
  EXPECT_EQ(Note(), "2 ports found; COM2 is anna's (and 2 more); COM3 is root's");
  EXPECT_FALSE(link.CommIsOpen());
  EXPECT_EQ(controls.cmdOpen.Caption(), "Connect");
  EXPECT_EQ(controls.cboSerial.BackColor(), std::nullopt);
}

TEST_F(SerialConnection, TheListHoldsTheSystemsPortsFromTheStartAndTheChoiceStays) {
  systemPorts = {{"ttyUSB0", "Scale maker"}};
  connection.OfferPorts();
  EXPECT_EQ(controls.cboSerial.List(),
            (Lines{"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "NET", "ttyUSB0"}));
  EXPECT_EQ(controls.cboSerial.Text(), "COM1");
  EXPECT_EQ(controls.cboSerial.ItemToolTip(1), "no permission\nCOM2 is anna's");
}

TEST_F(SerialConnection, AConnectThatFailsSaysWhyAndStaysRedUntilTheNext) {
  port.Fail(DeviceCall::Open, std::errc::permission_denied, 1);
  Click();
  EXPECT_EQ(Note(), "CommOpen (CreateFile) COM1 : Permission denied; COM1 is anna's");
  note.Mention("something else");
  EXPECT_EQ(Note(), "CommOpen (CreateFile) COM1 : Permission denied; COM1 is anna's");
  EXPECT_EQ(controls.cboSerial.BackColor(), colors::red);
  Click();
  EXPECT_EQ(controls.cboSerial.BackColor(), colors::green);
  EXPECT_EQ(Lamp(), colors::green);
  note.Mention("a write error");
  Click();
  EXPECT_EQ(controls.cboSerial.BackColor(), std::nullopt) << "somebody asked for the Disconnect";
  EXPECT_EQ(Note(), "") << "what was said of that link is over";
  EXPECT_EQ(Lamp(), colors::darkGreen);
  EXPECT_EQ(shown, "not connected");
}

TEST_F(SerialConnection, AnOpenOrAwaitedLinkKeepsWhatItWasOpenedWith) {
  ports.AddPort("/dev/serial/by-id/scale");
  stablePaths["COM1"] = "/dev/serial/by-id/scale";
  controls.chkReconnect.SetChecked(true);
  Click();
  connection.SettingsLoaded();
  EXPECT_EQ(Note(), "") << "nothing differs";
  controls.cboSerial.SetText("COM5");
  controls.ComboBaud.SetText("300");
  for (const char* state : {"open", "awaited"}) {
    SCOPED_TRACE(state);
    if (state == std::string_view("awaited")) Unplug();
    connection.SettingsLoaded();
    EXPECT_EQ(Note(), "COM1 9600,n,8,1 keeps its settings until the next Connect");
    connection.ShowLink();
    EXPECT_NE(shown.find("COM1 9600,n,8,1"), std::string::npos) << shown;
  }
  loop.Pass(1s);
  EXPECT_EQ(ports.Tried().back(), "/dev/serial/by-id/scale") << "by its identity";
  EXPECT_EQ(ports.Port("/dev/serial/by-id/scale").Settings().baud, 9600U);
  EXPECT_EQ(shown, "connected COM1 9600,n,8,1");
  EXPECT_EQ(controls.lblReconnects.Caption(), "1");
}

TEST_F(SerialConnection, ALossWithoutReconnectingIsToldAndReconnectWorksAfterwards) {
  Click();
  Unplug();
  const std::string words = "COM1 9600,n,8,1 has gone: No such device  COMM Error Flags = 0";
  EXPECT_EQ(told, (Lines{"lost: " + words}));
  EXPECT_EQ(Note(), words);
  EXPECT_EQ(shown, "COM1 9600,n,8,1 has gone");
  EXPECT_EQ(Lamp(), colors::red);
  EXPECT_EQ(controls.cboSerial.BackColor(), colors::red);
  loop.Pass(1min);
  controls.chkReconnect.SetChecked(true);
  EXPECT_EQ(controls.cmdOpen.Caption(), "Disconnect");
  EXPECT_EQ(Lamp(), colors::yellow);
  port.PlugIn();
  loop.Pass(1s);
  EXPECT_TRUE(link.CommIsOpen());
  EXPECT_EQ(Lamp(), colors::green);
}

TEST_F(SerialConnection, TheWaitCountsDownBySecondsAndDoesNothingElse) {
  controls.chkReconnect.SetChecked(true);
  Click();
  Unplug();
  loop.Pass(7600ms);  // tried after 0.5, 1.5, 3.5 and 7.5 s: the next pause is one of 8 s
  Lines seen;
  const int before = loop.Turns();
  for (int i = 0; i < 7; ++i) {
    seen.push_back(shown.substr(shown.find("next")));
    loop.Pass(1s);
  }
  EXPECT_EQ(seen, (Lines{"next try in 8 s", "next try in 7 s", "next try in 6 s", "next try in 5 s",
                         "next try in 4 s", "next try in 3 s", "next try in 2 s"}));
  EXPECT_LE(loop.Turns() - before, 8);
}

TEST_F(SerialConnection, ADisconnectWaitsForWhatWasAcceptedAndASecondOneDoesNot) {
  for (const bool impatient : {false, true}) {
    Click();
    port.HoldBack(100);
    const Instant start = loop.Now();
    std::string waitsFor;
    loop.Outside(500ms, [&] {
      waitsFor = status.lblStatusCycle.Caption();
      if (impatient) Click();
    });
    Click();
    EXPECT_EQ(waitsFor, "sending what is left; Disconnect closes at once");
    EXPECT_EQ(loop.Now() - start, impatient ? 500ms : 2125ms);
    EXPECT_EQ(status.lblStatusCycle.Caption(), "");
    EXPECT_FALSE(port.IsOpen());
    EXPECT_EQ(shown, "not connected");
  }
}

TEST_F(SerialConnection, AWriteThatWaitsSaysForWhat) {
  linkControls.chkRTS.SetChecked(true);
  for (const std::uint16_t lines : {cts, dsr}) {
    Click();
    port.SetModemLines(lines);
    port.BlockWrites(1);
    std::string waitsFor;
    loop.Outside(10ms, [&] { waitsFor = status.lblStatusCycle.Caption(); });
    loop.Outside(20ms, [&] { port.UnblockWrites(); });
    std::string text = "READ";
    link.SendString(text);
    EXPECT_EQ(waitsFor,
              fmt::format("sending: 1 of 4 bytes, waiting for {}", lines == cts ? "the driver" : "CTS"));
    EXPECT_EQ(status.lblStatusCycle.Caption(), "");
    Click();
  }
}

TEST_F(SerialConnection, AnInstrumentThatHoldsTheLineShowsInLampAndWordsAndIsToldOnce) {
  linkControls.chkRTS.SetChecked(true);
  Click();
  EXPECT_EQ(shown, "connected COM1 9600,n,8,1 RTS/CTS");
  linkControls.chkRTS.SetChecked(false);
  connection.FlowChanged();
  EXPECT_EQ(Note(), "the flow control is taken at the next Connect");
  const std::string held = "the instrument holds the line: CTS is off; COM1 9600,n,8,1 RTS/CTS";
  for (int i = 0; i < 3; ++i) {
    port.SetModemLines(0);
    link.CommWrite("READ");
    loop.Pass(1s);
    EXPECT_EQ(shown, held);
    EXPECT_EQ(Lamp(), colors::yellow);
    port.SetModemLines(cts);
    loop.Pass(1s);
    EXPECT_EQ(shown, "connected COM1 9600,n,8,1 RTS/CTS");
    EXPECT_EQ(Lamp(), colors::green);
  }
  EXPECT_EQ(told, Lines{"held: " + held});
}

TEST_F(SerialConnection, LineErrorsAreMentioned) {
  port.CountLineErrors(LineErrors{});
  Click();
  port.CountLineErrors({2, 1, 0, 0});
  port.Receive("x");
  loop.Pass(1s);
  EXPECT_EQ(Note(), "line errors: 2 parity, 1 framing");
}

class NetworkConnection : public ConnectionRig<PollLoop> {
 protected:
  NetworkConnection() {
    controls.cboSerial.SetText("net");  // in any case
    controls.txtPort.SetText(port);
  }
  bool Until(const std::function<bool()>& done) { return loop.Run(done, 30s); }
  const std::string port = FreePort();
};

TEST_F(NetworkConnection, AServerTellsWhetherAPeerIsThere) {
  controls.chkListen.SetChecked(true);
  controls.txtBind.SetText("127.0.0.1");
  Click();
  const std::string at = "TCP 127.0.0.1 port " + port;
  EXPECT_EQ(shown, "waiting for a peer on " + at);
  EXPECT_EQ(Lamp(), colors::yellow);
  EXPECT_EQ(Note(), "listening on 127.0.0.1, port " + port);
  NetworkLink peer(loop);
  ASSERT_TRUE(peer.Open({false, false, "127.0.0.1", port}));
  EXPECT_TRUE(
      Until([&] { return shown.starts_with("connected 127.0.0.1:") && shown.ends_with(" on " + at); }));
  EXPECT_EQ(Lamp(), colors::green);
  peer.Close();
  EXPECT_TRUE(Until([&] { return shown == "waiting for a peer on " + at; }));
  loop.Pass(10ms);
  EXPECT_EQ(told, Lines{}) << "a peer that leaves a server is none of its errors";
  EXPECT_TRUE(link.CommIsOpen());
}

TEST_F(NetworkConnection, AClientWhosePeerClosesSaysSoAndReconnectsAlsoWhenThatIsCheckedLater) {
  NetworkLink peer(loop);
  ASSERT_TRUE(peer.Open({false, true, "", port}));
  const std::string at = "TCP 127.0.0.1:" + port;
  Click();
  EXPECT_EQ(shown, "connected " + at);
  controls.txtPort.SetText("1");  // by a configuration that was loaded, say
  peer.Close();
  ASSERT_TRUE(Until([&] { return !told.empty(); }));
  EXPECT_EQ(told, Lines{"lost: " + at + ": the peer has closed the connection"});
  EXPECT_EQ(shown, "the peer has gone: " + at);
  EXPECT_EQ(Lamp(), colors::red);
  note.Mention("CommWrite (SendData): not connected");
  EXPECT_EQ(Note(), "the peer has closed the connection") << "not overwritten by what follows from it";
  ASSERT_TRUE(peer.Open({false, true, "", port}));
  controls.chkReconnect.SetChecked(true);
  EXPECT_TRUE(Until([&] { return shown == "connected " + at; })) << shown;
  EXPECT_EQ(Lamp(), colors::green);
}

}  // namespace
}  // namespace quarlin
