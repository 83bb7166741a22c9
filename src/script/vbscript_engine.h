// SPDX-License-Identifier: GPL-3.0-or-later
// VBScript as the host knows a language.
#pragma once

#include "script/script_engine.h"
#include "script/vbscript/machine/engine.h"

namespace quarlin {

class VbscriptEngine : public ScriptEngine {
 public:
  explicit VbscriptEngine(vbs::Services& services) : engine_(services) {}

  void AddObject(std::u16string_view name, const vbs::ObjectRef& object) override;
  void AddCode(std::u16string_view source) override;
  void Check(std::u16string_view source) override;
  bool HasProcedure(std::u16string_view name) const override;
  void Run(std::u16string_view name) override;
  vbs::ObjectRef Make(std::u16string_view programId) override;
  vbs::Engine* Followable() override { return &engine_; }

 private:
  vbs::Engine engine_;
};

}  // namespace quarlin
