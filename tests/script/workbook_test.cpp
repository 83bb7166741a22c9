// SPDX-License-Identifier: GPL-3.0-or-later
// What "Excel.Application" writes, as another reader of the format finds it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <pugixml.hpp>
#include <sstream>

#include "base/files.h"
#include "script/values/conversions.h"
#include "script/vbscript/machine/engine.h"
#include "support/quiet_services.h"
#include "support/temp_folder.h"

namespace quarlin::vbs {
namespace {

namespace fs = std::filesystem;

// The parts of a workbook's file, unpacked by python.
class WrittenBook {
 public:
  explicit WrittenBook(const fs::path& file) {
    const std::string command = std::string(QUARLIN_PYTHON) + " -m zipfile -e '" + file.string() + "' '" +
                                parts_.Path().string() + "'";
    if (std::system(command.c_str()) != 0) throw std::runtime_error("no archive: " + file.string());
    Load(styles_, "xl/styles.xml");
    Load(book_, "xl/workbook.xml");
  }

  std::string Sheets() const {
    std::string names;
    for (const auto& sheet : book_.child("workbook").child("sheets").children("sheet")) {
      names += std::string(sheet.attribute("name").value()) + " " + sheet.attribute("state").value() + ";";
    }
    return names;
  }

  pugi::xml_node Sheet(int number) {
    Load(sheet_, "xl/worksheets/sheet" + std::to_string(number) + ".xml");
    return sheet_.child("worksheet");
  }

  // "text 007 bold 0.00": kind and content, and what of the look is not usual.
  std::string Cell(int sheet, const std::string& address) {
    const auto cell = Sheet(sheet).find_node([&](const pugi::xml_node& node) {
      return std::string_view(node.name()) == "c" && node.attribute("r").value() == address;
    });
    if (!cell) return "none";
    return Content(cell) + Look(cell.attribute("s").as_int());
  }

 private:
  void Load(pugi::xml_document& document, const std::string& part) const {
    if (!document.load_file((parts_ / part).c_str())) throw std::runtime_error("not well-formed: " + part);
  }

  static std::string Content(const pugi::xml_node& cell) {
    const std::string kind = cell.attribute("t").value();
    const std::string value = cell.child_value("v");
    if (cell.child("f")) return std::string("formula ") + cell.child_value("f");
    if (kind == "inlineStr") return std::string("text ") + cell.child("is").child_value("t");
    if (kind == "b") return "flag " + value;
    return value.empty() ? "blank" : "number " + value;
  }

  static pugi::xml_node Nth(pugi::xml_node list, int index) {
    auto item = list.first_child();
    while (index-- > 0) item = item.next_sibling();
    return item;
  }

  std::string Look(int style) const {
    const auto sheet = styles_.child("styleSheet");
    const auto look = Nth(sheet.child("cellXfs"), style);
    const auto font = Nth(sheet.child("fonts"), look.attribute("fontId").as_int());
    std::string told;
    const std::string name = font.child("name").attribute("val").value();
    if (name != "Calibri") told += " " + name;
    for (const char* flag : {"b", "i", "u", "strike"})
      told += font.child(flag) ? std::string(" ") + flag : "";
    if (const auto color = font.child("color").attribute("rgb"))
      told += std::string(" color ") + color.value();
    const auto fill = Nth(sheet.child("fills"), look.attribute("fillId").as_int());
    if (const auto color = fill.child("patternFill").child("fgColor").attribute("rgb")) {
      told += std::string(" fill ") + color.value();
    }
    for (const auto& format : sheet.child("numFmts").children("numFmt")) {
      if (format.attribute("numFmtId").as_int() != look.attribute("numFmtId").as_int()) continue;
      told += std::string(" ") + format.attribute("formatCode").value();
    }
    const auto border = Nth(sheet.child("borders"), look.attribute("borderId").as_int());
    for (const char* side : {"left", "right", "top", "bottom"}) {
      if (const auto line = border.child(side).attribute("style")) {
        told += std::string(" ") + side + ":" + line.value();
      }
    }
    const auto alignment = look.child("alignment").attribute("horizontal");
    return told + (alignment ? std::string(" ") + alignment.value() : "");
  }

  TempFolder parts_;
  pugi::xml_document styles_;
  pugi::xml_document book_;
  pugi::xml_document sheet_;
};

class WorkbookTest : public testing::Test {
 protected:
  class BenchServices : public QuietServices {
   public:
    fs::path Folder() const override { return folder.Path(); }
    int MsgBox(std::u16string_view, std::int32_t, std::u16string_view) override { return answer; }
    bool MayGoOn() override { return mayGoOn; }

    TempFolder folder;
    int answer = 6;  // Yes
    bool mayGoOn = true;
  };

  WorkbookTest() { engine_.AddObject(u"Bench", ObjectRef(new Bench(services)), true); }

  void Run(std::string_view script) {
    engine_.AddCode(
        Utf16Of("Set xl = CreateObject(\"Excel.Application\"): Set wb = xl.Workbooks.Add\r\n"
                "Set ws = wb.ActiveSheet\r\n" +
                std::string(script)));
  }

  fs::path File(std::string_view name) const { return services.folder / name; }

  BenchServices services;

 private:
  // Stops: from then on the script is not to go on.
  class Bench final : public TableObject<Bench> {
   public:
    explicit Bench(BenchServices& services) : services_(services) {}
    std::u16string_view TypeName() const override { return u"Bench"; }
    static const auto& Members() {
      static constexpr std::array<Member<Bench>, 1> members{{{u"Stops", MemberKind::Method, 0, 0, Stop}}};
      return members;
    }

