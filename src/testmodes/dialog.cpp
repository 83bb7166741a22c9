// SPDX-License-Identifier: GPL-3.0-or-later
#include "testmodes/dialog.h"

#include <fmt/format.h>

#include <array>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::string_view commandSection = "COMMAND";
constexpr std::string_view faultSection = "FAULTS";
constexpr std::string_view anyRequest = "*";

// The forms of a key, in the order in which they are tried.
enum class KeyForm { Printable, Coded, AsReceived };
constexpr std::array<KeyForm, 3> keyForms{KeyForm::Printable, KeyForm::Coded, KeyForm::AsReceived};

std::string KeyOf(std::string_view request, KeyForm form) {
  if (form == KeyForm::AsReceived) return std::string(request);
  return EncodeDialogKey(request, form == KeyForm::Coded);
}

}  // namespace

std::string EncodeDialogKey(std::string_view text, bool allCoded) {
  std::string key;
  key.reserve(text.size() * (allCoded ? 4 : 1));
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (allCoded || code < 32) {
      (key += '{') += Hexadecimal(code, 2);
      key += '}';
    } else {
      key += character;
    }
  }
  return key;
}

Dialog::Dialog(DialogParts parts, const ProgramFolder& folder)
    : parts_(parts), table_(folder, tableName), delayAlarm_(parts_.loop, [this] { SendDue(); }) {}

void Dialog::DialogAnswer(std::string_view request) {
  table_.Refresh();
  if (table_.Revision() != tableRevision_) TakeTable();
  std::string answer = AnswerTo(request);
  parts_.expander.ExpandMacros(answer);
  if (answer.empty()) return;
  const std::string terminator = parts_.sender.Frame.TxTerminator();
  FaultPlan* const plan = plans_.empty() ? nullptr : PlanFor(request);
  if (plan == nullptr) {
    parts_.sender.Send(answer + terminator, SendKind::Answer);
    return;
  }
  FaultyAnswer faulty = plan->Apply(std::move(answer), terminator);
  for (const Fault fault : faulty.faults) ++Faults.struck[static_cast<std::size_t>(fault)];
  if (faulty.Has(Fault::Drop) || faulty.delay.count() == 0) {
    SendFaulty(faulty, terminator);
  } else {
    SendLater(std::move(faulty), terminator);
  }
}

void Dialog::TakeTable() {
  tableRevision_ = table_.Revision();
  toldDiscarded_ = false;
  turns_.clear();
  variantSections_ = {std::string(commandSection)};
  for (int number = 2;; ++number) {
    std::string section = fmt::format("{}{}", commandSection, number);
    if (!table_.HasSection(section)) break;
    variantSections_.push_back(std::move(section));
  }
  plans_.clear();
  std::string unread;
  for (const ProfileFile::Entry& entry : table_.Entries(faultSection)) {
    if (const auto plan = FaultPlan::Read(entry.value)) {
      plans_.emplace(ToUpper(entry.key), *plan);
    } else {
      unread += fmt::format("{}\"{}\"", unread.empty() ? "" : ", ", entry.key);
    }
  }
  constexpr std::size_t mostShown = 200;
  if (unread.size() > mostShown) unread = unread.substr(0, mostShown) + "...";
  if (!unread.empty()) OnTrouble(fmt::format("{}: faults that cannot be read: {}", tableName, unread));
}

// As the table has it, its turn among several answers counted.
std::string Dialog::AnswerTo(std::string_view request) {
  if (variantSections_.size() < 2) return std::string(LookUp(commandSection, request));
  std::vector<std::string_view> variants;
  for (const std::string& section : variantSections_) {
    const std::string_view value = LookUp(section, request);
    if (!value.empty()) variants.push_back(value);
  }
  if (variants.empty()) return {};
  const std::size_t turn = turns_[ToUpper(EncodeDialogKey(request, false))]++;
  return std::string(variants[turn % variants.size()]);
}

std::string_view Dialog::LookUp(std::string_view section, std::string_view request) const {
  for (const KeyForm form : keyForms) {
    const std::string_view value = TrimBlanks(table_.Value(section, KeyOf(request, form)));
    if (!value.empty()) return value;
  }
  return {};
}

// An entry of the request's own, else the one for all; null when there is neither.
FaultPlan* Dialog::PlanFor(std::string_view request) {
  for (const KeyForm form : keyForms) {
    const auto plan = plans_.find(ToUpper(KeyOf(request, form)));
    if (plan != plans_.end()) return &plan->second;
  }
  const auto plan = plans_.find(std::string(anyRequest));
  return plan == plans_.end() ? nullptr : &plan->second;
}

void Dialog::SendLater(FaultyAnswer answer, std::string terminator) {
  if (delayed_.size() >= mostDelayed) {
    ++Faults.discarded;
    if (!std::exchange(toldDiscarded_, true)) {
      parts_.status.Mention(
          fmt::format("{} answers wait for their time already: one was thrown away", mostDelayed));
    }
    return;
  }
  ++Faults.delayed;
  const Instant due = parts_.loop.Now() + answer.delay;
  delayed_.emplace(due, Delayed{std::move(answer), std::move(terminator), parts_.link.State.CommHandle});
  delayAlarm_.At(delayed_.begin()->first);
}

void Dialog::SendDue() {
  while (!delayed_.empty() && delayed_.begin()->first <= parts_.loop.Now()) {
    // Taken out first: while it is sent the link may be closed, which clears the others.
    const auto due = delayed_.extract(delayed_.begin());
    const Delayed& delayed = due.mapped();
    if (parts_.link.CommIsOpen() && parts_.link.State.CommHandle == delayed.link) {
      SendFaulty(delayed.answer, delayed.terminator);
    } else {
      ++Faults.discarded;
    }
  }
  if (!delayed_.empty()) delayAlarm_.At(delayed_.begin()->first);
}

void Dialog::LinkClosed() {
  Faults.discarded += delayed_.size();
  delayed_.clear();
  delayAlarm_.Cancel();
}

void Dialog::SendFaulty(const FaultyAnswer& answer, const std::string& terminator) {
  for (const Fault fault : answer.faults) Announce(fault);
  if (answer.Has(Fault::Drop)) return;
  parts_.sender.Send(answer.text + terminator, SendKind::Answer);
  if (!answer.Has(Fault::Double) || !parts_.link.CommIsOpen()) return;
  parts_.sender.Send(answer.text + terminator, SendKind::Answer);
}

void Dialog::Announce(Fault fault) {
  parts_.traffic.Append(fmt::format("-- answer {} (fault)\r\n", FaultWord(fault)), colors::darkRed);
}

}  // namespace quarlin
