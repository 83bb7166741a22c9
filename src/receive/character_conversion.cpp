// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/character_conversion.h"

#include <fmt/format.h>

#include <utility>

#include "base/files.h"

namespace quarlin {
namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;

}  // namespace

CharacterConversion::CharacterConversion(ReceiveControls& controls, ProgramFolder folder, StatusNote& status)
    : controls_(controls), folder_(std::move(folder)), status_(status) {
  controls_.chkConvert.Click = [this] {
    if (const std::string trouble = Read(); !trouble.empty()) status_.Say(trouble);
  };
}

void CharacterConversion::FileChanged() {
  if (const std::string trouble = Read(); !trouble.empty()) status_.Mention(trouble);
}

// Returns what the user must know. While the box is not checked nothing is read, and nothing converted.
std::string CharacterConversion::Read() {
  table_ = ConversionTable();
  if (!controls_.chkConvert.Checked()) return {};
  const FileContent content = ReadFileUpTo(folder_.File(fileName), largestFile);
  if (content.error == std::errc::no_such_file_or_directory) {
    return fmt::format("there is no {} yet: nothing is converted", fileName);
  }
  if (content.error) {
    return fmt::format("{} cannot be read, nothing is converted: {}", fileName, content.error.message());
  }
  table_ = ConversionTable(content.bytes);
  if (table_.Faults().empty()) return {};
  const std::size_t more = table_.Faults().size() - 1;
  return fmt::format("{}, {}{}", fileName, table_.Faults().front(),
                     more == 0 ? "" : fmt::format(" (and {} more)", more));
}

std::string_view CharacterConversion::ForDisplay(std::string_view bytes) {
  return controls_.chkConvert.Checked() ? table_.Convert(bytes, room_) : bytes;
}

void CharacterConversion::ForChecks(std::string& text, std::size_t terminator) {
  if (!controls_.chkConvert.Checked() || !controls_.ConvertsForChecks()) return;
  const std::string end = text.substr(text.size() - terminator);
  text.resize(text.size() - terminator);
  text = std::string(table_.Convert(text, room_)) + end;
}

}  // namespace quarlin
