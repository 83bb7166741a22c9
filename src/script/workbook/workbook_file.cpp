// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/workbook_file.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/file_handle.h"
#include "base/files.h"
#include "base/system_call.h"
#include "script/files/file_paths.h"
#include "script/values/conversions.h"
#include "script/workbook/sheet_text.h"

namespace quarlin::vbs::sheets {
namespace {

namespace fs = std::filesystem;

ScriptError NotSaved(const fs::path& file, std::string_view why) {
  return SheetError(u"'" + TextOfPath(file.filename()) + u"' cannot be saved: " + Utf16Of(why));
}

// Rows and columns of the library count from 0.
lxw_row_t Row(std::int32_t row) {
  return static_cast<lxw_row_t>(row - 1);
}
lxw_col_t Column(std::int32_t column) {
  return static_cast<lxw_col_t>(column - 1);
}

lxw_color_t ColorOf(ScriptColor color) {
  const auto bytes = static_cast<std::uint32_t>(color);
  const std::uint32_t rgb = ((bytes & 0xFF) << 16) | (bytes & 0xFF00) | ((bytes >> 16) & 0xFF);
  return rgb == 0 ? static_cast<lxw_color_t>(LXW_COLOR_BLACK) : rgb;  // 0 stands for "none" there
}

// The characters 80 to 9F of code page 1252, in which many a script was written. A script's characters are
// bytes for the line; no cell has a use for the control characters that they are by number.
constexpr std::u16string_view codePage1252 =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";

char16_t ShownInCell(char16_t unit) {
  if (unit == u'\0') return u'\u2400';
  if (unit >= 0x80 && unit < 0xA0) return codePage1252[unit - 0x80U];
  return unit >= 0xFFFE ? u'\uFFFD' : unit;
}

// A text as the library takes it: a cell's lines end with a line feed; no character of code 0, which would
// end the text, and none that XML has not.
std::string CellText(std::u16string_view text) {
  std::u16string clean;
  clean.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char16_t unit = text[i];
    if (unit == u'\r') {
      const bool isHalf = i + 1 < text.size() && text[i + 1] == u'\n';
      if (isHalf) continue;
      unit = u'\n';
    }
    clean += ShownInCell(unit);
  }
  return Utf8Of(clean);
}

// The sheet's calendar has a 29 February 1900, so days before it are one less there. Nothing for the days
// that it has not at all.
std::optional<double> SerialOf(double days) {
  constexpr double firstDay = 2;  // 1 January 1900
  constexpr double agreed = 61;   // 1 March 1900
  if (days >= agreed || (days >= 0 && days < 1)) return days;
  return days >= firstDay ? std::optional(days - 1) : std::nullopt;
}

std::uint8_t LineOf(const Border& border) {
  switch (border.style) {
    case noLine:
      return LXW_BORDER_NONE;
    case dash:
      return border.weight == medium ? LXW_BORDER_MEDIUM_DASHED : LXW_BORDER_DASHED;
    case dot:
      return LXW_BORDER_DOTTED;
    case dashDot:
      return border.weight == medium ? LXW_BORDER_MEDIUM_DASH_DOT : LXW_BORDER_DASH_DOT;
    case dashDotDot:
      return border.weight == medium ? LXW_BORDER_MEDIUM_DASH_DOT_DOT : LXW_BORDER_DASH_DOT_DOT;
    case doubleLine:
      return LXW_BORDER_DOUBLE;
    default:
      break;
  }
  if (border.weight == thick) return LXW_BORDER_THICK;
  if (border.weight == medium) return LXW_BORDER_MEDIUM;
  return border.weight == hairline ? LXW_BORDER_HAIR : LXW_BORDER_THIN;
}

struct AlignmentRow {
  std::int32_t alignment;
  lxw_format_alignments horizontal;
  lxw_format_alignments vertical;
};
constexpr std::array alignments = std::to_array<AlignmentRow>({
    {left, LXW_ALIGN_LEFT, LXW_ALIGN_NONE},
    {center, LXW_ALIGN_CENTER, LXW_ALIGN_VERTICAL_CENTER},
    {right, LXW_ALIGN_RIGHT, LXW_ALIGN_NONE},
    {fillCell, LXW_ALIGN_FILL, LXW_ALIGN_NONE},
    {justify, LXW_ALIGN_JUSTIFY, LXW_ALIGN_VERTICAL_JUSTIFY},
    {acrossSelection, LXW_ALIGN_CENTER_ACROSS, LXW_ALIGN_NONE},
    {distributed, LXW_ALIGN_DISTRIBUTED, LXW_ALIGN_VERTICAL_DISTRIBUTED},
    {top, LXW_ALIGN_NONE, LXW_ALIGN_VERTICAL_TOP},
    {bottom, LXW_ALIGN_NONE, LXW_ALIGN_VERTICAL_BOTTOM},
});

void Align(lxw_format* format, const CellStyle& style) {
  for (const AlignmentRow& row : alignments) {
    if (row.alignment == style.horizontal && row.horizontal != LXW_ALIGN_NONE) {
      format_set_align(format, static_cast<std::uint8_t>(row.horizontal));
    }
    if (row.alignment == style.vertical && row.vertical != LXW_ALIGN_NONE && style.vertical != bottom) {
      format_set_align(format, static_cast<std::uint8_t>(row.vertical));
    }
  }
  if (style.wraps) format_set_text_wrap(format);
}

void SetFont(lxw_format* format, const CellStyle& style) {
  const CellStyle usual;
  if (style.fontName != usual.fontName) format_set_font_name(format, Utf8Of(style.fontName).c_str());
  if (style.fontSize != usual.fontSize) format_set_font_size(format, style.fontSize);
  if (style.fontColor) format_set_font_color(format, ColorOf(*style.fontColor));
  if (style.bold) format_set_bold(format);
  if (style.italic) format_set_italic(format);
  if (style.strikethrough) format_set_font_strikeout(format);
  if (style.underline != noUnderline) {
    format_set_underline(format,
                         style.underline == doubleUnderline ? LXW_UNDERLINE_DOUBLE : LXW_UNDERLINE_SINGLE);
  }
}

void SetBorders(lxw_format* format, const CellStyle& style) {
  struct Setter {
    Edge edge;
    void (*line)(lxw_format*, std::uint8_t);
    void (*color)(lxw_format*, lxw_color_t);
  };
  constexpr std::array<Setter, edges> setters{{
      {Edge::Left, format_set_left, format_set_left_color},
      {Edge::Top, format_set_top, format_set_top_color},
      {Edge::Bottom, format_set_bottom, format_set_bottom_color},
      {Edge::Right, format_set_right, format_set_right_color},
  }};
  for (const Setter& setter : setters) {
    const Border& border = style.At(setter.edge);
    if (border.style == noLine) continue;
    setter.line(format, LineOf(border));
    if (border.color) setter.color(format, ColorOf(*border.color));
  }
}

void SetFormat(lxw_format* format, const CellStyle& style) {
  SetFont(format, style);
  Align(format, style);
  SetBorders(format, style);
  if (style.numberFormat != CellStyle().numberFormat) {
    format_set_num_format(format, CellText(style.numberFormat).c_str());
  }
  if (style.fill) {
    format_set_pattern(format, LXW_PATTERN_SOLID);
    format_set_fg_color(format, ColorOf(*style.fill));
  }
}

// The library's half of a workbook, thrown away unless it was written.
class Writer {
 public:
  Writer(const Book& book, const std::string& path, Services& services)
      : book_(book), pace_(services), formats_(book.Styles()->Count()) {
    std::string folder = fs::temp_directory_path();
    lxw_workbook_options options{};
    options.constant_memory = MayGoRowByRow() ? LXW_TRUE : LXW_FALSE;
    options.tmpdir = folder.data();  // copied
    made_ = workbook_new_opt(path.c_str(), &options);
    if (made_ == nullptr) throw ScriptError(outOfMemory);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() {
    if (made_ != nullptr) lxw_workbook_free(made_);
  }

  lxw_error Write() {
    for (const Ref<Sheet>& sheet : book_.Sheets()) Add(*sheet);
    return workbook_close(std::exchange(made_, nullptr));
  }

 private:
  using Lines = LineMap::const_iterator;

  // Rows then go to the disk as they are complete, where merged cells cannot be added to them any more.
  bool MayGoRowByRow() const {
    return std::ranges::all_of(book_.Sheets(),
                               [](const Ref<Sheet>& sheet) { return sheet->Merged().empty(); });
  }

  void Add(const Sheet& sheet) {
    lxw_worksheet* made = workbook_add_worksheet(made_, Utf8Of(sheet.name).c_str());
    if (made == nullptr) throw SheetError(u"The sheet '" + sheet.name + u"' cannot be written");
    if (&sheet == &book_.Active()) worksheet_activate(made);
    if (sheet.isHidden) worksheet_hide(made);
    if (sheet.RowHeight() != usualRowHeight) worksheet_set_default_row(made, sheet.RowHeight(), LXW_FALSE);
    AddColumns(sheet, made);
    AddMerged(sheet, made);
    AddRows(sheet, made);
  }

  // Columns that look alike and stand side by side are one entry.
  void AddColumns(const Sheet& sheet, lxw_worksheet* made) {
    std::int32_t next = 1;
    const auto add = [&](std::int32_t first, std::int32_t last, const Line& line) {
      if (first > last || (!line.size && line.style.value_or(plainStyle) == plainStyle)) return;
      worksheet_set_column(made, Column(first), Column(last), line.size.value_or(usualColumnWidth),
                           FormatOf(line.style.value_or(plainStyle)));
    };
    const Line others{sheet.SheetStyle(), std::nullopt};
    for (const auto& [column, line] : sheet.Columns()) {
      add(next, column - 1, others);
      add(column, column, {line.style.value_or(sheet.SheetStyle()), line.size});
      next = column + 1;
    }
    add(next, mostColumns, others);
  }

  void AddMerged(const Sheet& sheet, lxw_worksheet* made) {
    for (const Area& area : sheet.Merged()) {
      worksheet_merge_range(made, Row(area.first.row), Column(area.first.column), Row(area.last.row),
                            Column(area.last.column), "", FormatOf(StyleAt(sheet, area.first)));
    }
  }

  static StyleId StyleAt(const Sheet& sheet, Place place) {
    const Cell* cell = sheet.Find(place);
    return cell == nullptr ? plainStyle : cell->style;
  }

  // Each row's own look stands in front of its cells.
  void AddRows(const Sheet& sheet, lxw_worksheet* made) {
    Lines line = sheet.Rows().begin();
    for (const auto& [place, cell] : sheet.Cells()) {
      line = AddLinesUpTo(place.row, line, sheet, made);
      AddCell(place, cell, made);
      pace_.Step();
    }
    AddLinesUpTo(mostRows, line, sheet, made);
  }

  Lines AddLinesUpTo(std::int32_t row, Lines line, const Sheet& sheet, lxw_worksheet* made) {
    for (; line != sheet.Rows().end() && line->first <= row; ++line) {
      worksheet_set_row(made, Row(line->first), line->second.size.value_or(sheet.RowHeight()),
                        FormatOf(line->second.style.value_or(plainStyle)));
      pace_.Step();
    }
    return line;
  }

  void AddCell(Place place, const Cell& cell, lxw_worksheet* made) {
    const lxw_row_t row = Row(place.row);
    const lxw_col_t column = Column(place.column);
    lxw_format* format = FormatOf(cell.style);
    switch (cell.value.GetKind()) {
      case Kind::Double:
        worksheet_write_number(made, row, column, cell.value.AsReal(), format);
        break;
      case Kind::Boolean:
        worksheet_write_boolean(made, row, column, cell.value.AsBool() ? 1 : 0, format);
        break;
      case Kind::Date:
        AddDate(row, column, cell, format, made);
        break;
      case Kind::String:
        AddText(row, column, cell, format, made);
        break;
      default:
        worksheet_write_blank(made, row, column, format);
    }
  }

  static void AddDate(lxw_row_t row, lxw_col_t column, const Cell& cell, lxw_format* format,
                      lxw_worksheet* made) {
    const double days = cell.value.AsReal();
    if (const auto serial = SerialOf(days)) {
      worksheet_write_number(made, row, column, *serial, format);
    } else {
      worksheet_write_string(made, row, column, Utf8Of(TextOfDate(days)).c_str(), format);
    }
  }

  static void AddText(lxw_row_t row, lxw_col_t column, const Cell& cell, lxw_format* format,
                      lxw_worksheet* made) {
    const std::string text = CellText(cell.value.AsText());
    const auto write = cell.isFormula ? worksheet_write_formula : worksheet_write_string;
    write(made, row, column, text.c_str(), format);
  }

  // Null for a cell that looks like any other.
  lxw_format* FormatOf(StyleId id) {
    if (id == plainStyle) return nullptr;
    lxw_format*& format = formats_[id];
    if (format == nullptr) {
      format = workbook_add_format(made_);
      if (format == nullptr) throw ScriptError(outOfMemory);
      SetFormat(format, book_.Styles()->At(id));
    }
    return format;
  }

  const Book& book_;
  Pace pace_;
  std::vector<lxw_format*> formats_;  // by style; the library's own
  lxw_workbook* made_ = nullptr;
};

// The library does not notice that a disk is full while it collects the rows in temporary files.
void ExpectRoom(const Book& book, const fs::path& file) {
  constexpr std::uint64_t mostOfCell = 160;  // bytes, without its text; twice, rows and then the sheet
  constexpr std::uint64_t mostOfUnit = 6;    // a control character is written as _x0001_
  std::uint64_t needed = 0;
  for (const Ref<Sheet>& sheet : book.Sheets()) {
    needed += sheet->Rows().size() * mostOfCell;
    for (const auto& [place, cell] : sheet->Cells()) {
      needed += mostOfCell + (cell.value.IsString() ? cell.value.AsText().size() * mostOfUnit : 0);
    }
  }
  struct statvfs disk {};
  const fs::path folder = fs::temp_directory_path();
  if (statvfs(folder.c_str(), &disk) != 0) throw NotSaved(file, LastError().message());
  if (needed > std::uint64_t{disk.f_bavail} * disk.f_frsize) {
    throw NotSaved(file, "not enough room in " + folder.string());
  }
}

// What a descriptor holds, from its beginning, in pieces.
FillFile ContentOf(int descriptor) {
  return [descriptor](const TakePiece& take) {
    std::vector<char> block(std::size_t{64} << 10);
    for (off_t at = 0;;) {
      const ssize_t count = Uninterrupted([&] { return pread(descriptor, block.data(), block.size(), at); });
      if (count <= 0 || !take({block.data(), static_cast<std::size_t>(count)})) return;
      at += count;
    }
  };
}

}  // namespace

void WriteBook(const Book& book, const fs::path& file, Services& services) {
  ExpectRoom(book, file);
  const FileHandle content(memfd_create("workbook", MFD_CLOEXEC));
  if (content.Get() < 0) throw NotSaved(file, LastError().message());
  Writer writer(book, fmt::format("/proc/self/fd/{}", content.Get()), services);
  if (const lxw_error error = writer.Write(); error != LXW_NO_ERROR)
    throw NotSaved(file, lxw_strerror(error));
  AskToGoOn(services);
  if (const std::error_code error = WriteWholeFile(file, ContentOf(content.Get()))) {
    throw NotSaved(file, error.message());
  }
}

}  // namespace quarlin::vbs::sheets
