// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/welcome_strip.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

#include "ui/qt/tint.h"
#include "ui_welcome_strip.h"

namespace quarlin {
namespace {

constexpr double tintShare = 0.18;

}  // namespace

WelcomeStrip::WelcomeStrip(FirstSteps& steps, const QString& folder)
    : steps_(steps), ui_(std::make_unique<Ui::WelcomeStrip>()) {
  ui_->setupUi(this);
  ui_->welcomeText->setText(
      tr("This is the first start: nothing is in %1 yet, where Quarlin keeps its files.\n"
         "Begin with ready examples, or look around with a simulated instrument.")
          .arg(folder));
  connect(ui_->copyExamplesButton, &QPushButton::clicked, this, [this] { steps_.TakeExamples(); });
  connect(ui_->tryButton, &QPushButton::clicked, this, [this] { steps_.TakeTrial(); });
  connect(ui_->noThanksButton, &QPushButton::clicked, this, [this] { steps_.Decline(); });
  // Enter presses the button that has the keyboard; styles mark that only once the Tab key was used.
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) {
    for (auto* button : findChildren<QPushButton*>()) button->setDefault(button == now);
  });
  Tint();
  hide();
}

WelcomeStrip::~WelcomeStrip() = default;

void WelcomeStrip::ShowOffer() {
  const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
  ui_->copyExamplesButton->setVisible(steps_.ExamplesTrouble().empty());
  ui_->tryButton->setVisible(steps_.Try.Trouble().empty());
  setVisible(steps_.Offered());
  if (steps_.Offered()) {
    (ui_->copyExamplesButton->isHidden() ? ui_->tryButton : ui_->copyExamplesButton)->setFocus();
  } else if (hadKeyboard) {
    emit gaveKeyboardUp();
  }
}

void WelcomeStrip::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (auto* button = qobject_cast<QPushButton*>(focusWidget()); enter && button != nullptr) {
    button->click();
  } else if (event->key() == Qt::Key_Escape) {
    steps_.Decline();
  } else {
    QFrame::keyPressEvent(event);
  }
}

void WelcomeStrip::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) Tint();
  QFrame::changeEvent(event);
}

// The desktop's own colour for what is chosen, thinly.
void WelcomeStrip::Tint() {
  const QPalette desktops = QApplication::palette(this);
  const QColor tinted =
      Mixed(desktops.color(QPalette::Window), desktops.color(QPalette::Highlight), tintShare);
  if (palette().color(QPalette::Window) == tinted) return;
  QPalette own;  // of this one colour; all others stay the desktop's
  own.setColor(QPalette::Window, tinted);
  setPalette(own);
}

}  // namespace quarlin
