// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/main_window.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <map>
#include <set>

#include "base/files.h"
#include "calculator/frm_calculator.h"
#include "curves/frm_plot.h"
#include "script/edit/frm_editor.h"
#include "script/script_host.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/qt/elided_label.h"
#include "ui/qt/help_pages.h"
#include "ui/qt/lamp.h"
#include "ui/qt/received_text_view.h"
#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

struct Rig {
  Rig() {
    frm.Load("");
    window.resize(1024, 680);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    ShowChanges();
  }

  // Returns once the window shows what the controls hold, laid out.
  void ShowChanges() {
    QTRY_VERIFY(frm.Collection().Changes().Empty());
    constexpr int layoutsInsideEachOther = 20;  // each turn lays out one further outwards
    for (int i = 0; i < layoutsInsideEachOther; ++i) QCoreApplication::processEvents();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *window.findChild<Widget*>(name);
  }

  // Calls for the window as it is with each tab in front.
  void OnEachTab(const std::function<void(const QString& title)>& look) {
    auto& tabs = Find<QTabWidget>("tabs");
    for (int i = 0; i < tabs.count(); ++i) {
      tabs.setCurrentIndex(i);
      ShowChanges();
      look(tabs.tabText(i));
    }
  }

  QList<QWidget*> WindowsWithControlsOfTheMainOne() {
    QList<QWidget*> windows;
    frm.Plot().Open();
    frm.Calculator().SetVisible(true);
    for (QWidget* beside : QApplication::topLevelWidgets()) {
      if (beside->objectName() == "FrmPlot" || beside->objectName() == "FrmCalculator") windows += beside;
    }
    return windows;
  }

  TempFolder folder;
  VirtualLoop loop;
  NoDevices devices;
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{{loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }}};
  MainWindow window{frm};
};

bool IsOfKind(const QWidget& widget, ControlKind kind) {
  static const std::map<ControlKind, const char*> classes = {
      {ControlKind::TextBox, "QLineEdit"},
      {ControlKind::ComboBox, "QComboBox"},
      {ControlKind::CheckBox, "QCheckBox"},
      {ControlKind::OptionButton, "QRadioButton"},
      {ControlKind::CommandButton, "QPushButton"},
      {ControlKind::Label, "QLabel"},
      {ControlKind::Frame, "QWidget"},
      {ControlKind::Shape, "quarlin::Lamp"},
      {ControlKind::ScrollBar, "QAbstractSlider"},
      {ControlKind::ListBox, "QListWidget"},
      {ControlKind::RichTextBox, "quarlin::ReceivedTextView"},
  };
  const bool isErrorTable = kind == ControlKind::ListBox && widget.inherits("quarlin::ErrorTable");
  return isErrorTable || widget.inherits(classes.at(kind));
}

bool IsPartOfAnother(const QWidget& widget) {
  for (const QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
    if (parent->inherits("QComboBox") || parent->inherits("QLineEdit") || parent->inherits("QTabBar") ||
        parent->inherits("QMenuBar") || parent->inherits("QTableView") || parent->inherits("QTreeView") ||
        parent->inherits("QToolBar") || parent->inherits("quarlin::ReceivedTextView")) {
      return true;
    }
  }
  return widget.objectName().startsWith("qt_") || widget.inherits("QScrollBar");
}

// What the user can set or press.
std::vector<QWidget*> Inputs(const QWidget& window) {
  std::vector<QWidget*> inputs;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isInput = qobject_cast<QLineEdit*>(widget) || qobject_cast<QComboBox*>(widget) ||
                         qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget) ||
                         qobject_cast<QAbstractItemView*>(widget) || qobject_cast<ReceivedTextView*>(widget);
    if (isInput && widget->window() == &window && !IsPartOfAnother(*widget)) inputs.push_back(widget);
  }
  return inputs;
}

// The text of a widget that has one, with its mnemonic.
QString TextOf(const QWidget& widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
  if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) return group->title();
  const auto* label = qobject_cast<const QLabel*>(&widget);
  return label != nullptr && label->buddy() != nullptr ? label->text() : QString();
}

