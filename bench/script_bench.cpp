// SPDX-License-Identifier: GPL-3.0-or-later
// What a hook of a script costs: one call that hands on what came, in both languages.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <memory>
#include <string>

#include "script/jscript/engine.h"
#include "script/serial_string.h"
#include "script/vbscript_engine.h"
#include "support/quiet_services.h"

namespace quarlin {
namespace {

constexpr std::u16string_view basicHooks =
    u"Sub HandOn\r\nStringReceived.OutputString = StringReceived.InputString\r\nEnd Sub\r\n"
    u"Sub Shorten\r\nDim text\r\ntext = StringReceived.InputString\r\n"
    u"If Left(text, 1) = \"W\" Then text = Mid(text, 2)\r\nStringReceived.OutputString = text\r\nEnd Sub\r\n";
constexpr std::u16string_view javaHooks =
    u"function HandOn() { StringReceived.OutputString = StringReceived.InputString; }\n"
    u"function Shorten() { var text = StringReceived.InputString; if (text.substr(0, 1) == \"W\") "
    u"text = text.substr(1); StringReceived.OutputString = text; }\n";

void Hook(benchmark::State& state, ScriptEngine& engine, std::u16string_view code,
          std::u16string_view procedure, std::string_view text) {
  vbs::Ref<SerialString> carrier(new SerialString);
  engine.AddObject(u"StringReceived", carrier.Get());
  engine.AddCode(code);
  for (auto step : state) {
    carrier->SetInputString(text);
    if (engine.HasProcedure(procedure)) engine.Run(procedure);
    benchmark::DoNotOptimize(carrier->OutputString());
  }
  state.SetItemsProcessed(state.iterations());
}

void VbscriptCharacter(benchmark::State& state) {
  vbs::QuietServices services;
  VbscriptEngine engine(services);
  Hook(state, engine, basicHooks, u"HandOn", "7");
}
BENCHMARK(VbscriptCharacter)->Name("VBScript/character");

void VbscriptString(benchmark::State& state) {
  vbs::QuietServices services;
  VbscriptEngine engine(services);
  Hook(state, engine, basicHooks, u"Shorten", "W,+0001.250,kg\r\n");
}
BENCHMARK(VbscriptString)->Name("VBScript/string");

void JscriptCharacter(benchmark::State& state) {
  vbs::QuietServices services;
  jscript::Engine engine(services);
  Hook(state, engine, javaHooks, u"HandOn", "7");
}
BENCHMARK(JscriptCharacter)->Name("JScript/character");

void JscriptString(benchmark::State& state) {
  vbs::QuietServices services;
  jscript::Engine engine(services);
  Hook(state, engine, javaHooks, u"Shorten", "W,+0001.250,kg\r\n");
}
BENCHMARK(JscriptString)->Name("JScript/string");

}  // namespace
}  // namespace quarlin

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
