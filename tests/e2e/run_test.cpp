// The real program, headless, through a real pseudo-terminal.

#include <gtest/gtest.h>
#include <signal.h>

#include <memory>
#include <random>
#include <thread>

#include "base/files.h"
#include "base/text.h"
#include "e2e/program.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

class RealProgram : public testing::Test {
 protected:
  // One record of config.cfg behind those already there.
  void Configure(std::string name, std::string text, std::string index = "") {
    name.resize(20, ' ');
    text.resize(100, ' ');
    index.resize(2, ' ');
    config_ += name + text + index;
  }

  // A run that asks for weights and waits for each answer.
  void ConfigureRun(const std::string& port, const std::string& requests) {
    Configure("cboSerial", port);
    Configure("CBOSEND", "READ");
    Configure("Check1", "1");
    Configure("Check2", "1");
    Configure("Text1", requests);
    Configure("txtInterval", "0");
    Configure("txtAnswerTime", "100");
  }

  Program& Start(const std::vector<std::string>& words) {
    EXPECT_FALSE(WriteWholeFile(folder / "config.cfg", config_));
    std::vector<std::string> arguments{"--headless"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    config_.clear();
    program_ = std::make_unique<Program>("quarlin", arguments, folder.Path(),
                                         std::map<std::string, std::string>{{"QUARLIN_HOME", folder.Path()}});
    return *program_;
  }

  std::string FileText(std::string_view name) { return ReadWholeFile(folder / name).value_or("(none)"); }

  // The number behind `label` in a report or in what the instrument says.
  static int Number(const std::string& text, const std::string& label) {
    const std::size_t at = text.find("\n" + label);
    return at == std::string::npos ? -1 : std::stoi(text.substr(at + 1 + label.size()));
  }

  bool LogHolds(std::string_view text) {
    return Eventually([&] { return FileText("LOG.TXT").find(text) != std::string::npos; });
  }

  // What arrives before the port is open is thrown away by the opening, so this knocks until it is heard.
  // Returns what the log holds then.
  std::string Knock() {
    for (int i = 0; i < 10 && FileText("LOG.TXT") == "(none)"; ++i) {
      wire.Send("go\r\n");
      Eventually([&] { return FileText("LOG.TXT") != "(none)"; }, 1500ms);
    }
    return FileText("LOG.TXT");
  }

  TempFolder folder;
  Wire wire;

 private:
  std::string config_;
  std::unique_ptr<Program> program_;
};

TEST_F(RealProgram, AsksCountsLogsReportsAndEnds) {
  ConfigureRun(wire.Path(), "100");
  Program& program = Start({"LOAD", "RUN", "LOGPAR", "EXIT"});
  wire.Serve([](std::string_view) { return "12.5 kg\r\n"; }, [&] { return !program.Running(); });
  ASSERT_EQ(program.Wait(), 0);
  std::string requests;
  std::string exchange;
  for (int i = 0; i < 100; ++i) {
    requests += "READ\r\n";
    exchange += "READ\r\n12.5 kg\r\n";
  }
  EXPECT_EQ(wire.Received(), requests);
  EXPECT_EQ(FileText("LOG.TXT"), exchange);
  EXPECT_EQ(FileText("LOGPAR.TXT").size(), 900U);
  const std::string output = program.Output();
  EXPECT_EQ(Number(output, "Tx :"), 100);
  EXPECT_EQ(Number(output, "Rx :"), 100);
  EXPECT_EQ(Number(output, "Error     : "), 0);
  EXPECT_EQ(output.substr(0, 13), "READ\n12.5 kg\n");
  EXPECT_EQ(program.Errors(), "");
}

struct LinkCase {
  const char* name;
  std::vector<std::string> instrument;  // where it plays
  const char* udp;
};

TEST_F(RealProgram, CountsEveryFaultThatTheInstrumentMadeOverEveryLink) {
  const std::string port = (folder / "a port").string();  // with a blank
  for (const LinkCase& link : std::vector<LinkCase>{{"pseudo-terminal", {"--link", port}, ""},
                                                    {"TCP", {"--tcp", "0"}, "0"},
                                                    {"UDP", {"--udp", "0"}, "1"}}) {
    SCOPED_TRACE(link.name);
    std::vector<std::string> arguments = link.instrument;
    for (const char* word : {"--seed", "1", "--checksum", "sysway", "--drop", "0.05", "--short", "0.05",
                             "--bad-checksum", "0.05", "--err", "0.05", "--split", "0.1"}) {
      arguments.emplace_back(word);
    }
    Program instrument("quarlin-instrument", arguments, folder.Path());
    const std::string place = instrument.FirstOutputLine();
    ConfigureRun(*link.udp == 0 ? port : "NET", "300");
    Configure("txtPort", place.substr(place.find(':') + 1));
    Configure("chkUDP", *link.udp == 0 ? "0" : link.udp);
    Configure("txtlenrx", "23");
    Configure("cboCheckSum", "Sysway");
    Program& program = Start({"LOAD", "RUN", "EXIT"});
    EXPECT_EQ(program.Wait(60s), 1) << program.Errors();
    instrument.Signal(SIGINT);
    ASSERT_EQ(instrument.Wait(), 0);
    const std::string made = instrument.Output();
    const std::string report = program.Output();
    const int spoiled = Number(made, "short: ") + Number(made, "dropped: ") + Number(made, "err: ");
    EXPECT_EQ(Number(report, "Tx :"), Number(made, "requests: "));
    EXPECT_EQ(Number(report, "Rx :"), 300);
    EXPECT_EQ(Number(report, "Error Len : "), Number(made, "short: ") + Number(made, "bad-checksum: "));
    EXPECT_EQ(Number(report, "Error     : "), spoiled + Number(made, "bad-checksum: "));
    EXPECT_EQ(Number(made, "requests: "), 300 + spoiled);
    EXPECT_GT(Number(made, "dropped: "), 0);
    EXPECT_GT(Number(made, "split: "), 0) << "over UDP, as several datagrams";
  }
}

TEST_F(RealProgram, AnswersAsTheInstrumentAndTakesAChangedTableAtOnce) {
  const auto table = [this](const std::string& weight) {
    EXPECT_FALSE(
        WriteWholeFile(folder / "dialog.TXT", "[command]\r\nread = " + weight + "[CHECKSUMSYS]\r\n"));
  };
  table("10");
  Configure("cboSerial", wire.Path());
  Start({"LOAD", "DIALOG"});
  const auto asked = [&](const std::string& expected) {
    return Eventually([&] {
      const std::size_t before = wire.Received().size();
      wire.Send("READ\r\n");
      wire.Serve([](std::string_view) { return ""; }, [&] { return wire.Received().size() > before; }, 300ms);
      return wire.Received().ends_with(expected);
    });
  };
  EXPECT_TRUE(asked("1001\r\n"));
  table("20");
  EXPECT_TRUE(asked("2002\r\n"));
}

TEST_F(RealProgram, LogsEveryByteOfAFlood) {
  std::string flood;
  std::mt19937 random(7);
  while (flood.size() < 3'000'000) {
    for (int i = 0; i < 30; ++i) flood += static_cast<char>(random() % 256);
    flood += "\r\n";
  }
  Configure("cboSerial", wire.Path());
  Program& program = Start({"LOAD", "x", "LOG"});
  const std::string before = Knock();
  wire.Send(flood);
  EXPECT_TRUE(Eventually([&] { return FileText("LOG.TXT").size() >= before.size() + flood.size(); }));
  EXPECT_TRUE(FileText("LOG.TXT") == before + flood);
  program.Signal(SIGTERM);
  EXPECT_TRUE(program.Wait().has_value());
}

TEST_F(RealProgram, ASignalEndsItInOrder) {
  Configure("cboSerial", wire.Path());
  Program& program = Start({"LOAD", "x", "LOG"});
  const std::string before = Knock();
  wire.Send("half a line");
  ASSERT_TRUE(LogHolds("half a line")) << "flushed within a second";
  wire.Send(", the rest");
  std::this_thread::sleep_for(50ms);  // on its way through the program, not yet in the file
  program.Signal(SIGINT);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(FileText("LOG.TXT"), before + "half a line, the rest");
  EXPECT_EQ(Number(program.Output(), "Tx :"), 0) << "the report is printed";
}

TEST_F(RealProgram, APortThatVanishesEndsTheRunWithStatusOne) {
  ConfigureRun(wire.Path(), "100000");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  int answers = 0;
  wire.Serve([&](std::string_view) { return ++answers, "OK\r\n"; }, [&] { return answers >= 50; });
  wire.HangUp();
  EXPECT_EQ(program.Wait(), 1);
  EXPECT_GE(Number(program.Output(), "Rx :"), 49);
}

TEST_F(RealProgram, APortThatCannotBeOpenedIsStatusTwo) {
  ConfigureRun((folder / "nothing").string(), "10");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_NE(program.Errors().find("CommOpen (CreateFile) "), std::string::npos) << program.Errors();
}

TEST_F(RealProgram, AMessageIsOneLineOnStandardError) {
  ConfigureRun(wire.Path(), "10");
  Configure("chkStop", "1");
  Configure("txtlenrx", "99");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  wire.Serve([](std::string_view) { return "12.5 kg\r\n"; }, [&] { return !program.Running(); });
  EXPECT_EQ(program.Wait(), 1);
  EXPECT_EQ(program.Errors(), "ERROR STRING: STRING LENGTH NOT EQUAL\n");
}

TEST_F(RealProgram, AScriptAppendsChecksumsAndReplacesAnswers) {
  ASSERT_FALSE(WriteWholeFile(folder / "sum.vbs", R"(Option Explicit
Sub SendString
  Dim text, sum, i
  text = Replace(StringToSend.InputString, vbCrLf, "")
  For i = 1 To Len(text): sum = (sum + Asc(Mid(text, i, 1))) Mod 256: Next
  StringToSend.OutputString = text & Right("0" & Hex(sum), 2) & vbCrLf
End Sub
Sub ReceiveChar: CharReceived.OutputString = UCase(CharReceived.InputString): End Sub
Sub ReceiveString
  StringReceived.OutputString = "<" & Replace(StringReceived.InputString, vbCrLf, "") & ">"
End Sub
Sub InitTask: TimerTask.Interval = 1: TimerTask.SendString = "HELLO": End Sub
Sub EndTask: FormMain.SendString "BYE": MsgBox "bye", vbInformation, "Script": End Sub
)"));
  ConfigureRun(wire.Path(), "20");
  Configure("txtScriptFile", "sum.vbs");
  Configure("chkEnableScript", "1");
  Program& program = Start({"LOAD", "RUN", "LOGPAR", "EXIT"});
  wire.Serve(
      [](std::string_view request) {
        return request.find("READ") != std::string_view::npos ? "12.5 kg\xE9\r\n" : "";
      },
      [&] { return !program.Running(); });
  ASSERT_EQ(program.Wait(), 0) << program.Errors() << program.Output() << wire.Received();
  std::string requests = wire.Received();
  const std::size_t hello = requests.find("HELLO74\r\n");
  ASSERT_NE(hello, std::string::npos) << requests;
  requests.erase(hello, 9);
  std::string expected;
  std::string parsed;
  for (int i = 0; i < 20; ++i) {
    expected += "READ1C\r\n";
    parsed += "<12.5 KG\xC9>";
  }
  EXPECT_EQ(requests, expected + "BYE");
  EXPECT_EQ(FileText("LOGPAR.TXT"), parsed);
  EXPECT_EQ(program.Errors(), "Script: bye\n");
}

TEST_F(RealProgram, ADamagedConfigurationLoadsWhatIsSound) {
  Configure("\0\xFF garbage"s, "\x01\x02");
  Configure("Check1", "many");
  ConfigureRun(wire.Path(), "3");
  Configure("chkStopif", "1", "zz");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  wire.Serve([](std::string_view) { return "OK\r\n"; }, [&] { return !program.Running(); });
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(Number(program.Output(), "Rx :"), 3);
}

}  // namespace
}  // namespace quarlin
