// SPDX-License-Identifier: GPL-3.0-or-later
// What a script asks of the program around it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "script/values/error.h"
#include "script/values/locale.h"
#include "script/values/patrol.h"
#include "script/values/value.h"

namespace quarlin::vbs {

class Services {
 public:
  virtual ~Services() = default;

  virtual const Clock& Time() const = 0;

  // `style` is the sum of the vb constants for buttons, icon and default button; returns the number of
  // the button (vbOK 1 to vbNo 7). Yields. Time spent here is not the script's.
  virtual int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) = 0;

  // Nothing when it was cancelled. Yields.
  virtual std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                                 std::u16string_view proposal) = 0;

  // Where relative file names begin.
  virtual std::filesystem::path Folder() const = 0;

  // What scripts begin with.
  virtual const Locale& StartLocale() const { return UsualLocale(); }

  // Asked again and again while a script runs, also within a long search of a pattern; false stops it,
  // with an error that the script cannot pass over.
  virtual bool MayGoOn() = 0;

  // From any thread, for an engine that cannot ask MayGoOn everywhere: the run is to be interrupted now.
  virtual bool MustStop() const { return false; }

  // What looks at scripts from outside; null where nobody does. Whoever calls an engine has entered it; it
  // outlives the engine.
  virtual Patrol* Outside() { return nullptr; }
};

// For work that may take long: a final error when the script is to stop.
inline void AskToGoOn(Services& services) {
  if (!services.MayGoOn()) ThrowStopped();
}

}  // namespace quarlin::vbs
