// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <utility>

#include "script/library/create_object.h"
#include "script/values/array.h"
#include "script/values/conversions.h"
#include "script/values/effort.h"
#include "script/values/indexing.h"
#include "script/vbscript/machine/machine_calls.h"
#include "script/vbscript/syntax/parser.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t mostBounds = 60;

void Follow(Value* arguments, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (arguments[i].Is(Kind::Reference)) arguments[i] = Value(arguments[i].Place());
  }
}

// The objects among the arguments must not live on in the registers that they were given in.
void LetGo(Value* arguments, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) arguments[i].Clear();
}

bool Unchanged(const Value& left, const Value& right) {
  if (left.GetKind() != right.GetKind()) return false;
  switch (left.GetKind()) {
    case Kind::Single:
    case Kind::Double:
    case Kind::Date:
      return left.AsReal() == right.AsReal();
    case Kind::String:
      return left.AsText().data() == right.AsText().data();
    case Kind::Array:
      return &left.AsArray() == &right.AsArray();
    case Kind::Object:
      return left.AsObject() == right.AsObject();
    default:
      return left.AsWhole() == right.AsWhole();
  }
}

}  // namespace

std::u16string_view Machine::NameAt(const Instruction& instruction) const {
  if (instruction.d == noSite) return {};
  return frames_.Back().code->sites[instruction.d].name;
}

int Machine::FindMember(Dispatch& object, const Site& site) {
  const void* shape = object.Shape();
  if (shape != nullptr && shape == site.shape) return site.member;
  const auto member = object.Find(site.name);
  if (!member) throw ScriptError(noSuchMember, site.name);
  site.shape = shape;
  site.member = *member;
  site.method = Site::noMethod;
  return *member;
}

namespace {

// The target as an instance of the class whose method the site found the last time, or null.
Instance* WithKnownMethod(const Value& target, const Site& site) {
  if (site.method == Site::noMethod || !target.IsObject() || target.IsNothing()) return nullptr;
  Dispatch* object = target.AsObject();
  return object->Shape() == site.shape ? static_cast<Instance*>(object) : nullptr;
}

}  // namespace

// True when a method was entered, whose value will come to `result`; otherwise it is there. Null: nobody
// wants it.
bool Machine::GetMember(const Value& target, const Site& site, Value* arguments, std::size_t count,
                        Value* result) {
  if (Instance* instance = WithKnownMethod(target, site)) {
    Enter(site.method, arguments, count, instance, result);
    return true;
  }
  if (!target.IsObject() || target.IsNothing()) throw ScriptError(objectRequired, site.object);
  const ObjectRef object(target.AsObject());
  const int number = FindMember(*object, site);
  Instance* instance = object->AsInstance();
  if (instance == nullptr) {
    Follow(arguments, count);
    effort::Spend(effort::stepsOfHostCall);
    Value got = object->Invoke(number, {arguments, count});
    LetGo(arguments, count);
    if (result != nullptr) result->Swap(got);
    return false;
  }
  const ClassMember* member = instance->MemberAt(number);
  if (member == nullptr || (member->isPrivate && frames_.Back().me != instance)) {
    throw ScriptError(noSuchMember, site.name);
  }
  if (member->get != ClassMember::none) {
    const auto slot = static_cast<std::size_t>(member->get);
    if (count == 0 || CodeOf(slot).parameters > 0) {
      if (!member->isPrivate) site.method = slot;
      Enter(slot, arguments, count, instance, result);
      return true;
    }
  }
  Follow(arguments, count);
  Value got = GetFrom(*instance, *member, {arguments, count});
  LetGo(arguments, count);
  if (result != nullptr) result->Swap(got);
  return false;
}

// True when a Property Let or Set was entered.
bool Machine::PutMember(const Value& target, const Site& site, Value* indices, std::size_t count,
                        const Value& value, PutKind kind) {
  if (!target.IsObject() || target.IsNothing()) throw ScriptError(objectRequired, site.object);
  const ObjectRef object(target.AsObject());
  const int number = FindMember(*object, site);
  if (kind == PutKind::Set && !value.IsObject()) throw ScriptError(objectRequired, site.name);
  Instance* instance = object->AsInstance();
  if (instance == nullptr) {
    Follow(indices, count);
    effort::Spend(effort::stepsOfHostCall);
    object->Put(number, {indices, count}, Value(value), kind);  // a copy: it may run code that moves ours
    return false;
  }
  const ClassMember* member = instance->MemberAt(number);
  if (member == nullptr || (member->isPrivate && frames_.Back().me != instance)) {
    throw ScriptError(noSuchMember, site.name);
  }
  if (member->field != ClassMember::none) {
    Follow(indices, count);
    PutInto(*instance, *member, {indices, count}, value, kind);
    return false;
  }
  const int slot = kind == PutKind::Let ? member->let : member->set;
  if (slot == ClassMember::none) throw ScriptError(noSuchMember, site.name);
  Value* top = Top();
  stack_.Reach(top + count + 1);
  for (std::size_t i = 0; i < count; ++i) top[i] = indices[i].Followed();
  top[count] = value;
  Enter(static_cast<std::size_t>(slot), top, count + 1, instance, nullptr);
  return true;
}

