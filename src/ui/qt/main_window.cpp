// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/text.h"
#include "calculator/frm_calculator.h"
#include "config/window_layout.h"
#include "curves/frm_plot.h"
#include "script/edit/frm_editor.h"
#include "script/script_host.h"
#include "ui/qt/about_box.h"
#include "ui/qt/configuration_menu.h"
#include "ui/qt/display_font.h"
#include "ui/qt/error_panel.h"
#include "ui/qt/hand_input.h"
#include "ui/qt/help_window.h"
#include "ui/qt/layout_keeper.h"
#include "ui/qt/link_row.h"
#include "ui/qt/message_list.h"
#include "ui/qt/mirror_actions.h"
#include "ui/qt/quick_page.h"
#include "ui/qt/send_file_row.h"
#include "ui/qt/side_panel.h"
#include "ui/qt/tint.h"
#include "ui/qt/traffic_panel.h"
#include "ui/qt/welcome_strip.h"
#include "ui/qt/widget_text.h"
#include "ui/qt/window_icon.h"
#include "ui/qt/window_state.h"
#include "ui_command_row.h"
#include "ui_counters_row.h"
#include "ui_main_window.h"
#include "ui_status_row.h"

namespace quarlin {

namespace {

constexpr int mostErrorListHeight = 10'000;  // pixels; the window allows less

// A part that is a form and nothing more.
template <typename Form>
QWidget* MakePart() {
  auto* part = new QWidget;
  Form().setupUi(part);
  return part;
}

// The widget of that name among those that the forms have made.
template <typename Widget>
Widget* Part(QWidget& window, const char* name) {
  auto* found = window.findChild<Widget*>(name);
  Q_ASSERT(found != nullptr);
  return found;
}

void RestoreRecent(const WindowLayout& layout, std::string_view section, RecentFiles& recent) {
  for (std::size_t i = RecentFiles::most; i > 0; --i) {
    const std::string file = layout.Value(section, "File" + std::to_string(i));
    if (!file.empty()) recent.Use(file);
  }
}

void KeepRecent(WindowLayout& layout, std::string_view section,
                const std::vector<std::filesystem::path>& recent) {
  for (std::size_t i = 0; i < RecentFiles::most; ++i) {
    layout.Set(section, "File" + std::to_string(i + 1), i < recent.size() ? recent[i].string() : "");
  }
}

}  // namespace

MainWindow::MainWindow(FrmMain& frm)
    : frm_(frm),
      ui_(std::make_unique<Ui::MainWindow>()),
      linkRow_(new LinkRow),
      welcome_(new WelcomeStrip(frm.Welcome(), QString::fromStdString(frm.Folder().Path().string()))),
      traffic_(new TrafficPanel),
      errors_(new ErrorPanel),
      fileRow_(new SendFileRow(frm, *this)),
      side_(new SidePanel) {
  QApplication::setWindowIcon(WindowIcon());
  QApplication::setCursorFlashTime(0);  // a blinking cursor would wake an idle program twice a second
  KeepPlaceholdersReadable();
  ui_->setupUi(this);
  PutTogether();
  font_ = std::make_unique<DisplayFont>(frm.controls.display, frm.Status(), traffic_->View());
  binder_ = std::make_unique<Binder>(frm.Collection(), *this);
  binder_->OnEdit = [this](const Control& control, std::string_view caption) {
    frm_.Configuration().Edited.AboutToEdit(control, caption);
  };
  FillMenus();
  WireMenus();
  WireDisplay();
  WireErrors();
  WirePlot();
  WireHelp();
  WireWelcome();
  WirePages();
  WireCalculator();
  WireConfiguration();
  frm.OnChanged = [this] {
    ShowTitle();
    FollowState(frm_, *this);
  };
  windows_ = std::make_unique<Windows>(frm.Forms(), *this);
  windows_->OnMade = [this](QWidget& made, bool showsMain) {
    if (showsMain) binder_->Include(made);
    if (keeper_) keeper_->Keep(made, made.objectName().toStdString());
  };
  Part<QWidget>(*this, "cboSerial")->setFocus();
}

MainWindow::~MainWindow() {
  frm_.Editor().Words.SetControlHelp(nullptr);
  frm_.OnFocusDisplay = nullptr;
  frm_.OnInsert = nullptr;
  frm_.OnTakeTraffic = nullptr;
  frm_.OnLinkChanged = nullptr;
  frm_.OnChanged = nullptr;
  frm_.OnClosing = nullptr;
  frm_.Plot().OnLineWanted = nullptr;
  frm_.Welcome().Hooks.changed = nullptr;
  frm_.Welcome().Try.Hooks.changed = nullptr;
  frm_.Welcome().Try.Hooks.connected = nullptr;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  binder_->CommitEdits();
  frm_.RequestUnload();
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) KeepPlaceholdersReadable();
  NoteState(frm_, *this, *event);
  QMainWindow::changeEvent(event);
}

