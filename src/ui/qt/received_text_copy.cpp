// SPDX-License-Identifier: GPL-3.0-or-later
// What leaves the display as text: copies of the selection, and the file that holds all of it.
#include <QClipboard>
#include <QGuiApplication>
#include <algorithm>

#include "base/files.h"
#include "ui/qt/received_text_view.h"
#include "ui/qt/row_painter.h"

namespace quarlin {
namespace {

QString TextOf(const std::string& bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

}  // namespace

QString ReceivedTextView::SelectedText() const {
  return Ring() == nullptr ? QString() : TextOf(quarlin::SelectedText(*Ring(), map_, selection_));
}

std::string ReceivedTextView::SelectedBytes() const {
  return Ring() == nullptr ? std::string() : quarlin::SelectedBytes(*Ring(), map_, selection_);
}

void ReceivedTextView::SelectAll() {
  if (Ring() == nullptr) return;
  selection_.Start(WholeText(*Ring()));
  UpdateAll();
}

void ReceivedTextView::Copy() {
  if (!selection_.Empty()) QGuiApplication::clipboard()->setText(SelectedText());
}

void ReceivedTextView::CopyAsShown() {
  if (selection_.Empty()) return;
  const std::uint64_t first = std::max(selection_.Span().begin.line, Ring()->FirstLine());
  const std::uint64_t end = std::min(selection_.Span().end.line + 1, Ring()->EndLine());
  QString text;
  for (std::uint64_t line = first; line < end; ++line) {
    if (map_.Shows(line)) text += ShownText(line) + QChar('\n');
  }
  QGuiApplication::clipboard()->setText(text);
}

void ReceivedTextView::CopyAsHex() {
  if (selection_.Empty()) return;
  QGuiApplication::clipboard()->setText(TextOf(SelectedHex(*Ring(), map_, selection_)));
}

std::error_code ReceivedTextView::Save(const std::filesystem::path& file, std::uint64_t& lines) const {
  constexpr qsizetype pieceSize = 65'536;
  return WriteWholeFile(file, [&](const TakePiece& take) {
    lines = 0;
    QByteArray piece;
    for (std::uint64_t line = Ring()->FirstLine(); line < Ring()->EndLine(); ++line) {
      if (!map_.Shows(line)) continue;
      piece += ShownText(line).toUtf8() + '\n';
      ++lines;
      if (piece.size() < pieceSize) continue;
      if (!take({piece.data(), static_cast<std::size_t>(piece.size())})) return;
      piece.clear();
    }
    take({piece.data(), static_cast<std::size_t>(piece.size())});
  });
}

QString ReceivedTextView::ShownText(std::uint64_t line) const {
  return Ring() == nullptr ? QString() : ShownLine(Ring()->Line(line), format_, times_, TimeBefore(line));
}

}  // namespace quarlin
