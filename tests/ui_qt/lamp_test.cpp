// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/lamp.h"

#include <QPixmap>
#include <QTest>

namespace quarlin {

class LampTest : public QObject {
  Q_OBJECT

 private slots:
  void showsItsColourRoundWithAnOutlineAtEachScale() {
    for (const double scale : {1.0, 1.5, 3.0}) {
      for (const QColor window : {QColor(Qt::white), QColor(30, 30, 30)}) {
        Lamp lamp;
        lamp.setPalette(QPalette(window));
        lamp.resize(lamp.sizeHint());
        lamp.SetColor(window);  // as dark or light as the window: only the outline tells
        QPixmap pixmap(lamp.size() * scale);
        pixmap.setDevicePixelRatio(scale);
        lamp.render(&pixmap);
        const QImage image = pixmap.toImage();
        const int middle = image.height() / 2;
        QCOMPARE(image.pixelColor(middle, middle), window);
        QCOMPARE(image.pixelColor(0, 0), window);
        const int edge = image.pixelColor(static_cast<int>(scale), middle).lightness();
        QVERIFY(qAbs(edge - window.lightness()) > 50);
      }
    }
  }

  void saysWhetherItIsLit() {
    Lamp lamp;
    QCOMPARE(lamp.accessibleDescription(), QString("dark"));
    lamp.SetColor(Qt::green);
    QCOMPARE(lamp.accessibleDescription(), QString("lit"));
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::LampTest)
#include "lamp_test.moc"
