#include "exchange/request_count.h"

#include "base/numbers.h"

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
  Show(--requestsLeft_);
}

void RequestCount::Show(std::int32_t requests) {
  showing_ = true;
  controls_.Text1.SetText(PaddedDecimal(requests, 1));
  showing_ = false;
}

void RequestCount::TextChanged() {
  if (!showing_) completed_ = false;
}

std::string RequestCount::TextToSave() const {
  return completed_ ? began_ : controls_.Text1.Text();
}

}  // namespace quarlin
