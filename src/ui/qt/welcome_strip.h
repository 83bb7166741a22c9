// SPDX-License-Identifier: GPL-3.0-or-later
// The offer at the first start, as a strip of the main window: it waits for an answer, and nothing waits for
// it.
#pragma once

#include <QFrame>
#include <memory>

#include "welcome/first_steps.h"

namespace quarlin {

namespace Ui {
class WelcomeStrip;
}

class WelcomeStrip : public QFrame {
  Q_OBJECT

 public:
  // `folder` is the program folder, for the eye. The steps outlive the strip.
  WelcomeStrip(FirstSteps& steps, const QString& folder);
  ~WelcomeStrip() override;

  // Comes with the keyboard on its first button while there is an offer, and goes with it.
  void ShowOffer();

 signals:
  // Whoever has the keyboard next was not decided by a click.
  void gaveKeyboardUp();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Tint();

  FirstSteps& steps_;
  std::unique_ptr<Ui::WelcomeStrip> ui_;
};

}  // namespace quarlin
