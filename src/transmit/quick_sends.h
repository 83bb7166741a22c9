// SPDX-License-Identifier: GPL-3.0-or-later
// The quick sends: commands with a name, each a key or a click away, some of them repeated by themselves.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/status_note.h"
#include "exchange/answer_wait.h"
#include "exchange/counters.h"
#include "exchange/sender.h"
#include "transmit/quick_list.h"

namespace quarlin {

struct QuickParts {
  EventLoop& loop;
  Link& link;
  Exchange& exchange;
  Sender& sender;
  Counters& counters;
  Traffic& traffic;
  StatusNote& status;
};

class QuickSends {
 public:
  // `heldUp`: something else has the line, such as a file; nothing is repeated meanwhile.
  QuickSends(QuickParts parts, ProgramFolder folder, std::function<bool()> heldUp);

  // Told when a row, its result or the number of rows has changed; for the view.
  Hook<void()> OnChanged;

  const std::vector<QuickSend>& Rows() const { return list_.Rows(); }

  // What fires the row: its own key, else "Ctrl+1" to "Ctrl+9" for the first nine, unless another has that
  // key; empty for none.
  std::string KeyOf(std::size_t index) const;

  // "12.3 ms" after an answer, "no answer", "..." while it is waited for; empty before.
  const std::string& ResultOf(std::size_t index) const { return states_[index].result; }

  // Sends the row's command once, framed and with its macros replaced. What hinders it is said in the status
  // bar. While a cycle runs or a file is sent, the answer is theirs. Yields.
  void Fire(std::size_t index);

  // Repeats the row every so many milliseconds as it says, while data can pass, no cycle runs and nothing
  // else has the line. Ticks that could not be used are not made up for.
  bool Repeating(std::size_t index) const { return states_[index].repeating; }
  void SetRepeating(std::size_t index, bool repeating);

  // Something changed that a repetition may have been held back by.
  void MayGoOn();

  // Nobody waits for an answer any more: the link has gone, or the answers are a run's. Repetitions rest
  // until MayGoOn.
  void StopWaiting();

  // The file and its rows, as QuickList has them; what goes wrong is said in the status bar.
  void TakeUp();
  void Add(QuickSend row);
  void Set(std::size_t index, QuickSend row);
  void Remove(std::size_t index);
  void Move(std::size_t from, std::size_t to);

 private:
  // What a row does at present; it stays with its row when that is moved.
  struct RowState {
    QuickSend row;
    bool repeating = false;
    Instant due{};
    std::string result{};
  };

  void ListChanged();
  void Say(const std::string& trouble);
  bool MayRepeat() const;
  void Tick();
  void Plan();
  void Sent(const QuickSend& row, const SendOutcome& outcome);
  void Ended(const QuickSend& row, const WaitEnd& end);
  void Show(const QuickSend& row, const std::string& result);

  QuickParts parts_;
  std::function<bool()> heldUp_;
  QuickList list_;
  std::vector<RowState> states_;  // one a row
  AnswerWait answer_;
  QuickSend awaited_;  // whose answer that is
  Alarm repeatAlarm_;
};

}  // namespace quarlin
