// SPDX-License-Identifier: GPL-3.0-or-later
// The language, told by scripts that carry what they are to print:
//   Print 1 + 1  ' expect: 2
// Each "' expect:" names the next printed line; blanks at the ends do not count. A script that is to fail
// says so in its last line: "' ends with error NUMBER line L column C".
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "base/text.h"
#include "script/values/conversions.h"
#include "script/values/heap.h"
#include "script/vbscript/machine/engine.h"
#include "support/temp_folder.h"

namespace quarlin::vbs {
namespace {

const std::filesystem::path scripts = QUARLIN_TEST_SCRIPTS;

using Lines = std::vector<std::string>;

class StandingClock : public Clock {
 public:
  Instant Now() const override { return Instant{}; }
  LocalTime Local() const override {
    using namespace std::chrono;
    return local_days(2024y / February / 29) + 13h + 45min + 30s + 250ms;
  }
};

// Boxes become printed lines and are answered at once: Yes where there is one, and the proposed text.
class BenchServices : public Services {
 public:
  explicit BenchServices(Lines& printed) : printed_(printed) {}

  const Clock& Time() const override { return clock_; }
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override {
    constexpr std::int32_t yesNo = 4;
    printed_.push_back("box " + Utf8Of(text) + " " + std::to_string(style) + " " + Utf8Of(title));
    return (style & yesNo) != 0 ? 6 : 1;
  }
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override {
    printed_.push_back("ask " + Utf8Of(prompt) + " " + Utf8Of(title) + " " + Utf8Of(proposal));
    return proposal.empty() ? std::nullopt : std::optional(std::u16string(proposal));
  }
  std::filesystem::path Folder() const override { return folder_.Path(); }
  bool MayGoOn() override { return true; }

 private:
  Lines& printed_;
  StandingClock clock_;
  TempFolder folder_;
};

class Printer : public TableObject<Printer> {
 public:
  explicit Printer(Lines& printed) : printed_(printed) {}
  std::u16string_view TypeName() const override { return u"Printer"; }

  static const auto& Members() {
    static constexpr std::array<Member<Printer>, 1> members{{{u"Print", MemberKind::Method, 0, 60, Print}}};
    return members;
  }

 private:
  static Value Print(Printer& self, Arguments values) {
    std::string line;
    for (const Value& value : values) {
      if (&value != values.data()) line += ' ';
      line += value.IsNull() ? "Null" : Utf8Of(ToText(Plain(value)));
    }
    self.printed_.push_back(line);
    return {};
  }

  Lines& printed_;
};

// Little memory, so that a script gets at the end of it quickly.
class LittleMemory {
 public:
  LittleMemory() { heap::SetLimit(std::size_t{64} << 20); }
  ~LittleMemory() { heap::SetLimit(std::size_t{1} << 30); }
};

class Bench {
 public:
  Bench() { engine_.AddObject(u"Bench", ObjectRef(new Printer(printed_)), true); }

  // The error that ended the script.
  std::optional<ScriptError> Run(std::string_view source) {
    try {
      engine_.AddCode(Utf16Of(source));
    } catch (const ScriptError& error) {
      return error;
    }
    return std::nullopt;
  }

  const Lines& Printed() const { return printed_; }

