// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/edited_settings.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "controls/setting.h"

namespace quarlin {
namespace {

// What the program writes all the time, what changes with each command, and what position.ini keeps.
constexpr std::array<std::string_view, 4> nobodyMisses{"CBOSEND", "txtparser", "Text1", "ComboFont"};

}  // namespace

EditedSettings::EditedSettings(const ControlCollection& controls) : controls_(controls) {
  Settle();
}

void EditedSettings::AboutToEdit(const Control& control, std::string_view caption) {
  const auto other = movedBy_.find(&control);
  const Control* setting = other == movedBy_.end() ? &control : other->second;
  const auto known = [&](const Edit& edit) { return edit.control == setting; };
  if (std::any_of(edits_.begin(), edits_.end(), known)) return;
  if (std::find(nobodyMisses.begin(), nobodyMisses.end(), setting->Name()) != nobodyMisses.end()) return;
  if (auto before = SettingText(*setting)) edits_.push_back({setting, std::string(caption), *before});
}

void EditedSettings::Settle() {
  edits_.clear();
  settled_.clear();
  for (const Control* control : controls_.All()) {
    if (auto text = SettingText(*control)) settled_.emplace(control, std::move(*text));
  }
}

bool EditedSettings::Stands(const Edit& edit) const {
  const auto now = SettingText(*edit.control);
  const auto settled = settled_.find(edit.control);
  return now != edit.before && (settled == settled_.end() || now != settled->second);
}

std::vector<std::string> EditedSettings::Captions() const {
  std::vector<std::string> captions;
  for (const Edit& edit : edits_) {
    if (Stands(edit)) captions.push_back(edit.caption);
  }
  return captions;
}

std::string SaveQuestion(std::string_view fileName, const std::vector<std::string>& captions) {
  constexpr std::size_t mostNamed = 5;
  const std::size_t named = std::min(captions.size(), mostNamed);
  std::string text =
      fmt::format("Save the changed settings to {}?\n\nChanged: {}", fileName,
                  fmt::join(captions.begin(), captions.begin() + static_cast<int>(named), ", "));
  if (captions.size() > named) text += fmt::format(" and {} more", captions.size() - named);
  return text;
}

}  // namespace quarlin
