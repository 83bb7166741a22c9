// The command panel on the screen. It is built by code, since most of it are rows of the same widget.
#pragma once

#include <QScrollArea>
#include <QWidget>
#include <memory>

#include "script/frm_command.h"
#include "ui/qt/binder.h"

class QGridLayout;
class QGroupBox;

namespace quarlin {

class CommandWindow : public QWidget {
  Q_OBJECT

 public:
  // A window of its own, hidden at first. The panel outlives it.
  explicit CommandWindow(FrmCommand& panel);
  ~CommandWindow() override;

  // Takes over from the panel whether it is shown, its caption, and its place above other windows.
  void ShowState();

 protected:
  // Means Exit: switches scripting off.
  void closeEvent(QCloseEvent* event) override;

  // Of the contents: a long caption that a script sets makes the window grow, as far as the screen goes.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeRoom();
  QWidget* MakeNumbers();
  QWidget* MakeChoices();
  QWidget* MakeTexts();
  QWidget* MakeLamps();
  QWidget* MakeSwitches();
  QWidget* MakeExit();

  FrmCommand& panel_;
  QWidget* contents_;
  QSize room_;  // that the contents wanted last
  std::unique_ptr<Binder> binder_;
};

}  // namespace quarlin
