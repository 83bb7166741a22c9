// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "script/vbscript/dictionary.h"
#include "script/vbscript/file_system.h"
#include "script/vbscript/library.h"
#include "script/vbscript/reg_exp.h"

namespace quarlin::vbs {
namespace {

struct Program {
  std::u16string_view id;
  ObjectRef (*create)(LibraryContext& context);
};

constexpr std::array programs = std::to_array<Program>({
    {u"Scripting.Dictionary",
     [](LibraryContext& context) { return ObjectRef(new Dictionary(context.holders)); }},
    {u"Scripting.FileSystemObject",
     [](LibraryContext& context) { return ObjectRef(new FileSystem(context.services)); }},
    {u"VBScript.RegExp", [](LibraryContext& context) { return ObjectRef(new RegExp(context.services)); }},
});

// Scripts may ask for the first version of an object, which is the only one there is.
constexpr std::u16string_view firstVersion = u".1";

}  // namespace

ObjectRef CreateLibraryObject(LibraryContext& context, std::u16string_view programId) {
  if (programId.ends_with(firstVersion)) programId.remove_suffix(firstVersion.size());
  for (const Program& program : programs) {
    if (SameName(program.id, programId)) return program.create(context);
  }
  throw ScriptError(cannotCreateObject);
}

}  // namespace quarlin::vbs
