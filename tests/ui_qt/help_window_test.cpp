// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/help_window.h"

#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include "ui/qt/help_browser.h"

namespace quarlin {

class HelpWindowTest : public QObject {
  Q_OBJECT

 private slots:
  // A link of the documentation that leads nowhere is found here, also one to a heading.
  void everyLinkLeadsSomewhere() {
    const QString source = "../bench/README.md";  // which the program does not carry
    int links = 0;
    for (const HelpPage& page : HelpPages()) {
      static const QRegularExpression link(R"(\]\(([^()\s]+)\))");
      auto found = link.globalMatch(*HelpText(page.url));
      while (found.hasNext()) {
        const QString target = found.next().captured(1);
        const QUrl url = page.url.resolved(QUrl(target));
        if (url.scheme() != "qrc" || target == source) continue;
        QVERIFY2(IsHelp(url), qPrintable(page.title + ": " + target));
        ++links;
        if (!url.hasFragment()) continue;
        QTextDocument document;
        document.setMarkdown(HelpText(url).value_or(""));
        QVERIFY2(PositionOfHeading(document, url.fragment()) >= 0, qPrintable(page.title + ": " + target));
      }
    }
    QVERIFY(links > 10);
  }

  void aPageIsDressedUp() {
    QTextDocument document;
    document.setMarkdown(
        "# One\n\n| | |\n|---|---|\n| `a` | b |\n\n    code\n    more\n\n## Two words, `x`\n");
    DressUp(document, QPalette());
    QCOMPARE(document.toPlainText().simplified(), QString("One a b code more Two words, x"));
    QVERIFY(document.findBlock(PositionOfHeading(document, "two-words-x")).isValid());
    const QTextBlock code = document.find("code").block();
    QVERIFY(code.blockFormat().nonBreakableLines());
    QVERIFY(code.blockFormat().background().style() != Qt::NoBrush);
  }

  void aSearchListsThePlacesAndEnterGoesThroughThem() {
    HelpWindow window;
    window.Open();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto& search = *window.findChild<QLineEdit*>("helpSearch");
    auto& hits = *window.findChild<QTreeWidget*>("helpHits");
    auto& page = *window.findChild<HelpBrowser*>("helpPage");
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&search, "resume ERROR");
    QVERIFY(hits.isVisible());
    QVERIFY(hits.topLevelItemCount() > 0);
    for (int i = 0; i < 2; ++i) {
      QTest::keyClick(&search, Qt::Key_Return);
      const QString text = page.textCursor().block().text();
      QVERIFY2(HoldsAll(text, {"resume", "error"}), qPrintable(text));
      QVERIFY(page.extraSelections().size() >= 2);
    }
    QTest::keyClicks(&search, "qqqq");
    QCOMPARE(hits.topLevelItemCount(), 0);
    QTest::keyClick(&search, Qt::Key_Escape);
    QVERIFY(window.findChild<QListWidget*>("helpPages")->isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
  }

  void onePageLeadsToAnotherAndBack() {
    HelpWindow window;
    window.Open("docs/results.md");
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto& page = *window.findChild<HelpBrowser*>("helpPage");
    emit page.anchorClicked(QUrl("qrc:/help/docs/macros.md"));
    QVERIFY(page.toPlainText().contains("[COUNTER]"));
    QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
    QTRY_COMPARE(page.source().fileName(), QString("results.md"));
    QVERIFY(page.toPlainText().contains("junit.xml"));
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::HelpWindowTest)
#include "help_window_test.moc"
