// SPDX-License-Identifier: GPL-3.0-or-later
// The documentation as the program carries it: the Markdown pages and their pictures, compiled in at the
// paths that they have in the project, so that links between them hold.
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>
#include <QTextDocument>
#include <QUrl>
#include <optional>
#include <vector>

namespace quarlin {

struct HelpPage {
  QUrl url;
  QString title;
  QString chapter;  // of the contents page; empty for that page itself
};

// The contents page, docs/guide.md, and the pages that it links to, in its order.
std::vector<HelpPage> HelpPages();

// Whether the program carries what the link leads to. A fragment does not count.
bool IsHelp(const QUrl& url);

// Reads as a page of the documentation should: tables with lines, code on a ground of its own, in the colours
// of `palette`. Changes no text but that an empty head of a table goes.
void DressUp(QTextDocument& document, const QPalette& palette);

// Where the heading stands to which a link leads as "page.md#its-words"; -1 for none.
int PositionOfHeading(const QTextDocument& document, const QString& fragment);

// Whether all the words stand in the text, in any case.
bool HoldsAll(const QString& text, const QStringList& words);

struct HelpHit {
  int page = 0;      // in HelpPages()
  int position = 0;  // of the first word, in the dressed-up document
  QString heading;   // that it stands under
  QString excerpt;   // a line of text around it
};

// Search in all pages at once.
class HelpIndex {
 public:
  static constexpr std::size_t mostHits = 300;

  // Reads all pages, which takes some hundredths of a second.
  HelpIndex();

  // The paragraphs, lines and table cells that hold all the words, in any case; in the order of the pages.
  std::vector<HelpHit> Find(const QString& words) const;

  // The words of a search, each once.
  static QStringList Words(const QString& text);

 private:
  struct Paragraph {
    int position;
    QString heading;
    QString text;
  };

  std::vector<std::vector<Paragraph>> pages_;
};

// The text of a page, or of a file of another kind as one block of code. Nothing for what the program does
// not carry.
std::optional<QString> HelpText(const QUrl& url);

}  // namespace quarlin
