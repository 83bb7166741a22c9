// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/sender.h"

#include <fmt/format.h>

#include <array>
#include <utility>

namespace quarlin {
namespace {

// Where "hh:mm:ss" puts the time of what went out.
enum class Stamp {
  Echo,  // in front of the echo: LOG.TXT of a test holds what was on the wire and nothing else
  Log,   // a line of its own in the log: what is played for another program is looked up there by its time
  None   // nowhere: a key is a part of a line
};

struct KindRow {
  SendKind kind;
  bool request;  // counted in lblsend, and an answer may come to it
  Stamp stamp;
  bool appendsRow;  // "Append Row Tx" holds; a task's text must not look like an exchange
  bool byHand;      // shown only with "Local echo"
};

constexpr std::array<KindRow, 6> kinds{{
    {SendKind::Cycle, true, Stamp::Echo, true, false},
    {SendKind::ByHand, true, Stamp::Echo, true, false},
    {SendKind::Answer, false, Stamp::Log, true, false},
    {SendKind::Task, false, Stamp::Log, false, false},
    {SendKind::Key, false, Stamp::None, false, true},
    {SendKind::File, false, Stamp::None, false, true},
}};

const KindRow& RowOf(SendKind kind) {
  return kinds[static_cast<std::size_t>(kind)];
}

// "Input/output error (3 of 8 bytes taken)"
std::string FailureDetail(const SendOutcome& outcome) {
  if (outcome.taken == 0) return outcome.reason;
  return fmt::format("{} ({} of {} bytes taken)", outcome.reason, outcome.taken, outcome.text.size());
}

}  // namespace

Sender::Sender(SenderParts parts) : Frame(parts.framing), parts_(parts) {}

Sender::Expansion Sender::Expand(std::string command) {
  ExpanderState& state = parts_.expander.State;
  state.CounterStop = false;  // a search string may have raised it
  parts_.expander.ExpandMacros(command);
  return {std::move(command), std::exchange(state.CounterStop, false)};
}

void Sender::Send(std::string bytes, SendKind kind, std::function<void(const SendOutcome&)> ended) {
  parts_.counters.TxLamp().SetFillColor(colors::red);
  Hooks.leaving();
  const std::uint32_t run = parts_.exchange.Run();
  parts_.link.Send(std::move(bytes), [this, kind, run, ended = std::move(ended)](const SendOutcome& outcome) {
    Ended(outcome, kind, run);
    if (ended) ended(outcome);
  });
}

void Sender::Ended(const SendOutcome& outcome, SendKind kind, std::uint32_t run) {
  const std::uint64_t next = parts_.traffic.NextLine();
  Show(std::string_view(outcome.text).substr(0, outcome.taken), kind);
  const std::uint64_t displayLine = outcome.taken > 0 ? parts_.traffic.SentLine() : next;
  const bool ofAnotherRun = kind == SendKind::Cycle && run != parts_.exchange.Run();
  if (!RowOf(kind).request || ofAnotherRun) return TellEnd(outcome);
  const std::uint64_t number = CountRequest(outcome, kind, displayLine);
  if (outcome.end == SendEnd::Failed) ShowFailure(outcome, number);
}

Transfer Sender::SendSome(std::string_view bytes, SendKind kind) {
  parts_.counters.TxLamp().SetFillColor(colors::red);
  Hooks.leaving();
  const Transfer taken = parts_.link.SendSome(bytes);
  Show(bytes.substr(0, taken.bytes), kind);
  if (taken.bytes > 0) parts_.exchange.BytesLeft();
  return taken;
}

void Sender::Show(std::string_view taken, SendKind kind) {
  if (taken.empty()) return;
  const KindRow& row = RowOf(kind);
  if (parts_.run.chkhhmmss.Checked()) {
    if (row.stamp == Stamp::Log) parts_.traffic.StampLog();
    if (row.stamp == Stamp::Echo) parts_.traffic.StampEcho();
  }
  if (row.byHand) {
    parts_.traffic.SentByHand(taken);
  } else {
    parts_.traffic.Sent(taken);
  }
  if (row.appendsRow && parts_.framing.ChkCrLfAppTx.Checked()) parts_.traffic.AppendSentRow();
}

// Returns the number of a request that did not leave, 0 for any other.
std::uint64_t Sender::CountRequest(const SendOutcome& outcome, SendKind kind, std::uint64_t displayLine) {
  Exchange& exchange = parts_.exchange;
  if (outcome.taken > 0) exchange.BytesLeft();
  parts_.counters.lblsend.Increment();
  if (outcome.end != SendEnd::Sent) {
    return exchange.RequestNotSent(outcome.text, outcome.end == SendEnd::Failed ? FailureDetail(outcome) : "",
                                   displayLine);
  }
  exchange.RequestSent(outcome.text, kind == SendKind::Cycle, displayLine);
  return 0;
}

void Sender::TellEnd(const SendOutcome& outcome) {
  if (outcome.taken > 0) parts_.exchange.BytesLeft();
  if (outcome.end != SendEnd::Failed) return;
  ShowFailure(outcome, parts_.exchange.TextNotSent(outcome.text, FailureDetail(outcome)));
}

void Sender::TellLost(std::string_view what) {
  parts_.counters.lblNotSent.Increment();
  parts_.traffic.AppendError(what, "", parts_.exchange.TextNotSent("", what));
}

void Sender::ShowFailure(const SendOutcome& outcome, std::uint64_t number) {
  parts_.counters.lblNotSent.Increment();
  parts_.traffic.AppendError(fmt::format("NOT SENT: {}", outcome.reason), FailureDetail(outcome), number);
}

}  // namespace quarlin
