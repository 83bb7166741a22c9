// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/simulated_instrument.h"

#include <fmt/format.h>
#include <unistd.h>

#include <utility>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr Duration startsWithin = std::chrono::seconds(10);
constexpr Duration endsWithin = std::chrono::seconds(2);
constexpr std::size_t mostPrinted = 4096;

}  // namespace

SimulatedInstrument::SimulatedInstrument(EventLoop& loop, std::filesystem::path program,
                                         const std::filesystem::path& scratch)
    : loop_(loop),
      program_(std::move(program)),
      link_(scratch / fmt::format("quarlin-instrument.{}", getpid())),
      newsAlarm_(loop, [this] { TakeNews(); }),
      patienceAlarm_(loop, [this] { PatienceEnds(); }) {}

SimulatedInstrument::~SimulatedInstrument() = default;

std::string SimulatedInstrument::Start() {
  StartedChild started = ChildProcess::Start({program_.string(), "--link", link_.string(), "--quiet"});
  if (started.error) return started.error.message();
  child_ = std::move(started.child);
  printed_.clear();
  ready_ = asked_ = late_ = false;
  outputWatch_ = loop_.WatchReadable(child_->OutputDescriptor(), [this] { TakeOutput(); });
  endWatch_ = loop_.WatchReadable(child_->EndDescriptor(), [this] {
    endWatch_->SetEnabled(false);
    newsAlarm_.At(loop_.Now());
  });
  patienceAlarm_.At(loop_.Now() + startsWithin);
  return {};
}

void SimulatedInstrument::End() {
  if (!Runs()) return;
  asked_ = true;
  child_->AskToEnd();
  patienceAlarm_.At(loop_.Now() + endsWithin);
}

void SimulatedInstrument::TakeOutput() {
  const auto text = child_->TakeOutput();
  if (!text) return outputWatch_->SetEnabled(false);
  if (printed_.size() < mostPrinted) printed_ += *text;
  newsAlarm_.At(loop_.Now());
}

// The first line is the path of its port; complaints begin with its name.
void SimulatedInstrument::TakeNews() {
  if (child_->Ended()) return TellEnd();
  if (ready_ || asked_ || !printed_.starts_with('/') || printed_.find('\n') == std::string::npos) return;
  ready_ = true;
  patienceAlarm_.Cancel();
  Hooks.ready(link_.string());
}

void SimulatedInstrument::PatienceEnds() {
  if (asked_) return child_->MakeItEnd();
  late_ = true;
  End();
}

void SimulatedInstrument::TellEnd() {
  TakeOutput();
  const std::string why = WhyItEnded();
  newsAlarm_.Cancel();
  patienceAlarm_.Cancel();
  outputWatch_.reset();
  endWatch_.reset();
  child_.reset();
  std::error_code ignored;
  std::filesystem::remove(link_, ignored);  // one that was killed has left it
  Hooks.ended(why);
}

std::string SimulatedInstrument::WhyItEnded() const {
  if (late_) return fmt::format("its port did not come within {} s", startsWithin / std::chrono::seconds(1));
  if (asked_) return {};
  if (ready_ || printed_.empty()) return "it ended by itself";
  return std::string(TrimBlanks(OnOneLine(printed_)));
}

}  // namespace quarlin
