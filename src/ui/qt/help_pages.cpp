// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/help_pages.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextTable>
#include <algorithm>

namespace quarlin {
namespace {

// The page that lists the others.
constexpr auto contents = "docs/guide.md";

QString ResourceOf(const QUrl& url) {
  return url.scheme() == "qrc" ? ":" + url.path() : QString();
}

QUrl UrlOf(const QString& path) {
  return QUrl("qrc:/help/" + path);
}

QString TitleOf(const QString& markdown, const QString& path) {
  static const QRegularExpression heading("^# (.+)$", QRegularExpression::MultilineOption);
  const auto match = heading.match(markdown);
  return match.hasMatch() ? match.captured(1).remove('`') : QFileInfo(path).baseName();
}

bool IsCode(const QTextBlock& block) {
  return block.isValid() && block.blockFormat().hasProperty(QTextFormat::BlockCodeLanguage);
}

// Between the text and its ground, which is what tables and code have behind them.
QColor Blend(const QPalette& palette, qreal shareOfText) {
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  const auto mix = [shareOfText](int from, int to) { return qRound(from + (to - from) * shareOfText); };
  return {mix(base.red(), text.red()), mix(base.green(), text.green()), mix(base.blue(), text.blue())};
}

bool IsEmptyRow(const QTextTable& table, int row) {
  for (int column = 0; column < table.columns(); ++column) {
    const QTextTableCell cell = table.cellAt(row, column);
    if (cell.firstPosition() != cell.lastPosition()) return false;
  }
  return true;
}

void DressTable(QTextTable& table, const QPalette& palette) {
  const bool headless = table.rows() > 1 && IsEmptyRow(table, 0);
  QTextTableFormat format = table.format();
  format.setBorder(1);
  format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
  format.setBorderBrush(Blend(palette, 0.25));
  format.setBorderCollapse(true);
  format.setCellSpacing(0);
  format.setCellPadding(5);
  format.setTopMargin(8);
  format.setBottomMargin(12);
  format.setHeaderRowCount(headless ? 0 : 1);
  table.setFormat(format);
  if (headless) {
    table.removeRows(0, 1);
    return;
  }
  for (int column = 0; column < table.columns(); ++column) {
    QTextTableCell cell = table.cellAt(0, column);
    QTextCharFormat head = cell.format();
    head.setBackground(Blend(palette, 0.08));
    cell.setFormat(head);
  }
}

void DressTables(QTextDocument& document, const QPalette& palette) {
  std::vector<QTextTable*> tables;
  for (auto it = document.rootFrame()->begin(); it != document.rootFrame()->end(); ++it) {
    if (auto* table = qobject_cast<QTextTable*>(it.currentFrame())) tables.push_back(table);
  }
  for (QTextTable* table : tables) DressTable(*table, palette);
}

void DressBlock(const QTextBlock& block, const QPalette& palette) {
  QTextBlockFormat format = block.blockFormat();
  if (IsCode(block)) {
    const bool first = !IsCode(block.previous());
    const bool last = !IsCode(block.next());
    format.setBackground(Blend(palette, 0.08));
    format.setTopMargin(first ? 6 : 0);
    format.setBottomMargin(last ? 10 : 0);
    format.setLeftMargin(12);
    format.setNonBreakableLines(true);
    format.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
  } else if (format.headingLevel() > 0) {
    format.setTopMargin(format.headingLevel() == 1 ? 4 : 18);
    format.setBottomMargin(6);
  } else if (!block.text().contains(QChar::ObjectReplacementCharacter)) {  // a picture's line needs no more
    format.setLineHeight(115, QTextBlockFormat::ProportionalHeight);
  }
  QTextCursor(block).setBlockFormat(format);
}

// Of the page's own size, so that it grows with it.
QTextCharFormat AsCode(QTextCharFormat format) {
  format.clearProperty(QTextFormat::FontPointSize);
  format.clearProperty(QTextFormat::FontPixelSize);
  format.setFontFamilies({QFontDatabase::systemFont(QFontDatabase::FixedFont).family()});
  return format;
}

// What stands between ` and ` and in blocks of code.
void DressCode(const QTextBlock& block, const QPalette& palette) {
  struct Stretch {
    int begin;
    int end;
    QTextCharFormat format;
  };
  std::vector<Stretch> stretches;
  for (auto it = block.begin(); it != block.end(); ++it) {
    const QTextFragment fragment = it.fragment();
    if (!IsCode(block) && !fragment.charFormat().fontFixedPitch()) continue;
    QTextCharFormat format = AsCode(fragment.charFormat());
    if (!IsCode(block)) format.setBackground(Blend(palette, 0.08));
    stretches.push_back({fragment.position(), fragment.position() + fragment.length(), format});
  }
  QTextCursor cursor(block);
  if (IsCode(block)) cursor.setBlockCharFormat(AsCode(block.charFormat()));
  for (const Stretch& stretch : stretches) {
    cursor.setPosition(stretch.begin);
    cursor.setPosition(stretch.end, QTextCursor::KeepAnchor);
    cursor.setCharFormat(stretch.format);
  }
}

// "Two commands" is "two-commands": letters, digits and "_" stay, blanks become "-", the rest goes.
QString Slug(const QString& heading) {
  QString slug;
  for (const QChar c : heading.toLower()) {
    if (c.isLetterOrNumber() || c == '_' || c == '-') slug += c;
    if (c == ' ') slug += '-';
  }
  return slug;
}

QString Excerpt(const QString& text, qsizetype at) {
  constexpr qsizetype before = 14;  // the list is narrow
  constexpr qsizetype length = 110;
  qsizetype begin = std::max<qsizetype>(0, at - before);
  if (begin > 0) begin = text.indexOf(' ', begin) + 1;  // at a word, at the latest the found one's
  if (begin > at || begin == 0) begin = at > before ? at : 0;
  QString excerpt = text.mid(begin, length).simplified();
  if (begin > 0) excerpt.prepend("... ");
  if (begin + length < text.size()) excerpt += " ...";
  return excerpt;
}

}  // namespace

std::vector<HelpPage> HelpPages() {
  static const QRegularExpression place(R"(^## (?<chapter>.+)$|\]\((?<page>[^()#:]+\.md)\))",
                                        QRegularExpression::MultilineOption);
  const QUrl guide = UrlOf(contents);
  const QString text = HelpText(guide).value_or("");
  std::vector<HelpPage> pages = {{guide, TitleOf(text, contents), {}}};
  QString chapter;
  for (auto places = place.globalMatch(text); places.hasNext();) {
    const auto found = places.next();
    if (found.hasCaptured("chapter")) {
      chapter = found.captured("chapter");
      continue;
    }
    const QUrl url = guide.resolved(QUrl(found.captured("page")));
    const auto isThis = [&url](const HelpPage& page) { return page.url == url; };
    if (!IsHelp(url) || std::any_of(pages.begin(), pages.end(), isThis)) continue;
    pages.push_back({url, TitleOf(HelpText(url).value_or(""), url.path()), chapter});
  }
  return pages;
}

bool IsHelp(const QUrl& url) {
  return QFileInfo(ResourceOf(url)).isFile();
}

std::optional<QString> HelpText(const QUrl& url) {
  QFile file(ResourceOf(url));
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  const QString text = QString::fromUtf8(file.readAll());
  if (url.path().endsWith(".md")) return text;
  return QString("# %1\n\n```\n%2\n```\n").arg(url.fileName(), text);
}

void DressUp(QTextDocument& document, const QPalette& palette) {
  document.setUndoRedoEnabled(false);
  document.setDocumentMargin(16);
  QTextCursor all(&document);
  all.beginEditBlock();  // laid out once, at the end
  DressTables(document, palette);
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    DressBlock(block, palette);
    DressCode(block, palette);
  }
  all.endEditBlock();
}

