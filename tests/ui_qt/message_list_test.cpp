// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/message_list.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include "support/virtual_loop.h"

namespace quarlin {

class MessageListTest : public QObject {
  Q_OBJECT

 private slots:
  void aClickOnTheStatusRowShowsWhatWasToldAndGoesOnShowingIt() {
    VirtualLoop loop;
    StatusControls controls{loop};
    StatusNote status{loop, controls};
    QWidget row;
    QLabel label("note", &row);
    row.resize(600, 20);
    MessageList list(status, row);
    status.Say("first");
    status.Say("again");
    status.Say("again");
    row.show();
    QVERIFY(QTest::qWaitForWindowExposed(&row));
    QTest::mouseClick(&label, Qt::LeftButton);
    QVERIFY(list.isVisible());
    auto& messages = *list.findChild<QTreeWidget*>("messages");
    QCOMPARE(messages.topLevelItemCount(), 2);
    QCOMPARE(messages.topLevelItem(1)->text(1), QString("again (2 times)"));
    status.Mention("later");
    QTRY_COMPARE(messages.topLevelItemCount(), 3);
    list.Copy();
    QVERIFY(QApplication::clipboard()->text().contains("\tagain (2 times)\n"));
    QTest::keyClick(&messages, Qt::Key_Escape);
    QVERIFY(!list.isVisible());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::MessageListTest)
#include "message_list_test.moc"
