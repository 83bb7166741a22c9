// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/config_file.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "base/files.h"
#include "controls/controls.h"
#include "link/link_controls.h"
#include "support/file_size_limit.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

struct Settings : ControlGroup {
  using ControlGroup::ControlGroup;
  CheckBox chkEnableScript{*this, "chkEnableScript", "Scripting"};
  TextBox txtparser{*this, "txtparser"};
  Label lblsend{*this, "lblsend", "0"};
  ComboBox cboSerial{*this, "cboSerial", {"COM1", "COM2"}, "COM1"};
  CommandButton Command1{*this, "Command1", "Start"};
  TextBoxArray<12> txtCounter{*this, "txtCounter"};
  CheckBox chkLog{*this, "chkLog", "Log"};
  OptionArray<3> Option4{*this, "Option4", {"A", "B", "C"}, 0};
};

constexpr std::size_t recordSize = 122;

std::string Padded(std::string_view text, std::size_t size) {
  std::string field(text);
  field.resize(size, ' ');
  return field;
}

std::string Record(std::string_view name, std::string_view text, std::string_view index = "") {
  return Padded(name, 20) + Padded(text, 100) + Padded(index, 2);
}

class ConfigRig : public testing::Test {
 protected:
  ConfigRig() {
    window_.Add(settings_);
    settings_.txtparser.Change = [this] { Note("txtparser"); };
    settings_.cboSerial.Change = [this] { Note("cboSerial"); };
    settings_.chkLog.Click = [this] { Note("chkLog"); };
    settings_.chkEnableScript.Click = [this] { Note("chkEnableScript"); };
    settings_.Option4.OnClick([this] { Note("Option4"); });
  }

  void Save() { ASSERT_FALSE(SaveConfig(window_, file_).error); }
  bool Load() { return LoadConfig(window_, file_); }
  bool Load(std::string_view content) {
    WriteInPlace(file_, content);
    return Load();
  }
  std::string Saved() const { return ReadWholeFile(file_).value_or(""); }

  // The n-th record of the file, from 0.
  std::string SavedRecord(std::size_t n) const { return Saved().substr(n * recordSize, recordSize); }

  // What a load would leave, in one line.
  std::string Shown() {
    std::string text = "parser=" + settings_.txtparser.Text() + " port=" + settings_.cboSerial.Text();
    text += " log=" + std::to_string(settings_.chkLog.Value()) + " counters=";
    for (std::size_t i = 0; i < 12; ++i) text += settings_.txtCounter[i].Text() + ",";
    const auto option = settings_.Option4.Selected();
    return text + " option=" + (option ? std::to_string(*option) : "none");
  }

  void Note(std::string_view control) { fired_ += std::string(control) + " "; }

  TempFolder folder_;
  std::filesystem::path file_ = folder_ / "config.cfg";
  VirtualLoop loop_;
  Settings settings_{loop_};
  ControlCollection window_;
  std::string fired_;
};

TEST_F(ConfigRig, SavesTheRecordsOfEverythingThatHasAValueInOrder) {
  settings_.txtparser.SetText("<A>");
  settings_.txtCounter[11].SetText("7");
  settings_.chkLog.SetValue(2);
  settings_.Option4[1].SetValue(true);
  Save();

  std::string expected =
      Record("chkEnableScript", "0") + Record("txtparser", "<A>") + Record("cboSerial", "COM1");
  for (int i = 0; i < 12; ++i) expected += Record("txtCounter", i == 11 ? "7" : "", std::to_string(i));
  expected += Record("chkLog", "2");
  for (int i = 0; i < 3; ++i) expected += Record("Option4", i == 1 ? "1" : "0", std::to_string(i));
  EXPECT_EQ(Saved(), expected);
}

TEST_F(ConfigRig, CutsNamesAndTextsToTheirFields) {
  struct Odd : ControlGroup {
    using ControlGroup::ControlGroup;
    TextBox longName{*this, "txtANameOfTwentyTwoXYZ", "v"};
    TextBox noName{*this, "", "never saved"};
  } odd(loop_);
  ControlCollection controls;
  controls.Add(odd);
  ASSERT_FALSE(SaveConfig(controls, file_).error);
  EXPECT_EQ(Saved(), Record("txtANameOfTwentyTwoXYZ", "v"));

  settings_.txtparser.SetText(std::string(99, 'x') + "yz" + std::string(49, 'z'));
  Save();
  EXPECT_EQ(SavedRecord(1), Record("txtparser", std::string(99, 'x') + "y"));
  settings_.txtparser.SetText("");
  ASSERT_TRUE(Load());
  EXPECT_EQ(settings_.txtparser.Text(), std::string(99, 'x') + "y");
}

