// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/qt_prompts.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace quarlin {

class QtPromptsTest : public QObject {
  Q_OBJECT

 private slots:
  void showsAPlainTextInFrontOfItsWindow() {
    QWidget window;
    window.show();
    QtPrompts prompts;
    prompts.SetWindow(&window);
    bool seen = false;
    QTimer::singleShot(0, this, [&] {
      auto* box = window.findChild<QMessageBox*>("messageBox");
      QVERIFY(box != nullptr && box->isModal());
      QCOMPARE(box->windowTitle(), QString::fromLatin1("Dur\xE9"
                                                       "e"));
      QCOMPARE(box->text(), QString("<b>3 errors"));
      QCOMPARE(box->textFormat(), Qt::PlainText);
      QCOMPARE(box->standardButtons(), QMessageBox::Ok);
      QVERIFY(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      QVERIFY(!window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      seen = true;
      box->button(QMessageBox::Ok)->click();
    });
    prompts.ShowMessage("<b>3 errors",
                        "Dur\xE9"
                        "e");
    QVERIFY(seen);
    QVERIFY(window.findChild<QMessageBox*>() == nullptr);
  }

  void aBoxBelongsToTheWindowThatIsWorkedIn() {
    QWidget main, editor;
    for (QWidget* window : {&main, &editor}) {
      window->show();
      QVERIFY(QTest::qWaitForWindowActive(window));
    }
    QtPrompts prompts;
    prompts.SetWindow(&main);
    QTimer::singleShot(0, this, [&] {
      QWidget* box = QApplication::activeModalWidget();
      QCOMPARE(box->parentWidget(), &editor);
      box->close();
    });
    prompts.Confirm("Save?", "title");
  }

  void aGiantTextLeavesTheButtonsOnTheScreen() {
    const std::string lines = [] {
      std::string text;
      for (int i = 0; i < 1000; ++i) text += "line\r\n";
      return text;
    }();
    QtPrompts prompts;
    for (const std::string& text : {std::string(2000000, 'x'), lines}) {
      bool fits = false;
      QTimer::singleShot(0, this, [&] {
        QWidget* box = QApplication::activeModalWidget();
        fits = box->sizeHint().height() < 700;
        box->close();
      });
      prompts.ShowMessage(text, "title");
      QVERIFY(fits);
    }
  }

  void outlivesItsWindow() {
    auto* window = new QWidget;
    QtPrompts prompts;
    prompts.SetWindow(window);
    QTimer::singleShot(0, this, [&] { delete window; });
    prompts.ShowMessage("text", "title");
    QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
    prompts.ShowMessage("alone", "title");
  }

  void aScriptsBoxHasItsButtonsAndReturnsTheOnePressed() {
    struct Case {
      int style;
      QMessageBox::StandardButton preset;
      QMessageBox::StandardButton pressed;
      int result;
    };
    const Case cases[] = {
        {0, QMessageBox::Ok, QMessageBox::Ok, 1},
        {1 + 16 + 256, QMessageBox::Cancel, QMessageBox::Ok, 1},
        {2 + 512, QMessageBox::Ignore, QMessageBox::Retry, 4},
        {3 + 32, QMessageBox::Yes, QMessageBox::Cancel, 2},
        {4 + 256, QMessageBox::No, QMessageBox::Yes, 6},
        {5, QMessageBox::Retry, QMessageBox::NoButton, 2},  // closed without a button
        {4, QMessageBox::Yes, QMessageBox::No, 7},
    };
    QtPrompts prompts;
    for (const Case& row : cases) {
      QTimer::singleShot(0, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr && box->text() == QString::fromUtf16(u"\u20AC 5"));
        QCOMPARE(box->icon(), row.style & 16   ? QMessageBox::Critical
                              : row.style & 32 ? QMessageBox::Question
                                               : QMessageBox::NoIcon);
        QCOMPARE(box->defaultButton(), box->button(row.preset));
        if (row.pressed == QMessageBox::NoButton) {
          prompts.Dismiss();
        } else {
          box->button(row.pressed)->click();
        }
      });
      QCOMPARE(prompts.MsgBox(u"\u20AC 5", row.style, u"title"), row.result);
    }
  }

  void asksForATextAndForYesOrNo() {
    QtPrompts prompts;
    const auto answer = [this](const std::function<void(QDialog&)>& work) {
      QTimer::singleShot(0, this,
                         [work] { work(*qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
    };
    answer([](QDialog& box) {
      QTest::keyClicks(box.findChild<QLineEdit*>(), "7");
      box.accept();
    });
    QVERIFY(prompts.InputBox(u"Weight?", u"title", u"1") == u"7");  // the proposal is selected
    answer([](QDialog& box) { box.reject(); });
    QVERIFY(!prompts.InputBox(u"Weight?", u"title", u"1"));
    for (const auto button : {QMessageBox::Yes, QMessageBox::No}) {
      answer([button](QDialog& box) { dynamic_cast<QMessageBox&>(box).button(button)->click(); });
      QCOMPARE(prompts.Confirm("Stop it?", "title"), button == QMessageBox::Yes);
    }
  }

  void isDismissedByTheProgram() {
    QtPrompts prompts;
    prompts.Dismiss();  // nothing is shown
    QTimer::singleShot(0, this, [&] { prompts.Dismiss(); });
    prompts.ShowMessage("text", "title");
    prompts.Dismiss();
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::QtPromptsTest)
#include "qt_prompts_test.moc"
