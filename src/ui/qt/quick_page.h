// SPDX-License-Identifier: GPL-3.0-or-later
// The page of quick sends: its table and buttons, and the keys that fire rows from anywhere in the window.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QShortcut>
#include <QTableView>
#include <memory>
#include <vector>

#include "ui/frm_main.h"
#include "ui/qt/frame_pacer.h"
#include "ui/qt/quick_model.h"

namespace quarlin {

class QuickPage : public QObject {
  Q_OBJECT

 public:
  // Finds the page's widgets in the window by name. Both outlive this object.
  QuickPage(QWidget& window, FrmMain& frm);
  ~QuickPage() override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void WireButtons();
  void SetUpTable();
  bool PressedInTable(const QKeyEvent& event);
  void Refresh();
  void ShowKeys();
  QString OwnerOf(const QKeySequence& keys) const;
  int Current() const { return table_.currentIndex().row(); }
  void Fire(int row);
  void Add();
  void Remove();
  void MoveBy(int rows);

  QWidget& window_;
  FrmMain& frm_;
  QuickSends& quick_;
  QTableView& table_;
  QuickModel model_;
  FramePacer pacer_;
  std::vector<std::string> keys_;
  std::vector<std::unique_ptr<QShortcut>> shortcuts_;
};

}  // namespace quarlin
