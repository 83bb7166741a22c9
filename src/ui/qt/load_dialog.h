// SPDX-License-Identifier: GPL-3.0-or-later
// Asks for numbers of a file or the clipboard: which number of each row, at what time; shows what is read
// from the first rows, and reads them all while everything else goes on.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <string>

#include "curves/load_choice.h"
#include "curves/loading.h"
#include "data/table_preview.h"

class QLabel;
class QMimeData;

namespace quarlin {

namespace Ui {
class LoadDialog;
}

class LoadDialog : public QDialog {
  Q_OBJECT

 public:
  using TakeNumbers = std::function<void(LoadedNumbers numbers)>;

  // Hidden at first; it can be shown again, and then keeps its settings as long as they fit. `take` gets what
  // was read, never nothing. The loop outlives it.
  LoadDialog(EventLoop& loop, TakeNumbers take, QWidget* parent);
  ~LoadDialog() override;

  // Shows it, and asks for a file, takes that file, or takes the text of the clipboard. A file that comes
  // while another is read is passed over.
  void ChooseFile();
  void TakeFile(const QString& file);
  void TakeClipboard();

  // Ends the reading; where nothing is read, closes the window.
  void reject() override;

 private:
  using OpenSource = std::function<OpenedSource()>;

  void Wire();
  void TakeText(const QMimeData& clipboard);
  void TakeSource(const QString& shown, std::string name, OpenSource openSource);
  void Refuse(const std::string& sentence);
  void ProposeWhereNothingFits();
  LoadChoice Choice() const;
  void ShowChoice(const LoadChoice& choice);
  void TimeKindChosen();
  void Changed();
  void ShowPreview(const LoadSettings& settings);
  void FillPreview(const TablePreview& preview, bool withTimes);
  void Start();
  void Ended(LoadedNumbers numbers);
  void ShowLoading(bool loading);

  EventLoop& loop_;
  TakeNumbers take_;
  std::unique_ptr<Ui::LoadDialog> ui_;
  OpenSource open_;        // empty: there is nothing to be read
  std::string name_;       // for messages
  std::string beginning_;  // of what it opens
  LoadChoice other_;       // what the fields do not show: the rate or the column
  std::unique_ptr<Loading> loading_;
  bool isLoading_ = false;
};

}  // namespace quarlin
