// SPDX-License-Identifier: GPL-3.0-or-later
// The one link of the program (the serial driver, modCOMM): every operation on it, the last error, and
// what became of each string.
//
// No operation shows a message or throws. Each returns 0 (or a count) on success; on failure it records
// CommLastError, CommLastErrorSource and CommLastErrorText and returns that error, or -1 where it counts.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "link/device.h"
#include "link/flow_watch.h"
#include "link/link_controls.h"
#include "link/network_link.h"
#include "link/write_progress.h"

namespace quarlin {

// What a link leads to.
struct LinkTarget {
  std::string port;                                     // "NET" in any case, or a serial port
  std::string settings;                                 // of the serial port, in either form of BuildCommDcb
  std::optional<FlowControl> flow = FlowControl::None;  // beside that of the settings; nothing: not known
  NetworkChoice network{};
  std::string path{};  // the device of the port where that is known better than by its name

  bool IsNetwork() const;
  bool operator==(const LinkTarget&) const = default;
};

struct LinkState {
  // A token, never a descriptor: 1 for the network, 3 or more for a serial port and never used twice, 0
  // before any open, -1 after a port could not be opened. It keeps its value when the link is closed.
  std::int32_t CommHandle = 0;
  bool CommPortOpen = false;
  bool CommNetMode = false;  // the port is "NET"
  std::int32_t CommLastError = 0;
  std::string CommLastErrorSource;
  std::string CommLastErrorText;
  SerialSettings CommDCB;     // of the port that is open
  QueueStatus CommStat;       // as the last CommRxEmpty found it; CommRead trusts its cbInQue
  bool NoModemLines = false;  // the open link has none; known after the first look at them
  bool DeviceGone = false;    // a read or write failed in a way that only unplugging explains

  double LastSendTime = 0;  // seconds since midnight
};

enum class SendEnd {
  Sent,
  Failed,     // the link could not take it, or only a part of it
  Cancelled,  // the link was closed on purpose while it waited; no error is recorded
};

// What became of a string that was to be sent.
struct SendOutcome {
  std::string text;       // as it was handed to the driver, after the script's change
  std::size_t taken = 0;  // its first bytes that the link took; over TCP some may still wait for the peer
  SendEnd end = SendEnd::Sent;
  std::string reason{};  // of a failure, in the platform's words
};

// What the link asks of the rest of the program, and tells it. Empty functions stand for "nobody".
struct LinkHooks {
  Hook<bool()> scripting;                     // whether the next two are to be called
  Hook<void(std::string& text)> receiveChar;  // once for each character
  Hook<void(std::string& text)> sendString;

  Hook<void(std::string_view text)> received;  // as it came, before a script sees it
  Hook<void()> transmitted;                    // a string was sent, or could not be
  Hook<void(const SendOutcome&)> sentString;   // what became of a SendString

  // How far a write has come that has to wait: called when it first waits, then at most every 250 ms, and at
  // its end, however it ends, with 0 of 0. Called during yields; must only show.
  Hook<void(std::size_t taken, std::size_t total)> progress;

  Hook<void()> free;  // Busy has become false; must only wake somebody

  // What ReceiveChar returns from now on is another sender's: what is left of a string is not its beginning.
  Hook<void()> newPeer;

  // A write waits for the driver, and something has arrived meanwhile. It may be taken with ReceiveChar and
  // shown, but not be handled: its request has not been logged yet, and nothing may be sent. Not called while
  // scripts see each character.
  Hook<void()> arrivedWhileWriting;

  // So many bytes that were told as sent will never leave: the link was closed over them, or broke.
  Hook<void(std::size_t bytes)> lost;

  Hook<void()> lineErrors;  // Errors has changed

  Hook<void()> held;  // HeldBy has changed while the link is open; also during a yield: must only show
};

class Link {
 public:
  static constexpr std::int32_t receiveSize = 256;  // the most that ReceiveChar takes

  Link(EventLoop& loop, DeviceSource& devices, LinkControls& controls);
  ~Link();

  LinkState State;
  LinkHooks Hooks;

  // Where "NET" leads to; asked at each CommOpen.
  Hook<NetworkChoice()> ChooseNetwork;
  NetworkLink& Network() { return network_; }

  // Told of arrivals and of a device that has gone, also during a yield; must only wake somebody.
  Hook<void()> OnArrival;

  // Told when an error was recorded; those of the modem lines, which come with every poll of a link that
  // has none, are passed over. Must not use the link.
  Hook<void()> OnError;