void MainWindow::PutTogether() {
  auto* sides = new QSplitter(Qt::Horizontal);
  sides->setObjectName("sides");
  sides->setChildrenCollapsible(false);
  sides->addWidget(MakeLeftSide());
  sides->addWidget(side_);
  sides->setStretchFactor(0, 1);
  sides->setStretchFactor(1, 0);
  sides->setSizes({width() - side_->sizeHint().width(), side_->sizeHint().width()});

  auto* column = new QVBoxLayout(ui_->central);
  column->setContentsMargins(8, 4, 8, 4);
  column->setSpacing(6);
  column->addWidget(linkRow_);
  column->addWidget(welcome_);
  column->addWidget(sides, 1);
  column->addWidget(MakePart<Ui::CountersRow>());
  auto* status = MakePart<Ui::StatusRow>();
  column->addWidget(status);
  messages_ = new MessageList(frm_.Status(), *status);
  linkRow_->ShowAtEnd(*ui_->actionSidePanel);
}

// The traffic with the errors below it, and the command row.
QWidget* MainWindow::MakeLeftSide() {
  auto* split = new QSplitter(Qt::Vertical);
  split->setObjectName("trafficAndErrors");
  split->setChildrenCollapsible(false);
  split->addWidget(traffic_);
  split->addWidget(errors_);
  split->setStretchFactor(0, 1);
  split->setStretchFactor(1, 0);

  auto* left = new QWidget;
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addWidget(split, 1);
  column->addWidget(fileRow_);
  column->addWidget(MakePart<Ui::CommandRow>());
  return left;
}

void MainWindow::FillMenus() {
  ui_->menuView->insertActions(ui_->actionErrorList, traffic_->ViewActions());
  ui_->menuView->insertSeparator(ui_->actionErrorList);
  ui_->menuView->insertActions(ui_->actionErrorList, font_->Actions());
  ui_->menuView->insertSeparator(ui_->actionErrorList);
  ui_->menuEdit->addActions(traffic_->FindActions());
  ui_->menuEdit->addSeparator();
  ui_->menuEdit->addActions(traffic_->CopyActions());
  ui_->menuFile->insertAction(ui_->actionReport, traffic_->SaveAction());
  AddMirrors(*this);
  ui_->menuScript->addAction(ui_->actionEditHere);
  ui_->menuTest->addSeparator();
  ui_->menuTest->addAction(ui_->actionCalculator);
  ui_->menuSend->insertAction(ui_->menuSend->actions().first(), ui_->actionCommand);
}

