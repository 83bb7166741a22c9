// SPDX-License-Identifier: GPL-3.0-or-later
// Opening and closing the link from the window: the port search, Connect and Disconnect, the stop that
// tells the user why, and the return of a link that went away.
#pragma once

#include <optional>
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
  Hook<void()> connecting;                     // receive and rate timers on, answer counter cleared
  Hook<void()> disconnected;                   // those timers off, lamps dark, a running cycle stopped
  Hook<void()> opened;                         // the link is open, for the first time or again after a loss
  Hook<void()> stateChanged;                   // the link was opened or closed, or is waited for
  Hook<void(std::string_view link)> showLink;  // in words, which may change each second
  Hook<void(std::string_view line)> outage;    // the link went away and is waited for
  Hook<void(std::string_view line)> lost;  // the link or a server's peer went away, and nobody waits for it
  Hook<void(std::string_view line)> held;  // the instrument keeps it from sending; once for each opening
  Hook<std::vector<FoundPort>()> systemPorts;
  Hook<std::string(const std::string& portName)> stablePath;  // empty where there is none

  // Why the system refused a port, beyond its error: whose it is, in words that follow its name; empty where
  // nothing is known.
  Hook<std::string(const std::string& portName, std::int32_t error)> whoseIsIt;

  // The same of a port that nobody has tried to open, where it is sure to be refused.
  Hook<std::string(const std::string& portName)> missingPermission;
};

class Connection {
 public:
  Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts, StatusNote& status);

  ConnectionHooks Hooks;

  // Adds "NET" and the system's ports to the list.
  void OfferPorts();

  // Connects, or disconnects when the link is open or waited for; ends a search or a connection that is
  // being made. A failure shows in the colour of cboSerial and in the status bar, and stays in the link's
  // last error. Yields.
  void cmdOpen_Click();

  // Lists "NET", every COM port that opens with the chosen settings, and what else the system has; a
  // second click ends it with what it has found. Closes an open link. Yields.
  void cmdsearchcom_Click();

  // Disconnects if need be, then shows the message until the user closes it. Yields.
  void StopWithMessage(std::string_view message, std::string_view title);

  // The device or the peer went away by itself. With chkReconnect it is waited for and opened again, and
  // a running cycle goes on; otherwise this disconnects and paints the port red, and waits for it as soon as
  // chkReconnect is checked.
  void LinkLost(std::string_view reason);

  // Ends whatever waits for a connection, so that the code behind it can return.
  void CancelWaits();

  // Somebody wants it: what the link has accepted still goes out. A second call meanwhile closes at once.
  // Yields.
  void Disconnect();

  // The controls were set from outside. The link that is open or waited for keeps what it was opened with,
  // and the status bar says so where that differs.
  void SettingsLoaded();

  // Another flow control was chosen: says that an open port keeps its own.
  void FlowChanged();

  // What the link leads or last led to, or would: "COM1 9600,n,8,1", "TCP 127.0.0.1:4001".
  std::string Target() const;

  // Why the last Connect failed, in words.
  const std::string& Failure() const { return failure_; }

  bool Searching() const { return searching_; }

  // No link is open, waited for, being opened or closed, and no port is searched.
  bool Idle() const;

  // The link that is open, or went away and was neither opened anew nor given up since, leads to that port.
  bool Holds(std::string_view portName) const;

  // Paints shpLink and tells showLink, of a link that somebody else may have opened or closed.
  void ShowLink();

  // The link in words: "connected /dev/ttyUSB0 9600,n,8,1", "not connected", "waiting for …".
  std::string Description() const;

 private:
  void Connect();
  void Open();
  void TellWhyNot();
  void ShowOpened();
  void CloseAfterFailure();
  void ShowClosed();
  void SetAccess(bool enabled);
  void ShowAddress();
  std::string Settings() const;
  NetworkChoice ChosenNetwork() const;
  LinkTarget Chosen() const;
  bool ControlsSay(const LinkTarget& target) const;
  std::string SerialDescription() const;
  std::string NetworkDescription() const;
  Color LampColor() const;
  std::vector<FoundPort> Search();
  bool Probe(const std::string& name);
  void NoteRefusal(const std::string& name);
  void ShowPorts(const std::vector<FoundPort>& ports);
  std::string WhatIsKnownOf(const FoundPort& port) const;
  void NetworkEvent(std::string_view words);
  void PeerWent(std::string_view reason);
  void ReconnectClicked();
  void WaitForReturn();
  void StopWaiting();
  void TryAgain();
  void TriedAgain();
  void SetRetry();
  void CountDown();
  void ShowSending(std::size_t taken, std::size_t total);
  void ShowHold();

  EventLoop& loop_;
  Link& link_;
  ConnectionControls& controls_;
  Prompts& prompts_;
  StatusNote& status_;
  bool searching_ = false;
  bool stopSearch_ = false;
  std::string failure_;
  struct Refusal {
    std::string port;
    std::string why;
    int others = 0;  // that were refused for the same reason
  };
  std::vector<Refusal> refusals_;  // of this search
  bool toldHold_ = false;          // of the open link
  bool connecting_ = false;
  bool disconnecting_ = false;
  bool waiting_ = false;             // for a link that went away
  std::optional<LinkTarget> gone_;   // the link that went away, and is waited for or could be
  std::optional<LinkTarget> asked_;  // the link that was wanted last, by a Connect or a script; no probe
  std::optional<LinkTarget> named_;  // the link whose stable path is known
  std::string stablePath_;           // the port by its identity, whatever its number
  Duration pause_{};                 // before the next try
  Alarm retryAlarm_;
  Alarm countDownAlarm_;  // while waiting: the words change each second
};

}  // namespace quarlin
