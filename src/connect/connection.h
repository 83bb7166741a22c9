// Opening and closing the link from the window: the port search, Connect and Disconnect, the stop that
// tells the user why, and the return of a link that went away.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "connect/connection_controls.h"
#include "connect/port_list.h"
#include "controls/prompts.h"
#include "controls/status_note.h"
#include "link/link.h"

namespace quarlin {

// What the connection needs of the rest of the window.
struct ConnectionHooks {
  Hook<bool()> expanderBusy;
  Hook<void()> connecting;                   // receive and rate timers on, answer counter cleared
  Hook<void()> disconnected;                 // those timers off, lamps dark, a running cycle stopped
  Hook<void()> opened;                       // the link is open, for the first time or again after a loss
  Hook<void()> stateChanged;                 // the link was opened or closed, or what it waits for changed
  Hook<void(std::string_view line)> outage;  // the link went away and is waited for
  Hook<std::vector<FoundPort>()> systemPorts;
  Hook<std::string(const std::string& portName)> stablePath;  // empty where there is none
};

class Connection {
 public:
  Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts, StatusNote& status);

  ConnectionHooks Hooks;

  // Connects, or disconnects when the link is open or waited for; ends a search or a connection that is
  // being made. A failure shows in the colour of cboSerial and stays in the link's last error. Yields.
  void cmdOpen_Click();

  // Lists "NET", every COM port that opens with the chosen settings, and what else the system has; a
  // second click ends it with what it has found. Closes an open link. Yields.
  void cmdsearchcom_Click();

  // Disconnects if need be, then shows the message until the user closes it. Yields.
  void StopWithMessage(std::string_view message, std::string_view title);

  // The device or the peer went away by itself. With chkReconnect it is waited for and opened again, and
  // a running cycle goes on; otherwise this disconnects and paints the port red.
  void LinkLost(std::string_view reason);

  // Ends whatever waits for a connection, so that the code behind it can return.
  void CancelWaits();

  void Disconnect();

  bool Searching() const { return searching_; }

  // The link in words: "connected /dev/ttyUSB0 9600,n,8,1", "not connected", "waiting for …".
  std::string Description() const;

 private:
  void Connect();
  void Open();
  void ShowOpened();
  void ShowClosed();
  void SetAccess(bool enabled);
  std::string PortAndSettings() const;
  std::string Settings() const;
  NetworkChoice ChosenNetwork() const;
  std::vector<FoundPort> Search();
  bool Probe(const std::string& name);
  void TryAgain();
  void TriedAgain();
  bool IsNetwork() const { return controls_.cboSerial.Text() == "NET"; }

  EventLoop& loop_;
  Link& link_;
  ConnectionControls& controls_;
  Prompts& prompts_;
  StatusNote& status_;
  bool searching_ = false;
  bool stopSearch_ = false;
  bool connecting_ = false;
  bool waiting_ = false;    // for a link that went away
  Duration pause_{};        // before the next try
  std::string stablePath_;  // the port by its identity, whatever its number
  Alarm retryAlarm_;
};

}  // namespace quarlin
