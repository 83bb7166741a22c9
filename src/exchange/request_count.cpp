// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/request_count.h"

#include "base/numbers.h"
#include "base/scope_flag.h"

namespace quarlin {

RequestCount::RequestCount(RunControls& controls) : controls_(controls) {
  controls_.Text1.Change = [this] { TextChanged(); };
}

void RequestCount::Begin() {
  if (completed_) controls_.Text1.SetText(began_);
  completed_ = false;
  began_ = controls_.Text1.Text();
  requestsLeft_ = controls_.Text1.Integer();
}

void RequestCount::Complete() {
  completed_ = requestsLeft_ == 0 && controls_.Text1.Integer() == 0 && IntegerOf(began_) > 0;
}

void RequestCount::TakeOne() {
  Show(PaddedDecimal(--requestsLeft_, 1));
}

void RequestCount::Show(std::string_view text) {
  const ScopeFlag showing(showing_);
  controls_.Text1.SetText(text);
}

void RequestCount::TextChanged() {
  if (!showing_) completed_ = false;
}

RequestCount::Saving::Saving(RequestCount& count) : count_(count), shown_(count.controls_.Text1.Text()) {
  count_.Show(count_.TextToSave());
}

RequestCount::Saving::~Saving() {
  count_.Show(shown_);
}

std::string RequestCount::TextToSave() const {
  return completed_ ? began_ : controls_.Text1.Text();
}

}  // namespace quarlin