 private:
  Lines printed_;
  LittleMemory memory_;
  BenchServices services_{printed_};
  Engine engine_{services_};
};

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Told(const ScriptError& error) {
  std::ostringstream text;
  text << "error " << error.number << " line " << error.position.line << " column " << error.position.column;
  return text.str();
}

struct Expectation {
  int line;
  std::string text;
};

std::vector<Expectation> AllBehind(std::string_view mark, const std::string& source) {
  std::vector<Expectation> found;
  int number = 0;
  for (const std::string& line : SplitLines(source)) {
    ++number;
    if (const auto at = line.rfind(mark); at != std::string::npos) {
      found.push_back({number, std::string(TrimBlanks(std::string_view(line).substr(at + mark.size())))});
    }
  }
  return found;
}

void ComparePrinted(const std::string& file, const std::vector<Expectation>& expected, const Lines& printed) {
  for (std::size_t i = 0; i < std::max(expected.size(), printed.size()); ++i) {
    const int line = i < expected.size() ? expected[i].line : expected.empty() ? 1 : expected.back().line;
    const std::string wanted = i < expected.size() ? "\"" + expected[i].text + "\"" : "nothing more";
    const std::string got =
        i < printed.size() ? "\"" + std::string(TrimBlanks(printed[i])) + "\"" : "nothing more";
    if (wanted == got) continue;
    ADD_FAILURE_AT(file.c_str(), line) << "printed " << got << ", expected " << wanted;
    if (i >= expected.size() || i >= printed.size()) return;
  }
}

class LanguageTest : public testing::TestWithParam<std::string> {};

TEST_P(LanguageTest, PrintsWhatItSays) {
  const std::string file = (scripts / (GetParam() + ".vbs")).string();
  const std::string source = ReadFile(file);
  Bench bench;
  const auto error = bench.Run(source);
  ComparePrinted(file, AllBehind("' expect:", source), bench.Printed());

  const auto ends = AllBehind("' ends with ", source);
  const std::string end = error ? Told(*error) : "no error";
  const std::string wanted = ends.empty() ? "no error" : ends.back().text;
  if (end != wanted) {
    ADD_FAILURE_AT(file.c_str(), error ? error->position.line : 1)
        << "ended with " << end << ", expected " << wanted;
  }
}

std::vector<std::string> AllScripts() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(scripts)) {
    if (entry.path().extension() == ".vbs") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Scripts, LanguageTest, testing::ValuesIn(AllScripts()),
                         [](const auto& script) { return script.param; });

// A row of a table of errors: "NUMBER LINE COLUMN DESCRIPTION" and below it the script, up to "----". A "-"
// stands for any place, and an empty description for any.
struct FailingScript {
  int row = 0;
  std::string number, line, column, description;
  std::string source;

  bool Matches(const ScriptError& error) const {
    const auto fits = [](const std::string& wanted, int value) {
      return wanted == "-" || wanted == std::to_string(value);
    };
    return fits(number, error.number) && fits(line, error.position.line) &&
           fits(column, error.position.column) &&
           (description.empty() || description == Utf8Of(error.FullDescription()));
  }
};

std::vector<FailingScript> ReadTable(const std::string& file) {
  std::vector<FailingScript> table;
  int row = 0;
  bool header = true;
  for (const std::string& line : SplitLines(ReadFile(file))) {
    ++row;
    if (header) {
      FailingScript& script = table.emplace_back();
      script.row = row;
      std::istringstream fields(line);
      fields >> script.number >> script.line >> script.column >> std::ws;
      std::getline(fields, script.description);
    } else if (line != "----") {
      table.back().source += line + "\r\n";
    }
    header = line == "----";
  }
  return table;
}

void CheckTable(const char* name, void (*checkMore)(const FailingScript& script, const Bench& bench)) {
  const std::string file = (scripts / name).string();
  const auto table = ReadTable(file);
  ASSERT_FALSE(table.empty());
  for (const FailingScript& script : table) {
    Bench bench;
    const auto error = bench.Run(script.source);
    if (!error || !script.Matches(*error)) {
      ADD_FAILURE_AT(file.c_str(), script.row)
          << (error ? Told(*error) + ", " + Utf8Of(error->FullDescription()) : "no error");
    }
    checkMore(script, bench);
  }
}

TEST(LanguageErrorTest, ATextThatDoesNotCompileDoesNothing) {
  CheckTable("compile_errors.txt", [](const FailingScript& script, const Bench& bench) {
    EXPECT_TRUE(bench.Printed().empty()) << script.source;
    EXPECT_THROW(Engine::Check(Utf16Of(script.source)), ScriptError) << script.source;
  });
}

TEST(LanguageErrorTest, AFailingStatementIsToldByItsPlace) {
  CheckTable("runtime_errors.txt", [](const FailingScript& script, const Bench&) {
    EXPECT_NO_THROW(Engine::Check(Utf16Of(script.source))) << script.source;
  });
}

TEST(LanguageErrorTest, TheLineOfAnErrorIsQuoted) {
  Bench bench;
  const auto error = bench.Run("x = 1\r\n  y = 1 / 0 ' here\r\n");
  ASSERT_TRUE(error);
  EXPECT_NE(Utf8Of(error->LineText()).find("y = 1 / 0"), std::string::npos);
  EXPECT_EQ(Utf8Of(error->source), "VBScript runtime error");
}

}  // namespace
}  // namespace quarlin::vbs
