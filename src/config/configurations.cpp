// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/configurations.h"

#include <fmt/format.h>

#include "base/files.h"
#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::uintmax_t mostBytes = std::uintmax_t{1}
                                     << 20;  // of a file that is looked at as a configuration

std::string NameOf(const std::filesystem::path& file) {
  return BytesFromUtf8(file.filename().string());
}

bool IsMissing(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::status(file, ignored).type() == std::filesystem::file_type::not_found;
}

}  // namespace

Configurations::Configurations(ConfigurationParts parts)
    : Edited(parts.controls), parts_(std::move(parts)), current_(Default()) {}

std::string Configurations::CurrentName() const {
  return NameOf(current_);
}

bool Configurations::Save() {
  return SaveAs(current_);
}

bool Configurations::SaveAs(const std::filesystem::path& file) {
  std::error_code ignored;
  const bool empty = IsMissing(file) || std::filesystem::file_size(file, ignored) == 0;
  if (const std::string trouble = empty || file == Default() ? "" : Trouble(file); !trouble.empty()) {
    parts_.status.Say(fmt::format("{} was not overwritten: {}", NameOf(file), trouble));
    return false;
  }
  const SavedConfig saved = Hooks.write(file);
  parts_.status.Say(saved.Text(NameOf(file)));
  if (saved.error) return false;
  BecomesCurrent(file);
  return true;
}

std::string Configurations::Trouble(const std::filesystem::path& file) const {
  if (IsMissing(file)) return "it is not there";
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (!error && size > mostBytes) return "it is too large for a configuration";
  const auto content = ReadWholeFile(file);
  return content ? ConfigFault(parts_.controls, *content) : "it cannot be read";
}

void Configurations::Open(const std::filesystem::path& file) {
  std::string trouble = Trouble(file);
  if (trouble.empty()) {
    if (!MayLose()) return;
    if (!Load(file)) trouble = "it cannot be read";
  }
  if (IsMissing(file)) {
    Recent.Drop(file);
    Hooks.currentChanged();
  }
  parts_.status.Say(trouble.empty() ? fmt::format("{} loaded", NameOf(file))
                                    : fmt::format("{} was not loaded: {}", NameOf(file), trouble));
}

void Configurations::OpenDefault() {
  const std::string name = NameOf(Default());
  if (IsMissing(Default())) {
    parts_.status.Say(fmt::format("there is no {} in the program folder; nothing was loaded", name));
  } else if (MayLose()) {
    parts_.status.Say(name + (LoadDefault() ? " loaded" : " cannot be read; nothing was loaded"));
  }
}

bool Configurations::LoadDefault() {
  return Load(Default());
}

bool Configurations::Load(const std::filesystem::path& file) {
  const bool loaded = LoadConfig(parts_.controls, file);
  Hooks.loaded();
  if (loaded) BecomesCurrent(file);
  return loaded;
}

void Configurations::BecomesCurrent(const std::filesystem::path& file) {
  Edited.Settle();
  current_ = file;
  if (!IsDefault()) Recent.Use(file);
  Hooks.currentChanged();
}

bool Configurations::MayLose() {
  if (asking_) return false;
  const std::vector<std::string> edited = Edited.Captions();
  if (edited.empty() || Hooks.unasked()) return true;
  asking_ = true;
  const SaveAnswer answer = parts_.prompts.AskToSave(SaveQuestion(CurrentName(), edited), "Quarlin");
  asking_ = false;
  if (answer == SaveAnswer::Cancel || Hooks.unasked()) return false;
  return answer == SaveAnswer::Discard || Save();
}

}  // namespace quarlin