  // Opens the port with settings in either form of BuildCommDcb. Fails with -1, "Port in use.", when a
  // port is open already, and then closes it. A failure always leaves the link closed. "NET" closes what
  // is open first and gives 0 in every case; CommIsOpen tells. Yields while a connection is being made,
  // which CommClose ends.
  std::int32_t CommOpen(const std::string& portName, std::string_view settings);

  // The same without a yield, to what a link led to before: a network connection is made in the background.
  // `over` is called when CommIsOpen tells the outcome, which may be before this returns; never after
  // CommClose or another opening.
  void OpenInBackground(const LinkTarget& target, std::function<void()> over);

  // What was last opened, or was to be.
  const LinkTarget& Target() const { return target_; }

  // Before a close on purpose: yields until what the link has accepted has left it, for as long as that takes
  // on the line and 2 s more; over TCP until the peer has acknowledged it. What is sent meanwhile is
  // cancelled. A close meanwhile ends the wait. CommClose then tells the hook `lost` what is left.
  void Finish();
  std::int32_t CommClose();
  std::int32_t CommFlush();

  // Refreshes CommStat; true when nothing waits to be read.
  bool CommRxEmpty();

  // Takes at most `maxLength` of what CommStat reported. Returns the count, or -1. Yields.
  std::int32_t CommRead(std::string& text, std::int32_t maxLength);

  // Writes all of it, waiting up to a second for each byte, or byte by byte with the pause of txtcharrit,
  // during which nothing is served; the first byte that fails is the last. Returns what the last write call
  // took, or -1; a close on purpose while it waits gives -1, too, and records nothing. Yields.
  std::int32_t CommWrite(std::string_view text);

  // `mask` is one ModemLine bit. On failure `state` is unchanged.
  std::int32_t CommReadCD(std::uint16_t mask, bool& state);

  // All four input lines at once, as ModemLine bits; unchanged on failure.
  std::int32_t CommReadLines(std::uint16_t& lines);

  // Line 1 break, 2 DTR, 3 RTS; any nonzero state asserts.
  std::int32_t CommSetLine(std::int16_t line, std::int16_t state);

  // Like CommSetLine, but nothing is done where the line was last set so and nobody else moves it.
  void KeepLine(OutputLine line, bool asserted);
  bool CommIsOpen() const { return State.CommPortOpen; }

  // Data can pass: a device or a UDP socket is open, or a TCP connection whose peer has not ended it.
  bool CanPass() const {
    return State.CommPortOpen && (!State.CommNetMode || network_.State() == Passage::Open);
  }

  // A string is on its way to the driver, or some of one waits for a TCP peer to take it.
  bool Busy() const { return sending_ || !queued_.empty() || network_.Unsent() > 0; }

  // For the end of the program: where a write waits for the driver, Finish and then a close. A string of
  // which only a part has left has then failed. A second call does not wait. Yields.
  void GiveUpWaiting();

  // "Rx only": nothing is sent by the cycle, and the receive loop leaves what arrives alone.
  bool RxOnly() const { return controls_.chkLogOnly.Checked(); }

  // All of one sender's bytes have been taken, and another's wait: CommRxEmpty will tell newPeer. Whoever has
  // not handled the first one's should do that before.
  bool SenderChanges() const { return State.CommNetMode && network_.SenderChanges(); }

  // What has arrived, at most receiveSize characters; empty when nothing has. Yields; with scripting on the
  // text is the script's.
  std::string ReceiveChar();

  // Sends the text, which the script may change first; the caller sees the change. Returns the status of
  // the write. Does nothing before the first open. Yields; a text sent while another is waiting for the
  // driver goes out behind it, and the status is then 0. Whether the script is asked is decided now.
  std::int32_t SendString(std::string& text);

  // SendString for a sender that is told what became of it: `whenSent` is called exactly once, before
  // anything is written that was sent later. A text that was to go out behind another is cancelled when the
  // link is closed before its turn.
  using WhenSent = std::function<void(const SendOutcome& outcome)>;
  void Send(std::string text, WhenSent whenSent);

  // Calls off the write that waits for the driver, if any: its string ends as cancelled.
  void CallOff() { calledOff_ = waitsForDriver_; }

  // A stream of bytes, such as a file's: taken as the link has room, without a wait and without a yield,
  // while all else goes on and other strings go out between. `room` is called from the event loop as long as
  // there is some, until EndStream or the end of the link. There is one stream at a time.
  void BeginStream(std::function<void()> room);
  void EndStream();

  // Takes what there is room for, and gives how much that was. A failure is recorded.
  Transfer SendSome(std::string_view bytes);

  // The pause between two characters that txtcharrit asks for, in which nothing is served; 0 where they go
  // out in one write. Less than 0 is none, but a write for each.
  Duration CharacterPause() const;

