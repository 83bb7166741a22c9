// SPDX-License-Identifier: GPL-3.0-or-later
// The errors below the traffic: a header that counts them, with the report, and the table that it opens and
// closes.
#pragma once

#include <QWidget>
#include <cstdint>
#include <memory>

#include "testmodes/error_rows.h"
#include "ui/qt/frame_pacer.h"

namespace quarlin {

namespace Ui {
class ErrorPanel;
}

class ErrorPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ErrorPanel(QWidget* parent = nullptr);
  ~ErrorPanel() override;

  // Once. `rows` outlives the panel.
  void Show(ErrorRows& rows);

  // How high the panel is while its table is open, in the toolkit's pixels; 0 for some rows.
  int OpenHeight() const;
  void SetOpenHeight(int height) { height_ = height; }

 signals:
  // The user wants to see the exchange that begins in that line of the display's ring.
  void lineWanted(std::uint64_t line);

  // Something was copied: what, in words.
  void told(const QString& words);

 private:
  void Refresh();
  void ShowCount();
  void TableShown(bool open);
  void ShowTools(bool open);
  void TakeHeight(int wanted);
  void OfferKinds();
  void ChooseKind();
  void Copy();
  void Clear();

  std::unique_ptr<Ui::ErrorPanel> ui_;
  ErrorRows* rows_ = nullptr;
  FramePacer pacer_;
  int height_ = 0;  // of the open panel when it was closed last
};

}  // namespace quarlin