TEST_F(ConfigRig, RestoresEveryValueByteForByteSaveOuterBlanks) {
  std::string allBytes;
  for (int code = 255; code >= 0; --code) allBytes += static_cast<char>(code);
  const struct {
    std::string given;
    std::string expected;
  } cases[] = {
      {"12.5 kg\r\n", "12.5 kg\r\n"},
      {"  two words ", "two words"},
      {"\r\n", "\r\n"},
      {"\t", "\t"},
      {"", ""},
      {allBytes.substr(0, 100), allBytes.substr(0, 100)},
      {allBytes.substr(156), allBytes.substr(156)},
  };
  for (const auto& row : cases) {
    settings_.txtparser.SetText(row.given);
    settings_.cboSerial.SetText("/dev/ttyUSB0");
    settings_.chkLog.SetValue(2);
    settings_.txtCounter[10].SetText("ten");
    settings_.Option4[2].SetValue(true);
    Save();
    settings_.txtparser.SetText("other");
    settings_.cboSerial.SetText("COM2");
    settings_.chkLog.SetValue(0);
    settings_.txtCounter[10].SetText("");
    settings_.Option4[0].SetValue(true);
    ASSERT_TRUE(Load());
    EXPECT_EQ(Shown(),
              "parser=" + row.expected + " port=/dev/ttyUSB0 log=2 counters=,,,,,,,,,,ten,, option=2");
  }
  EXPECT_EQ(settings_.cboSerial.ListIndex(), -1);
}

TEST_F(ConfigRig, SavingNeverShortensTheFileAndTheRestIsLoadedAgain) {
  const std::size_t own = 19;  // records of this window
  std::string longer;
  for (std::size_t i = 0; i < own; ++i) longer += Record("fromAnEarlierSave", "x");
  longer += Record("txtCounter", "kept", "3") + "half a record";
  ASSERT_FALSE(WriteWholeFile(file_, longer));
  Save();
  EXPECT_EQ(Saved().size(), longer.size());
  EXPECT_EQ(SavedRecord(own - 1), Record("Option4", "0", "2"));
  EXPECT_EQ(Saved().substr(own * recordSize), longer.substr(own * recordSize));
  ASSERT_TRUE(Load());
  EXPECT_EQ(settings_.txtCounter[3].Text(), "kept");
}

TEST_F(ConfigRig, LoadsWhatIsSoundAndPassesOverTheRest) {
  const std::string before = "parser= port=COM1 log=2 counters=,,,,,,,,,,,, option=0";
  const std::string nuls(recordSize, '\0');
  const struct {
    std::string given;
    std::string expected;
  } cases[] = {
      {"", before},
      {Record("chkLog", "1").substr(0, recordSize - 1), before},
      {nuls + Record("chkLog", "1"), "parser= port=COM1 log=1 counters=,,,,,,,,,,,, option=0"},
      {Record("chklog", "1") + Record("chkLo", "1") + Record("", "1"), before},
      {Record("chkLog", "yes") + Record("chkLog", "") + Record("chkLog", "1x"), before},
      {Record("chkLog", "32768") + Record("chkLog", "-99999999999"), before},
      {Record("chkLog", std::string("1\0", 2)), before},
      {Record("chkLog", " 0 "), "parser= port=COM1 log=0 counters=,,,,,,,,,,,, option=0"},
      {Record("chkLog", "-1"), "parser= port=COM1 log=1 counters=,,,,,,,,,,,, option=0"},
      {Record("chkLog", "1", "0"), before},
      {Record("txtCounter", "a", "01") + Record("txtCounter", "b", " 2") + Record("txtCounter", "c", "11"),
       "parser= port=COM1 log=2 counters=,a,b,,,,,,,,,c, option=0"},
      {Record("txtCounter", "a", "x") + Record("txtCounter", "b", "-1") + Record("txtCounter", "c", "12"),
       before},
      {Record("txtCounter", "a") + Record("txtCounter", "b", "4"),
       "parser= port=COM1 log=2 counters=a,a,a,a,b,a,a,a,a,a,a,a, option=0"},
      {Record("Option4", "0", "0") + Record("Option4", "1", "1"),
       "parser= port=COM1 log=2 counters=,,,,,,,,,,,, option=1"},
      {Record("Option4", "1", "2") + Record("Option4", "true", "1"),
       "parser= port=COM1 log=2 counters=,,,,,,,,,,,, option=2"},
      {Record("Option4", "0"), "parser= port=COM1 log=2 counters=,,,,,,,,,,,, option=none"},
      {Record("lblsend", "99") + Record("Command1", "&Stop"), before},
      {Record("txtparser", "old") + Record("txtparser", "new"),
       "parser=new port=COM1 log=2 counters=,,,,,,,,,,,, option=0"},
  };
  for (const auto& row : cases) {
    ASSERT_TRUE(Load(Record("txtparser", "") + Record("cboSerial", "COM1") + Record("chkLog", "2") +
                     Record("txtCounter", "") + Record("Option4", "1", "0")));
    ASSERT_TRUE(Load(row.given));
    EXPECT_EQ(Shown(), row.expected) << testing::PrintToString(row.given);
    EXPECT_EQ(settings_.lblsend.Caption() + settings_.Command1.Caption(), "0Start");
  }
}

