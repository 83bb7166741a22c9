// SPDX-License-Identifier: GPL-3.0-or-later
// The files of the program folder that the user edits: made by their buttons, taken up when they change.

#include <gtest/gtest.h>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

class FilesRig : public FrmMainRig {
 protected:
  void Save(std::string_view name, std::string_view content) {
    ASSERT_FALSE(WriteWholeFile(folder / name, content));
    TakeUp();
  }
  void TakeUp() {
    loop.ServeDescriptors();
    Pass(50ms);
  }
  const Words& Offered() { return controls().cycle.CBOSEND.List(); }
  std::string Place() { return controls().cycle.lblSequence.Caption(); }
};

TEST_F(FilesRig, AButtonMakesItsFileOnceAndWhatIsSavedIsOfferedWhileTheTextStays) {
  Start();
  controls().cycle.CBOSEND.SetText("HALF TYP");
  EXPECT_EQ(FileText("Command.txt"), "(none)");
  controls().edit.cmdEditCommand.Click();
  EXPECT_EQ(opener.opened, Words{"Command.txt"});
  EXPECT_EQ(Note(), "Command.txt was made, with entries to begin with");
  TakeUp();
  EXPECT_EQ(Offered().front(), "READ");

  Save("Command.txt", "\xEF\xBB\xBFTARE\r\n\r\n{02}Z\xC3\xA9");
  EXPECT_EQ(Offered(), (Words{"TARE", "{02}Z\xE9"}));
  controls().edit.cmdEditCommand.Click();
  EXPECT_EQ(opener.opened.size(), 2U);
  EXPECT_EQ(Offered().size(), 2U) << "an existing file is left as it is";
  EXPECT_EQ(controls().cycle.CBOSEND.Text(), "HALF TYP");

  std::filesystem::remove(folder / "Command.txt");
  TakeUp();
  EXPECT_EQ(Offered(), Words{});
}

TEST_F(FilesRig, AFileThatCannotBeOfferedIsToldAndTheRestGoesOn) {
  Start();
  struct {
    const char* what;
    std::string content;
    std::size_t offered;
    const char* told;
  } const rows[]{
      {"a line too long", "A\n" + std::string(40'000, 'x') + "\nB", 2,
       "Command.txt: 1 line of more than 32767 characters left out"},
      {"huge", std::string((16U << 20) + 1, 'x'), 2, "Command.txt has more than 16 MiB and is not read"},
      {"no text", std::string("\0\xFF\x01\n\x02", 5), 2, ""},
      {"empty", "", 0, ""},
  };
  for (const auto& row : rows) {
    controls().status.lblStatusNote.SetCaption("");
    Save("Command.txt", row.content);
    EXPECT_EQ(Offered().size(), row.offered) << row.what;
    EXPECT_EQ(Note(), row.told) << row.what;
  }
  std::string many;
  for (int i = 0; i < 10'001; ++i) many += std::to_string(i) + "\n";
  Save("Command.txt", many);
  EXPECT_EQ(Offered().size(), 10'000U);
  std::filesystem::remove(folder / "Command.txt");
  std::filesystem::create_directory(folder / "Command.txt");
  TakeUp();
  EXPECT_EQ(Note(), "Command.txt cannot be read: Is a directory");
}

TEST_F(FilesRig, ASequenceBeginsAtTheChosenLineAndShowsItsPlace) {
  Start();
  controls().cycle.chkSequence.SetChecked(true);
  EXPECT_EQ(Place(), "there is no sequence.txt yet");
  Save("sequence.txt", "A\nB\nC\n");
  EXPECT_EQ(Place(), "begins at line 1 of 3");
  ListBox& list = controls().cycle.lstSequence;
  list.SetListIndex(1);
  EXPECT_EQ(Place(), "begins at line 2 of 3");

  controls().run.HScroll1.SetValue(100);
  Connect();
  StartCycle();
  Pass(150ms);
  EXPECT_EQ(Place(), "line 2 of 3");
  Pass(180ms);
  EXPECT_EQ(list.ListIndex(), 0) << "the line that was sent last is marked";

  Save("sequence.txt", "X\nY\n");
  EXPECT_EQ(Place(), "line 1 of 3 (file changed: from the next start)");
  Pass(100ms);
  EXPECT_EQ(scale.Written(), "B\r\nC\r\nA\r\nB\r\n") << "a run keeps its lines";
  StartCycle();
  EXPECT_EQ(Place(), "ended at line 2 of 3");
  EXPECT_EQ(list.ListCount(), 2);
  EXPECT_EQ(list.Text(), "Y") << "the choice from before the run";
  StartCycle();
  Pass(150ms);
  EXPECT_EQ(scale.Written().substr(12), "Y\r\n");
}

TEST_F(FilesRig, ConvertedCharactersAreForTheEyeOrForTheChecksAndNeverForTheLog) {
  Start();
  controls().display.chkLog.SetChecked(true);
  controls().receive.chkConvert.SetChecked(true);
  EXPECT_EQ(Note(), "there is no Conversion.txt yet: nothing is converted");
  controls().edit.cmdEditConversion.Click();
  TakeUp();
  Save("Conversion.txt", "065\t<a>\n013\t<CR>\n000\t\nbad\tX\n");
  Pass(StatusNote::shownAtLeast);
  EXPECT_EQ(Note(), "Conversion.txt, line 4: bad is no code from 000 to 255");

  Connect();
  const std::string answer("A\0B\r\n", 5);
  struct {
    std::size_t choice;
    std::string parsed;
  } const rows[]{{0, answer}, {1, "<a>B\r\n"}};
  for (const auto& row : rows) {
    controls().receive.optConvert[row.choice].SetValue(true);
    scale.Receive(answer);
    Pass(100ms);
    EXPECT_EQ(controls().receive.txtparser.Text(), row.parsed);
    EXPECT_EQ(Shown().at(row.choice), "<a>B<CR>");
  }
  EXPECT_EQ(FileText("LOG.TXT"), answer + answer);
}

}  // namespace
}  // namespace quarlin
