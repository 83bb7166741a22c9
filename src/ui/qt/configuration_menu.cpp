// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/configuration_menu.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>

namespace quarlin {
namespace {

QString PathText(const std::filesystem::path& path) {
  return QFile::decodeName(path.c_str());
}

std::filesystem::path PathOf(const QString& text) {
  return QFile::encodeName(text).toStdString();
}

// As a menu shows it: the user's own folder as "~", and no letter underlined.
QString EntryText(const std::filesystem::path& path) {
  QString text = PathText(path);
  if (text.startsWith(QDir::homePath() + '/')) text = '~' + text.mid(QDir::homePath().size());
  return text.replace('&', "&&");
}

}  // namespace

ConfigurationMenu::ConfigurationMenu(Configurations& configurations, QMenu& menu, QAction& save,
                                     std::function<void()> commitEdits)
    : configurations_(configurations),
      window_(*menu.parentWidget()->window()),
      recent_(new QMenu(tr("Recent &configurations"), &menu)),
      commitEdits_(std::move(commitEdits)) {
  auto* open = new QAction(tr("&Open configuration\u2026"), &menu);
  open->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
  connect(open, &QAction::triggered, this, [this] { AskForFile(false); });
  auto* saveAs = new QAction(tr("Save configuration &as\u2026"), &menu);
  saveAs->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
  connect(saveAs, &QAction::triggered, this, [this] { AskForFile(true); });
  connect(&save, &QAction::triggered, this, [this] {
    commitEdits_();
    configurations_.Save();
  });
  menu.insertAction(&save, open);
  menu.insertMenu(&save, recent_);
  menu.insertAction(menu.actions().value(menu.actions().indexOf(&save) + 1), saveAs);
  configurations_.Hooks.currentChanged = [this] {
    FillRecent();
    emit currentChanged();
  };
  FillRecent();
}

ConfigurationMenu::~ConfigurationMenu() {
  configurations_.Hooks.currentChanged = nullptr;
}

QString ConfigurationMenu::TitlePart() const {
  if (configurations_.IsDefault()) return {};
  return QStringLiteral(" \u2013 ") + PathText(configurations_.Current().filename());
}

// The dialog stands open beside the traffic. What the user chose is done when it has gone, for there may be
// another question.
void ConfigurationMenu::AskForFile(bool save) {
  auto* dialog = new QFileDialog(&window_, save ? tr("Save configuration as") : tr("Open configuration"),
                                 FolderToShow());
  dialog->setObjectName("configurationDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setNameFilters({tr("Configurations (*.cfg)"), tr("All files (*)")});
  dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  if (save) dialog->setDefaultSuffix("cfg");
  connect(
      dialog, &QFileDialog::fileSelected, this,
      [this, save](const QString& file) {
        commitEdits_();
        if (save) {
          configurations_.SaveAs(PathOf(file));
        } else {
          configurations_.Open(PathOf(file));
        }
      },
      Qt::QueuedConnection);
  dialog->open();
}

QString ConfigurationMenu::FolderToShow() const {
  return PathText(configurations_.Current().parent_path());
}

void ConfigurationMenu::FillRecent() {
  recent_->clear();
  for (const std::filesystem::path& file : configurations_.Recent.Files()) {
    const QString number = QString::number(recent_->actions().size() + 1);
    QAction* entry = recent_->addAction('&' + number + "  " + EntryText(file));
    connect(
        entry, &QAction::triggered, this,
        [this, file] {
          commitEdits_();
          configurations_.Open(file);
        },
        Qt::QueuedConnection);  // the entry goes when the list is filled anew
  }
  recent_->setEnabled(!recent_->isEmpty());
}

}  // namespace quarlin
