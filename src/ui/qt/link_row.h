// SPDX-License-Identifier: GPL-3.0-or-later
// The settings of the link in one slim row: the port with its speed and format, or for the port NET the
// fields of the network in their place; Connect; the lamps and boxes of the modem lines. In a narrow window
// the lines stand below the settings.
#pragma once

#include <QWidget>
#include <memory>

class QAction;

namespace quarlin {

namespace Ui {
class LinkRow;
}

class LinkRow : public QWidget {
  Q_OBJECT

 public:
  explicit LinkRow(QWidget* parent = nullptr);
  ~LinkRow() override;

  // The button at the right end.
  void ShowAtEnd(QAction& action);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void WireKeys();
  void ShowFields();
  void PlaceParts();
  bool FitsInOneRow(int width) const;

  std::unique_ptr<Ui::LinkRow> ui_;
};

}  // namespace quarlin
