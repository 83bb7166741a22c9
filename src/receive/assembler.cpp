// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/assembler.h"

#include <algorithm>
#include <utility>

namespace quarlin {
namespace {

constexpr std::string_view errorAnswer = "ERR";
constexpr Duration shortestQuiet = std::chrono::milliseconds(50);

// Whether `text` holds `needle`, when everything before its last `fresh` bytes is known not to.
bool HoldsNewly(std::string_view text, std::string_view needle, std::size_t fresh) {
  const std::size_t reach = fresh + needle.size() - 1;
  return text.find(needle, text.size() > reach ? text.size() - reach : 0) != std::string_view::npos;
}

}  // namespace

bool Assembler::SetRule(std::string terminator, std::int16_t minChars) {
  if (terminator == state_.RxTerminator && minChars == state_.RxMinChars) return false;
  state_.RxTerminator = std::move(terminator);
  state_.RxMinChars = minChars;
  ClearAll();
  return true;
}

void Assembler::Pend(std::string_view bytes, Instant now) {
  if (bytes.empty()) return;
  if (state_.RxPending.empty()) pendingSince_ = now;
  state_.RxPending += bytes;
  lastByte_ = now;
}

Assembly Assembler::Take() {
  if (state_.RxPending.empty()) return Assembly::Nothing;
  if (discarding_) return TakeDiscarded();
  taken_ = state_.RxPending.size();
  if (state_.RxBuffer.empty()) {
    firstByte_ = pendingSince_;
    std::swap(state_.RxBuffer, state_.RxPending);
  } else {
    state_.RxBuffer += state_.RxPending;
  }
  state_.RxPending.clear();
  if (state_.RxTerminator.empty()) {
    const bool enough = state_.RxBuffer.size() >= static_cast<std::size_t>(state_.RxMinChars);
    return enough ? Assembly::Complete : Assembly::Beginning;
  }
  if (HoldsNewly(state_.RxBuffer, state_.RxTerminator, taken_)) return Assembly::Complete;
  return state_.RxBuffer.size() < limit ? Assembly::Beginning : Assembly::Overlong;
}

// The terminator may have begun in what was thrown away before.
Assembly Assembler::TakeDiscarded() {
  if (!state_.RxTerminator.empty()) discardedEnd_ += state_.RxPending;
  state_.RxPending.clear();
  const bool terminated =
      !state_.RxTerminator.empty() && discardedEnd_.find(state_.RxTerminator) != std::string::npos;
  if (terminated) {
    EndDiscard();
    return Assembly::DiscardEnds;
  }
  discardedEnd_.erase(0, discardedEnd_.size() - std::min(discardedEnd_.size(), BeginningOfTerminator()));
  return Assembly::Discarded;
}

bool Assembler::HoldsError() const {
  return HoldsNewly(state_.RxBuffer, errorAnswer, taken_);
}

void Assembler::Clear() {
  state_.RxBuffer.clear();
}

void Assembler::ClearAll() {
  state_.RxPending.clear();
  Clear();
  EndDiscard();
}

void Assembler::Discard(bool complete) {
  EndDiscard();
  discarding_ = !complete && !EveryArrivalIsComplete();
  const std::string_view text = state_.RxBuffer;
  if (discarding_) discardedEnd_ = text.substr(text.size() - std::min(text.size(), BeginningOfTerminator()));
  Clear();
}

void Assembler::DiscardUnfinished(Instant now, Duration quiet) {
  if (state_.RxBuffer.empty()) return;
  Discard(now - lastByte_ >= quiet);
}

// As many bytes as may belong to a terminator that is not complete.
std::size_t Assembler::BeginningOfTerminator() const {
  return std::max<std::size_t>(state_.RxTerminator.size(), 1) - 1;
}

void Assembler::EndDiscard() {
  discarding_ = false;
  discardedEnd_.clear();
}

std::string_view Assembler::StripRxTerminator(std::string_view text) const {
  const std::string& terminator = state_.RxTerminator;
  if (!terminator.empty() && text.size() > terminator.size() && text.ends_with(terminator)) {
    text.remove_suffix(terminator.size());
  }
  return text;
}

Duration QuietTime(Duration characterTime) {
  return std::max<Duration>(shortestQuiet, 4 * characterTime);
}

}  // namespace quarlin
