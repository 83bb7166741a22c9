// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the objects that scripts can make, only to look at their members: nobody is asked anything.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "script/library/create_object.h"
#include "script/values/services.h"

namespace quarlin::survey {

// Outlives what it makes.
class LibraryObjects {
 public:
  // Null for what cannot be made here.
  vbs::ObjectRef Make(std::u16string_view programId) {
    try {
      return vbs::CreateLibraryObject(services_, nullptr, programId);
    } catch (const vbs::ScriptError&) {
      return {};
    }
  }

 private:
  class Silence : public vbs::Services {
   public:
    const Clock& Time() const override { return clock_; }
    int MsgBox(std::u16string_view, std::int32_t, std::u16string_view) override { return 1; }
    std::optional<std::u16string> InputBox(std::u16string_view, std::u16string_view,
                                           std::u16string_view) override {
      return std::nullopt;
    }
    std::filesystem::path Folder() const override { return {}; }
    bool MayGoOn() override { return true; }

   private:
    SystemClock clock_;
  };

  Silence services_;
};

}  // namespace quarlin::survey
