// SPDX-License-Identifier: GPL-3.0-or-later
// Configuration files of any name, and the question before edited settings are lost.

#include <gtest/gtest.h>

#include "config/configurations.h"
#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using Captions = std::vector<std::string>;
using Files = std::vector<std::filesystem::path>;

class ConfigurationTest : public FrmMainRig {
 protected:
  ConfigurationTest() { Start(); }

  // As the view does it.
  void Edit(CheckBox& box, bool checked) {
    configuration.Edited.AboutToEdit(box, box.Caption());
    box.SetChecked(checked);
  }
  Captions Edited() { return configuration.Edited.Captions(); }

  Configurations& configuration = frm.Configuration();
  CheckBox& waitAnswer = controls().run.Check1;
  std::filesystem::path scale = folder / "scale.cfg";
};

TEST_F(ConfigurationTest, OnlyWhatTheUserChangedIsEdited) {
  controls().receive.chkDialog.SetChecked(true);  // by a script
  EXPECT_EQ(Edited(), Captions());
  Edit(waitAnswer, true);
  EXPECT_EQ(Edited(), Captions{"Wait Answer"});
  Edit(waitAnswer, false);
  EXPECT_EQ(Edited(), Captions());
  configuration.Edited.AboutToEdit(controls().run.HScroll1, "Interval");
  controls().run.HScroll1.SetValue(9);  // which writes txtInterval
  configuration.Edited.AboutToEdit(controls().cycle.CBOSEND, "Command");
  controls().cycle.CBOSEND.SetText("READ");
  EXPECT_EQ(Edited(), Captions{"Interval"});
  controls().config.cmdSave[0].Click();
  EXPECT_EQ(Edited(), Captions());
  waitAnswer.SetChecked(true);  // by a script
  Edit(waitAnswer, false);      // as it was saved
  EXPECT_EQ(Edited(), Captions());
}

TEST_F(ConfigurationTest, TheAnswerToTheQuestionIsDone) {
  EXPECT_EQ(SaveQuestion("a.cfg", {"1", "2", "3", "4", "5", "6", "7"}),
            "Save the changed settings to a.cfg?\n\nChanged: 1, 2, 3, 4, 5 and 2 more");
  struct Case {
    SaveAnswer answer;
    bool ends, saves;
  };
  for (const Case& row : {Case{SaveAnswer::Cancel, false, false}, Case{SaveAnswer::Save, true, true},
                          Case{SaveAnswer::Discard, true, false}}) {
    EXPECT_TRUE(configuration.SaveAs(scale));
    Edit(waitAnswer, !waitAnswer.Checked());
    const std::string before = FileText("scale.cfg");
    prompts.saveAnswer = row.answer;
    EXPECT_EQ(configuration.MayLose(), row.ends);
    EXPECT_EQ(FileText("scale.cfg") != before, row.saves);
  }
  EXPECT_EQ(prompts.shown.size(), 3U);
}

TEST_F(ConfigurationTest, ASecondClickOnTheCloseBoxAndASignalWhileItAsks) {
  Edit(waitAnswer, true);
  prompts.saveAnswer = SaveAnswer::Cancel;
  prompts.whileShown = [this] { frm.RequestUnload(); };
  frm.RequestUnload();
  Pass(std::chrono::seconds(1));
  EXPECT_FALSE(loop.ExitStatus());
  EXPECT_EQ(prompts.shown.size(), 1U);
  prompts.saveAnswer = SaveAnswer::Save;
  prompts.whileShown = [this] { frm.Unload(EndCause::Signal); };
  frm.RequestUnload();
  Pass(std::chrono::seconds(1));
  EXPECT_TRUE(loop.ExitStatus());
  EXPECT_EQ(FileText("config.cfg"), "(none)");
}

TEST_F(ConfigurationTest, AFileThatIsNoneChangesNothing) {
  waitAnswer.SetChecked(true);
  ASSERT_TRUE(configuration.SaveAs(scale));
  waitAnswer.SetChecked(false);
  const std::string good = FileText("scale.cfg");
  std::string damaged = good;
  damaged[122 * 3 + 4] = '\x01';
  const std::string foreign = "Strange" + std::string(115, ' ');
  const auto file = folder / "other.cfg";
  const std::vector<std::pair<std::string, std::string>> contents{
      {"", "it is empty"},
      {good.substr(0, 1000), "its end is missing"},
      {damaged, "it is no configuration, or damaged"},
      {std::string(2'000'000, 'x'), "it is too large for a configuration"},
      {foreign, "it holds no setting of this program"},
  };
  for (const auto& [content, fault] : contents) {
    WriteInPlace(file, content);
    configuration.Open(file);
    EXPECT_EQ(Note(), "other.cfg was not loaded: " + fault);
    EXPECT_FALSE(waitAnswer.Checked());
    EXPECT_EQ(configuration.Current(), scale);
    if (content.empty()) continue;
    EXPECT_FALSE(configuration.SaveAs(file));  // somebody's file, chosen by mistake
  }
  WriteInPlace(file, good + foreign);  // of a later version
  configuration.Open(file);
  EXPECT_TRUE(waitAnswer.Checked());
  EXPECT_EQ(configuration.Recent.Files(), (Files{file, scale}));
  std::filesystem::remove(scale);
  configuration.Open(scale);
  EXPECT_EQ(Note(), "scale.cfg was not loaded: it is not there");
  EXPECT_EQ(configuration.Recent.Files(), Files{file});
}

}  // namespace
}  // namespace quarlin
