// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/line_frame.h"

#include <QEvent>
#include <QPainter>
#include <QRegion>

namespace quarlin {
namespace {

constexpr int thickness = 2;
constexpr int padding = 6;
const QColor background(0xB4, 0x50, 0x00);  // neither the blue nor the red of the traffic, in light and dark

QString Words() {
  return LineFrame::tr("Keyboard on the line – Shift+Tab leaves");
}

}  // namespace

LineFrame::LineFrame(QAbstractScrollArea& display) : QWidget(&display), display_(display) {
  setObjectName("lineFrame");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAccessibleName(Words());
  display.installEventFilter(this);
  display.viewport()->installEventFilter(this);
  ShowState();
}

void LineFrame::SetOnLine(bool onLine) {
  onLine_ = onLine;
  ShowState();
}

bool LineFrame::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange) Place();
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) ShowState();
  return false;
}

void LineFrame::ShowState() {
  setVisible(onLine_ && display_.hasFocus());
  if (!isVisible()) return;
  Place();
  raise();
}

// Only the frame and the words are there: the text in the middle is painted without us.
void LineFrame::Place() {
  const QRect area = display_.viewport()->geometry();
  if (geometry() != area) setGeometry(area);
  const QSize words = fontMetrics().size(Qt::TextSingleLine, Words());
  const QRect corner(width() - words.width() - 2 * padding, 0, words.width() + 2 * padding,
                     words.height() + padding);
  const QRegion inside(rect().adjusted(thickness, thickness, -thickness, -thickness));
  setMask(QRegion(rect()).subtracted(inside).united(corner));
}

void LineFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), background);
  painter.setPen(Qt::white);
  const int height = fontMetrics().height() + padding;
  painter.drawText(QRect(0, 0, width() - padding, height), Qt::AlignRight | Qt::AlignVCenter, Words());
}

}  // namespace quarlin
