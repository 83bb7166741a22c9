// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/help_browser.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <memory>
#include <utility>

#include "ui/qt/help_pages.h"

namespace quarlin {
namespace {

constexpr int mostZoomed = 20;
constexpr int leastZoomed = -4;

}  // namespace

HelpBrowser::HelpBrowser(QWidget* parent) : QTextBrowser(parent) {
  setOpenLinks(false);
  setFrameShape(NoFrame);
  connect(this, &QTextBrowser::anchorClicked, this, &HelpBrowser::Follow);
  connect(this, &QTextBrowser::sourceChanged, this, &HelpBrowser::SourceChanged);  // also on the way back
}

void HelpBrowser::Follow(const QUrl& url) {
  if (url.hasFragment() && url.adjusted(QUrl::RemoveFragment) == page_) {
    PutOnTop(PositionOfHeading(*document(), url.fragment()));
  } else if (IsHelp(url)) {
    setSource(url, QTextDocument::MarkdownResource);
  } else if (url.scheme() == "qrc" || !QDesktopServices::openUrl(url)) {
    emit notThere(url);
  }
}

void HelpBrowser::SourceChanged(const QUrl& url) {
  ShowPage(url.adjusted(QUrl::RemoveFragment));
  if (url.hasFragment()) PutOnTop(PositionOfHeading(*document(), url.fragment()));
}

void HelpBrowser::ShowPage(const QUrl& page) {
  page_ = page;
  pictures_.clear();
  // Dressed up before it is seen: laying it out again after each change would take a second.
  auto* dressed = new QTextDocument(this);
  dressed->setDefaultFont(document()->defaultFont());
  dressed->setMarkdown(HelpText(page).value_or(""));
  DressUp(*dressed, palette());
  const std::unique_ptr<QTextDocument> before(std::exchange(shown_, dressed));
  setDocument(dressed);
  moveCursor(QTextCursor::Start);
  verticalScrollBar()->setValue(0);
  Mark(marked_);
}

void HelpBrowser::PutOnTop(int position) {
  if (position < 0) return;
  const QTextBlock block = document()->findBlock(position);
  const QRectF place = document()->documentLayout()->blockBoundingRect(block);
  verticalScrollBar()->setValue(std::max(0, qRound(place.top()) - 8));
}

void HelpBrowser::ShowPlace(const QUrl& page, int position, const QStringList& words) {
  marked_ = words;
  if (page != page_) setSource(page, QTextDocument::MarkdownResource);
  QTextCursor cursor(document());
  cursor.setPosition(std::min(position, document()->characterCount() - 1));
  setTextCursor(cursor);
  const int height = viewport()->height();
  verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(cursor).top() - height / 3);
  Mark(words);
}

void HelpBrowser::Mark(const QStringList& words) {
  marked_ = words;
  QList<ExtraSelection> marks;
  for (QTextBlock block = document()->begin(); block.isValid() && !words.isEmpty(); block = block.next()) {
    if (HoldsAll(block.text(), words)) MarkIn(block, marks);
  }
  setExtraSelections(marks);
}

// More strongly in the paragraph that the cursor is in.
void HelpBrowser::MarkIn(const QTextBlock& block, QList<ExtraSelection>& marks) const {
  QColor ground = palette().color(QPalette::Highlight);
  ground.setAlpha(block == textCursor().block() ? 150 : 60);
  for (const QString& word : marked_) {
    qsizetype at = -1;
    while ((at = block.text().indexOf(word, at + 1, Qt::CaseInsensitive)) >= 0) {
      ExtraSelection mark;
      mark.cursor = QTextCursor(block);
      mark.cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, static_cast<int>(at));
      mark.cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, static_cast<int>(word.size()));
      mark.format.setBackground(ground);
      marks.push_back(mark);
    }
  }
}

void HelpBrowser::Zoom(int steps) {
  const int wanted = std::clamp(steps, leastZoomed, mostZoomed);
  zoomIn(wanted - zoomed_);
  zoomed_ = wanted;
}

QVariant HelpBrowser::loadResource(int type, const QUrl& url) {
  if (type != QTextDocument::ImageResource) return " ";  // ShowPage fills the page in, once it is known
  const QUrl there = page_.resolved(url);
  if (!pictures_.contains(url)) pictures_.push_back(url);
  return IsHelp(there) ? QVariant(Fitted(there)) : QVariant();
}

// No wider than the page, and a pixel of the picture never on more than one of the screen: it stays sharp.
QImage HelpBrowser::Fitted(const QUrl& url) const {
  constexpr int besides = 40;  // the margins of a page
  constexpr int narrowest = 100;
  QImage picture(":" + url.path());
  const qreal ratio = devicePixelRatioF();
  const int room = qRound(std::max(narrowest, viewport()->width() - besides) * ratio);
  if (picture.width() > room) picture = picture.scaledToWidth(room, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(ratio);
  return picture;
}

void HelpBrowser::FitPictures() {
  if (pictures_.isEmpty()) return;
  for (const QUrl& picture : pictures_) {
    document()->addResource(QTextDocument::ImageResource, picture, Fitted(page_.resolved(picture)));
  }
  document()->markContentsDirty(0, document()->characterCount());
}

void HelpBrowser::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  FitPictures();
}

void HelpBrowser::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || page_.isEmpty()) return;
  const int place = verticalScrollBar()->value();
  ShowPage(page_);
  verticalScrollBar()->setValue(place);
}

void HelpBrowser::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QTextBrowser::wheelEvent(event);
  if (event->angleDelta().y() != 0) Zoom(zoomed_ + (event->angleDelta().y() > 0 ? 1 : -1));
  event->accept();
}

}  // namespace quarlin
