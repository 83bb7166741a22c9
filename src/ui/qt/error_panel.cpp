#include "ui/qt/error_panel.h"

#include "ui_error_panel.h"

namespace quarlin {

ErrorPanel::ErrorPanel(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::ErrorPanel>()) {
  ui_->setupUi(this);
}

ErrorPanel::~ErrorPanel() = default;

}  // namespace quarlin
