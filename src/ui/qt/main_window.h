// The main window on the screen: the form, bound to the model, and what belongs to the screen alone,
// such as the menus and the find box.
#pragma once

#include <QMainWindow>
#include <memory>

#include "ui/frm_main.h"
#include "ui/qt/binder.h"
#include "ui/qt/command_window.h"

namespace quarlin {

namespace Ui {
class MainWindow;
}

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
  void WireMenus();
  void WireDisplay();
  void WireFind();
  void WireTabs();
  void WireScript();
  void ShowCommandPanel();
  void Find(bool backward);
  void ShowAbout();

  FrmMain& frm_;
  std::unique_ptr<Ui::MainWindow> ui_;
  std::unique_ptr<Binder> binder_;
  std::unique_ptr<CommandWindow> commandWindow_;  // once it was shown; few runs need it
};

}  // namespace quarlin
