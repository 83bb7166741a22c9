// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/binder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "controls/controls.h"
#include "support/virtual_loop.h"
#include "ui/qt/lamp.h"
#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

struct TestControls : ControlGroup {
  using ControlGroup::ControlGroup;
  TextBox txtName{*this, "txtName", "scale"};
  ComboBox cboList{*this, "cboList", {"READ", "ZERO"}, "READ"};
  ComboBox cboSend{*this, "cboSend", {"READ", "ZERO"}, "READ"};
  CheckBox chkLog{*this, "chkLog", "Log"};
  OptionArray<3> Option1{*this, "Option1", {"CR", "CRLF", "Manual"}, 1};
  CommandButton cmdGo{*this, "cmdGo", "Connect"};
  Label lblCount{*this, "lblCount", "0"};
  Frame Frame1{*this, "Frame1", "Port"};
  TextBox txtInside{*this, "txtInside"};
  Shape Shape1{*this, "Shape1", colors::darkRed};
  ScrollBar HScroll1{*this, "HScroll1", 0, 32767, 500};
};

// A form with a widget for each of them.
struct TestForm : QWidget {
  TestForm() {
    for (QComboBox* box : {&list, &send}) {
      box->setEditable(true);
      box->setInsertPolicy(QComboBox::NoInsert);
    }
    send.setProperty("immediate", true);
    lamp.setProperty("activeText", "sending");
    lamp.setProperty("idleText", "idle");
    lamp.setToolTip("Lamp");
    go.setText("&Connect");
    const std::pair<QWidget*, const char*> names[] = {
        {&name, "txtName"},         {&list, "cboList"},
        {&send, "cboSend"},         {&log, "chkLog"},
        {&options[0], "Option1_0"}, {&options[1], "Option1_1"},
        {&options[2], "Option1_2"}, {&go, "cmdGo"},
        {&count, "lblCount"},       {&frame, "Frame1"},
        {&lamp, "Shape1"},          {&scroll, "HScroll1"},
    };
    auto* column = new QVBoxLayout(this);
    for (const auto& [widget, widgetName] : names) {
      widget->setObjectName(widgetName);
      column->addWidget(widget);
    }
    inside.setObjectName("txtInside");
    auto* framed = new QVBoxLayout(&frame);
    framed->addWidget(&inside);
  }

  QLineEdit name;
  QComboBox list, send;
  QCheckBox log;
  QRadioButton options[3];
  QPushButton go;
  QLabel count;
  QGroupBox frame;
  QLineEdit inside;  // goes before the frame that holds it
  Lamp lamp;
  QSlider scroll{Qt::Horizontal};
};

struct Rig {
  Rig() {
    collection.Add(controls);
    binder = std::make_unique<Binder>(collection, form);
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    form.go.setFocus();
  }

  void Type(QWidget& widget, const QString& text) {
    widget.setFocus();
    QTest::keyClick(&widget, Qt::Key_End);
    QTest::keyClicks(&widget, text);
  }

  VirtualLoop loop;
  TestControls controls{loop};
  ControlCollection collection;
  TestForm form;
  std::unique_ptr<Binder> binder;
};

}  // namespace

class BinderTest : public QObject {
  Q_OBJECT

 private slots:
  void typedTextCountsOnEnterOrWhenTheBoxIsLeft() {
    Rig rig;
    int changes = 0;
    rig.controls.txtName.Change = [&] { ++changes; };
    rig.Type(rig.form.name, "12");
    QCOMPARE(rig.controls.txtName.Text(), std::string("scale"));
    QTest::keyClick(&rig.form.name, Qt::Key_Return);
    QCOMPARE(rig.controls.txtName.Text(), std::string("scale12"));
    rig.Type(rig.form.name, "3");
    rig.form.list.setFocus();
    QCOMPARE(rig.controls.txtName.Text(), std::string("scale123"));
    QCOMPARE(changes, 2);
  }

  void aButtonSeesWhatWasTypedJustBefore() {
    Rig rig;
    std::string seen;
    rig.controls.cmdGo.OnClick = [&] { seen = rig.controls.txtName.Text() + rig.controls.cboList.Text(); };
    rig.Type(rig.form.name, "9");
    rig.form.go.click();  // the box keeps the keyboard, as with Alt and a letter
    QCOMPARE(seen, std::string("scale9READ"));
  }

