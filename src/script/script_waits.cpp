// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_waits.h"

#include <utility>

#include "base/scope_flag.h"

namespace quarlin {
namespace {

constexpr Duration forGood = std::chrono::hours(24 * 365);

}  // namespace

Instant ScriptWaits::End(std::int32_t milliseconds) const {
  if (milliseconds < 0) throw vbs::ScriptError(vbs::invalidCall);
  return loop_.Now() + std::chrono::milliseconds(milliseconds);
}

void ScriptWaits::Sleep(std::int32_t milliseconds) {
  runner_.Wait([] { return false; }, End(milliseconds));
}

std::optional<std::string> ScriptWaits::Answer(std::int32_t milliseconds) {
  answer_.reset();
  const ScopeFlag awaits(awaitsAnswer_);
  runner_.Wait([this] { return answer_.has_value(); }, End(milliseconds));
  return std::exchange(answer_, std::nullopt);
}

// Behind the first one no alarm fires until the script has gone on: what else has come is for its next wait.
void ScriptWaits::Completed(std::string_view text) {
  if (!awaitsAnswer_ || answer_) return;
  answer_ = text;
  runner_.EndWait();
}

void ScriptWaits::ShowModal(Form& form) {
  runner_.RequireWait();
  if (!form.HasView()) return;
  struct Shown {
    Form& form;
    explicit Shown(Form& shown) : form(shown) {
      form.SetVisible(false);  // in case it was there for everybody
      form.SetModal(true);
      form.SetVisible(true);
    }
    ~Shown() {
      form.SetVisible(false);
      form.SetModal(false);
    }
  } const shown(form);
  runner_.Wait([&form] { return !form.Visible(); }, loop_.Now() + forGood);
}

}  // namespace quarlin
