// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <utility>

#include "script/vbscript/machine/machine_calls.h"
#include "script/vbscript/machine/machine_debugging.h"
#include "script/vbscript/syntax/lexer.h"
#include "script/vbscript/syntax/parser.h"

namespace quarlin::vbs {
namespace {

constexpr int looksPerEvaluation = 400;  // some millions of steps

void PutStop(const Code& code, const Mark& mark, bool wanted) {
  Instruction& first = code.instructions[mark.instruction];
  if (wanted == (first.op == Op::Stop)) return;
  if (wanted) mark.stopped = first.op;
  first.op = wanted ? Op::Stop : mark.stopped;
}

}  // namespace

Op OperationAt(const Code& code, const Instruction& instruction) {
  if (instruction.op != Op::Stop) return instruction.op;
  return MarkBefore(code, static_cast<std::size_t>(&instruction - code.instructions.data()))->stopped;
}

void Machine::SetDebugHook(DebugHook* hook) {
  debugging_ = hook == nullptr ? nullptr : std::make_unique<Debugging>(*this, *hook);
}

void Machine::StopAt(StopsAt stops) {
  if (debugging_) debugging_->StopAt(std::move(stops));
}

Op Machine::StopHere() {
  const Frame& frame = frames_.Back();
  if (debugging_) debugging_->AtStatement();
  return OperationAt(*frame.code, *frame.instruction);
}

// An expression that is evaluated while the machine stands: Err stays as it is, nothing is told.
class Machine::Debugging::Evaluation {
 public:
  explicit Evaluation(Debugging& debugging) : debugging_(debugging), saved_(0) {
    const ErrObject& err = *debugging_.machine_.err_;
    saved_.number = err.Number;
    saved_.description = err.Description;
    saved_.source = err.Source;
    saved_.helpFile = err.HelpFile;
    saved_.helpContext = err.HelpContext;
    debugging_.evaluating_ = true;
    debugging_.looksLeft_ = looksPerEvaluation;
  }
  ~Evaluation() {
    debugging_.evaluating_ = false;
    debugging_.machine_.err_->Take(saved_);
  }
  Evaluation(const Evaluation&) = delete;
  Evaluation& operator=(const Evaluation&) = delete;

 private:
  Debugging& debugging_;
  ScriptError saved_;
};

void Machine::Debugging::StopAt(StopsAt stops) {
  stops_ = std::move(stops);
  for (const ProcedureSlot& slot : machine_.slots_) {
    if (slot.code) Follow(*slot.code);
  }
  for (std::size_t call = 0; call < machine_.frames_.Size(); ++call) Follow(*FrameOf(call).code);
}

void Machine::Debugging::Follow(const Code& code) const {
  if (!OfScript(code)) return;
  int line = 0;
  for (const Mark& mark : code.marks) {
    if (!mark.isStatement) continue;
    const bool first = mark.at.line != line;
    line = mark.at.line;
    PutStop(code, mark, stops_.everyStatement || (first && stops_.lines.contains(line)));
  }
}

void Machine::Debugging::AtStatement() {
  if (!evaluating_) hook_.AtStatement(*this);
}

void Machine::Debugging::Failed(ScriptError& error) {
  if (evaluating_ || error.isFinal) return;
  bool caught = false;
  for (std::size_t call = 0; call < machine_.frames_.Size(); ++call) caught |= FrameOf(call).resumeNext;
  try {
    hook_.AtError(*this, error, caught);
  } catch (const ScriptError& other) {
    error = other;
  }
}

void Machine::Debugging::CountLook() {
  if (evaluating_ && --looksLeft_ <= 0) ThrowStopped(u"The expression takes too long");
}

CallView Machine::ViewOf(const Frame& frame) const {
  const Code& code = *frame.code;
  const Mark* mark = MarkBefore(code, static_cast<std::size_t>(frame.instruction - code.instructions.data()));
  return {code.name, mark == nullptr ? Position{} : mark->at, code.source == script_};
}

CallView Machine::Where() {
  for (std::size_t i = frames_.Size(); i-- > 0;) {
    CallView view = ViewOf(frames_[i]);
    if (view.ofScript) return view;
  }
  return {};
}

CallView Machine::Debugging::CallAt(std::size_t call) const {
  return machine_.ViewOf(FrameOf(call));
}

// The first of all spellings in the script, which as a rule is that of the declaration.
const std::u16string& Machine::Debugging::Spelled(const std::u16string& folded) {
  if (spellings_.empty()) {
    Lexer words(*machine_.script_);
    for (Token word = words.Next(); word.kind != TokenKind::EndOfText; word = words.Next()) {
      if (IsName(word.kind)) {
        spellings_.try_emplace(Folded(word.text), word.text);
      }
    }
  }
  const auto found = spellings_.find(folded);
  return found == spellings_.end() ? folded : found->second;
}

std::vector<NamedValue> Machine::Debugging::Locals(std::size_t call) {
  Frame& frame = FrameOf(call);
  std::vector<NamedPlace> places = frame.code->names;
  std::sort(places.begin(), places.end(), [](const NamedPlace& left, const NamedPlace& right) {
    return left.place.number < right.place.number;
  });
  std::vector<NamedValue> locals;
  if (frame.me != nullptr) locals.push_back({u"Me", Value::Object(frame.me)});
  for (const NamedPlace& named : places) {
    locals.push_back({Spelled(named.name), frame.Registers()[named.place.number].Followed()});
  }
  if (frame.extras) {
    for (const auto& [name, value] : *frame.extras) locals.push_back({Spelled(name), value});
  }
  return locals;
}

std::vector<NamedValue> Machine::Debugging::Globals() {
  std::vector<NamedValue> globals(machine_.globals_.size());
  machine_.symbols_.EachVariable([&](const std::u16string& name, std::size_t number) {
    if (number < globals.size()) globals[number] = {Spelled(name), machine_.globals_[number]};
  });
  std::erase_if(globals, [](const NamedValue& global) { return global.name.empty(); });
  return globals;
}

Value Machine::Debugging::Evaluate(std::size_t call, std::u16string_view expression) {
  Frame& around = FrameOf(call);
  Unit unit;
  unit.source = std::make_shared<const std::u16string>(expression);
  unit.optionExplicit = true;
  const Surroundings seen{around.code, around.extras.get(), around.me ? &around.me->Info() : nullptr};
  const auto code = CompileEval(machine_.symbols_, unit, *ParseExpression(expression), seen);
  const Evaluation evaluation(*this);
  return machine_.RunSnippet(*code, around);
}

}  // namespace quarlin::vbs
