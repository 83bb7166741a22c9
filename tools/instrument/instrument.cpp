// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/instrument.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace quarlin::instrument {

namespace {

using namespace std::chrono_literals;

constexpr char stx = '\x02';
constexpr char etx = '\x03';
constexpr std::size_t longestLine = 128;  // what is longer is no request that could be known
constexpr std::size_t mostWaiting = 64;   // pieces; beyond it no input is wanted

// Weights that are late by more than this are left out: the client did not read, or the machine slept.
constexpr Duration mostCatchUp = 250ms;

constexpr double shortestGap = 2;  // ms between the pieces of a split answer
constexpr double longestGap = 8;

Duration FromMilliseconds(double milliseconds) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double, std::milli>(milliseconds));
}

Duration StreamPeriod(double rate) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(1 / rate));
}

}  // namespace

Instrument::Instrument(const Settings& settings, Instant start)
    : settings_(settings),
      scale_(settings.seed, start),
      maker_(settings),
      timing_(settings.seed, Use::Timing) {
  if (settings.streamRate > 0) streamDue_ = start + StreamPeriod(settings.streamRate);
}

void Instrument::Receive(std::string_view bytes, Instant now) {
  counters_.bytesIn += bytes.size();
  for (const char byte : bytes) {
    if (CountReached()) return;
    TakeByte(byte, now);
  }
}

// CR LF needs no memory of the CR: the LF, now or much later, ends an empty line.
void Instrument::TakeByte(char byte, Instant now) {
  if (byte == '\r' || byte == '\n') {
    const auto request = TrimBlanks(line_);
    if (!request.empty()) HandleRequest(request, now);
    line_.clear();
  } else if (byte != stx && byte != etx && line_.size() < longestLine) {
    line_ += byte;
  }
}

void Instrument::HandleRequest(std::string_view request, Instant now) {
  ++counters_.requests;
  if (auto body = scale_.Answer(request, now)) {
    Enqueue(maker_.Make(std::move(*body)), now);
  } else {
    ++counters_.unknown;
    Enqueue(maker_.Refusal(), now);
  }
}

void Instrument::Enqueue(Answer answer, Instant now) {
  if (answer.pieces.empty()) {
    ++counters_.faults[static_cast<std::size_t>(Fault::Drop)];
    return;
  }
  Instant due = now + settings_.delay;
  if (settings_.jitter > Duration{0}) {
    due += std::chrono::duration_cast<Duration>(settings_.jitter * timing_.Fraction());
  }
  for (std::size_t i = 0; i < answer.pieces.size(); ++i) {
    Piece piece;
    piece.text = std::move(answer.pieces[i]);
    piece.due = due;
    piece.fault = answer.fault;
    piece.first = i == 0;
    piece.last = i + 1 == answer.pieces.size();
    if (!piece.first) piece.gap = FromMilliseconds(timing_.Between(shortestGap, longestGap));
    waiting_.push_back(std::move(piece));
  }
}

bool Instrument::WantsInput() const {
  return waiting_.size() < mostWaiting && !CountReached();
}

std::string_view Instrument::Output(Instant now) {
  const auto due = NextDue();
  if (!due || *due > now) return output_;
  if (!insideAnswer_ && streamDue_ == due) {
    SendStreamed(now);
  } else {
    SendPiece(now);
  }
  return output_;
}

void Instrument::SendPiece(Instant now) {
  const Piece piece = std::move(waiting_.front());
  waiting_.pop_front();
  if (piece.first) {
    ++counters_.answers;
    if (piece.fault) ++counters_.faults[static_cast<std::size_t>(*piece.fault)];
  }
  output_ = piece.text;
  insideAnswer_ = !piece.last;
  if (insideAnswer_) waiting_.front().due = now + waiting_.front().gap;
}

void Instrument::SendStreamed(Instant now) {
  output_ = maker_.Faultless(scale_.Weight(now));
  ++counters_.streamed;
  const Duration period = StreamPeriod(settings_.streamRate);
  *streamDue_ += period;
  if (now - *streamDue_ > mostCatchUp) *streamDue_ += period * ((now - *streamDue_) / period + 1);
}

void Instrument::Sent(std::size_t bytes) {
  output_.erase(0, bytes);
  counters_.bytesOut += bytes;
}

void Instrument::ForgetClient() {
  line_.clear();
  waiting_.clear();
  insideAnswer_ = false;
  output_.clear();
}

std::optional<Instant> Instrument::NextDue() const {
  return output_.empty() ? NextWaiting() : std::nullopt;
}

std::optional<Instant> Instrument::NextWaiting() const {
  if (waiting_.empty()) return streamDue_;
  const Instant answer = waiting_.front().due;
  return streamDue_ && !insideAnswer_ ? std::min(*streamDue_, answer) : answer;
}

bool Instrument::Finished() const {
  return CountReached() && waiting_.empty() && output_.empty();
}

bool Instrument::CountReached() const {
  return settings_.count > 0 && counters_.requests >= settings_.count;
}

}  // namespace quarlin::instrument
