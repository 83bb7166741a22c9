// SPDX-License-Identifier: GPL-3.0-or-later
// The configuration files as the user meets them: config.cfg of the program folder and others of any name.
// Says what became of each in the status bar, and asks before settings that she edited are lost.
#pragma once

#include <filesystem>
#include <string>

#include "base/hook.h"
#include "base/program_folder.h"
#include "config/config_file.h"
#include "config/edited_settings.h"
#include "config/recent_files.h"
#include "controls/collection.h"
#include "controls/prompts.h"
#include "controls/status_note.h"

namespace quarlin {

struct ConfigurationParts {
  ControlCollection& controls;
  ProgramFolder folder;
  Prompts& prompts;
  StatusNote& status;
};

struct ConfigurationHooks {
  Hook<SavedConfig(const std::filesystem::path&)> write;  // SaveConfig, and what stands around it
  Hook<void()> loaded;                                    // the settings are others by now
  Hook<bool()> unasked;         // nobody is to be asked: no window, a script at work, or the program ends
  Hook<void()> currentChanged;  // Current() or Recent
};

class Configurations {
 public:
  explicit Configurations(ConfigurationParts parts);

  ConfigurationHooks Hooks;
  EditedSettings Edited;
  RecentFiles Recent;  // of those that are not config.cfg

  // What was loaded or saved last; at first config.cfg.
  const std::filesystem::path& Current() const { return current_; }
  std::string CurrentName() const;  // without its folder, for the status bar
  bool IsDefault() const { return current_ == Default(); }
  std::filesystem::path Default() const { return parts_.folder.File("config.cfg"); }

  // Into Current(), or into another file, which is it from then on. False when nothing was saved: the file
  // could not be written, or it holds something else than a configuration.
  bool Save();
  bool SaveAs(const std::filesystem::path& file);

  // A file of any name, after MayLose. Changes nothing where it is missing, damaged or no configuration. The
  // open link keeps its settings. Yields.
  void Open(const std::filesystem::path& file);

  // config.cfg, after MayLose: every record that is good for something. Yields.
  void OpenDefault();

  // config.cfg, unasked and unsaid. False when it cannot be read.
  bool LoadDefault();

  // Asks whether the settings that the user edited are to be saved, where there are any, and saves them.
  // False when they are to stay as they are. Yields. A second call while it asks is answered with false.
  bool MayLose();

 private:
  std::string Trouble(const std::filesystem::path& file) const;
  bool Load(const std::filesystem::path& file);
  void BecomesCurrent(const std::filesystem::path& file);

  ConfigurationParts parts_;
  std::filesystem::path current_;
  bool asking_ = false;
};

}  // namespace quarlin
