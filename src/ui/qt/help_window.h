// SPDX-License-Identifier: GPL-3.0-or-later
// The documentation in a window of its own: the pages in a list by chapters, a page, and a search over all of
// them.
#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "ui/qt/help_pages.h"

class QListWidgetItem;

namespace quarlin {

namespace Ui {
class HelpWindow;
}

class HelpWindow : public QWidget {
  Q_OBJECT

 public:
  explicit HelpWindow(QWidget* parent = nullptr);
  ~HelpWindow() override;

  // Comes to the front, on the page where it was left; `file` chooses another, such as "docs/macros.md".
  void Open(const QString& file = {});

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FillPages();
  void AddChapter(const QString& title);
  QListWidgetItem* ItemOf(int page) const;
  void WireTools();
  void WireSearch();
  void ShowPage(int number);
  void PageShown(const QUrl& url);
  void Search(const QString& words);
  void ShowHits(const std::vector<HelpHit>& hits);
  void ShowHit(int number);
  void NextHit(int step);
  void EndSearch();

  std::unique_ptr<Ui::HelpWindow> ui_;
  std::vector<HelpPage> pages_;
  std::optional<HelpIndex> index_;  // from the first search on
  std::vector<HelpHit> hits_;
};

}  // namespace quarlin
