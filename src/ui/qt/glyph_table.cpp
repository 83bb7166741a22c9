// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/glyph_table.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace quarlin {
namespace {

// In a font whose characters have widths of their own a cell is for its digits; what is wider is condensed.
constexpr double roomAroundDigits = 1.15;

constexpr unsigned deleteCode = 0x7F;
constexpr unsigned pictures = 0x2400;  // of the codes below 32, in order
constexpr unsigned deletePicture = 0x2421;

// Two letters for each code below 32.
constexpr std::string_view shortNames = "NUSHSXEXETEQAKBLBSHTLFVTFFCRSOSIDLD1D2D3D4NKSYEBCNEMSBECFSGSRSUS";

QString ShortName(unsigned code) {
  if (code == deleteCode) return QStringLiteral("DT");
  if (code < 32) return QString::fromLatin1(shortNames.data() + std::size_t{2} * code, 2);
  return QString::number(code, 16);
}

bool IsControl(unsigned code) {
  return code < 0x20 || (code >= deleteCode && code < 0xA0);
}

QFont Condensed(QFont font, double factor) {
  font.setStretch(std::max(1, static_cast<int>(100 * factor)));
  return font;
}

QFont Scaled(QFont font, double factor) {
  if (font.pixelSize() > 0) {
    font.setPixelSize(std::max(1, qRound(font.pixelSize() * factor)));
  } else {
    font.setPointSizeF(std::max(1.0, font.pointSizeF() * factor));
  }
  return font;
}

// A little less than rounding up, so that a hair over a whole pixel does not widen every cell.
int WholeCell(double advance) {
  return std::max(1, static_cast<int>(std::ceil(advance - 0.25)));
}

}  // namespace

GlyphTable::GlyphTable(const QFont& font) : font_(font), fixedPitch_(QFontInfo(font).fixedPitch()) {
  const QFontMetricsF metrics(font);
  cellWidth_ = WholeCell(fixedPitch_ ? metrics.horizontalAdvance(QLatin1Char('M'))
                                     : roomAroundDigits * metrics.horizontalAdvance(QLatin1Char('0')));
  ascent_ = static_cast<int>(std::ceil(metrics.ascent()));
  rowHeight_ = ascent_ + static_cast<int>(std::ceil(metrics.descent())) + 1;
  fonts_.push_back(QRawFont::fromFont(font));
}

void GlyphTable::LookUp(unsigned code) {
  constexpr std::array<char16_t, signs> signCharacters{u'\u2192', u'\u2190', u'\u21B5'};
  characters_[code].known = true;
  if (code >= firstSign) {
    AddCentred(code, QString(QChar(signCharacters[code - firstSign])), font_);
  } else {
    IsControl(code) ? AddControl(font_, code) : AddPrintable(font_, code);
  }
}

void GlyphTable::AddPrintable(const QFont& font, unsigned code) {
  constexpr unsigned noBreakSpace = 0xA0;
  if (code == ' ' || code == noBreakSpace) return;
  const QChar character(code);
  quint32 glyph = 0;
  int count = 1;
  const bool known =
      fixedPitch_ && fonts_.front().glyphIndexesForChars(&character, 1, &glyph, &count) && glyph != 0;
  known ? AddMark(code, fonts_.front(), glyph, {}) : AddCentred(code, QString(character), font);
}

void GlyphTable::AddControl(const QFont& font, unsigned code) {
  const unsigned picture = code == deleteCode ? deletePicture : pictures + code;
  if (code <= deleteCode && QFontMetrics(font).inFontUcs4(picture)) {
    AddCentred(code, QString(QChar(picture)), Scaled(font, 0.85));
    return;
  }
  const QFont small = Scaled(font, 0.6);
  const double width = QFontMetricsF(small).horizontalAdvance(QLatin1Char('M'));
  const QString name = ShortName(code);
  AddShaped(code, name.left(1), small, {0, -0.4 * ascent_});
  AddShaped(code, name.right(1), small, {cellWidth_ - width, 0});
}

// The glyphs that the toolkit takes for a text, from whichever font has them.
void GlyphTable::AddShaped(unsigned code, const QString& text, const QFont& font, QPointF offset) {
  QTextLayout layout(text, font);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
  for (const QGlyphRun& run : layout.glyphRuns()) {
    for (const quint32 glyph : run.glyphIndexes()) AddMark(code, run.rawFont(), glyph, offset);
  }
}

void GlyphTable::AddCentred(unsigned code, const QString& text, const QFont& font) {
  const double width = QFontMetricsF(font).horizontalAdvance(text);
  const QFont fitting = width > cellWidth_ ? Condensed(font, cellWidth_ / width) : font;
  const double rest = cellWidth_ - QFontMetricsF(fitting).horizontalAdvance(text);
  AddShaped(code, text, fitting, {rest / 2, 0});
}

void GlyphTable::AddMark(unsigned code, const QRawFont& font, std::uint32_t glyph, QPointF offset) {
  Character& character = characters_[code];
  if (character.count == character.marks.size()) return;
  auto known = std::find(fonts_.begin(), fonts_.end(), font);
  if (known == fonts_.end()) known = fonts_.insert(fonts_.end(), font);
  const auto index = static_cast<std::uint32_t>(known - fonts_.begin());
  character.marks[character.count++] = {index, glyph, offset};
}

void GlyphBatch::Add(const GlyphTable::Mark& mark, QPointF cell, QRgb color) {
  Group& group = GroupOf(mark.font, color);
  group.glyphs.push_back(mark.glyph);
  group.positions.push_back(cell + mark.offset);
}

GlyphBatch::Group& GlyphBatch::GroupOf(std::uint32_t font, QRgb color) {
  const auto fits = [&](const Group& group) { return group.font == font && group.color == color; };
  if (last_ < groups_.size() && fits(groups_[last_])) return groups_[last_];
  auto found = std::find_if(groups_.begin(), groups_.end(), fits);
  if (found == groups_.end()) found = groups_.insert(groups_.end(), Group{font, color, {}, {}});
  last_ = static_cast<std::size_t>(found - groups_.begin());
  return *found;
}

void GlyphBatch::Draw(QPainter& painter, const GlyphTable& table) {
  for (Group& group : groups_) {
    if (group.glyphs.empty()) continue;
    QGlyphRun run;
    run.setRawFont(table.FontOf(group.font));
    run.setRawData(group.glyphs.data(), group.positions.data(), static_cast<int>(group.glyphs.size()));
    painter.setPen(QColor::fromRgb(group.color));
    painter.drawGlyphRun({0, 0}, run);
    group.glyphs.clear();
    group.positions.clear();
  }
}

}  // namespace quarlin
