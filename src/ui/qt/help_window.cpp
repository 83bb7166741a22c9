// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/help_window.h"

#include <QKeyEvent>
#include <QShortcut>
#include <QToolTip>
#include <QTreeWidgetItemIterator>
#include <algorithm>

#include "ui_help_window.h"

namespace quarlin {
namespace {

constexpr int hitRole = Qt::UserRole;   // number of the hit; nothing for a page
constexpr int pageRole = Qt::UserRole;  // number of the page; nothing for the heading of a chapter

}  // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::HelpWindow>()), pages_(HelpPages()) {
  ui_->setupUi(this);
  ui_->helpSides->setSizes({260, 740});
  ui_->helpSides->setStretchFactor(1, 1);
  FillPages();
  WireTools();
  WireSearch();
}

HelpWindow::~HelpWindow() = default;

// The page is laid out in the window's own width, so the window comes first.
void HelpWindow::Open(const QString& file) {
  show();
  raise();
  activateWindow();
  if (!file.isEmpty()) {
    ui_->helpPage->setSource(QUrl("qrc:/help/" + file), QTextDocument::MarkdownResource);
  } else if (ui_->helpPage->source().isEmpty()) {
    ShowPage(0);
  }
  ui_->helpPage->setFocus();
}

void HelpWindow::FillPages() {
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    if (i > 0 && pages_[i].chapter != pages_[i - 1].chapter) AddChapter(pages_[i].chapter);
    auto* page = new QListWidgetItem(pages_[i].title, ui_->helpPages);
    page->setData(pageRole, static_cast<int>(i));
  }
  connect(ui_->helpPages, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
    if (item != nullptr) ShowPage(item->data(pageRole).toInt());
  });
  connect(ui_->helpPage, &QTextBrowser::sourceChanged, this, &HelpWindow::PageShown);
}

// Only to be read: the keys go on to the page behind it.
void HelpWindow::AddChapter(const QString& title) {
  auto* chapter = new QListWidgetItem(title, ui_->helpPages);
  chapter->setFlags(Qt::NoItemFlags);
  QFont bold = ui_->helpPages->font();
  bold.setBold(true);
  chapter->setFont(bold);
  chapter->setForeground(ui_->helpPages->palette().text());
}

QListWidgetItem* HelpWindow::ItemOf(int page) const {
  for (int row = 0; row < ui_->helpPages->count(); ++row) {
    const QVariant number = ui_->helpPages->item(row)->data(pageRole);
    if (number.isValid() && number.toInt() == page) return ui_->helpPages->item(row);
  }
  return nullptr;
}

void HelpWindow::ShowPage(int number) {
  ui_->helpPage->setSource(pages_[static_cast<std::size_t>(number)].url, QTextDocument::MarkdownResource);
}

void HelpWindow::PageShown(const QUrl& url) {
  const QUrl page = url.adjusted(QUrl::RemoveFragment);
  const auto known =
      std::find_if(pages_.begin(), pages_.end(), [&](const HelpPage& each) { return each.url == page; });
  const QSignalBlocker blocker(ui_->helpPages);
  ui_->helpPages->setCurrentItem(
      ItemOf(known == pages_.end() ? -1 : static_cast<int>(known - pages_.begin())));
  setWindowTitle(tr("%1 - Quarlin help").arg(known == pages_.end() ? page.fileName() : known->title));
}

void HelpWindow::WireTools() {
  HelpBrowser* page = ui_->helpPage;
  connect(ui_->backButton, &QToolButton::clicked, page, &QTextBrowser::backward);
  connect(ui_->forwardButton, &QToolButton::clicked, page, &QTextBrowser::forward);
  connect(page, &QTextBrowser::backwardAvailable, ui_->backButton, &QWidget::setEnabled);
  connect(page, &QTextBrowser::forwardAvailable, ui_->forwardButton, &QWidget::setEnabled);
  connect(page, &HelpBrowser::notThere, this, [this](const QUrl& url) {
    QToolTip::showText(QCursor::pos(),
                       tr("%1 comes with the sources, not with the program").arg(url.fileName()), this);
  });
  const auto zoom = [this, page](const QList<QKeySequence>& keys, QToolButton* button, auto steps) {
    connect(button, &QToolButton::clicked, page, [page, steps] { page->Zoom(steps(page->Zoomed())); });
    for (const QKeySequence& key : keys) {
      connect(new QShortcut(key, this), &QShortcut::activated, button, &QToolButton::click);
    }
  };
  zoom(QKeySequence::keyBindings(QKeySequence::ZoomIn) + QList<QKeySequence>{QKeySequence("Ctrl+=")},
       ui_->largerButton, [](int now) { return now + 1; });
  zoom(QKeySequence::keyBindings(QKeySequence::ZoomOut), ui_->smallerButton, [](int now) { return now - 1; });
  zoom({QKeySequence("Ctrl+0")}, ui_->usualSizeButton, [](int) { return 0; });
  for (const auto& [key, button] : {std::pair(QKeySequence::Back, ui_->backButton),
                                    std::pair(QKeySequence::Forward, ui_->forwardButton)}) {
    connect(new QShortcut(key, this), &QShortcut::activated, button, &QToolButton::click);
  }
}

