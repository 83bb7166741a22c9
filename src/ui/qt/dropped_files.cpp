// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/dropped_files.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace quarlin {
namespace {

QString OnlyFile(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  return urls.size() == 1 ? urls.front().toLocalFile() : QString();
}

class DropFilter : public QObject {
 public:
  DropFilter(QWidget& window, std::function<void(const QString& file)> take)
      : QObject(&window), take_(std::move(take)) {}

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop) return false;
    auto* drop = static_cast<QDropEvent*>(event);  // which a drag that enters is, too
    const QString file = OnlyFile(*drop->mimeData());
    if (file.isEmpty()) return true;
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop) take_(file);
    return true;
  }

 private:
  std::function<void(const QString& file)> take_;
};

}  // namespace

void TakeDroppedFiles(QWidget& window, std::function<void(const QString& file)> take) {
  window.setAcceptDrops(true);
  window.installEventFilter(new DropFilter(window, std::move(take)));
}

}  // namespace quarlin
