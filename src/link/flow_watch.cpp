// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/flow_watch.h"

#include <utility>

namespace quarlin {

std::string_view InWords(Hold hold) {
  switch (hold) {
    case Hold::None:
      break;
    case Hold::Cts:
      return "the instrument holds the line: CTS is off";
    case Hold::Xoff:
      return "the instrument holds the line: it has probably sent XOFF";
  }
  return "";
}

FlowWatch::FlowWatch(EventLoop& loop, std::function<void()> changed)
    : loop_(loop), changed_(std::move(changed)), alarm_(loop, [this] { Look(); }) {}

void FlowWatch::Opened(Device& device, const SerialSettings& settings) {
  if (!settings.ctsFlow && !settings.xonXoff) return;
  device_ = &device;
  settings_ = settings;
  handedOver_ = left_ = 0;
}

void FlowWatch::Closed() {
  alarm_.Cancel();
  device_ = nullptr;
  by_ = Hold::None;
}

void FlowWatch::Wrote(std::size_t bytes) {
  if (device_ == nullptr) return;
  handedOver_ += bytes;
  if (alarm_.IsSet()) return;
  left_ = handedOver_ - device_->Unsent();
  still_ = loop_.Now();
  alarm_.At(loop_.Now() + interval);
}

void FlowWatch::Look() {
  if (device_ == nullptr) return;
  const std::size_t unsent = device_->Unsent();
  const std::uint64_t left = handedOver_ - unsent;
  if (std::exchange(left_, left) != left) still_ = loop_.Now();
  const bool waits = unsent > 0 || !device_->Writable();
  const Hold by = Judge(unsent, waits);
  if (waits || by != Hold::None) alarm_.At(loop_.Now() + interval);
  if (std::exchange(by_, by) != by) changed_();
}

// CTS is believed also where the driver says that nothing waits: adapters keep some bytes to themselves.
Hold FlowWatch::Judge(std::size_t unsent, bool waits) const {
  const Duration still = loop_.Now() - still_;
  if (still < interval) return Hold::None;
  if (settings_.ctsFlow && CtsIsOff()) return Hold::Cts;
  const Duration needed = interval + static_cast<std::int64_t>(unsent) * CharacterTime(settings_);
  return settings_.xonXoff && waits && still >= needed ? Hold::Xoff : Hold::None;
}

bool FlowWatch::CtsIsOff() const {
  const ModemStatus status = device_->Modem();
  return !status.error && (status.lines & cts) == 0;
}

}  // namespace quarlin
