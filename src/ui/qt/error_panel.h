// The errors below the traffic: a header with the report, and the list that it opens and closes.
#pragma once

#include <QWidget>
#include <memory>

namespace quarlin {

namespace Ui {
class ErrorPanel;
}

class ErrorPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ErrorPanel(QWidget* parent = nullptr);
  ~ErrorPanel() override;

 private:
  std::unique_ptr<Ui::ErrorPanel> ui_;
};

}  // namespace quarlin
