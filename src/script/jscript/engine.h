// SPDX-License-Identifier: GPL-3.0-or-later
// JScript, run by the GUI toolkit's script engine: the language as that engine has it, with the host's
// objects, ActiveXObject, Enumerator, VBArray and errors by number as scripts of this language expect them.
//
// Host objects: names without regard to case, `FrmCommand.TextIO(3).Text = "5"`, `dictionary("key")`, and
// the default member where an object is used as a value. `dictionary.Item("key") = 1` is turned into what the
// toolkit's engine takes, but not in a text that goes to eval. A member that is not there reads as undefined;
// to call or to write it is error 438. A property without arguments is not called: `d.Count`, not
// `d.Count()`. The operator `in` does not see members, and a built-in name of the language (Date, String)
// always stands for the built-in.
//
// Members of added objects are globals in every spelling that occurs in the text of a script; what the
// script itself declares at the top has precedence. A one-dimensional array of a host is an array of the
// script, so that `Keys().length` works beside `new VBArray(Keys()).toArray()`.
//
// A run ends with a final error that no try holds up:
// - when Services::MayGoOn says no, which is asked in calls of host members only, on the calling thread;
// - when the script has not called a host member for Limits::silence: what the toolkit's engine has
//   interrupted cannot go on, so nobody is asked then;
// - when Services::MustStop says so;
// - with error 7 when the process has grown by Limits::memory since the engine was made.
// The error names the procedure, and the line of the call of the host at which the script was seen last. A
// built-in function that walks a long list or text is interrupted, too, but for patterns and conversions of
// texts; nor is a function that calls itself again whenever it has caught that the stack is full. Recursion
// that is too deep (some 1200 calls) is error 28.
//
// What a script refers to is let go when its garbage is collected, at the latest with the engine.
// Needs a QCoreApplication, and stays on the thread that made it.
#pragma once

#include <memory>

#include "base/clock.h"
#include "script/script_engine.h"

namespace quarlin::jscript {

struct Limits {
  Duration silence = std::chrono::seconds(10);
  std::size_t memory = std::size_t{1} << 30;  // bytes
};

class Engine : public ScriptEngine {
 public:
  explicit Engine(vbs::Services& services, Limits limits = {});
  ~Engine() override;

  void AddObject(std::u16string_view name, const vbs::ObjectRef& object) override;
  void AddCode(std::u16string_view source) override;
  void Check(std::u16string_view source) override;

  // A procedure is a function that the script's top level holds when AddCode has come to its end. It is
  // looked up as written first, then without regard to case.
  bool HasProcedure(std::u16string_view name) const override;
  void Run(std::u16string_view name) override;
  vbs::ObjectRef Make(std::u16string_view programId) override;

 private:
  class Realm;
  vbs::Services& services_;
  std::unique_ptr<Realm> realm_;
};

}  // namespace quarlin::jscript
