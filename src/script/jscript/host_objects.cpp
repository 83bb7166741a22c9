// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/host_objects.h"

#include <QJSEngine>
#include <QJSManagedValue>
#include <algorithm>

namespace quarlin::jscript {
namespace {

constexpr int noShape = -1;

}  // namespace

bool IsCallable(vbs::Dispatch& object) {
  return object.HasDefault() && object.KindOf(vbs::Dispatch::defaultMember) != vbs::MemberKind::Property;
}

HostHandle::~HostHandle() {
  if (table_ != nullptr) table_->Forget(*this);
}

HostObjects::~HostObjects() {
  for (HostHandle* handle : handles_) {
    if (handle != nullptr) handle->LetGo();
  }
}

QJSValue HostObjects::Wrap(const vbs::ObjectRef& object) {
  const auto known = byObject_.find(object.Get());
  HostHandle* handle = known != byObject_.end() ? known->second : &NewHandle(object);
  QJSValue wrapped = engine_.newQObject(handle);
  if (!wrapped.isQObject()) {  // thrown away already, waiting for its deletion
    handle = &NewHandle(object);
    wrapped = engine_.newQObject(handle);
  }
  return makeFacade_.call({wrapped, handle->Id(), ShapeOf(*object), IsCallable(*object)});
}

vbs::ObjectRef HostObjects::At(int id) const {
  const auto index = static_cast<std::size_t>(id);
  if (id < 0 || index >= handles_.size() || handles_[index] == nullptr)
    throw vbs::ScriptError(vbs::objectRequired);
  return handles_[index]->Object();
}

// Held by the engine, else each use would make another text there.
const QJSValue& HostObjects::Character(char16_t unit) {
  QJSValue& known = characters_[unit];
  if (known.isUndefined()) known = QJSManagedValue(QJSValue(QString(QChar(unit))), &engine_).toJSValue();
  return known;
}

HostHandle& HostObjects::NewHandle(const vbs::ObjectRef& object) {
  if (freeIds_.empty() && handles_.size() >= mostBeforeClearing_) MakeRoom();
  if (freeIds_.empty()) {
    freeIds_.push_back(static_cast<int>(handles_.size()));
    handles_.push_back(nullptr);
  }
  const int id = freeIds_.back();
  freeIds_.pop_back();
  auto* handle = new HostHandle(*this, id, object);
  QJSEngine::setObjectOwnership(handle, QJSEngine::JavaScriptOwnership);
  handles_[static_cast<std::size_t>(id)] = handle;
  byObject_[object.Get()] = handle;
  return *handle;
}

// Clears more seldom the more there are, so that the cost for each handle stays the same.
void HostObjects::MakeRoom() {
  DeleteThrownAway();
  mostBeforeClearing_ = std::max(mostBeforeClearing_, 2 * (handles_.size() - freeIds_.size()));
}

// The engine makes no wrapper for an object that waits for its deletion.
void HostObjects::DeleteThrownAway() {
  for (std::size_t id = 1; id < handles_.size(); ++id) {
    HostHandle* handle = handles_[id];
    if (handle != nullptr && !engine_.newQObject(handle).isQObject()) delete handle;
  }
}

int HostObjects::ShapeOf(const vbs::Dispatch& object) {
  if (object.Shape() == nullptr) return noShape;
  return shapes_.emplace(object.Shape(), static_cast<int>(shapes_.size())).first->second;
}

void HostObjects::Forget(const HostHandle& handle) {
  handles_[static_cast<std::size_t>(handle.Id())] = nullptr;
  freeIds_.push_back(handle.Id());
  const auto known = byObject_.find(handle.Object().Get());
  if (known != byObject_.end() && known->second == &handle) byObject_.erase(known);
}

}  // namespace quarlin::jscript
