// SPDX-License-Identifier: GPL-3.0-or-later
// A program around a script that shows nothing and answers every question with what was proposed.
#pragma once

#include "script/values/services.h"

namespace quarlin::vbs {

class QuietServices : public Services {
 public:
  const Clock& Time() const override { return clock_; }
  int MsgBox(std::u16string_view, std::int32_t, std::u16string_view) override { return 1; }
  std::optional<std::u16string> InputBox(std::u16string_view, std::u16string_view,
                                         std::u16string_view proposal) override {
    return std::u16string(proposal);
  }
  std::filesystem::path Folder() const override { return {}; }
  bool MayGoOn() override { return true; }

 private:
  SystemClock clock_;
};

}  // namespace quarlin::vbs
