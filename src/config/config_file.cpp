// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/config_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "controls/controls.h"
#include "controls/setting.h"

namespace quarlin {
namespace {

constexpr std::size_t nameSize = 20;
constexpr std::size_t textSize = 100;
constexpr std::size_t indexSize = 2;
constexpr std::size_t recordSize = nameSize + textSize + indexSize;

// The control whose handler starts a script.
constexpr std::string_view scriptSwitch = "chkEnableScript";

// Files that are older than the choice of the flow control hold its box alone.
constexpr std::string_view flowBox = "chkRTS";
constexpr std::string_view flowChoice = "cboFlow";
constexpr std::string_view noFlow = "none";

struct Record {
  std::string_view name;
  std::string_view text;
  std::string_view index;
};

void AddField(std::string& records, std::string_view value, std::size_t size) {
  records += value.substr(0, size);
  if (value.size() < size) records.append(size - value.size(), ' ');
}

// Adds the controls whose text does not fit to `cut`.
std::string RecordsOf(const ControlCollection& controls, std::vector<std::string>& cut) {
  std::string records;
  for (const Control* control : controls.All()) {
    const std::optional<std::string> text = SettingText(*control);
    if (!text || TrimBlanks(control->Name()).empty()) continue;
    AddField(records, control->Name(), nameSize);
    AddField(records, *text, textSize);
    if (text->size() > textSize) cut.push_back(NameWithIndex(*control));
    AddField(records, control->Index() ? PaddedDecimal(*control->Index(), 1) : "", indexSize);
  }
  return records;
}

Record RecordAt(std::string_view record) {
  return {TrimBlanks(record.substr(0, nameSize)), TrimBlanks(record.substr(nameSize, textSize)),
          TrimBlanks(record.substr(nameSize + textSize, indexSize))};
}

bool Addresses(const Record& record, const Control& control) {
  if (record.name != control.Name()) return false;
  if (record.index.empty()) return true;
  return control.Index() && NumberOf(record.index) == *control.Index();
}

std::optional<int> SmallInteger(std::string_view text) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int32_t value = IntegerOf(text);
  if (!NumberOf(text) || value < Limits::min() || value > Limits::max()) return std::nullopt;
  return value;
}

void SetValue(Control& control, std::string_view text) {
  switch (control.Kind()) {
    case ControlKind::TextBox:
      static_cast<TextBox&>(control).SetText(text);
      break;
    case ControlKind::ComboBox:
      static_cast<ComboBox&>(control).SetText(text);
      break;
    case ControlKind::OptionButton:
      static_cast<OptionButton&>(control).SetValue(text == "1");
      break;
    case ControlKind::CheckBox:
      if (const auto value = SmallInteger(text)) static_cast<CheckBox&>(control).SetValue(*value);
      break;
    default:
      break;
  }
}

void Apply(const Record& record, const ControlCollection& controls) {
  for (Control* control : controls.All()) {
    if (Addresses(record, *control)) SetValue(*control, record.text);
  }
}

bool IsName(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '_';
  });
}

bool IsRecord(const Record& record) {
  return IsName(record.name) && (record.index.empty() || NumberOf(record.index));
}

bool NamesAny(const Record& record, const ControlCollection& controls) {
  return std::any_of(controls.All().begin(), controls.All().end(),
                     [&](const Control* control) { return Addresses(record, *control); });
}

std::optional<std::string_view> TextOf(std::string_view name, std::string_view content) {
  for (; content.size() >= recordSize; content.remove_prefix(recordSize)) {
    const Record record = RecordAt(content.substr(0, recordSize));
    if (record.name == name) return record.text;
  }
  return std::nullopt;
}

// A box alone that is not checked means no flow control at all; one that is makes its choice by itself.
bool MeansNoFlow(std::string_view content) {
  const std::optional<std::string_view> box = TextOf(flowBox, content);
  return box && SmallInteger(*box) == 0 && !TextOf(flowChoice, content);
}

}  // namespace

std::string ConfigFault(const ControlCollection& controls, std::string_view content) {
  if (content.empty()) return "it is empty";
  bool namesAny = false;
  for (std::size_t at = 0; at + recordSize <= content.size(); at += recordSize) {
    const Record record = RecordAt(content.substr(at, recordSize));
    if (!IsRecord(record)) return "it is no configuration, or damaged";
    namesAny = namesAny || NamesAny(record, controls);
  }
  if (!namesAny) return "it holds no setting of this program";
  return content.size() % recordSize == 0 ? "" : "its end is missing";
}

std::string SavedConfig::Text(std::string_view fileName) const {
  if (error) return fmt::format("{} was not saved: {}", fileName, error.message());
  std::string text = fmt::format("{} saved", fileName);
  if (cut.empty()) return text;
  const std::string_view verb = cut.size() == 1 ? "was" : "were";
  return text + fmt::format("; {} {} cut at {} characters", fmt::join(cut, ", "), verb, textSize);
}

SavedConfig SaveConfig(const ControlCollection& controls, const std::filesystem::path& file) {
  SavedConfig saved;
  saved.error = OverwriteFile(file, RecordsOf(controls, saved.cut));
  return saved;
}

bool LoadConfig(ControlCollection& controls, const std::filesystem::path& file) {
  const std::optional<std::string> content = ReadWholeFile(file);
  if (!content) return false;
  if (MeansNoFlow(*content)) Apply({flowChoice, noFlow, ""}, controls);
  std::vector<Record> atTheEnd;
  std::string_view rest = *content;
  for (; rest.size() >= recordSize; rest.remove_prefix(recordSize)) {
    const Record record = RecordAt(rest.substr(0, recordSize));
    if (record.name == scriptSwitch) {
      atTheEnd.push_back(record);
    } else {
      Apply(record, controls);
    }
  }
  for (const Record& record : atTheEnd) Apply(record, controls);
  return true;
}

}  // namespace quarlin