std::optional<std::string> CaptionOf(const Control& control) {
  switch (control.Kind()) {
    case ControlKind::CheckBox:
      return static_cast<const CheckBox&>(control).Caption();
    case ControlKind::OptionButton:
      return static_cast<const OptionButton&>(control).Caption();
    case ControlKind::CommandButton:
      return static_cast<const CommandButton&>(control).Caption();
    case ControlKind::Frame:
      return static_cast<const Frame&>(control).Caption();
    default:
      return std::nullopt;
  }
}

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void formAndModelHoldTheSameControls() {
    Rig rig;
    const QList<QWidget*> besides = rig.WindowsWithControlsOfTheMainOne();
    std::set<QString> names = {
        "findText",          "sidePanelButton",    "errorKindBox",      "copyErrorsButton",
        "clearErrorsButton", "smallerTextButton",  "largerTextButton",  "quickSendButton",
        "quickAddButton",    "quickTable",         "quickRemoveButton", "quickUpButton",
        "quickDownButton",   "copyExamplesButton", "tryButton",         "noThanksButton"};
    // Saved with a configuration, but without a use, or shown as a part of another: chkRTS of cboFlow.
    const std::set<QString> outOfSight = {"txtConv_1", "txtConv_3", "txtConv_5", "txtConv_7", "chkRTS"};
    for (const Control* control : rig.frm.Collection().All()) {
      if (control->Kind() == ControlKind::Timer) continue;
      const QString name = WidgetName(*control);
      QVERIFY2(names.insert(name).second, qPrintable("twice in the model: " + name));
      if (outOfSight.contains(name)) continue;
      auto widgets = rig.window.findChildren<QWidget*>(name);
      for (const QWidget* beside : besides) widgets += beside->findChildren<QWidget*>(name);
      QVERIFY2(widgets.size() == 1, qPrintable("not once in the form: " + name));
      QVERIFY2(IsOfKind(*widgets[0], control->Kind()), qPrintable("another kind of widget: " + name));
    }
    for (const QWidget* widget : Inputs(rig.window)) {
      const QString mirrored = widget->property("mirrors").toString();
      QVERIFY2(names.contains(mirrored.isEmpty() ? widget->objectName() : mirrored),
               qPrintable("not in the model: " + widget->objectName()));
    }
  }

  void captionsAreTheModels() {
    Rig rig;
    for (const Control* control : rig.frm.Collection().All()) {
      const auto caption = CaptionOf(*control);
      if (!caption || rig.window.findChild<QWidget*>(WidgetName(*control)) == nullptr) continue;
      const auto& widget = rig.Find<QWidget>(qPrintable(WidgetName(*control)));
      const QString shown = TextOf(widget).isEmpty() ? widget.accessibleName() : TextOf(widget);
      QCOMPARE(WithoutMnemonic(shown), WithoutMnemonic(ShownText(*caption)));
    }
  }

  void aPortThatWasLoadedHasItsFields() {
    Rig rig;
    for (const auto& [port, network] : {std::pair("NET", true), std::pair("ttyUSB0", false)}) {
      rig.frm.controls.connection.cboSerial.SetText(port);
      rig.ShowChanges();
      QCOMPARE(rig.Find<QWidget>("networkFields").isVisible(), network);
      QCOMPARE(rig.Find<QWidget>("serialFields").isVisible(), !network);
      rig.frm.controls.connection.txtBind.SetEnabled(false);  // as a Connect does
      rig.ShowChanges();
      QVERIFY(!rig.Find<QWidget>("txtBind").isVisible());
    }
  }

  void noMnemonicServesTwo() {
    Rig rig;
    rig.OnEachTab([&](const QString& title) {
      std::map<QChar, QString> owners;
      const auto claim = [&](const QString& text) {
        const QChar letter = MnemonicOf(text).toLower();
        if (letter.isNull()) return;
        const QString& owner = owners.try_emplace(letter, text).first->second;
        QVERIFY2(owner == text, qPrintable(title + ": " + owner + " and " + text));
      };
      for (const QAction* menu : rig.window.menuBar()->actions()) claim(menu->text());
      for (const QWidget* widget : rig.window.findChildren<QWidget*>()) {
        if (widget->isVisible()) claim(TextOf(*widget));
      }
    });
    for (const QAction* menu : rig.window.menuBar()->actions()) {
      std::set<QChar> letters;
      for (const QAction* action : menu->menu()->actions()) {
        if (!action->isSeparator()) {
          QVERIFY2(letters.insert(MnemonicOf(action->text()).toLower()).second, qPrintable(action->text()));
        }
      }
    }
  }

  void everyInputHasANameAndAnExplanation() {
    Rig rig;
    std::set<const QWidget*> named;
    for (const QLabel* label : rig.window.findChildren<QLabel*>()) named.insert(label->buddy());
    for (const QWidget* widget : Inputs(rig.window)) {
      const bool hasName =
          named.contains(widget) || !widget->accessibleName().isEmpty() || !TextOf(*widget).isEmpty();
      QVERIFY2(hasName, qPrintable(widget->objectName()));
      if (widget->objectName() == "txtric") continue;  // the tip would hang over the traffic
      QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    }
  }

  void windowsBesideItAreNamedAndExplained() {
    Rig rig;
    rig.frm.Plot().Open();
    rig.frm.Calculator().SetVisible(true);
    rig.frm.Script().List().SetVisible(true);
    rig.frm.Editor().Open();
    int seen = 0;
    for (const char* name : {"FrmPlot", "loadDialog", "FrmCalculator", "FrmScript", "FrmEditor"}) {
      for (const QWidget* window : QApplication::allWidgets()) {
        if (window->objectName() != name) continue;
        ++seen;
        std::set<QChar> letters;
        std::set<const QWidget*> named;
        const auto claim = [&](const QString& text) {
          const QChar letter = MnemonicOf(text).toLower();
          QVERIFY2(letter.isNull() || letters.insert(letter).second, qPrintable(name + (": " + text)));
        };
        for (const QTabBar* tabs : window->findChildren<QTabBar*>()) {
          for (int i = 0; i < tabs->count(); ++i) claim(tabs->tabText(i));
        }
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
          if (widget->window() == window) claim(TextOf(*widget));
          if (const auto* label = qobject_cast<const QLabel*>(widget)) named.insert(label->buddy());
        }
        for (const QWidget* widget : Inputs(*window)) {
          QVERIFY2(
              named.contains(widget) || !widget->accessibleName().isEmpty() || !TextOf(*widget).isEmpty(),
              qPrintable(widget->objectName()));
          QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
        }
        QVERIFY2(IsHelp(QUrl("qrc:/help/" + window->property("helpPage").toString())), name);
      }
    }
    QCOMPARE(seen, 5);
    QTest::keyClick(rig.WindowsWithControlsOfTheMainOne().back(), Qt::Key_F1);
    QVERIFY(rig.Find<QWidget>("helpWindow").isVisible());
  }

  void everyPageOfThePanelHasItsHelp() {
    Rig rig;
    rig.OnEachTab([&](const QString& title) {
      rig.window.activateWindow();
      QVERIFY(QTest::qWaitForWindowActive(&rig.window));
      rig.Find<QTabWidget>("tabs").tabBar()->setFocus();
      rig.Find<QAction>("actionHelp").trigger();
      const QUrl page = rig.Find<QTextBrowser>("helpPage").source();
      QVERIFY2(IsHelp(page) && page.fileName() != "guide.md", qPrintable(title + ": " + page.toString()));
    });
  }

  void nothingIsClippedInASmallWindow() {
    Rig rig;
    rig.frm.controls.test.cmdErr.Click();
    rig.OnEachTab([&](const QString& title) {
      QCOMPARE(rig.window.size(), QSize(1024, 680));
      for (const QWidget* widget : rig.window.findChildren<QWidget*>()) {
        const bool hasText = qobject_cast<const QLabel*>(widget) ||
                             qobject_cast<const QAbstractButton*>(widget) ||
                             qobject_cast<const QComboBox*>(widget) || qobject_cast<const QGroupBox*>(widget);
        if (!widget->isVisible() || !hasText || qobject_cast<const ElidedLabel*>(widget)) continue;
        const QSize needed =
            widget->property("characters").isValid() ? QSize(0, 0) : widget->minimumSizeHint();
        QVERIFY2(widget->width() >= needed.width() && widget->height() >= needed.height(),
                 qPrintable(title + ": " + widget->objectName()));
      }
      for (const QScrollArea* area : rig.window.findChildren<QScrollArea*>()) {
        if (!area->isVisible()) continue;
        QVERIFY2(area->widget()->width() <= area->viewport()->width(), qPrintable(title));
      }
    });
  }

  void aClosedErrorTableGivesItsRoomToTheTraffic() {
    Rig rig;
    const auto& traffic = rig.Find<QWidget>("txtric");
    const int before = traffic.height();
    rig.frm.controls.test.cmdErr.Click();
    rig.ShowChanges();
    QVERIFY(traffic.height() < before);
    rig.frm.controls.test.cmdErr.Click();
    QTRY_COMPARE(traffic.height(), before);
  }

  void theTabKeyReachesEverythingInReadingOrder() {
    Rig rig;
    rig.frm.controls.test.cmdErr.Click();
    rig.OnEachTab([&](const QString& title) {
      rig.Find<QComboBox>("cboSerial").setFocus();
      QStringList visited;
      for (int i = 0; i < 100; ++i) {
        QWidget* focus = QApplication::focusWidget();
        visited << focus->objectName();
        QTest::keyClick(focus, Qt::Key_Tab);
        if (QApplication::focusWidget()->objectName() == "cboSerial") break;
      }
      for (const QWidget* widget : Inputs(rig.window)) {
        const bool wanted = widget->isVisible() && widget->isEnabled() && !widget->inherits("QRadioButton");
        QVERIFY2(!wanted || visited.contains(widget->objectName()),
                 qPrintable(title + ": " + widget->objectName()));
      }
      QStringList ways = {"cboSerial", "cmdsearchcom", "cmdOpen",  "findText", "txtric",   "lstError",
                          "CBOSEND",   "Command1",     "HScroll1", "tabs",     "cmdSave_0"};
      for (qsizetype i = 1; i < ways.size(); ++i) {
        const bool tabBar = ways[i] == "tabs" || ways[i - 1] == "tabs";
        QVERIFY2(tabBar || visited.indexOf(ways[i - 1]) < visited.indexOf(ways[i]), qPrintable(ways[i]));
      }
    });
  }

  void changingCountersLayNothingOutAnew() {
    struct LayoutCounter : QObject {
      bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest) ++requests;
        return false;
      }
      int requests = 0;
    } layouts;
    Rig rig;
    rig.Find<QWidget>("central").installEventFilter(&layouts);
    Counters& counters = rig.frm.controls.counters;
    for (int i = 0; i < 5; ++i) {
      for (Label* label :
           {&counters.lblsend, &counters.Label7, &counters.lblerror, &counters.lblSendperSecond,
            &counters.lbltempo, &rig.frm.controls.link.lblRxms, &counters.lbllen}) {
        label->SetInteger(99999 + i);
      }
      rig.ShowChanges();
    }
    QCOMPARE(rig.Find<QLabel>("lblsend").text(), QString("100003"));
    QCOMPARE(layouts.requests, 0);
  }

  void theLinksButtonsKeepTheirPlaceAndWorkBesideALockedPort() {
    const auto restoreFont = qScopeGuard([font = QApplication::font()] { QApplication::setFont(font); });
    QApplication::setFont(QFont(QApplication::font().family(), 16));  // no caption fits by chance
    Rig rig;
    auto& link = rig.frm.controls.connection;
    link.Frame1.SetEnabled(false);
    const std::tuple<CommandButton*, const char*, QStringList> buttons[] = {
        {&link.cmdOpen, "cmdOpen", {"Disconnect", "Cancel", "Connect"}},
        {&link.cmdsearchcom, "cmdsearchcom", {"Stop search", "Search"}},
    };
    for (const auto& [control, name, captions] : buttons) {
      auto& button = rig.Find<QPushButton>(name);
      const QRect place = button.geometry();
      for (const QString& caption : captions) {
        control->SetCaption(caption.toStdString());
        rig.ShowChanges();
        QCOMPARE(WithoutMnemonic(button.text()), caption);
        QCOMPARE(button.geometry(), place);
        QVERIFY2(button.width() >= button.sizeHint().width(), qPrintable(caption));
        QVERIFY2(button.isEnabled(), name);
      }
    }
  }

  void aLampOfALineTellsItsState() {
    Rig rig;
    auto& lamp = rig.Find<Lamp>("shpLine_1");
    QTRY_COMPARE(lamp.accessibleDescription(), QString("off"));
    rig.frm.controls.modem.shpLine[1].SetFillColor(colors::green);
    QTRY_COMPARE(lamp.accessibleDescription(), QString("on"));
    QVERIFY(lamp.toolTip().endsWith("Now: on"));
  }

  void aLongStatusDoesNotWidenTheWindow() {
    Rig rig;
    const int before = rig.window.minimumSizeHint().width();
    rig.frm.controls.status.lblStatusNote.SetCaption(std::string(2000, 'x'));
    rig.ShowChanges();
    QCOMPARE(rig.window.width(), 1024);
    QCOMPARE(rig.window.minimumSizeHint().width(), before);
  }

  void aFailedConnectIsSeen() {
    Rig rig;
    auto& port = rig.Find<QComboBox>("cboSerial");
    const QColor plain = port.palette().color(QPalette::Base);
    rig.Find<QPushButton>("cmdOpen").click();
    QTRY_VERIFY(port.palette().color(QPalette::Base) != plain);
    QVERIFY(!rig.Find<QLabel>("lblStatusNote").text().isEmpty());
  }

  void enterSendsTheCommand() {
    Rig rig;
    std::string sent;
    rig.frm.controls.cycle.cmdSend.OnClick = nullptr;
    rig.frm.controls.cycle.cmdSend.OnClick = [&] { sent = rig.frm.controls.cycle.CBOSEND.Text(); };
    auto& command = rig.Find<QComboBox>("CBOSEND");
    QTest::keyClick(&rig.window, Qt::Key_L, Qt::ControlModifier);
    QVERIFY(command.lineEdit()->hasFocus());
    QTest::keyClicks(&command, "ZERO");
    QTest::keyClick(&command, Qt::Key_Return);
    QCOMPARE(sent, std::string("ZERO"));
  }

  void savingTakesWhatIsStillBeingTyped() {
    Rig rig;
    rig.Find<QTabWidget>("tabs").setCurrentIndex(2);
    auto& maximum = rig.Find<QLineEdit>("txtMax");
    maximum.setFocus();
    maximum.selectAll();
    QTest::keyClicks(&maximum, "4711");
    QTest::keyClick(&maximum, Qt::Key_S, Qt::ControlModifier);
    const auto saved = ReadWholeFile(rig.folder.Path() / "config.cfg");
    QVERIFY(saved && saved->find("4711") != std::string::npos);
  }

  void theDisplaysSwitchesStandInMenuAndTools() {
    Rig rig;
    auto& view = rig.Find<ReceivedTextView>("txtric");
    rig.Find<QAction>("actionHex").trigger();
    QVERIFY(view.HexView());
    view.SetPaused(true);  // as its own menu does
    QVERIFY(rig.window.findChild<QAction*>("actionPause")->isChecked());
    rig.window.findChild<QAction*>("actionPause")->trigger();
    QVERIFY(!view.Paused());
    rig.frm.controls.display.txtric.Append("some text\r\n", TextKind::Received, colors::black);
    rig.window.findChild<QAction*>("actionClear")->trigger();
    QCOMPARE(rig.frm.controls.display.txtric.Ring().Bytes(), std::size_t{0});
  }

  void whoSendsSeesWhatComesOfIt() {
    Rig rig;
    auto& view = rig.Find<ReceivedTextView>("txtric");
    for (int i = 0; i < 500; ++i) {
      rig.frm.controls.display.txtric.Append("a line\r\n", TextKind::Received, colors::black);
    }
    rig.ShowChanges();
    QVERIFY(view.ShowLine(3));
    QVERIFY(!view.Following());
    rig.Find<QPushButton>("cmdSend").click();
    QVERIFY(view.Following());

    rig.frm.controls.connection.cboSerial.SetText("NET");
    rig.frm.controls.connection.chkUDP.SetChecked(true);
    rig.frm.controls.connection.cmdOpen.Click();
    rig.frm.controls.cycle.CBOSEND.SetText("READ");
    for (const bool starts : {true, false}) {  // who stops goes on reading where she is
      QVERIFY(view.ShowLine(3));
      rig.Find<QPushButton>("Command1").click();
      QCOMPARE(rig.frm.Running(), starts);
      QCOMPARE(view.Following(), starts);
    }
  }

  void findShowsTheText() {
    Rig rig;
    rig.frm.controls.display.txtric.Append("first weight\r\nsecond Weight\r\n", TextKind::Received,
                                           colors::black);
    rig.ShowChanges();
    QTest::keyClick(&rig.window, Qt::Key_F, Qt::ControlModifier);
    auto& box = rig.Find<QLineEdit>("findText");
    QVERIFY(box.hasFocus());
    QTest::keyClicks(&box, "Weight");
    rig.Find<QAction>("actionFindCase").trigger();
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(rig.Find<ReceivedTextView>("txtric").SelectedText(), QString("Weight"));
    rig.Find<QAction>("actionFindCase").trigger();
    QTest::keyClick(&rig.window, Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(rig.Find<ReceivedTextView>("txtric").SelectedText(), QString("weight"));
  }

  void noShortcutIsDeadInATextBoxOrServesTwo() {
    Rig rig;
    auto& box = rig.Find<QLineEdit>("txtIp");
    std::map<QKeySequence, QString> owners;
    for (const QAction* action : rig.window.findChildren<QAction*>()) {
      for (const QKeySequence& shortcut : action->shortcuts()) {
        if (shortcut.isEmpty() || action->shortcutContext() == Qt::WidgetShortcut) continue;
        const QString& owner = owners.try_emplace(shortcut, action->text()).first->second;
        QVERIFY2(owner == action->text(), qPrintable(owner + " and " + action->text()));
        QKeyEvent press(QEvent::ShortcutOverride, shortcut[0].key(), shortcut[0].keyboardModifiers());
        press.ignore();
        QApplication::sendEvent(&box, &press);
        QVERIFY2(!press.isAccepted(), qPrintable(action->text()));
      }
    }
    QVERIFY(owners.size() > 10);
  }

  void aMenuEntryPressesItsButton() {
    Rig rig;
    auto& wait = rig.frm.controls.run.Check1;
    QAction* entry = nullptr;
    auto& menu = rig.Find<QMenu>("menuTest");
    for (QAction* action : menu.actions()) {
      if (WithoutMnemonic(action->text()) == "Wait for each answer") entry = action;
    }
    if (entry == nullptr) QFAIL("no such entry");
    entry->trigger();
    QVERIFY(wait.Checked() && entry->isChecked());
    wait.SetChecked(false);
    wait.SetEnabled(false);
    rig.ShowChanges();
    emit menu.aboutToShow();
    QVERIFY(!entry->isChecked() && !entry->isEnabled());
  }

  void theNumberKeysChooseTheTab() {
    Rig rig;
    QTest::keyClick(&rig.window, Qt::Key_4, Qt::AltModifier);
    QCOMPARE(rig.Find<QTabWidget>("tabs").currentIndex(), 3);
  }

  void theModelDecidesWhenTheWindowCloses() {
    Rig rig;
    QVERIFY(!rig.window.close());
    QVERIFY(rig.window.isVisible());
    rig.loop.Settle();
    QVERIFY(rig.loop.ExitStatus().has_value());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::MainWindowTest)
#include "main_window_test.moc"
