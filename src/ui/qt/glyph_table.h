// SPDX-License-Identifier: GPL-3.0-or-later
// The shapes of the 256 characters in one font, each looked up when it is wanted first, so that painting a
// row is placing glyphs and no text is laid out again. A control character has the small picture of its name,
// or, where no font has those, two small letters in a falling line: C over R for the carriage return. In a
// font of any pitch each character has the middle of a cell of the same width.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QRawFont>
#include <QString>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace quarlin {

class GlyphTable {
 public:
  // One glyph of a character. The offset counts from the cell's left edge on the base line.
  struct Mark {
    std::uint32_t font = 0;
    std::uint32_t glyph = 0;
    QPointF offset;
  };

  // Signs that are no characters of the text.
  enum class Sign : std::uint8_t { Sent, Received, Break };

  explicit GlyphTable(const QFont& font);

  int CellWidth() const { return cellWidth_; }  // logical pixels
  int RowHeight() const { return rowHeight_; }
  int Ascent() const { return ascent_; }

  // None for a blank.
  std::span<const Mark> Marks(char character) { return MarksOf(static_cast<unsigned char>(character)); }
  std::span<const Mark> Marks(Sign sign) { return MarksOf(firstSign + static_cast<unsigned>(sign)); }
  const QRawFont& FontOf(std::uint32_t font) const { return fonts_[font]; }

 private:
  struct Character {
    std::array<Mark, 2> marks;
    std::size_t count = 0;
    bool known = false;  // has been looked up
  };

  static constexpr unsigned firstSign = 256;
  static constexpr std::size_t signs = 3;

  std::span<const Mark> MarksOf(unsigned code) {
    if (!characters_[code].known) LookUp(code);
    return {characters_[code].marks.data(), characters_[code].count};
  }
  void LookUp(unsigned code);
  void AddPrintable(const QFont& font, unsigned code);
  void AddControl(const QFont& font, unsigned code);
  void AddShaped(unsigned code, const QString& text, const QFont& font, QPointF offset);
  void AddCentred(unsigned code, const QString& text, const QFont& font);
  void AddMark(unsigned code, const QRawFont& font, std::uint32_t glyph, QPointF offset);

  QFont font_;
  int cellWidth_;
  int rowHeight_;
  int ascent_;
  std::vector<QRawFont> fonts_;
  std::array<Character, firstSign + signs> characters_;
  bool fixedPitch_;
};

// Glyphs waiting to be drawn, gathered by colour, so that a whole view takes a few calls.
class GlyphBatch {
 public:
  void Add(const GlyphTable::Mark& mark, QPointF cell, QRgb color);

  // Draws everything and keeps the room for the next frame.
  void Draw(QPainter& painter, const GlyphTable& table);

 private:
  struct Group {
    std::uint32_t font = 0;
    QRgb color = 0;
    std::vector<quint32> glyphs;
    std::vector<QPointF> positions;
  };

  Group& GroupOf(std::uint32_t font, QRgb color);

  std::vector<Group> groups_;
  std::size_t last_ = 0;  // neighbours mostly share their colour
};

}  // namespace quarlin
