#include "ui/qt/form_window.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QWindow>

#include "ui/qt/widget_text.h"

namespace quarlin {

FormWindow::FormWindow(Form& form) : form_(form) {
  setObjectName(QString::fromStdString(form.Name()));
  setWindowFlags(Qt::Window);
}

FormWindow::~FormWindow() = default;

void FormWindow::Bind() {
  // Enter presses the form's default button and no other: not the one that happens to come first.
  for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  setWindowTitle(ShownText(form_.Caption()));
  binder_ = std::make_unique<Binder>(form_.Collection(), *this);
}

// Asked of the window itself: a widget would hide to change what it lies above.
void FormWindow::ShowState() {
  setWindowTitle(ShownText(form_.Caption()));
  winId();  // makes the window, which may not have been shown yet
  windowHandle()->setFlag(Qt::WindowStaysOnTopHint, form_.TopMost());
  if (isVisible() != form_.Visible()) {
    setVisible(form_.Visible());
  } else if (isVisible() && !testAttribute(Qt::WA_ShowWithoutActivating)) {
    raise();
    activateWindow();
  }
}

void FormWindow::ShowModal(QWidget& owner) {
  setParent(&owner, Qt::Dialog);
  exec();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  form_.Close();
}

void FormWindow::reject() {
  if (isModal()) form_.Close();
}

}  // namespace quarlin
