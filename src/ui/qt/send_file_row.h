// SPDX-License-Identifier: GPL-3.0-or-later
// The row above the command that shows while there is a file to be sent; files are chosen from the menu or
// dropped onto the window.
#pragma once

#include <QWidget>
#include <memory>

#include "ui/frm_main.h"

namespace quarlin {

namespace Ui {
class SendFileRow;
}

class SendFileRow : public QWidget {
  Q_OBJECT

 public:
  // `window` is where files are dropped. Both outlive this object.
  SendFileRow(FrmMain& frm, QWidget& window);
  ~SendFileRow() override;

  // Asks for a file and offers it.
  void Choose();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Offer(const QString& file);

  FrmMain& frm_;
  std::unique_ptr<Ui::SendFileRow> ui_;
};

}  // namespace quarlin