void HelpWindow::WireSearch() {
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    ui_->helpSearch->setFocus(Qt::ShortcutFocusReason);
    ui_->helpSearch->selectAll();
  });
  connect(ui_->helpSearch, &QLineEdit::textChanged, this, &HelpWindow::Search);
  connect(ui_->helpSearch, &QLineEdit::returnPressed, this, [this] { NextHit(1); });
  connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, [this] { NextHit(1); });
  connect(new QShortcut(QKeySequence::FindPrevious, this), &QShortcut::activated, this,
          [this] { NextHit(-1); });
  connect(ui_->helpHits, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    if (item != nullptr && item->data(0, hitRole).isValid()) ShowHit(item->data(0, hitRole).toInt());
  });
}

void HelpWindow::Search(const QString& words) {
  if (words.simplified().size() < 2) return EndSearch();  // a letter alone stands everywhere
  if (!index_) index_.emplace();
  hits_ = index_->Find(words);
  ShowHits(hits_);
  ui_->helpSide->setCurrentWidget(ui_->helpHits);
  ui_->helpPage->Mark(HelpIndex::Words(words));
}

void HelpWindow::ShowHits(const std::vector<HelpHit>& hits) {
  const QSignalBlocker blocker(ui_->helpHits);
  ui_->helpHits->clear();
  QTreeWidgetItem* page = nullptr;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    const HelpHit& hit = hits[i];
    if (i == 0 || hits[i - 1].page != hit.page) {
      page = new QTreeWidgetItem(ui_->helpHits, {pages_[static_cast<std::size_t>(hit.page)].title});
      QFont bold = ui_->helpHits->font();
      bold.setBold(true);
      page->setFont(0, bold);
      page->setExpanded(true);
    }
    auto* item = new QTreeWidgetItem(page, {hit.excerpt});
    item->setData(0, hitRole, static_cast<int>(i));
    item->setToolTip(
        0,
        QString("<p><b>%1</b></p><p>%2</p>").arg(hit.heading.toHtmlEscaped(), hit.excerpt.toHtmlEscaped()));
  }
  const QString count = hits.empty()       ? tr("found nowhere")
                        : hits.size() == 1 ? tr("found in one place")
                                           : tr("found in %1 places").arg(hits.size());
  const bool all = hits.size() < HelpIndex::mostHits;
  ui_->helpHits->setHeaderLabel(all ? count : tr("the first %1 places").arg(hits.size()));
}

void HelpWindow::ShowHit(int number) {
  const HelpHit& hit = hits_[static_cast<std::size_t>(number)];
  ui_->helpPage->ShowPlace(pages_[static_cast<std::size_t>(hit.page)].url, hit.position,
                           HelpIndex::Words(ui_->helpSearch->text()));
}

// From the current one on, and round the end.
void HelpWindow::NextHit(int step) {
  if (hits_.empty()) return;
  const QTreeWidgetItem* current = ui_->helpHits->currentItem();
  const int count = static_cast<int>(hits_.size());
  const bool onHit = current != nullptr && current->data(0, hitRole).isValid();
  const int next = onHit ? (current->data(0, hitRole).toInt() + step + count) % count : 0;
  for (QTreeWidgetItemIterator it(ui_->helpHits); *it != nullptr; ++it) {
    if ((*it)->data(0, hitRole).isValid() && (*it)->data(0, hitRole).toInt() == next) {
      ui_->helpHits->setCurrentItem(*it);
      return;
    }
  }
}

void HelpWindow::EndSearch() {
  hits_.clear();
  ui_->helpSide->setCurrentWidget(ui_->helpPages);
  ui_->helpPage->Mark({});
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  if (ui_->helpSearch->text().isEmpty()) {
    close();
  } else {
    ui_->helpSearch->clear();
    ui_->helpPage->setFocus();
  }
}

}  // namespace quarlin
