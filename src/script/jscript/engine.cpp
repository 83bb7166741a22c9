// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/engine.h"

#include <QJSEngine>
#include <algorithm>

#include "script/jscript/bridge.h"
#include "script/jscript/errors.h"
#include "script/jscript/source_names.h"
#include "script/jscript/text.h"
#include "script/library/create_object.h"

namespace quarlin::jscript {

using vbs::ScriptError;

namespace {

StopReason ReasonOf(Interruption interruption) {
  if (interruption == Interruption::Memory) return StopReason::Memory;
  return interruption == Interruption::Silence ? StopReason::Silence : StopReason::Order;
}

}  // namespace

class Engine::Realm {
 public:
  Realm(vbs::Services& services, Limits limits);

  void AddObject(std::u16string_view name, const vbs::ObjectRef& object);
  void AddCode(std::u16string_view source);

  const QJSValue* FindProcedure(std::u16string_view name) const;
  void Run(std::u16string_view name, QJSValue procedure);

 private:
  struct NamedObject {
    std::u16string name;
    vbs::ObjectRef object;
    QJSValue facade;
  };

  template <class Work>
  auto Watched(std::u16string_view procedure, Work work);
  void Show(const std::u16string& name);
  void ShowAs(const std::u16string& name, const NamedObject& owner, int found);
  Names TakeNames(std::u16string_view source);
  void GiveBack(const Names& names);
  QJSValue Evaluated(int number, QStringList& trace);
  void FindProcedures();

