// SPDX-License-Identifier: GPL-3.0-or-later
// Host objects as the script holds them. Each has a handle, which the script owns; beside it the script has
// a facade, the object that its text sees. While either is referred to, both live, and so does the object.
#pragma once

#include <QJSValue>
#include <QObject>
#include <array>
#include <unordered_map>
#include <vector>

#include "script/values/dispatch.h"

class QJSEngine;

namespace quarlin::jscript {

class HostObjects;

// Whether the default member wants arguments, so that the object itself can be called: dictionary("key").
bool IsCallable(vbs::Dispatch& object);

// Thrown away when the script's garbage is collected.
class HostHandle : public QObject {
  Q_OBJECT

 public:
  HostHandle(HostObjects& table, int id, vbs::ObjectRef object)
      : table_(&table), id_(id), object_(std::move(object)) {}
  ~HostHandle() override;

  int Id() const { return id_; }
  const vbs::ObjectRef& Object() const { return object_; }
  void LetGo() {
    table_ = nullptr;
    object_ = {};
  }

 private:
  HostObjects* table_;
  int id_;  // from 1 on
  vbs::ObjectRef object_;
};

class HostObjects {
 public:
  explicit HostObjects(QJSEngine& engine) : engine_(engine) {}
  ~HostObjects();
  HostObjects(const HostObjects&) = delete;
  HostObjects& operator=(const HostObjects&) = delete;

  // The script's function that makes the facade: (handle, id, shape, callable). Must be set before Wrap, and
  // taken away before the engine ends.
  void SetFacadeMaker(const QJSValue& maker) { makeFacade_ = maker; }

  // The facade; the same one as long as it lives.
  QJSValue Wrap(const vbs::ObjectRef& object);

  // Deletes the handles that the garbage collector has thrown away. The event loop does that too, but a
  // script that makes many objects may never come back to it.
  void DeleteThrownAway();

  // A text of one character below 256, which is what hooks are handed most; made once each.
  const QJSValue& Character(char16_t unit);

  // Error 424 for a number that no object has.
  vbs::ObjectRef At(int id) const;

 private:
  friend HostHandle;

  HostHandle& NewHandle(const vbs::ObjectRef& object);
  void MakeRoom();
  int ShapeOf(const vbs::Dispatch& object);
  void Forget(const HostHandle& handle);

  QJSEngine& engine_;
  QJSValue makeFacade_;
  std::vector<HostHandle*> handles_{nullptr};  // by id
  std::vector<int> freeIds_;
  std::size_t mostBeforeClearing_ = 4096;  // handles
  std::unordered_map<const vbs::Dispatch*, HostHandle*> byObject_;
  std::unordered_map<const void*, int> shapes_;
  std::array<QJSValue, 256> characters_;
};

}  // namespace quarlin::jscript
