// The main window on the screen: its parts, put together and bound to the model, and the menus.
#pragma once

#include <QMainWindow>
#include <memory>

#include "ui/frm_main.h"
#include "ui/qt/binder.h"
#include "ui/qt/windows.h"

namespace quarlin {

namespace Ui {
class MainWindow;
}

class ErrorPanel;
class LinkRow;
class SidePanel;
class TrafficPanel;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // The model outlives the window.
  explicit MainWindow(FrmMain& frm);
  ~MainWindow() override;

 protected:
  // Asks the model to end; the loop then ends the program, and the window with it.
  void closeEvent(QCloseEvent* event) override;

 private:
  void PutTogether();
  QWidget* MakeLeftSide();
  void FillMenus();
  void WireMenus();
  void WireDisplay();
  void WireErrors();
  void ShowLink();
  void WirePages();
  void ShowAbout();

  FrmMain& frm_;
  std::unique_ptr<Ui::MainWindow> ui_;
  LinkRow* linkRow_;
  TrafficPanel* traffic_;
  ErrorPanel* errors_;
  SidePanel* side_;
  std::unique_ptr<Binder> binder_;
  std::unique_ptr<Windows> windows_;
};

}  // namespace quarlin
