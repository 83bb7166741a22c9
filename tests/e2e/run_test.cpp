// SPDX-License-Identifier: GPL-3.0-or-later
// The real program, headless, through a real pseudo-terminal.

#include <gtest/gtest.h>
#include <signal.h>

#include <memory>
#include <random>
#include <utility>

#include "base/files.h"
#include "base/text.h"
#include "e2e/real_program.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

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
  std::string name;
  std::string place;  // the instrument's option
  std::string udp;
  std::string checksum, listed;  // the instrument's name for it, and the list's
  std::string answerLength;
};

void PrintTo(const LinkCase& row, std::ostream* out) {
  *out << row.name;
}

// Against the simulated instrument, over each kind of link.
class RealLink : public RealProgram, public testing::WithParamInterface<LinkCase> {
 protected:
  void StartInstrument(const std::vector<std::string>& faults) {
    const std::string port = (folder / "a port").string();  // with a blank
    const bool network = !GetParam().udp.empty();
    std::vector<std::string> arguments{GetParam().place, network ? "0" : port, "--seed", "1"};
    arguments.insert(arguments.end(), faults.begin(), faults.end());
    instrument_ = std::make_unique<Program>("quarlin-instrument", arguments, folder.Path());
    const std::string place = instrument_->FirstOutputLine();
    ConfigureRun(network ? "NET" : port, "300");
    Configure("txtPort", place.substr(place.find(':') + 1));
    Configure("chkUDP", network ? GetParam().udp : "0");
  }

  // What the instrument says that it did.
  std::string EndInstrument() {
    instrument_->Signal(SIGINT);
    EXPECT_EQ(instrument_->Wait(), 0);
    return instrument_->Output();
  }

 private:
  std::unique_ptr<Program> instrument_;
};

INSTANTIATE_TEST_SUITE_P(Over, RealLink,
                         testing::Values(LinkCase{"Pty", "--link", "", "sysway", "Sysway", "23"},
                                         LinkCase{"Tcp", "--tcp", "0", "crc16modbus", "CRC16MODBUS", "25"},
                                         LinkCase{"Udp", "--udp", "1", "crc32", "CRC32", "29"}),
                         [](const auto& row) { return row.param.name; });

TEST_P(RealLink, EveryFaultThatTheInstrumentMadeIsCounted) {
  StartInstrument({"--checksum", GetParam().checksum, "--short", "0.05", "--bad-checksum", "0.05", "--err",
                   "0.05", "--split", "0.1"});
  Configure("txtlenrx", GetParam().answerLength);
  Configure("cboCheckSum", GetParam().listed);
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  EXPECT_EQ(program.Wait(), 1) << program.Errors();
  const std::string made = EndInstrument();
  const std::string report = program.Output();
  const int spoiled = Number(made, "short: ") + Number(made, "err: ");
  EXPECT_EQ(Number(report, "Tx :"), Number(made, "requests: "));
  EXPECT_EQ(Number(report, "Rx :"), 300);
  EXPECT_EQ(Number(report, "Error Len : "), Number(made, "short: ") + Number(made, "bad-checksum: "));
  EXPECT_EQ(Number(report, "Error     : "), spoiled + Number(made, "bad-checksum: "));
  EXPECT_EQ(Number(made, "requests: "), 300 + spoiled);
  EXPECT_GT(Number(made, "split: "), 0) << "over UDP, as several datagrams";
}

// None is answered, so that no answer can come at the moment of its time-out.
TEST_P(RealLink, EveryAnswerThatTheInstrumentDroppedIsATimeOut) {
  StartInstrument({"--drop", "1"});
  Configure("txtAnswerTime", "20");
  Configure("chkTimeout", "1");
  Configure("txtTimeout", "10");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  EXPECT_EQ(program.Wait(), 1) << program.Errors();
  const std::string made = EndInstrument();
  EXPECT_GE(Number(made, "dropped: "), 10);
  EXPECT_EQ(Number(program.Output(), "Tx :"), Number(made, "requests: "));
  EXPECT_EQ(Number(program.Output(), "Error     : "), Number(made, "dropped: "));
  EXPECT_EQ(Number(program.Output(), "Rx :"), 0);
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

// What the answer answers has arrived, but need not stand in the file yet.
TEST_F(RealProgram, ASignalEndsItInOrder) {
  ASSERT_FALSE(WriteWholeFile(folder / "Dialog.txt", "[COMMAND]\r\nhalf a line, the rest = OK\r\n"));
  Configure("cboSerial", wire.Path());
  Program& program = Start({"LOAD", "x", "LOG", "DIALOG"});
  const std::string before = Knock();
  wire.Send("half a line");
  ASSERT_TRUE(LogHolds("half a line")) << "flushed within a second";
  wire.Send(", the rest\r\n");
  wire.Serve([](std::string_view) { return ""; }, [&] { return wire.Received() == "OK\r\n"; });
  program.Signal(SIGINT);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(FileText("LOG.TXT"), before + "half a line, the rest\r\nOK\r\n");
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
  EXPECT_NE(program.Output().find(wire.Path() + " 9600,n,8,1 has gone"), std::string::npos)
      << "in the report";
  EXPECT_NE(program.Errors().find(" has gone: Input/output error"), std::string::npos) << program.Errors();
}

TEST_F(RealProgram, APortThatCannotBeOpenedIsStatusTwo) {
  ConfigureRun((folder / "nothing").string(), "10");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_NE(program.Errors().find("CommOpen (CreateFile) "), std::string::npos) << program.Errors();
  EXPECT_NE(FileText("Report.json").find("\"ended\": \"set-up failed\""), std::string::npos);
  EXPECT_NE(FileText("junit.xml").find("<error"), std::string::npos);
}

TEST_F(RealProgram, AnOptionThatNobodyKnowsStartsNothing) {
  ConfigureRun(wire.Path(), "10");
  Program& program = Start({"--lod", "RUN", "EXIT"});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_TRUE(program.Errors().starts_with("quarlin: unknown option --lod\n")) << program.Errors();
  EXPECT_NE(program.Errors().find("quarlin [--headless] [KEYWORD...]"), std::string::npos) << "the usage";
  EXPECT_EQ(program.Output(), "");
}

TEST_F(RealProgram, AMessageIsOneLineOnStandardError) {
  ConfigureRun(wire.Path(), "10");
  Configure("chkStop", "1");
  Configure("txtlenrx", "99");
  Program& program = Start({"LOAD", "RUN", "EXIT"});
  wire.Serve([](std::string_view) { return "12.5 kg\r\n"; }, [&] { return !program.Running(); });
  EXPECT_EQ(program.Wait(), 1);
  EXPECT_EQ(program.Errors(),
            "ERROR STRING: STRING LENGTH NOT EQUAL\n"
            "quarlin: stopped: ERROR STRING: STRING LENGTH NOT EQUAL; 1 error\n");
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
  bool greeted = false;  // until the task has said its word, the first answer is held back
  bool asked = false;
  wire.Serve(
      [&](std::string_view request) {
        (request == "HELLO74\r\n" ? greeted : asked) = true;
        return greeted && std::exchange(asked, false) ? "12.5 kg\xE9\r\n" : "";
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