   private:
    static Value Stop(Bench& self, Arguments) {
      self.services_.mayGoOn = false;
      return {};
    }
    BenchServices& services_;
  };

  Engine engine_{services};
};

TEST_F(WorkbookTest, CellsKeepTheirKindsAndLooks) {
  Run(R"vbs(ws.Cells.Font.Name = "Arial"
ws.Columns("B").NumberFormat = "0.00"
ws.Rows(1).Font.Bold = True
ws.Range("A1:C1").Value = Array("Time", "Weight", "<&> ""ok""")
ws.Cells(2, 1) = #2/29/2024 1:45:30 PM#
ws.Cells(2, 2) = 12.5
ws.Cells(2, 3) = True
ws.Cells(3, 1) = "007"
ws.Cells(3, 2).Formula = "=SUM(B2:B2)"
ws.Cells(3, 3) = "a" & Chr(0) & Chr(7) & vbCrLf & ChrW(&H20AC) & Chr(128) & Chr(150)
ws.Cells(4, 1) = #1/15/1900#
ws.Cells(4, 2) = #1/1/1850#
ws.Cells(4, 3) = 1E+300
ws.Cells(5, 1) = "cleared": ws.Cells(5, 1) = Empty
ws.Range("E1:F2").Interior.Color = RGB(255, 128, 0)
ws.Range("E1:F2").Font.Color = vbBlack
ws.Range("E5:F6").Borders(9).Weight = -4138
ws.Range("E8").Borders.LineStyle = 1
ws.Range("E8").HorizontalAlignment = -4108
wb.SaveAs "kinds")vbs");
  const std::pair<const char*, const char*> cells[] = {
      {"A1", "text Time Arial b"},
      {"B1", "text Weight Arial b 0.00"},
      {"C1", "text <&> \"ok\" Arial b"},
      {"A2", "number 45351.57326388889 Arial yyyy-mm-dd hh:mm:ss"},
      {"B2", "number 12.5 Arial 0.00"},
      {"C2", "flag 1 Arial"},
      {"A3", "text 007 Arial"},
      {"B3", "formula SUM(B2:B2) Arial 0.00"},
      {"C3", "text a\u2400_x0007_\n\u20ac\u20ac\u2013 Arial"},
      {"A4", "number 15 Arial yyyy-mm-dd"},
      {"B4", "text 1/1/1850 Arial 0.00"},
      {"C4", "number 1E+300 Arial"},
      {"A5", "none"},
      {"E2", "blank Arial color FF000000 fill FFFF8000"},
      {"E5", "none"},
      {"F6", "blank Arial bottom:medium"},
      {"E8", "blank Arial left:thin right:thin top:thin bottom:thin center"},
  };
  WrittenBook book(File("kinds.xlsx"));
  for (const auto& [address, expected] : cells) EXPECT_EQ(book.Cell(1, address), expected) << address;
}

TEST_F(WorkbookTest, SheetsColumnsAndMergedCellsAreThere) {
  Run(R"(ws.Name = "First"
ws.Cells(1, 1) = "quite a long heading"
ws.Columns("A").AutoFit
ws.Columns("C:D").ColumnWidth = 20
ws.Rows(3).RowHeight = 30
With wb.Worksheets.Add(, ws)
  .Name = "Größe & Co"
  .Range("A1:C2").Merge
  .Range("A1") = 1
  .Range("A1:C1").Font.Bold = True
End With
wb.Worksheets.Add(ws).Visible = False
wb.Worksheets(2).Activate
wb.SaveAs "sheets")");
  WrittenBook book(File("sheets.xlsx"));
  EXPECT_EQ(book.Sheets(), "Sheet3 hidden;First ;Größe & Co ;");
  EXPECT_EQ(book.Cell(3, "A1"), "number 1 b");
  EXPECT_STREQ(book.Sheet(3).child("mergeCells").first_child().attribute("ref").value(), "A1:C2");
  const auto columns = book.Sheet(2).child("cols");
  EXPECT_GT(columns.first_child().attribute("width").as_double(), 20);
  EXPECT_NEAR(columns.last_child().attribute("width").as_double(), 20, 1);
  EXPECT_STREQ(columns.last_child().attribute("max").value(), "4");
  EXPECT_EQ(book.Sheet(2).child("sheetData").last_child().attribute("ht").as_int(), 30);
}

// The old file stays when the new one cannot be made or is not wanted.
TEST_F(WorkbookTest, AFileIsReplacedAsAWholeOrNotAtAll) {
  WriteInPlace(File("kept.xlsx"), "old");
  services.answer = 7;  // No
  EXPECT_THROW(Run("ws.Cells(1, 1) = 1: wb.SaveAs \"kept.xlsx\""), ScriptError);
  EXPECT_EQ(ReadWholeFile(File("kept.xlsx")), "old");

  EXPECT_THROW(
      Run("xl.DisplayAlerts = False: ws.Range(\"A1:A3000\") = 1: Bench.Stops: wb.SaveAs \"kept.xlsx\""),
      ScriptError);
  EXPECT_EQ(ReadWholeFile(File("kept.xlsx")), "old");

  services.mayGoOn = true;
  Run("xl.DisplayAlerts = False: ws.Cells(1, 1) = 5: wb.SaveAs \"kept.xlsx\"");
  EXPECT_EQ(WrittenBook(File("kept.xlsx")).Cell(1, "A1"), "number 5");
  EXPECT_EQ(std::distance(fs::directory_iterator(services.folder.Path()), {}), 1)
      << "nothing is left beside it";
}

}  // namespace
}  // namespace quarlin::vbs
