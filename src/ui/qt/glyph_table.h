// The shapes of the 256 characters in one font, looked up once, so that painting a row is placing glyphs
// and no text is laid out again. A control character has the small picture of its name, or, where no
// font has those, two small letters in a falling line: C over R for the carriage return.
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

  explicit GlyphTable(const QFont& font);

  int CellWidth() const { return cellWidth_; }  // logical pixels
  int RowHeight() const { return rowHeight_; }
  int Ascent() const { return ascent_; }

  // None for a blank.
  std::span<const Mark> Marks(char character) const;
  const QRawFont& FontOf(std::uint32_t font) const { return fonts_[font]; }

 private:
  struct Character {
    std::array<Mark, 2> marks;
    std::size_t count = 0;
  };

  void AddPrintable(const QFont& font, unsigned code);
  void AddControl(const QFont& font, unsigned code);
  void AddShaped(unsigned code, const QString& text, const QFont& font, QPointF offset);
  void AddCentred(unsigned code, const QString& text, const QFont& font);
  void AddMark(unsigned code, const QRawFont& font, std::uint32_t glyph, QPointF offset);

  int cellWidth_;
  int rowHeight_;
  int ascent_;
  std::vector<QRawFont> fonts_;
  std::array<Character, 256> characters_;
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
