// SPDX-License-Identifier: GPL-3.0-or-later
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

class ConfigurationMenu;
class DisplayFont;
class ErrorPanel;
class LayoutKeeper;
class HandInput;
class LinkRow;
class QuickPage;
class HelpWindow;
class MessageList;
class SendFileRow;
class SidePanel;
class TrafficPanel;
class WelcomeStrip;
class WindowLayout;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // The model outlives the window.
  explicit MainWindow(FrmMain& frm);
  ~MainWindow() override;

  // Shows the window where it stood and as it was when the program ended last, by position.ini, and keeps
  // that there again when it closes.
  void ShowAsLast();

 protected:
  // Asks the model to end; the loop then ends the program, and the window with it.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void PutTogether();
  QWidget* MakeLeftSide();
  void FillMenus();
  void WireMenus();
  void WireDisplay();
  void FollowWhatIsSent();
  void WireErrors();
  void ShowTrafficLine(std::uint64_t line);
  void ShowLink();
  void WirePages();
  void WireCalculator();
  void WireConfiguration();
  void RestoreValues();
  void KeepLayout();
  void ShowTitle();
  void WirePlot();
  void WireHelp();
  void WireWelcome();
  void ShowWelcomeActions();
  QString HelpHere() const;
  void ShowFolder();
  void ShowAbout();

  FrmMain& frm_;
  std::unique_ptr<Ui::MainWindow> ui_;
  LinkRow* linkRow_;
  WelcomeStrip* welcome_;
  TrafficPanel* traffic_;
  ErrorPanel* errors_;
  SendFileRow* fileRow_;
  SidePanel* side_;
  MessageList* messages_ = nullptr;
  HelpWindow* help_ = nullptr;  // from the first time that it is wanted
  std::unique_ptr<Binder> binder_;
  std::unique_ptr<DisplayFont> font_;
  std::unique_ptr<ConfigurationMenu> configurations_;
  std::unique_ptr<WindowLayout> layout_;  // once the window was shown as last
  std::unique_ptr<LayoutKeeper> keeper_;
  std::unique_ptr<Windows> windows_;
  std::unique_ptr<HandInput> hand_;
  std::unique_ptr<QuickPage> quick_;
};

}  // namespace quarlin