int PositionOfHeading(const QTextDocument& document, const QString& fragment) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() > 0 && Slug(block.text()) == fragment) return block.position();
  }
  return -1;
}

bool HoldsAll(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

HelpIndex::HelpIndex() {
  for (const HelpPage& page : HelpPages()) {
    QTextDocument document;
    document.setMarkdown(HelpText(page.url).value_or(""));
    DressUp(document, QPalette());
    QString heading;
    auto& paragraphs = pages_.emplace_back();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
      if (block.blockFormat().headingLevel() > 0) heading = block.text();
      if (block.length() > 1) paragraphs.push_back({block.position(), heading, block.text()});
    }
  }
}

QStringList HelpIndex::Words(const QString& text) {
  QStringList words = text.simplified().split(' ', Qt::SkipEmptyParts);
  words.removeDuplicates();
  return words;
}

std::vector<HelpHit> HelpIndex::Find(const QString& text) const {
  const QStringList words = Words(text);
  std::vector<HelpHit> hits;
  if (words.isEmpty()) return hits;
  for (std::size_t page = 0; page < pages_.size(); ++page) {
    for (const Paragraph& paragraph : pages_[page]) {
      if (!HoldsAll(paragraph.text, words)) continue;
      const auto at = paragraph.text.indexOf(words.front(), 0, Qt::CaseInsensitive);
      hits.push_back({static_cast<int>(page), paragraph.position + static_cast<int>(at), paragraph.heading,
                      Excerpt(paragraph.text, at)});
      if (hits.size() == mostHits) return hits;
    }
  }
  return hits;
}

}  // namespace quarlin
