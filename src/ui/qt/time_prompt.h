// SPDX-License-Identifier: GPL-3.0-or-later
// Asks for a time of day and shows the line that came nearest to it. Says in its own place why it cannot; the
// traffic goes on behind it.
#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;

namespace quarlin {

class TimePrompt : public QDialog {
  Q_OBJECT

 public:
  // Hands over what was typed, and returns why that leads nowhere, or nothing where it was done.
  using Go = std::function<QString(const QString& time)>;

  // `proposal` is the time to begin with, `range` tells what there is.
  TimePrompt(QWidget* parent, const QString& proposal, const QString& range, Go go);

 private:
  void Try();

  Go go_;
  QLineEdit* time_;
  QLabel* message_;
};

}  // namespace quarlin