TEST_F(ConfigRig, AFullDiskLeavesTheSavedSettingsAndCutValuesAreNamed) {
  settings_.txtparser.SetText("kept");
  Save();
  const std::string before = Saved() + Record("fromAnEarlierSave", "x");
  ASSERT_FALSE(WriteWholeFile(file_, before));
  settings_.txtparser.SetText(std::string(101, 'x'));
  {
    const FileSizeLimit full(recordSize);
    EXPECT_EQ(SaveConfig(window_, file_).Text("config.cfg"), "config.cfg was not saved: File too large");
  }
  EXPECT_EQ(Saved(), before);
  EXPECT_EQ(SaveConfig(window_, file_).Text("config.cfg"),
            "config.cfg saved; txtparser was cut at 100 characters");
  settings_.txtCounter[3].SetText(std::string(150, 'x'));
  settings_.txtCounter[4].SetText(std::string(100, 'x'));
  EXPECT_EQ(SaveConfig(window_, file_).Text("config.cfg"),
            "config.cfg saved; txtparser, txtCounter(3) were cut at 100 characters");
}

TEST_F(ConfigRig, SurvivesAnyGarbage) {
  std::mt19937 random(1);
  Save();
  const std::string sound = Saved();
  for (int round = 0; round < 200; ++round) {
    std::string content = sound;
    for (int i = 0; i < 300; ++i) content[random() % content.size()] = static_cast<char>(random());
    content.resize(random() % (content.size() + 1));
    EXPECT_TRUE(Load(content));
  }
}

TEST_F(ConfigRig, RunsTheHandlersOfWhatChangesAndScriptingLast) {
  const std::string content = Record("chkEnableScript", "1") + Record("txtparser", "x") +
                              Record("chkLog", "1") + Record("Option4", "0", "0") +
                              Record("Option4", "1", "1") + Record("cboSerial", "COM2");
  ASSERT_TRUE(Load(content));
  EXPECT_EQ(fired_, "txtparser chkLog Option4 cboSerial chkEnableScript ");
  fired_.clear();
  ASSERT_TRUE(Load(content));
  EXPECT_EQ(fired_, "");
}

TEST_F(ConfigRig, NoFileChangesNothingAndABlockedOneIsAnError) {
  EXPECT_FALSE(Load());
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_EQ(fired_, "");
  std::filesystem::create_directory(file_);
  EXPECT_FALSE(Load());
  EXPECT_EQ(SaveConfig(window_, file_).error, std::errc::is_a_directory);
}

// The box is older than the choice: a file may hold either or both, in any order.
TEST_F(ConfigRig, TheFlowControlOfAnyFileStandsInTheBoxAndInTheChoice) {
  const std::string on = Record("chkRTS", "1");
  const std::string off = Record("chkRTS", "0");
  const auto choice = [](std::string_view text) { return Record("cboFlow", text); };
  const std::vector<std::pair<std::string, std::string>> cases{
      {on, "RTS/CTS 1"},
      {off, "none 0"},
      {choice("XON/XOFF") + off, "XON/XOFF 0"},
      {off + choice("XON/XOFF"), "XON/XOFF 0"},
      {choice("RTS/CTS") + on, "RTS/CTS 1"},
      {on + choice("rts/cts"), "RTS/CTS 1"},
      {choice("none") + off, "none 0"},
      {choice("RTS/CTS"), "RTS/CTS 1"},
  };
  for (const char* before : {"none", "RTS/CTS", "XON/XOFF"}) {
    for (const auto& [file, expected] : cases) {
      LinkControls link(loop_);
      ControlCollection window;
      window.Add(link);
      link.cboFlow.SetText(before);
      const bool stays = expected.starts_with(before);
      link.FlowChanged = [&, file = file] {  // clang before 16 cannot capture a binding
        EXPECT_TRUE(!stays || link.cboFlow.Text() == before) << file;
      };
      WriteInPlace(file_, file);
      ASSERT_TRUE(LoadConfig(window, file_));
      EXPECT_EQ(link.cboFlow.Text() + " " + std::to_string(link.chkRTS.Value()), expected) << before;
    }
  }
}

}  // namespace
}  // namespace quarlin