void MainWindow::WireMenus() {
  const std::pair<QAction*, const char*> buttons[] = {
      {ui_->actionLoad, "cmdSave_1"},
      {ui_->actionReport, "cmdReport"},
      {ui_->actionErrorList, "cmdErr"},
  };
  for (const auto& [action, name] : buttons) {
    connect(action, &QAction::triggered, Part<QPushButton>(*this, name), &QPushButton::click);
  }
  auto* command = Part<QComboBox>(*this, "CBOSEND");
  connect(ui_->actionSendFile, &QAction::triggered, fileRow_, &SendFileRow::Choose);
  frm_.Editor().Words.SetControlHelp([this](const Control& control) {
    const auto* widget = findChild<QWidget*>(WidgetName(control));
    return widget == nullptr ? std::string() : widget->toolTip().toStdString();
  });
  connect(ui_->actionEditHere, &QAction::triggered, this, [this] { frm_.Editor().Open(); });
  connect(ui_->actionQuit, &QAction::triggered, this, &MainWindow::close);
  connect(ui_->actionSidePanel, &QAction::toggled, side_, &QWidget::setVisible);
  connect(ui_->actionCommand, &QAction::triggered, command, [command] {
    command->setFocus(Qt::ShortcutFocusReason);
    command->lineEdit()->selectAll();
  });
  connect(command->lineEdit(), &QLineEdit::returnPressed, this, [this, command] {
    Part<QPushButton>(*this, "cmdSend")->click();
    command->lineEdit()->selectAll();  // the next command takes its place
  });
}

void MainWindow::WireDisplay() {
  Part<QToolButton>(*this, "smallerTextButton")->setDefaultAction(&font_->Smaller());
  Part<QToolButton>(*this, "largerTextButton")->setDefaultAction(&font_->Larger());
  FollowWhatIsSent();
  connect(traffic_, &TrafficPanel::clearRequested, this, [this] { frm_.controls.display.txtric.Clear(); });
  hand_ = std::make_unique<HandInput>(frm_, traffic_->View(), *Part<QComboBox>(*this, "CBOSEND"));
  connect(traffic_, &TrafficPanel::told, this,
          [this](const QString& words) { frm_.Status().Say(BytesOf(words)); });
  quick_ = std::make_unique<QuickPage>(*this, frm_);
  frm_.OnFocusDisplay = [this] { traffic_->View().setFocus(); };
  frm_.OnLinkChanged = [this] { ShowLink(); };
  ShowLink();
}

// Who sends wants to see what comes of it, also after a look at what was before.
void MainWindow::FollowWhatIsSent() {
  ReceivedTextView& view = traffic_->View();
  connect(Part<QPushButton>(*this, "cmdSend"), &QPushButton::clicked, &view, &ReceivedTextView::Follow);
  connect(Part<QPushButton>(*this, "Command1"), &QPushButton::clicked, &view, [this, &view] {
    if (frm_.Running()) view.Follow();
  });
}

// With no link open the display says how to begin. Who has just connected goes on with a command; a link that
// comes back by itself takes the keyboard from nobody.
void MainWindow::ShowLink() {
  const bool open = frm_.LinkOpen();
  traffic_->View().SetHint(
      open ? QString()
           : tr("Choose the port at the top left, or NET for a network.\n"
                "Press Connect, or Enter in the port box.\n"
                "Then type a command below: Enter sends it once, Start again and again."));
  if (open && linkRow_->isAncestorOf(focusWidget())) ui_->actionCommand->trigger();
}

void MainWindow::WireErrors() {
  errors_->Show(frm_.Errors());
  connect(errors_, &ErrorPanel::lineWanted, this, &MainWindow::ShowTrafficLine);
  connect(errors_, &ErrorPanel::told, this,
          [this](const QString& words) { frm_.Status().Say(BytesOf(words)); });
}

void MainWindow::ShowTrafficLine(std::uint64_t line) {
  if (!traffic_->View().ShowLine(line)) frm_.Status().Say("what was sent then has left the display");
}

void MainWindow::WireCalculator() {
  connect(ui_->actionCalculator, &QAction::triggered, this, [this] { frm_.Calculator().SetVisible(true); });
  frm_.OnTakeTraffic = [this] { return traffic_->View().SelectedBytes(); };
  auto* command = Part<QComboBox>(*this, "CBOSEND")->lineEdit();
  frm_.OnInsert = [this, command](std::string_view text) {
    const QString inserted = EditText(text);
    if (command->text().size() + inserted.size() > command->maxLength()) return false;
    command->deselect();                                      // what was sent last stays
    if (command->cursorPosition() == 0) command->end(false);  // there it stands when nobody has moved it
    command->insert(inserted);
    frm_.controls.cycle.CBOSEND.SetText(BytesOf(command->text()));
    return true;
  };
}

