// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/quick_sends.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "base/text.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t numberKeys = 9;

std::string NameOf(const QuickSend& row) {
  return row.name.empty() ? row.command : row.name;
}

}  // namespace

QuickSends::QuickSends(QuickParts parts, ProgramFolder folder, std::function<bool()> heldUp)
    : parts_(parts),
      heldUp_(std::move(heldUp)),
      list_(std::move(folder)),
      answer_(parts_.loop, parts_.exchange),
      repeatAlarm_(parts_.loop, [this] { Tick(); }) {
  list_.OnChanged = [this] { ListChanged(); };
}

// A state goes with its row; one that was edited keeps its place.
void QuickSends::ListChanged() {
  std::vector<RowState> before = std::exchange(states_, {});
  std::vector<bool> taken(before.size(), false);
  const auto take = [&](const auto& fits) -> std::optional<RowState> {
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (taken[i] || !fits(i)) continue;
      taken[i] = true;
      return before[i];
    }
    return std::nullopt;
  };
  const std::vector<QuickSend>& rows = Rows();
  std::vector<std::optional<RowState>> found;
  found.reserve(rows.size());
  for (const QuickSend& row : rows)
    found.push_back(take([&](std::size_t i) { return before[i].row == row; }));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool sameNumber = rows.size() == before.size();
    if (!found[i] && sameNumber) found[i] = take([&](std::size_t j) { return j == i; });
    states_.push_back(found[i].value_or(RowState{}));
    if (states_.back().row != rows[i]) states_.back().result.clear();  // it was that of another command
    states_.back().row = rows[i];
    if (rows[i].every == 0) states_.back().repeating = false;
  }
  Plan();
  OnChanged();
}

std::string QuickSends::KeyOf(std::size_t index) const {
  if (!Rows()[index].key.empty()) return Rows()[index].key;
  if (index >= numberKeys) return {};
  const std::string key = fmt::format("Ctrl+{}", index + 1);
  const bool taken = std::any_of(Rows().begin(), Rows().end(),
                                 [&](const QuickSend& row) { return EqualsIgnoringCase(row.key, key); });
  return taken ? "" : key;
}

void QuickSends::Fire(std::size_t index) {
  if (index >= Rows().size()) return;
  const QuickSend row = Rows()[index];
  if (!parts_.link.CanPass()) {
    return parts_.status.Say(fmt::format("not connected; \"{}\" was not sent", NameOf(row)));
  }
  if (row.waits && answer_.Waiting()) {
    return parts_.status.Say(fmt::format("still waiting for the answer to \"{}\"", NameOf(awaited_)));
  }
  const Sender::Expansion expansion = parts_.sender.Expand(row.command);
  if (expansion.pastMaximum) {
    return parts_.status.Say("the counter has passed its maximum; nothing was sent");
  }
  parts_.sender.Send(parts_.sender.Frame.Framed(expansion.text), SendKind::ByHand,
                     [this, row](const SendOutcome& outcome) { Sent(row, outcome); });
}

void QuickSends::Sent(const QuickSend& row, const SendOutcome& outcome) {
  if (outcome.end != SendEnd::Sent) return Show(row, "not sent");
  const bool anothersAnswer = parts_.exchange.Running() || heldUp_() || answer_.Waiting();
  if (!row.waits || anothersAnswer) return Show(row, "sent");
  awaited_ = row;
  answer_.Begin(milliseconds(row.timeOut), [this, row](const WaitEnd& end) { Ended(row, end); });
  Show(row, "...");
}

void QuickSends::Ended(const QuickSend& row, const WaitEnd& end) {
  if (end.how != WaitEnd::How::TimedOut) {
    const double taken = std::chrono::duration<double, std::milli>(end.latency.value_or(Duration{})).count();
    const bool objected = end.how == WaitEnd::How::Objected;
    return Show(row, fmt::format("{:.1f} ms{}", taken, objected ? ", wrong" : ""));
  }
  parts_.counters.lblerror.Increment();
  parts_.traffic.AppendError("TIME OUT", fmt::format("no answer to \"{}\"", NameOf(row)), end.number);
  Show(row, "no answer");
}

void QuickSends::Show(const QuickSend& row, const std::string& result) {
  for (RowState& state : states_) {
    if (state.row == row) state.result = result;
  }
  OnChanged();
}

void QuickSends::SetRepeating(std::size_t index, bool repeating) {
  if (index >= states_.size()) return;
  RowState& state = states_[index];
  if (repeating && state.row.every == 0) {
    return parts_.status.Say("set first how often it is to be repeated, in milliseconds");
  }
  state.repeating = repeating;
  state.due = parts_.loop.Now();
  Plan();
  OnChanged();
}

bool QuickSends::MayRepeat() const {
  return parts_.link.CanPass() && !parts_.exchange.Running() && !heldUp_();
}

void QuickSends::MayGoOn() {
  if (!repeatAlarm_.IsSet()) Plan();
}

// At the earliest instant at which one is due; while none may go out nothing is planned.
void QuickSends::Plan() {
  std::optional<Instant> earliest;
  for (const RowState& state : states_) {
    if (state.repeating && (!earliest || state.due < *earliest)) earliest = state.due;
  }
  if (earliest && MayRepeat()) {
    repeatAlarm_.At(*earliest);
  } else {
    repeatAlarm_.Cancel();
  }
}

// A row that cannot go out now, because the link is busy or an answer is waited for, misses its turn.
void QuickSends::Tick() {
  const Instant now = parts_.loop.Now();
  for (std::size_t i = 0; i < states_.size(); ++i) {
    if (!states_[i].repeating || states_[i].due > now) continue;
    const Duration every = milliseconds(states_[i].row.every);
    states_[i].due += every * ((now - states_[i].due) / every + 1);
    const bool free = !parts_.link.Busy() && !(states_[i].row.waits && answer_.Waiting());
    if (MayRepeat() && free) Fire(i);  // yields: the rows may be others afterwards
  }
  Plan();
}

void QuickSends::StopWaiting() {
  if (answer_.Waiting()) Show(awaited_, "");
  answer_.Cancel();
  repeatAlarm_.Cancel();
}

void QuickSends::Say(const std::string& trouble) {
  if (!trouble.empty()) parts_.status.Say(trouble);
}

void QuickSends::TakeUp() {
  Say(list_.TakeUp());
  if (const std::size_t line = list_.FaultyLine(); line != 0) {
    Say(fmt::format("{}, line {}: a time that is no number is passed over", QuickList::fileName, line));
  }
}

void QuickSends::Add(QuickSend row) {
  Say(list_.Add(std::move(row)));
}

void QuickSends::Set(std::size_t index, QuickSend row) {
  Say(list_.Set(index, std::move(row)));
}

void QuickSends::Remove(std::size_t index) {
  Say(list_.Remove(index));
}

void QuickSends::Move(std::size_t from, std::size_t to) {
  Say(list_.Move(from, to));
}

}  // namespace quarlin
