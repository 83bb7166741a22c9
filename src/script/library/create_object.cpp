// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/create_object.h"

#include <array>

#include "script/files/file_system.h"
#include "script/library/dictionary.h"
#include "script/library/reg_exp.h"
#include "script/workbook/workbook_objects.h"

namespace quarlin::vbs {
namespace {

struct Program {
  std::u16string_view id;
  ObjectRef (*create)(Services& services, Holders* holders);
};

constexpr std::array programs = std::to_array<Program>({
    {u"Scripting.Dictionary", [](Services&, Holders* holders) { return ObjectRef(new Dictionary(holders)); }},
    {u"Scripting.FileSystemObject",
     [](Services& services, Holders*) { return ObjectRef(new FileSystem(services)); }},
    {u"Excel.Application",
     [](Services& services, Holders*) { return ObjectRef(new sheets::Application(services)); }},
    {u"VBScript.RegExp", [](Services& services, Holders*) { return ObjectRef(new RegExp(services)); }},
});

// Scripts may ask for the first version of an object, which is the only one there is.
constexpr std::u16string_view firstVersion = u".1";

}  // namespace

ObjectRef CreateLibraryObject(Services& services, Holders* holders, std::u16string_view programId) {
  const std::u16string_view wanted = programId;
  if (programId.ends_with(firstVersion)) programId.remove_suffix(firstVersion.size());
  for (const Program& program : programs) {
    if (SameName(program.id, programId)) return program.create(services, holders);
  }
  throw ScriptError(cannotCreateObject, wanted);
}

}  // namespace quarlin::vbs