// The variable of that name as things stand: one that a text has made in this procedure, or a global one.
Value* Machine::VariableNow(const std::u16string& folded, const std::optional<Symbol>& symbol) {
  const Frame& frame = frames_.Back();
  if (frame.extras) {
    const auto known = frame.extras->find(folded);
    if (known != frame.extras->end()) return &known->second;
  }
  return symbol && symbol->kind == SymbolKind::Variable ? &globals_[symbol->number] : nullptr;
}

bool Machine::CallLate(const Site& site, Value* arguments, std::size_t count, Value* result) {
  const std::u16string folded = Folded(site.name);
  const auto symbol = symbols_.Find(folded);
  const Value* variable = VariableNow(folded, symbol);
  if (variable == nullptr && symbol && symbol->kind == SymbolKind::Procedure) {
    Enter(symbol->number, arguments, count, nullptr, result);
    return true;
  }
  if (variable == nullptr) throw ScriptError(typeMismatch, site.name);
  Follow(arguments, count);
  Value got = IndexValue(*variable, {arguments, count}, site.name);
  LetGo(arguments, count);
  if (result != nullptr) result->Swap(got);
  return false;
}

Value Machine::ReadLate(const Site& site, bool mustExist) {
  const std::u16string folded = Folded(site.name);
  const auto symbol = symbols_.Find(folded);
  if (const Value* variable = VariableNow(folded, symbol)) return *variable;
  if (!symbol && mustExist) throw ScriptError(variableUndefined, site.name);
  if (!symbol) return {};
  return symbol->kind == SymbolKind::Procedure ? RunSlot(symbol->number, nullptr, {}) : symbol->value;
}

Value Machine::PlaceLate(const Site& site) {
  const std::u16string folded = Folded(site.name);
  const auto symbol = symbols_.Find(folded);
  if (Value* variable = VariableNow(folded, symbol)) return Value::To(*variable);
  throw ScriptError(symbol ? illegalAssignment : variableUndefined, site.name);
}

Value Machine::ArgumentLate(const Site& site) {
  const std::u16string folded = Folded(site.name);
  Value* variable = VariableNow(folded, symbols_.Find(folded));
  return variable != nullptr ? Value::To(*variable) : ReadLate(site, true);
}

void Machine::CallBuiltin(const Builtin& builtin, Arguments arguments, Value& result) {
  const int count = static_cast<int>(arguments.size());
  if (count < builtin.fewest || count > builtin.most) throw ScriptError(wrongArgumentCount, builtin.name);
  result = builtin.function(library_, arguments);
}

ObjectRef Machine::Make(std::u16string_view programId) {
  return CreateLibraryObject(services_, &holders_, programId);
}

Value Machine::MakeObject(const Site& site) {
  if (site.member == 0) {
    const std::u16string folded = Folded(site.name);
    const auto number = symbols_.FindClass(folded);
    if (!number && folded == u"regexp") {
      return Value::Object(Make(u"VBScript.RegExp"));
    }
    if (!number) throw ScriptError(classNotDefined, site.name);
    site.member = static_cast<int>(*number) + 1;  // a class keeps its number for good
  }
  const std::shared_ptr<const ClassInfo> info = classes_[static_cast<std::size_t>(site.member) - 1];
  Ref<Instance> made(new Instance(info, link_, &holders_));
  if (info->initialize != ClassMember::none) {
    RunSlot(static_cast<std::size_t>(info->initialize), made.Get(), {});
  }
  return Value::Object(made.Get());
}