// Alt+1 and so on: their names would use up the letters that the settings on them need.
void MainWindow::WirePages() {
  for (int i = 0; i < side_->PageCount(); ++i) {
    auto* show = new QAction(side_->PageTitle(i), this);
    show->setShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + i)));
    connect(show, &QAction::triggered, this, [this, i] {
      ui_->actionSidePanel->setChecked(true);
      side_->ShowPage(i);
    });
    ui_->menuPages->addAction(show);
  }
}

void MainWindow::WireConfiguration() {
  configurations_ = std::make_unique<ConfigurationMenu>(frm_.Configuration(), *ui_->menuFile,
                                                        *ui_->actionSave, [this] { binder_->CommitEdits(); });
  connect(configurations_.get(), &ConfigurationMenu::currentChanged, this, &MainWindow::ShowTitle);
  ShowTitle();
}

void MainWindow::ShowTitle() {
  setWindowTitle(ShownText(frm_.Caption()) + configurations_->TitlePart());
}

void MainWindow::ShowAsLast() {
  layout_ = std::make_unique<WindowLayout>(frm_.Folder().File("position.ini"));
  keeper_ = std::make_unique<LayoutKeeper>(*layout_);
  if (!layout_->Trouble().empty()) frm_.Status().Say(layout_->Trouble());
  RestoreValues();
  if (!keeper_->Keep(*this, frm_.Name())) {
    const auto screens = UsableScreens();
    const FirstPlace first = FirstPlaceOn(screens.empty() ? Place{0, 0, width(), height()} : screens.front());
    setGeometry(first.place.x, first.place.y, first.place.width, first.place.height);
    if (first.maximised) setWindowState(Qt::WindowMaximized);
  }
  frm_.OnClosing = [this] { KeepLayout(); };
  show();
}

// The font, the error list and the recent files. A configuration that is loaded later has the last word about
// the font.
void MainWindow::RestoreValues() {
  const std::string font = BytesFromUtf8(layout_->Value("Display", "Font"));
  if (!font.empty()) frm_.controls.display.ComboFont.SetText(font);
  const auto size = layout_->Numbers("Display", "FontSize", DisplayFont::smallest, DisplayFont::largest);
  if (size && size->size() == 1) font_->SetSize(size->front());
  const auto height = layout_->Numbers("ErrorList", "Height", 0, mostErrorListHeight);
  if (height && height->size() == 1) errors_->SetOpenHeight(height->front());
  if (layout_->Value("ErrorList", "Open") == "1") frm_.controls.test.cmdErr.Click();
  RestoreRecent(*layout_, "Recent", frm_.Configuration().Recent);
  RestoreRecent(*layout_, "RecentScripts", frm_.Editor().Recent);
  configurations_->FillRecent();
}

void MainWindow::KeepLayout() {
  keeper_->Remember();
  layout_->Set("Display", "Font", Utf8FromBytes(frm_.controls.display.ComboFont.Text()));
  layout_->Set("Display", "FontSize", std::to_string(font_->Size()));
  layout_->Set("ErrorList", "Open", frm_.controls.display.lstError.Visible() ? "1" : "0");
  layout_->Set("ErrorList", "Height", std::to_string(errors_->OpenHeight()));
  KeepRecent(*layout_, "Recent", frm_.Configuration().Recent.Files());
  KeepRecent(*layout_, "RecentScripts", frm_.Editor().Recent.Files());
  if (const auto error = layout_->Save()) frm_.OnTrouble("position.ini was not saved: " + error.message());
}

void MainWindow::WirePlot() {
  FrmPlot& plot = frm_.Plot();
  connect(ui_->actionPlot, &QAction::triggered, this, [&plot] { plot.Open(); });
  connect(ui_->actionOpenNumbers, &QAction::triggered, this, [&plot] { plot.OpenNumbers(); });
  plot.OnLineWanted = [this](std::uint64_t line) { ShowTrafficLine(line); };
}

