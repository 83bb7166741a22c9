// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/time_prompt.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace quarlin {

TimePrompt::TimePrompt(QWidget* parent, const QString& proposal, const QString& range, Go go)
    : QDialog(parent), go_(std::move(go)), time_(new QLineEdit(proposal)), message_(new QLabel(range)) {
  setWindowTitle(tr("Go to time"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* label = new QLabel(tr("&Time, as hh:mm:ss or hh:mm:ss.mmm"));
  label->setBuddy(time_);
  time_->setObjectName("goTime");
  time_->selectAll();
  message_->setObjectName("goMessage");
  message_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText(tr("&Go"));
  connect(buttons, &QDialogButtonBox::accepted, this, &TimePrompt::Try);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* column = new QVBoxLayout(this);
  for (QWidget* widget : std::initializer_list<QWidget*>{label, time_, message_, buttons}) {
    column->addWidget(widget);
  }
}

void TimePrompt::Try() {
  const QString objection = go_(time_->text());
  if (objection.isEmpty()) return accept();
  message_->setText(objection);
  time_->selectAll();
  time_->setFocus();
}

}  // namespace quarlin
