// SPDX-License-Identifier: GPL-3.0-or-later
// The entries of the File menu for configurations of any name: open, save, save as, and the ones used last.
#pragma once

#include <QMenu>
#include <QObject>
#include <QString>
#include <QWidget>
#include <filesystem>
#include <functional>

#include "config/configurations.h"

namespace quarlin {

class ConfigurationMenu : public QObject {
  Q_OBJECT

 public:
  // Puts its entries around `save`, which saves from now on. `commitEdits` makes what is being typed take
  // effect. All of them outlive this object.
  ConfigurationMenu(Configurations& configurations, QMenu& menu, QAction& save,
                    std::function<void()> commitEdits);
  ~ConfigurationMenu() override;

  // What a window's title adds for the configuration; empty for config.cfg.
  QString TitlePart() const;

  // Takes over the list of recent files.
  void FillRecent();

 signals:
  void currentChanged();

 private:
  void AskForFile(bool save);
  QString FolderToShow() const;

  Configurations& configurations_;
  QWidget& window_;
  QMenu* recent_;
  std::function<void()> commitEdits_;
};

}  // namespace quarlin