void MainWindow::WireHelp() {
  connect(ui_->actionHelp, &QAction::triggered, this, [this] {
    if (help_ == nullptr) {
      help_ = new HelpWindow(this);
      if (keeper_) keeper_->Keep(*help_, "frmHelp");
    }
    help_->Open(HelpHere());
  });
  connect(ui_->actionFolder, &QAction::triggered, this, &MainWindow::ShowFolder);
  connect(ui_->actionAbout, &QAction::triggered, this, &MainWindow::ShowAbout);
  connect(ui_->actionMessages, &QAction::triggered, messages_, &MessageList::Open);
}

void MainWindow::WireWelcome() {
  FirstSteps& steps = frm_.Welcome();
  steps.Hooks.changed = [this] { welcome_->ShowOffer(); };
  steps.Try.Hooks.changed = [this] { ShowWelcomeActions(); };
  steps.Try.Hooks.connected = [this] { ui_->actionCommand->trigger(); };
  connect(welcome_, &WelcomeStrip::gaveKeyboardUp, this,
          [this] { Part<QWidget>(*this, "cboSerial")->setFocus(); });
  connect(ui_->actionTry, &QAction::triggered, this, [&steps] { steps.Try.Toggle(); });
  connect(ui_->actionCopyExamples, &QAction::triggered, this, [&steps] { steps.CopyExamples(); });
  connect(ui_->menuHelp, &QMenu::aboutToShow, this, &MainWindow::ShowWelcomeActions);
}

// What is not installed is grey, and its tool tip says so.
void MainWindow::ShowWelcomeActions() {
  FirstSteps& steps = frm_.Welcome();
  const auto show = [](QAction* action, const std::string& trouble, const QString& toolTip) {
    action->setEnabled(trouble.empty());
    action->setToolTip(trouble.empty() ? toolTip : ShownText(trouble));
  };
  show(ui_->actionTry, steps.Try.Runs() ? "" : steps.Try.Trouble(),
       tr("Starts a simulated scale and connects it; a second time puts it away, and the port is yours "
          "again"));
  ui_->actionTry->setChecked(steps.Try.Runs());
  show(ui_->actionCopyExamples, steps.ExamplesTrouble(),
       tr("Settings, commands and scripts to begin with, for the program folder"));
}

// The page about what has the keyboard; nothing where that says little. Another window names it in its
// property "helpPage".
QString MainWindow::HelpHere() const {
  if (const QWidget* other = QApplication::activeWindow(); other != nullptr && other != this) {
    return other->property("helpPage").toString();
  }
  const QWidget* focus = focusWidget();
  if (linkRow_->isAncestorOf(focus)) return "docs/connections.md";
  if (traffic_->isAncestorOf(focus)) return "docs/display.md";
  if (errors_->isAncestorOf(focus)) return "docs/results.md";
  if (!side_->isAncestorOf(focus)) return {};
  static const QMap<QString, QString> ofPages = {
      {"Transmit", "docs/cycle.md"}, {"Receive", "docs/checking.md"}, {"Macro", "docs/macros.md"},
      {"Test", "docs/checking.md"},  {"Quick", "docs/sending.md"},    {"Script", "docs/scripts.md"},
      {"Logs", "docs/logs.md"}};
  return ofPages.value(side_->PageTitle(side_->CurrentPage()));
}

void MainWindow::ShowFolder() {
  const QString path = QString::fromStdString(frm_.Folder().Path().string());
  const bool opened = QDesktopServices::openUrl(QUrl::fromLocalFile(path));
  frm_.Status().Say("the program folder is " + frm_.Folder().Path().string() +
                    (opened ? "" : "; no program was found to show it"));
}

void MainWindow::ShowAbout() {
  MakeAboutBox(*this)->open();  // traffic goes on behind it
}

}  // namespace quarlin
