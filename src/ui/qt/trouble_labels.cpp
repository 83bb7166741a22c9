// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/trouble_labels.h"

#include <QEvent>
#include <vector>

#include "ui/qt/text_colors.h"

namespace quarlin {
namespace {

// A child of the window, so it ends with it.
class Tint : public QObject {
 public:
  Tint(QWidget& window, std::vector<QLabel*> labels) : QObject(&window), labels_(std::move(labels)) {
    Paint(window);
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* window, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) Paint(*static_cast<QWidget*>(window));
    return false;
  }

 private:
  void Paint(const QWidget& window) {
    QPalette red;
    red.setColor(QPalette::WindowText, ReadableColor(colors::red, window.palette().color(QPalette::Window)));
    for (QLabel* label : labels_) label->setPalette(red);
  }

  std::vector<QLabel*> labels_;
};

}  // namespace

void ShowAsTrouble(QWidget& window, std::initializer_list<QLabel*> labels) {
  new Tint(window, labels);
}

}  // namespace quarlin