  void aValueSetByTheProgramIsShownInTheNextFrame() {
    Rig rig;
    rig.controls.txtName.SetText("printer");
    rig.controls.cboList.SetText("ZERO");
    rig.controls.lblCount.SetInteger(17);
    rig.controls.chkLog.SetChecked(true);
    rig.controls.HScroll1.SetValue(40);
    QTRY_COMPARE(rig.form.name.text(), QString("printer"));
    QCOMPARE(rig.form.list.currentText(), QString("ZERO"));
    QCOMPARE(rig.form.list.currentIndex(), 1);
    QCOMPARE(rig.form.count.text(), QString("17"));
    QVERIFY(rig.form.log.isChecked());
    QCOMPARE(rig.form.scroll.value(), 40);
  }

  void whatIsBeingTypedIsNotOverwritten() {
    Rig rig;
    rig.Type(rig.form.name, "X");
    rig.controls.txtName.SetText("from the program");
    rig.controls.HScroll1.SetValue(40);
    rig.controls.chkLog.SetChecked(true);
    rig.controls.Option1[2].SetValue(true);
    rig.controls.lblCount.SetInteger(1);
    QTRY_COMPARE(rig.form.count.text(), QString("1"));
    QCOMPARE(rig.form.name.text(), QString("scaleX"));
    QCOMPARE(rig.controls.txtName.Text(), std::string("from the program"));  // nor taken too early
    QTest::keyClick(&rig.form.name, Qt::Key_Return);
    QCOMPARE(rig.controls.txtName.Text(), std::string("scaleX"));
  }