  // Whether bytes may go out in a stream: a script that sees what is sent, "Rts Tx", a pause between
  // characters and "Terminal" all ask for a SendString.
  bool TakesStream() const;

  // The line errors of every port since the start of the program; nothing where no driver counted them. While
  // data come they are asked for at most every 250 ms.
  const std::optional<LineErrors>& Errors() const { return errors_; }

  // What a write that waits is waiting for: "the driver", "CTS", "XON", "the peer".
  std::string_view WaitsFor() const;

  // By what the instrument keeps the open port from sending, for half a second or longer.
  Hold HeldBy() const { return flowWatch_.By(); }

  // The flow control that the next opening takes; nothing where the control's text is none.
  std::optional<FlowControl> ChosenFlow() const { return controls_.Flow(); }

  // The low-latency mode of the open port's adapter: see Device::SetLowLatency. Records nothing.
  std::error_code SetLowLatency(bool on);

  static std::string CommErrorText(std::int32_t code);

 private:
  // A write in progress.
  struct Writing {
    std::size_t total;
    std::uint64_t opening;  // of the link, for which it is meant
    std::size_t taken = 0;
    std::error_code error{};  // why no more was taken
    bool cancelled = false;
  };
  struct Sending {
    std::int32_t status;
    SendOutcome outcome;
  };

  std::int32_t OpenSerial();
  std::int32_t SetUp(Device& device);
  void CloseNetwork();
  void DeviceCalls();
  void CountLineErrors();
  std::int32_t OpenNetwork();
  void EnterNetworkMode();
  void NetworkOpened();
  std::shared_ptr<Device> OpenDevice() const;
  void Record(std::string_view source, std::error_code error);
  std::int32_t CommSetError(std::string_view source, std::error_code error);
  std::int32_t CommSetErrorFlags(std::string_view source, std::error_code error);
  std::int32_t Write(std::string_view text, Writing& writing);
  std::int32_t WriteNetwork(std::string_view text, Writing& writing);
  std::int32_t WriteSerial(std::string_view text, Writing& writing);
  std::int32_t WriteWhole(Device& device, std::string_view text, Writing& writing);
  std::int32_t WriteSlowly(Device& device, std::string_view text, Duration pause, Writing& writing);
  std::int32_t Fail(Writing& writing, std::string_view source, std::error_code error);
  static std::int32_t Cancel(Writing& writing);
  std::int32_t WriteEach(std::string_view text, Writing& writing);
  bool Scripting() const { return Hooks.scripting && Hooks.scripting(); }
  void TellLost(std::size_t bytes);
  Sending Transmit(std::string text, bool scripted);
  void Queue(std::string text, WhenSent whenSent);
  void TransmitQueued();
  void NetworkQueueChanged(std::size_t taken, std::size_t total);
  void TellFree();
  bool WaitForDriver(Device& device, Instant deadline, const Writing& writing);
  Transfer SendSomeToPeer(std::string_view bytes);
  void OfferRoom();
  Duration TimeOnTheLine(std::size_t bytes) const;
  void WaitUntilSent(std::size_t bytes);
  void LetScriptSeeEach(std::string& text);
  double Midnight() const { return SecondsSinceMidnight(loop_.Local()); }

  EventLoop& loop_;
  DeviceSource& devices_;
  LinkControls& controls_;
  std::shared_ptr<Device>
      device_;  // shared with the operations on the stack, so that a close cannot pull it away
  std::int32_t lastToken_ = 2;
  LinkTarget target_;
  std::uint64_t openings_ = 0;  // and closes: whoever waited sees that it is another link now
  struct Queued {
    std::string text;
    WhenSent whenSent;
    bool scripted;          // no text that a script sent itself
    std::uint64_t opening;  // of the link, for which it is meant
  };
  bool finishing_ = false;       // before a close
  bool waitsForDriver_ = false;  // a write on the stack
  bool calledOff_ = false;       // that write
  bool showsArrival_ = false;    // on the stack
  std::optional<LineErrors> errors_;
  LineErrors errorsBefore_;        // the opening in progress
  bool errorsAreCounted_ = false;  // by the driver of the port that is open
  bool givenUp_ = false;           // the program ends
  bool sending_ = false;           // a text is on its way through the functions on the stack
  std::deque<Queued> queued_;      // texts that came meanwhile
  std::size_t queuedBytes_ = 0;
  WriteProgress progress_;
  FlowWatch flowWatch_;
  Alarm lineErrorAlarm_;
  std::function<void()> stream_;  // whom room is offered
  Alarm streamAlarm_;             // of the network, where nothing is ready by itself
  NetworkLink network_;
  std::map<OutputLine, bool> linesSet_;  // as they were last set, since the port was opened
};

}  // namespace quarlin
