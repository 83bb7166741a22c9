// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/layout_keeper.h"

#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

#include "base/files.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

// A window as any of the program: nothing in it knows of the keeper.
struct SomeWindow : QWidget {
  SomeWindow() {
    splitter.setObjectName("split");
    inDialog.setObjectName("inDialog");
    splitter.addWidget(&tabs);
    splitter.addWidget(&table);
    tabs.setObjectName("tabs");
    for (const char* title : {"&First", "Second", "Thi&rd"}) tabs.addTab(new QWidget, title);
    model.setColumnCount(3);
    table.setObjectName("table");
    table.setModel(&model);
    table.setSortingEnabled(true);
    table.horizontalHeader()->setSectionsMovable(true);
    hex.setObjectName("hex");
    hex.setCheckable(true);
    hex.setProperty("kept", true);
    pause.setObjectName("pause");
    pause.setCheckable(true);
    splitter.resize(size());
  }
  void resizeEvent(QResizeEvent*) override { splitter.resize(size()); }

  QStandardItemModel model;
  QAction hex{this}, pause{this};
  QSplitter splitter{this};
  QDialog dialog{this};
  QSplitter inDialog{&dialog};
  QTabWidget tabs;
  QTableView table;
};

struct Rig {
  // One start of the program: what the window is left as.
  void Start(const std::function<void(SomeWindow&)>& use) {
    WindowLayout layout(file);
    LayoutKeeper keeper(layout);
    SomeWindow window;
    window.resize(600, 400);
    known = keeper.Keep(window, "Some");
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    use(window);
    keeper.Remember();
    QVERIFY(!layout.Save());
  }

  TempFolder folder;
  std::filesystem::path file = folder / "position.ini";
  bool known = false;
};

}  // namespace

class LayoutKeeperTest : public QObject {
  Q_OBJECT

 private slots:
  void aWindowComesBackAsItWasLeft() {
    Rig rig;
    rig.Start([](SomeWindow& window) {
      window.setGeometry(60, 70, 640, 480);
      window.splitter.setSizes({400, 240});
      window.tabs.setCurrentIndex(2);
      QHeaderView& header = *window.table.horizontalHeader();
      header.resizeSection(0, 77);
      header.hideSection(1);
      header.moveSection(2, 0);
      header.setSortIndicator(2, Qt::DescendingOrder);
      window.hex.setChecked(true);
      window.pause.setChecked(true);
      emit window.splitter.splitterMoved(400, 1);
      window.table.hide();  // its size is that from before
      QCoreApplication::processEvents();
      window.showMaximized();  // and so is the window's
    });
    QVERIFY(!rig.known);
    QList<int> sizes;
    for (int start = 0; start < 2; ++start) {  // also by what a start leaves that changed nothing
      rig.Start([&](SomeWindow& window) {
        QCOMPARE(window.isMaximized(), start == 0);
        window.showNormal();
        QTRY_COMPARE(window.geometry(), QRect(60, 70, 640, 480));
        if (sizes.isEmpty()) sizes = window.splitter.sizes();
        QVERIFY(sizes[0] > sizes[1] + 100);
        QCOMPARE(window.splitter.sizes(), sizes);
        QCOMPARE(window.tabs.currentIndex(), 2);
        QHeaderView& header = *window.table.horizontalHeader();
        QCOMPARE(header.sectionSize(0), 77);
        QVERIFY(header.isSectionHidden(1));
        QCOMPARE(header.logicalIndex(0), 2);
        QCOMPARE(header.sortIndicatorSection(), 2);
        QCOMPARE(header.sortIndicatorOrder(), Qt::DescendingOrder);
        QVERIFY(window.hex.isChecked());
        QVERIFY(!window.pause.isChecked());
      });
      const auto kept = ReadWholeFile(rig.file);
      QVERIFY(kept && kept->find("inDialog") == std::string::npos);
      QVERIFY(rig.known);
    }
  }

  void valuesThatMakeNoSenseArePassedOverOneByOne() {
    Rig rig;
    WriteInPlace(
        rig.file,
        "[Some]\nPlace=1,2,3\nState=sideways\nsplit=1,2,3\ntabs=Seventh\ntable=1,2\ntable.order=0,0,1\n"
        "table.sort=9,1\nhex=2\n[SCRIPT]\nLocale=1031\n");
    QSize usual;
    rig.Start([&](SomeWindow& window) {
      usual = window.size();
      QVERIFY(!window.isMaximized() && !window.hex.isChecked());
      QCOMPARE(window.tabs.currentIndex(), 0);
      QCOMPARE(window.table.horizontalHeader()->logicalIndex(0), 0);
    });
    QVERIFY(!rig.known);
    QCOMPARE(usual, QSize(600, 400));
    QVERIFY(ReadWholeFile(rig.file)->find("Locale=1031") != std::string::npos);
    WriteInPlace(rig.file, "[Some]\nPlace=90000,-90000,700,20\nhex=1\nsplit=0,600\ntable=-1,-1,-1\n");
    rig.Start([](SomeWindow& window) {
      QVERIFY(window.screen()->availableGeometry().contains(window.geometry()));
      QVERIFY(window.hex.isChecked());
      QVERIFY(!window.table.horizontalHeader()->isSectionHidden(0));
    });
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::LayoutKeeperTest)
#include "layout_keeper_test.moc"