  void controlCharactersSurviveTheBox_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("shown");
    QTest::newRow("line end") << QByteArray("12.5 kg\r\n") << QString("12.5 kg←↓");
    QTest::newRow("NUL and DEL") << QByteArray("a\0b\x7f", 4) << QString("a␀b␡");
    QTest::newRow("frame") << QByteArray("\x02READ\x03") << QString("␂READ␃");
    QTest::newRow("upper half") << QByteArray("\xb0\xff") << QString("°ÿ");
  }
  void controlCharactersSurviveTheBox() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, shown);
    Rig rig;
    rig.controls.txtName.SetText(bytes.toStdString());
    QTRY_COMPARE(rig.form.name.text(), shown);
    rig.form.name.setFocus();
    rig.form.list.setFocus();
    QCOMPARE(rig.controls.txtName.Text(), bytes.toStdString());
    rig.Type(rig.form.name, "!");
    rig.form.list.setFocus();
    std::string kept = rig.controls.txtName.Text();
    QCOMPARE(kept.size(), static_cast<std::size_t>(bytes.size()) + 1);
    kept.erase(kept.find('!'), 1);
    QCOMPARE(kept, bytes.toStdString());
  }

  void aTextThatTheBoxCannotHoldIsKept() {
    Rig rig;
    const std::string longText(100'000, 'x');
    rig.controls.txtName.SetText(longText);
    QTRY_VERIFY(rig.form.name.text().startsWith("xx"));
    rig.form.name.setFocus();
    QTest::keyClick(&rig.form.name, Qt::Key_Return);
    rig.form.list.setFocus();
    QVERIFY(rig.controls.txtName.Text() == longText);
  }

  void aCharacterThatIsNoByteBecomesAQuestionMark() {
    Rig rig;
    rig.form.name.setFocus();
    rig.form.name.selectAll();
    rig.form.name.insert(QString("5€ ") + QString::fromUcs4(U"\U0001F600"));
    QTest::keyClick(&rig.form.name, Qt::Key_Return);
    QCOMPARE(rig.controls.txtName.Text(), std::string("5? ?"));
    QCOMPARE(rig.form.name.text(), QString("5? ?"));
  }

  void aListThatIsFilledAnewLeavesTypedAndMarkedTextAlone() {
    Rig rig;
    for (const auto& [box, control] : {std::pair(&rig.form.list, &rig.controls.cboList),
                                       std::pair(&rig.form.send, &rig.controls.cboSend)}) {
      rig.Type(*box, " AND MORE");
      box->lineEdit()->setSelection(7, -3);
      control->SetList({"TARE"});
      QTRY_COMPARE(box->count(), 1);
      QCOMPARE(box->currentText(), "READ AND MORE");
      QCOMPARE(box->lineEdit()->selectedText(), " AN");
      QCOMPARE(box->lineEdit()->cursorPosition(), 4);
    }
  }

  void aListKeepsTheTextThatStandsInNoEntry() {
    Rig rig;
    rig.controls.cboList.SetText("TARE");
    rig.controls.cboList.SetList({"NET", "ZERO", "PRINT"});
    QTRY_COMPARE(rig.form.list.count(), 3);
    QCOMPARE(rig.form.list.currentText(), QString("TARE"));
    QCOMPARE(rig.controls.cboList.Text(), std::string("TARE"));
  }

  void anEntryIsChosenByHand() {
    Rig rig;
    rig.form.list.setFocus();
    QTest::keyClick(&rig.form.list, Qt::Key_Down);
    QCOMPARE(rig.controls.cboList.ListIndex(), 1);
    rig.form.list.lineEdit()->selectAll();
    QTest::keyClicks(&rig.form.list, "re");  // neither completed to READ nor taken before the box is left
    QCOMPARE(rig.controls.cboList.Text(), std::string("ZERO"));
    rig.form.name.setFocus();
    QCOMPARE(rig.controls.cboList.Text(), std::string("re"));
  }

  void theCommandBoxCountsWithEveryKey() {
    Rig rig;
    rig.Type(rig.form.send, "1");
    QCOMPARE(rig.controls.cboSend.Text(), std::string("READ1"));
    rig.Type(rig.form.send, "2");
    QCOMPARE(rig.controls.cboSend.Text(), std::string("READ12"));
    rig.controls.cboSend.SetText("next line");
    QTRY_COMPARE(rig.form.send.currentText(), QString("next line"));
  }

  void aCheckBoxShowsItsThirdState() {
    Rig rig;
    rig.controls.chkLog.SetValue(2);
    QTRY_COMPARE(rig.form.log.checkState(), Qt::PartiallyChecked);
    QCOMPARE(rig.controls.chkLog.Value(), 2);
    rig.form.log.click();
    QVERIFY(rig.controls.chkLog.Value() != 2);
    for (const int expected : {0, 1, 0}) {
      rig.controls.chkLog.SetValue(expected == 0 ? 1 : 0);
      QTRY_COMPARE(rig.form.log.isChecked(), expected == 0);
      rig.form.log.click();
      QCOMPARE(rig.controls.chkLog.Value(), expected);
    }
  }

  void aSwitchThatTheProgramRefusesGoesBack() {
    Rig rig;
    rig.controls.chkLog.Click = [&] { rig.controls.chkLog.SetValue(0); };
    rig.form.log.click();
    QTRY_VERIFY(!rig.form.log.isChecked());
  }

  void optionsFollowTheHandAndTheProgram() {
    Rig rig;
    rig.form.options[1].setFocus();
    QTest::keyClick(&rig.form.options[1], Qt::Key_Down);
    QCOMPARE(rig.controls.Option1.Selected(), std::optional<std::size_t>(2));
    rig.form.options[0].click();
    QCOMPARE(rig.controls.Option1.Selected(), std::optional<std::size_t>(0));
    rig.controls.Option1[0].SetValue(false);
    QTRY_VERIFY(!rig.form.options[0].isChecked());
    QVERIFY(!rig.form.options[1].isChecked() && !rig.form.options[2].isChecked());
    rig.controls.Option1[2].SetValue(true);
    QTRY_VERIFY(rig.form.options[2].isChecked());
  }

  void theSliderSetsTheValueOnlyByHand() {
    Rig rig;
    int changes = 0;
    rig.controls.HScroll1.Change = [&] { ++changes; };
    rig.form.scroll.setFocus();
    QTest::keyClick(&rig.form.scroll, Qt::Key_Home);
    QCOMPARE(rig.controls.HScroll1.Value(), 0);
    rig.controls.HScroll1.SetValue(32767);
    QTRY_COMPARE(rig.form.scroll.value(), 32767);
    QCOMPARE(changes, 2);
  }

  void theWheelChangesNothingInPassing() {
    Rig rig;
    for (QWidget* widget : {static_cast<QWidget*>(&rig.form.list), static_cast<QWidget*>(&rig.form.scroll)}) {
      QWheelEvent wheel({5, 5}, widget->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                        Qt::NoModifier, Qt::NoScrollPhase, false);
      QCoreApplication::sendEvent(widget, &wheel);
      QVERIFY(!wheel.isAccepted());
    }
    QCOMPARE(rig.controls.cboList.Text(), std::string("READ"));
    QCOMPARE(rig.controls.HScroll1.Value(), 500);
  }

  void aDisabledFrameLeavesWhatIsInItAlone() {
    Rig rig;
    rig.controls.Frame1.SetEnabled(false);
    QTRY_VERIFY(!rig.form.inside.isEnabled());
    QVERIFY(rig.controls.txtInside.Enabled());
    rig.controls.txtInside.SetText("x");  // an update while it is off must not end that state
    QTRY_COMPARE(rig.form.inside.text(), QString("x"));
    QVERIFY(!rig.form.inside.isEnabled());
    rig.controls.Frame1.SetEnabled(true);
    QTRY_VERIFY(rig.form.inside.isEnabled());
    rig.controls.txtInside.SetVisible(false);
    QTRY_VERIFY(rig.form.inside.isHidden());
  }

  void colourIsATintUnderReadableText() {
    Rig rig;
    const QColor plain = rig.form.list.palette().color(QPalette::Base);
    rig.controls.cboList.SetBackColor(colors::red);
    QTRY_VERIFY(rig.form.list.palette().color(QPalette::Base) != plain);
    const QPalette tinted = rig.form.list.palette();
    QVERIFY(tinted.color(QPalette::Base).red() > tinted.color(QPalette::Base).green() + 50);
    for (const auto group : {QPalette::Active, QPalette::Disabled}) {
      const int contrast =
          tinted.color(group, QPalette::Base).lightness() - tinted.color(group, QPalette::Text).lightness();
      QVERIFY(qAbs(contrast) > 90);
    }
    rig.controls.cboList.SetBackColor(std::nullopt);
    QTRY_COMPARE(rig.form.list.palette().color(QPalette::Base), plain);
  }

  void aLampSaysInWordsWhatItsColourSays() {
    Rig rig;
    QCOMPARE(rig.form.lamp.accessibleDescription(), QString("idle"));
    rig.controls.Shape1.SetFillColor(colors::red);
    QTRY_COMPARE(rig.form.lamp.accessibleDescription(), QString("sending"));
    QCOMPARE(rig.form.lamp.toolTip(), QString("Lamp\nNow: sending"));
    QCOMPARE(rig.form.lamp.ColorShown(), QColor(255, 0, 0));
    rig.controls.Shape1.SetToolTipText("not available");  // while the colour stays
    QTRY_COMPARE(rig.form.lamp.toolTip(), QString("not available\nNow: sending"));
    rig.controls.Shape1.SetFillColor(colors::darkGreen);
    QTRY_COMPARE(rig.form.lamp.toolTip(), QString("not available\nNow: idle"));
    QCOMPARE(rig.form.lamp.accessibleDescription(), QString("idle"));
  }

  void captionsKeepTheirMnemonic_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("shown");
    QTest::newRow("as in the form") << "Connect"
                                    << "&Connect";
    QTest::newRow("the same letter elsewhere") << "Disconnect"
                                               << "Dis&connect";
    QTest::newRow("one of its own") << "&Stop"
                                    << "&Stop";
    QTest::newRow("no such letter") << "Stop"
                                    << "Stop";
  }
  void captionsKeepTheirMnemonic() {
    QFETCH(QString, caption);
    QFETCH(QString, shown);
    Rig rig;
    rig.controls.cmdGo.SetCaption(caption.toStdString());
    QTRY_COMPARE(rig.form.go.text(), shown);
  }

  void aToolTipOfTheProgramReplacesTheForms() {
    Rig rig;
    rig.form.setToolTip("");
    rig.controls.lblCount.SetToolTipText("since Start");
    QTRY_COMPARE(rig.form.count.toolTip(), QString("since Start"));
    rig.controls.lblCount.SetToolTipText("");
    QTRY_COMPARE(rig.form.count.toolTip(), QString());
  }

  // Delays of the machine only put the frames further apart.
  void manyChangesMakeFewFrames() {
    Rig rig;
    QStringList shown{rig.form.count.text()};
    QElapsedTimer time;
    time.start();
    while (shown.size() < 8 && time.elapsed() < 60'000) {
      rig.controls.lblCount.Increment();
      QCoreApplication::processEvents();
      if (shown.last() != rig.form.count.text()) shown << rig.form.count.text();
    }
    QCOMPARE(shown.size(), 8);
    QVERIFY2(time.elapsed() >= 6LL * 30, qPrintable(QString::number(time.elapsed())));
    QTRY_COMPARE(rig.form.count.text(), QString::number(rig.controls.lblCount.Integer()));
  }

  void costlyFramesComeLessOften_data() {
    QTest::addColumn<int>("cost");  // all in microseconds
    QTest::addColumn<int>("pause");
    QTest::newRow("nothing") << 0 << 33000;
    QTest::newRow("2 ms") << 2000 << 31000;
    QTest::newRow("10 ms") << 10000 << 90000;
  }
  void costlyFramesComeLessOften() {
    QFETCH(int, cost);
    QTEST(static_cast<int>(FramePacer::PauseAfter(std::chrono::microseconds(cost)).count()), "pause");
  }

  void theCollectionOutlivesTheBinder() {
    Rig rig;
    rig.Type(rig.form.name, "5");
    rig.binder.reset();
    rig.controls.txtName.SetText("nobody looks");
    rig.form.go.click();
    rig.form.list.setFocus();
    QCOMPARE(rig.controls.txtName.Text(), std::string("nobody looks"));
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::BinderTest)
#include "binder_test.moc"
