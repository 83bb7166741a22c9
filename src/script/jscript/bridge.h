// SPDX-License-Identifier: GPL-3.0-or-later
// What the prelude, and it alone, calls: the members of host objects by the objects' numbers.
#pragma once

#include <QJSValue>
#include <QObject>
#include <QStringList>
#include <optional>

#include "script/jscript/host_objects.h"
#include "script/jscript/watchdog.h"
#include "script/values/services.h"

namespace quarlin::jscript {

// A member as the prelude knows it: its number times four plus its kind.
inline int CodeOf(int member, vbs::MemberKind kind) {
  return member * 4 + static_cast<int>(kind);
}

class Bridge : public QObject {
  Q_OBJECT

  // A member without arguments, the commonest use by far: a property is read and written in less time than a
  // method with numbers is called. `place` says whose member `value` is: object * 65536 + member.
  Q_PROPERTY(double place MEMBER place_ FINAL)
  Q_PROPERTY(QJSValue value READ Get WRITE Put FINAL)

 public:
  Bridge(QJSEngine& engine, HostObjects& objects, Watchdog& watchdog, vbs::Services& services)
      : engine_(engine), objects_(objects), watchdog_(watchdog), services_(services) {}

  // Look-ups, in which the script does not have to stop: the member's code, or -1 where there is no such
  // member; what it gives without arguments.
  Q_INVOKABLE int Find(int id, const QString& name);
  Q_INVOKABLE QJSValue Peek(int id, int member);

  QJSValue Get();
  void Put(const QJSValue& value);
  Q_INVOKABLE void PutMany(int id, int member, const QJSValue& arguments, const QJSValue& value);
  Q_INVOKABLE QJSValue Call1(int id, int member, const QJSValue& first);
  Q_INVOKABLE QJSValue Call2(int id, int member, const QJSValue& first, const QJSValue& second);
  Q_INVOKABLE QJSValue CallMany(int id, int member, const QJSValue& arguments);

  // What the object stands for in an expression; its type in brackets where it has no default
  // member, or one that wants arguments.
  Q_INVOKABLE QJSValue Plain(int id);

  // The items of a collection, as an array.
  Q_INVOKABLE QJSValue Items(int id);

  Q_INVOKABLE QJSValue Create(const QString& programId);
  Q_INVOKABLE int NumberOf(const QString& name, const QString& message);
  Q_INVOKABLE void Raise(int number, const QString& culprit);
  Q_INVOKABLE void CollectGarbage();

  // Where the script called its host when it was last looked at, as frames of a trace.
  const QStringList& LastSeen() const { return lastSeen_; }
  void ForgetLastSeen() { lastSeen_.clear(); }

  // A host's error that ends the run, if there was one since the last question.
  std::optional<vbs::ScriptError> TakeFinalError() { return std::exchange(finalError_, std::nullopt); }

 private:
  template <class Work>
  QJSValue Guarded(Work work);
  template <class Work>
  QJSValue Thrown(Work work);
  QJSValue Invoke(int id, int member, vbs::Arguments arguments);
  QJSValue Throw(const vbs::ScriptError& error);
  void LookAndAsk();

  QJSEngine& engine_;
  HostObjects& objects_;
  Watchdog& watchdog_;
  vbs::Services& services_;
  double place_ = 0;
  QStringList lastSeen_;
  std::optional<vbs::ScriptError> finalError_;
};

}  // namespace quarlin::jscript
