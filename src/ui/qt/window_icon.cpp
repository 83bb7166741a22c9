// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/window_icon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace quarlin {

QIcon WindowIcon() {
  QSvgRenderer drawing(QString(":/icons/quarlin.svg"));
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace quarlin
