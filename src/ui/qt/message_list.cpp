// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/message_list.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

constexpr int mostRows = 12;  // in sight
constexpr int leastRows = 3;

QString TimesText(std::uint32_t times) {
  return times > 1 ? MessageList::tr(" (%1 times)").arg(times) : QString();
}

}  // namespace

MessageList::MessageList(StatusNote& status, QWidget& row)
    : QFrame(&row, Qt::Popup), status_(status), row_(row), list_(new QTreeWidget), pacer_([this] {
        Fill();
      }) {
  setObjectName("messageList");
  setFrameShape(StyledPanel);
  list_->setObjectName("messages");
  list_->setAccessibleName(tr("Messages of the status bar"));
  list_->setColumnCount(2);
  list_->setHeaderHidden(true);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setFrameShape(NoFrame);
  list_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);

  auto* hint = new QLabel(tr("What was told, the newest at the end; Esc closes"));
  hint->setForegroundRole(QPalette::PlaceholderText);
  auto* copy = new QPushButton(tr("Copy"));
  copy->setObjectName("copyMessagesButton");
  copy->setToolTip(tr("Copies the selected messages, or all (Ctrl+C)"));
  connect(copy, &QPushButton::clicked, this, &MessageList::Copy);
  auto* foot = new QHBoxLayout;
  foot->addWidget(hint, 1);
  foot->addWidget(copy);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(6, 6, 6, 6);
  column->addWidget(list_);
  column->addLayout(foot);

  QList<QWidget*> watched = row_.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  watched.removeOne(this);
  watched.push_back(&row_);
  for (QWidget* widget : watched) {
    widget->installEventFilter(this);
    widget->setCursor(Qt::PointingHandCursor);
  }
}

MessageList::~MessageList() {
  status_.OnMessage = nullptr;
}

void MessageList::Open() {
  if (isVisible()) return;
  status_.OnMessage = [this] { pacer_.Request(); };
  Fill();
  Place();
  show();
  list_->setFocus(Qt::PopupFocusReason);
}

void MessageList::Fill() {
  if (isVisible() && !list_->selectedItems().isEmpty()) return;  // somebody is about to copy
  const QString today = ShownText(DateText(SystemClock().Local()));
  list_->clear();
  for (const StatusMessage& message : status_.Messages()) {
    const QString date = ShownText(DateText(message.at));
    const QString time = (date == today ? "" : date + ' ') + ShownText(TimeText(message.at));
    const QString text = ShownText(message.text) + TimesText(message.times);
    auto* item = new QTreeWidgetItem(list_, {time, text});
    item->setToolTip(1, text);
    item->setForeground(0, palette().placeholderText());
  }
  if (list_->topLevelItemCount() == 0) new QTreeWidgetItem(list_, {"", tr("nothing was told so far")});
  list_->setCurrentItem(list_->topLevelItem(list_->topLevelItemCount() - 1), 0,
                        QItemSelectionModel::NoUpdate);
  list_->scrollToBottom();
}

// Over the status row, as wide as that, as high as what it holds.
void MessageList::Place() {
  ensurePolished();
  const int rows = std::clamp(list_->topLevelItemCount(), leastRows, mostRows);
  list_->setFixedHeight(rows * std::max(list_->sizeHintForRow(0), fontMetrics().height()) + 4);
  const int height = sizeHint().height();
  const QPoint corner = row_.mapToGlobal(QPoint(0, 0));
  setGeometry(corner.x(), corner.y() - height - 2, row_.width(), height);
}

void MessageList::Copy() const {
  const bool all = list_->selectedItems().isEmpty();
  QString text;
  for (int i = 0; i < list_->topLevelItemCount(); ++i) {
    const QTreeWidgetItem& item = *list_->topLevelItem(i);
    if (all || item.isSelected()) text += item.text(0) + '\t' + item.text(1) + '\n';
  }
  QApplication::clipboard()->setText(text);
}

bool MessageList::eventFilter(QObject* object, QEvent* event) {
  const bool clicked = event->type() == QEvent::MouseButtonPress &&
                       static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (!clicked) return QFrame::eventFilter(object, event);
  Open();
  return true;
}

void MessageList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    hide();
  } else if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else {
    QFrame::keyPressEvent(event);
  }
}

void MessageList::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  status_.OnMessage = nullptr;
}

}  // namespace quarlin
