#include "ui/qt/qt_prompts.h"

#include <QApplication>
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

  void outlivesItsWindow() {
    auto* window = new QWidget;
    QtPrompts prompts;
    prompts.SetWindow(window);
    QTimer::singleShot(0, this, [&] { delete window; });
    prompts.ShowMessage("text", "title");
    QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
    prompts.ShowMessage("alone", "title");
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