  Sources sources_;
  QJSEngine engine_;
  HostObjects hosts_{engine_};
  Watchdog watchdog_;
  Bridge bridge_;
  QJSValue show_;
  QJSValue hide_;
  QJSValue runner_;
  QJSValue listProcedures_;
  std::vector<NamedObject> objects_;
  Names builtIns_;  // of the language
  Names seen_;      // in all sources
  Names shown_;     // those of them that stand for host objects and members
  Names declared_;  // those that are the script's own
  struct Procedure {
    std::u16string name;
    QJSValue run;
  };
  std::vector<Procedure> procedures_;
};

Engine::Realm::Realm(vbs::Services& services, Limits limits)
    : watchdog_(engine_, services, limits), bridge_(engine_, hosts_, watchdog_, services) {
  QJSEngine::setObjectOwnership(&bridge_, QJSEngine::CppOwnership);
  const QJSValue prelude = engine_.importModule(":/prelude/prelude.js");
  prelude.property("connect").call({engine_.newQObject(&bridge_)});
  hosts_.SetFacadeMaker(prelude.property("makeFacade"));
  show_ = prelude.property("show");
  hide_ = prelude.property("hide");
  runner_ = prelude.property("runner");
  listProcedures_ = prelude.property("procedures");
  for (const QString& name : prelude.property("builtIns").toVariant().toStringList())
    builtIns_.emplace(View(name));
}

// Throws when the run was stopped.
template <class Work>
auto Engine::Realm::Watched(std::u16string_view procedure, Work work) {
  bridge_.ForgetLastSeen();
  watchdog_.Enter();
  auto result = work();
  const Interruption interruption = watchdog_.Leave();
  const auto final = bridge_.TakeFinalError();
  if (interruption == Interruption::None && !final) return result;
  engine_.collectGarbage();
  hosts_.DeleteThrownAway();
  if (final && final->number != vbs::scriptStopped) throw ScriptError(*final);
  throw StopError(final ? StopReason::Order : ReasonOf(interruption), procedure, bridge_.LastSeen(),
                  sources_);
}

void Engine::Realm::AddObject(std::u16string_view name, const vbs::ObjectRef& object) {
  objects_.push_back({std::u16string(name), object, hosts_.Wrap(object)});
  seen_.emplace(name);
  for (const std::u16string& seen : seen_) Show(seen);
}

void Engine::Realm::Show(const std::u16string& name) {
  if (shown_.contains(name) || declared_.contains(name) || builtIns_.contains(name)) return;
  for (const NamedObject& object : objects_) {
    if (vbs::SameName(object.name, name)) return ShowAs(name, object, -1);
  }
  for (const NamedObject& object : objects_) {
    const auto member = object.object->FindBare(name);
    if (member) return ShowAs(name, object, CodeOf(*member, object.object->KindOf(*member)));
  }
}

void Engine::Realm::ShowAs(const std::u16string& name, const NamedObject& owner, int found) {
  show_.call({ToQt(name), owner.facade, found});
  shown_.insert(name);
}

// Makes room for what the source declares, and shows what it may mean of the host. Returns the names that
// were not declared before.
Names Engine::Realm::TakeNames(std::u16string_view source) {
  Names taken;
  for (const std::u16string& name : DeclaredNames(source)) {
    if (!declared_.insert(name).second) continue;
    taken.insert(name);
    if (shown_.erase(name) > 0) hide_.call({ToQt(name)});
  }
  for (const std::u16string& name : NamesIn(source)) {
    seen_.insert(name);
    Show(name);
  }
  return taken;
}

void Engine::Realm::GiveBack(const Names& names) {
  for (const std::u16string& name : names) {
    declared_.erase(name);
    Show(name);
  }
}

namespace {

// The toolkit takes a pattern apart by calls within each other. A text with this many open parentheses at
// one place is no script that somebody wrote.
constexpr int mostOpenParentheses = 10'000;

void RefuseDeepNesting(std::u16string_view source) {
  int open = 0;
  for (const char16_t unit : source) {
    if (unit == u')' && open > 0) --open;
    if (unit == u'(' && ++open > mostOpenParentheses) throw ScriptError(vbs::outOfStackSpace);
  }
}

}  // namespace

void Engine::Realm::AddCode(std::u16string_view source) {
  RefuseDeepNesting(source);
  const int number = sources_.Add(source, CallAssignments(source));
  const Names taken = TakeNames(source);
  QStringList trace;
  const QJSValue result = Evaluated(number, trace);
  if (FailedToCompile(trace)) {
    GiveBack(taken);
    throw CompileError(result, trace, sources_);
  }
  FindProcedures();
  if (!trace.isEmpty()) throw RuntimeError(result, trace, sources_);
}

// The procedures are there before the first line runs: they are, too, where the text is stopped.
QJSValue Engine::Realm::Evaluated(int number, QStringList& trace) {
  try {
    return Watched({}, [&] {
      return engine_.evaluate(ToQt(sources_.ForEngine(number)), Sources::FileName(number), 1, &trace);
    });
  } catch (const ScriptError&) {
    FindProcedures();
    throw;
  }
}

void Engine::Realm::FindProcedures() {
  procedures_.clear();
  for (const QString& name : listProcedures_.call().toVariant().toStringList())
    procedures_.push_back({std::u16string(View(name)), runner_.call({name})});
}

const QJSValue* Engine::Realm::FindProcedure(std::u16string_view name) const {
  auto found = std::ranges::find(procedures_, name, &Procedure::name);
  if (found == procedures_.end())
    found =
        std::ranges::find_if(procedures_, [&](const auto& each) { return vbs::SameName(each.name, name); });
  return found == procedures_.end() ? nullptr : &found->run;
}

// A copy of the procedure, which may add code that changes the list.
void Engine::Realm::Run(std::u16string_view name, QJSValue procedure) {
  const QJSValue outcome = Watched(name, [&] { return procedure.call(); });
  if (outcome.isArray()) throw RuntimeError(outcome.property(0), {}, sources_);
}

Engine::Engine(vbs::Services& services, Limits limits)
    : services_(services), realm_(std::make_unique<Realm>(services, limits)) {}

Engine::~Engine() = default;

void Engine::AddObject(std::u16string_view name, const vbs::ObjectRef& object) {
  realm_->AddObject(name, object);
}

void Engine::AddCode(std::u16string_view source) {
  realm_->AddCode(source);
}

// In an engine of its own, where a line in front of the text keeps it from running. That line is number 0.
void Engine::Check(std::u16string_view source) {
  RefuseDeepNesting(source);
  QJSEngine engine;
  Sources sources;
  const int number = sources.Add(source, CallAssignments(source));
  QStringList trace;
  const QString text = "throw 0;\n" + ToQt(sources.ForEngine(number));
  const QJSValue result = engine.evaluate(text, Sources::FileName(number), 0, &trace);
  if (FailedToCompile(trace)) throw CompileError(result, trace, sources);
}

bool Engine::HasProcedure(std::u16string_view name) const {
  return realm_->FindProcedure(name) != nullptr;
}

void Engine::Run(std::u16string_view name) {
  const QJSValue* procedure = realm_->FindProcedure(name);
  if (procedure == nullptr) throw ScriptError(vbs::typeMismatch, name);
  realm_->Run(name, *procedure);
}

vbs::ObjectRef Engine::Make(std::u16string_view programId) {
  return vbs::CreateLibraryObject(services_, nullptr, programId);
}

}  // namespace quarlin::jscript
