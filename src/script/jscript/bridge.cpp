// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/bridge.h"

#include <QJSEngine>
#include <array>
#include <cstdint>
#include <limits>

#include "script/jscript/errors.h"
#include "script/jscript/text.h"
#include "script/jscript/values.h"
#include "script/library/create_object.h"
#include "script/values/array.h"
#include "script/values/conversions.h"

namespace quarlin::jscript {

using vbs::ObjectRef;
using vbs::PutKind;
using vbs::ScriptError;
using vbs::Value;

namespace {

class HostCall {
 public:
  explicit HostCall(Watchdog& watchdog) : watchdog_(watchdog) { watchdog_.BeginHostCall(); }
  HostCall(const HostCall&) = delete;
  HostCall& operator=(const HostCall&) = delete;
  ~HostCall() { watchdog_.EndHostCall(); }

 private:
  Watchdog& watchdog_;
};

// False where the object has no such member to write.
bool TryPut(vbs::Dispatch& object, int member, vbs::Arguments arguments, const Value& value, PutKind kind) {
  try {
    object.Put(member, arguments, value, kind);
    return true;
  } catch (const ScriptError& error) {
    if (error.number != vbs::noSuchMember) throw;
    return false;
  }
}

// The language has one assignment for values and objects, and an object that cannot be replaced takes the
// value in its default member.
void PutAny(vbs::Dispatch& object, int member, vbs::Arguments arguments, const Value& value) {
  if (value.IsObject() && TryPut(object, member, arguments, value, PutKind::Set)) return;
  if (TryPut(object, member, arguments, value, PutKind::Let)) return;
  const Value held = object.Invoke(member, arguments);
  if (!held.IsObject() || held.IsNothing()) throw ScriptError(vbs::noSuchMember);
  held.AsObject()->Put(vbs::Dispatch::defaultMember, {}, value, PutKind::Let);
}

struct Place {
  int id;
  int member;
};

Place PlaceOf(double number) {
  constexpr std::int64_t members = 65536;
  constexpr double most = 65536.0 * std::numeric_limits<int>::max();
  if (!(number >= 0 && number < most)) throw ScriptError(vbs::objectRequired);
  const auto whole = static_cast<std::int64_t>(number);
  return {static_cast<int>(whole / members), static_cast<int>(whole % members)};
}

}  // namespace

template <class Work>
QJSValue Bridge::Guarded(Work work) {
  const HostCall call(watchdog_);
  return Thrown([&] {
    if (watchdog_.TimeToAsk()) LookAndAsk();
    if (!watchdog_.Condemned()) return work();
    engine_.setInterrupted(true);
    return QJSValue();
  });
}

// Nothing may be thrown through the script engine's frames.
template <class Work>
QJSValue Bridge::Thrown(Work work) {
  try {
    return work();
  } catch (const ScriptError& error) {
    return Throw(error);
  } catch (const std::bad_alloc&) {
    return Throw(ScriptError(vbs::outOfMemory));
  }
}

void Bridge::LookAndAsk() {
  lastSeen_ = engine_.newErrorObject(QJSValue::GenericError).property("stack").toString().split('\n');
  vbs::AskToGoOn(services_);
}

QJSValue Bridge::Throw(const ScriptError& error) {
  if (error.isFinal) {
    finalError_ = error;
    engine_.setInterrupted(true);
  } else {
    engine_.throwError(ToScriptError(engine_, error));
  }
  return QJSValue();
}

int Bridge::Find(int id, const QString& name) {
  int found = -1;
  Thrown([&] {
    const ObjectRef object = objects_.At(id);
    const auto member = object->Find(View(name));
    if (member) found = CodeOf(*member, object->KindOf(*member));
    return QJSValue();
  });
  return found;
}

QJSValue Bridge::Peek(int id, int member) {
  return Thrown([&] { return Invoke(id, member, {}); });
}

QJSValue Bridge::Invoke(int id, int member, vbs::Arguments arguments) {
  const ObjectRef object = objects_.At(id);
  return ToScript(engine_, objects_, object->Invoke(member, arguments));
}

// `place` is read before the user is let in, who may have more of the script run.
QJSValue Bridge::Get() {
  return Guarded([this, asked = place_] {
    const Place place = PlaceOf(asked);
    return Invoke(place.id, place.member, {});
  });
}

void Bridge::Put(const QJSValue& value) {
  Guarded([this, &value, asked = place_] {
    const Place place = PlaceOf(asked);
    const ObjectRef object = objects_.At(place.id);
    PutAny(*object, place.member, {}, ToHost(value));
    return QJSValue();
  });
}

void Bridge::PutMany(int id, int member, const QJSValue& arguments, const QJSValue& value) {
  Guarded([&] {
    const ObjectRef object = objects_.At(id);
    const Value given = ToHost(arguments);
    if (!given.IsArray()) throw ScriptError(vbs::invalidCall);
    PutAny(*object, member, given.AsArray().Items(), ToHost(value));
    return QJSValue();
  });
}

QJSValue Bridge::Call1(int id, int member, const QJSValue& first) {
  return Guarded([&] { return Invoke(id, member, std::array{ToHost(first)}); });
}

QJSValue Bridge::Call2(int id, int member, const QJSValue& first, const QJSValue& second) {
  return Guarded([&] { return Invoke(id, member, std::array{ToHost(first), ToHost(second)}); });
}

QJSValue Bridge::CallMany(int id, int member, const QJSValue& arguments) {
  return Guarded([&] {
    const Value given = ToHost(arguments);
    if (!given.IsArray()) throw ScriptError(vbs::invalidCall);
    return Invoke(id, member, given.AsArray().Items());
  });
}

QJSValue Bridge::Plain(int id) {
  return Guarded([&] {
    const ObjectRef object = objects_.At(id);
    if (!object->HasDefault() || IsCallable(*object)) return QJSValue("[" + ToQt(object->TypeName()) + "]");
    return ToScript(engine_, objects_, vbs::Plain(Value::Object(object)));
  });
}

QJSValue Bridge::Items(int id) {
  return Guarded([&] {
    const auto items = objects_.At(id)->Enumerate();
    if (items == nullptr) throw ScriptError(vbs::notACollection);
    QJSValue result = engine_.newArray();
    quint32 count = 0;
    while (const auto item = items->Next()) result.setProperty(count++, ToScript(engine_, objects_, *item));
    return result;
  });
}

QJSValue Bridge::Create(const QString& programId) {
  return Guarded(
      [&] { return objects_.Wrap(vbs::CreateLibraryObject(services_, nullptr, View(programId))); });
}

int Bridge::NumberOf(const QString& name, const QString& message) {
  return ScriptNumber(jscript::NumberOf(name, message));
}

void Bridge::Raise(int number, const QString& culprit) {
  Throw(ScriptError(number, View(culprit)));
}

void Bridge::CollectGarbage() {
  engine_.collectGarbage();
  objects_.DeleteThrownAway();
}

}  // namespace quarlin::jscript
