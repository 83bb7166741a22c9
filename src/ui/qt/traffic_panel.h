// What goes over the line, in the middle of the window: the received-text display below a row of its tools.
#pragma once

#include <QAction>
#include <QList>
#include <QWidget>
#include <memory>

#include "ui/qt/received_text_view.h"

namespace quarlin {

namespace Ui {
class TrafficPanel;
}

class TrafficPanel : public QWidget {
  Q_OBJECT

 public:
  explicit TrafficPanel(QWidget* parent = nullptr);
  ~TrafficPanel() override;

  // The actions of the tools, in the order of a menu; a separator where a group ends.
  QList<QAction*> FindActions();
  QList<QAction*> ViewActions();

  ReceivedTextView& View();

 signals:
  void clearRequested();

 private:
  void WireDisplay();
  void WireFind();
  void Find(bool backward);
  QAction* Separator();

  std::unique_ptr<Ui::TrafficPanel> ui_;
};

}  // namespace quarlin