void Machine::Redimension(Value& array, const Value* bounds, std::size_t count, bool preserve) {
  std::array<std::int32_t, mostBounds> numbers;
  if (count > mostBounds) throw ScriptError(subscriptOutOfRange);
  for (std::size_t i = 0; i < count; ++i) numbers[i] = ToLong(bounds[i].Followed());
  const std::span<const std::int32_t> sizes(numbers.data(), count);
  if (array.IsArray() && array.AsArray().Fixed()) throw ScriptError(arrayFixedOrLocked);
  if (preserve && array.IsArray()) {
    array.OwnArray().Preserve(sizes);
  } else {
    Value made = Value::Array(ArrayBody::Make(sizes));
    array.Swap(made);
    LetArrayGo(made);
  }
}

void Machine::Erase(Value& array) {
  if (!array.IsArray()) throw ScriptError(typeMismatch);
  if (!array.AsArray().Fixed()) {
    Value unsized = Value::Array(ArrayBody::Make({}));
    array.Swap(unsized);
    return LetArrayGo(unsized);
  }
  ArrayBody& own = array.OwnArray();
  std::vector<Value> items(own.Items().size());
  own.Items().swap(items);
  LetItemsGo(std::move(items));
}

void Machine::PutBack(Value& array, const Value* indices, std::size_t count, const Value& element) {
  if (!array.IsArray()) return;  // the default member of an object was read
  const IndexNumbers numbers({indices, count});
  if (!array.IsArray() || Unchanged(array.AsArray().At(numbers.Span()), element)) return;
  array.OwnArray().At(numbers.Span()) = element;
}

Value Machine::Execute(Op op, const Value& text) {
  const std::u16string source = ToText(text);
  Frame& around = frames_.Back();
  if (op == Op::ExecuteGlobal) {
    RunText(SourceOf(source));
    return {};
  }
  Unit unit;
  unit.source = SourceOf(source);
  const Surroundings seen{around.code, around.extras.get(), around.me ? &around.me->Info() : nullptr};
  if (op == Op::Eval) {
    const auto expression = ParseExpression(source);
    const auto code = CompileEval(symbols_, unit, *expression, seen);
    return RunSnippet(*code, around);
  }
  ast::Program program = Parse(source);
  const auto shared = std::make_shared<const Unit>(unit);
  Declare(program, shared);
  MakeGlobals();
  symbols_.Settle(globals_);
  const auto code = CompileSnippet(symbols_, *shared, program, seen);
  RunSnippet(*code, around);
  return {};
}

namespace {

Value& ExtraIn(Frame& frame, const std::u16string& name) {
  constexpr std::size_t bytesPerNode = 64;
  if (!frame.extras) frame.extras = std::make_unique<Extras>();
  Extras& extras = *frame.extras;
  if (const auto known = extras.find(name); known != extras.end()) return known->second;
  extras.share.Resize(extras.share.Bytes() + sizeof(Extras::value_type) + bytesPerNode +
                      name.size() * sizeof(char16_t));
  return extras[name];
}

}  // namespace

// Where the procedure around a text has what both call by the same names, and what the text alone makes.
std::vector<Value*> Machine::PlacesIn(Frame& around, const Code& code) {
  std::vector<Value*> places;
  for (const NamedPlace& import : code.imports) {
    const auto& names = around.code->names;
    const auto known = std::find_if(names.begin(), names.end(),
                                    [&](const NamedPlace& place) { return place.name == import.name; });
    places.push_back(known != names.end() ? &around.Registers()[known->place.number].Followed()
                                          : &ExtraIn(around, import.name));
  }
  return places;
}

// Each name that the text shares with the procedure around it becomes a Reference to that one's place. From
// the push on nothing may fail before the loop runs: the frame would outlive its code.
Value Machine::RunSnippet(const Code& code, Frame& around) {
  const Nesting nesting(*this);
  const Frame* const entry = frames_.Top();
  const std::vector<Value*> places = PlacesIn(around, code);
  Push(code, Top(), 0, around.me, nullptr);
  for (std::size_t i = 0; i < places.size(); ++i) {
    frames_.Back().Registers()[code.imports[i].place.number] = Value::To(*places[i]);
  }
  return RunFrom(entry);
}

Value Machine::ReferenceTo(const Value& name) {
  const std::u16string text = ToText(name);
  const Symbol* symbol = symbols_.FindDeclared(Folded(text));
  if (symbol == nullptr || symbol->kind != SymbolKind::Procedure) throw ScriptError(invalidCall, text);
  return Value::Object(new ProcedureReference(symbol->number, link_));
}

}  // namespace quarlin::vbs
