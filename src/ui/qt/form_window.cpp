// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/form_window.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include "ui/qt/widget_text.h"
#include "ui/qt/window_state.h"

namespace quarlin {
namespace {

constexpr QMargins usualFrame(6, 32, 6, 6);  // of a desktop, which tells it when the window is there

}  // namespace

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
void FormWindow::ShowState(QWidget& owner) {
  setWindowTitle(ShownText(form_.Caption()));
  winId();  // makes the window, which may not have been shown yet
  windowHandle()->setFlag(Qt::WindowStaysOnTopHint, form_.TopMost());
  FollowState(form_, *this);
  if (isVisible() != form_.Visible()) {
    ShowOrHide(owner);
  } else if (isVisible() && !testAttribute(Qt::WA_ShowWithoutActivating)) {
    raise();
    activateWindow();
  }
}

// A window is hidden as modal as it was shown: the toolkit blocks the others until a modal one is hidden.
void FormWindow::ShowOrHide(QWidget& owner) {
  if (!form_.Visible()) return hide();
  if (!testAttribute(Qt::WA_Moved)) PlaceFirst();  // else it stands as it stood last
  setModal(form_.Modal());
  windowHandle()->setTransientParent(form_.Modal() ? owner.window()->windowHandle() : nullptr);
  show();
  if (form_.Modal()) activateWindow();
}

void FormWindow::changeEvent(QEvent* event) {
  NoteState(form_, *this, *event);
  QDialog::changeEvent(event);
}

// In the middle of the screen, all of it with the frame around it.
void FormWindow::PlaceFirst() {
  const QRect room = screen()->availableGeometry().marginsRemoved(usualFrame);
  QRect place(QPoint(), (testAttribute(Qt::WA_Resized) ? size() : sizeHint()).boundedTo(room.size()));
  place.moveCenter(room.center());
  setGeometry(place);
}

void FormWindow::ShowModal(QWidget& owner) {
  setParent(&owner, Qt::Dialog);
  exec();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  CloseForm();
}

void FormWindow::reject() {
  if (isModal()) CloseForm();
}

// What was typed last counts for whoever waits for the window.
void FormWindow::CloseForm() {
  binder_->CommitEdits();
  form_.Close();
}

}  // namespace quarlin
