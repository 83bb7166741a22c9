// Opening and closing the link from the window: the port search, Connect and Disconnect, and the stop
// that tells the user why.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/prompts.h"
#include "link/connection_controls.h"
#include "link/link.h"
#include "link/port_list.h"

namespace quarlin {

// What the connection needs of the rest of the window.
struct ConnectionHooks {
  std::function<bool()> expanderBusy;
  std::function<void()> connecting;    // receive and rate timers on, answer counter cleared
  std::function<void()> disconnected;  // those timers off, lamps dark, a running cycle stopped
  std::function<void()> stateChanged;  // the link was opened or closed, or an opening failed
  std::function<std::vector<FoundPort>()> systemPorts;
};

class Connection {
 public:
  Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts);

  ConnectionHooks Hooks;

  // Connects, or disconnects when the link is open. A failure shows in the colour of cboSerial and stays
  // in the link's last error. Yields.
  void cmdOpen_Click();

  // Lists "NET", every COM port that opens with the chosen settings, and what else the system has. Closes
  // an open link. Yields.
  void cmdsearchcom_Click();

  // Disconnects if need be, then shows the message until the user closes it. Yields.
  void StopWithMessage(std::string_view message, std::string_view title);

  // The device went away by itself: disconnects and paints the port red.
  void DeviceLost();

  void Disconnect();

  bool Searching() const { return searching_; }

  // Port and settings as the user chose them, "/dev/ttyUSB0 9600,n,8,1".
  std::string Description() const;

 private:
  void Connect();
  void ShowClosed();
  std::string Settings() const;
  bool Probe(const std::string& name);

  EventLoop& loop_;
  Link& link_;
  ConnectionControls& controls_;
  Prompts& prompts_;
  bool searching_ = false;
};

}  // namespace quarlin
