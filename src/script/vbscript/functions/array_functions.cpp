// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <limits>
#include <vector>

#include "script/values/arguments.h"
#include "script/values/array.h"
#include "script/vbscript/functions/library.h"
#include "script/vbscript/functions/text_of_units.h"
#include "script/vbscript/functions/text_search.h"

namespace quarlin::vbs {
namespace {

// The array that an argument is, or that the object it is stands for: another object's Items, say.
class GivenArray {
 public:
  // Error 13 for anything else, 94 for Null.
  explicit GivenArray(const Value& value) : array_(value.IsObject() ? Plain(value) : value) {
    if (array_.IsNull()) throw ScriptError(invalidUseOfNull);
    if (!array_.IsArray()) throw ScriptError(typeMismatch);
  }
  const ArrayBody& Body() const { return array_.AsArray(); }

  // Of an array with one dimension, or without size. Error 13 for more.
  const std::vector<Value>& Row() const {
    if (Body().Dimensions() > 1) throw ScriptError(typeMismatch);
    return Body().Items();
  }

 private:
  Value array_;
};

Value ArrayFunction(LibraryContext&, Arguments arguments) {
  return Value::Array(ArrayBody::Of({arguments.begin(), arguments.end()}));
}

Value IsArray(LibraryContext&, Arguments arguments) {
  return Value::Bool(arguments[0].IsArray());
}

// The place of the dimension that the second argument names, counted from 1. Error 9 when there is none.
std::size_t DimensionOf(const ArrayBody& array, Arguments arguments) {
  const std::int64_t dimension = CountOr(arguments, 1, 1);
  if (dimension < 1 || dimension > static_cast<std::int64_t>(array.Dimensions())) {
    throw ScriptError(subscriptOutOfRange);
  }
  return static_cast<std::size_t>(dimension - 1);
}

Value LBound(LibraryContext&, Arguments arguments) {
  const GivenArray array(arguments[0]);
  DimensionOf(array.Body(), arguments);
  return Value::Long(0);
}

Value UBound(LibraryContext&, Arguments arguments) {
  const GivenArray array(arguments[0]);
  return Value::Long(array.Body().UpperBound(DimensionOf(array.Body(), arguments)));
}

std::size_t TextUnitsIn(const std::vector<Value>& items) {
  std::size_t units = 0;
  for (const Value& item : items) units += item.IsString() ? item.AsText().size() : 0;
  return units;
}

Value Join(LibraryContext& context, Arguments arguments) {
  const GivenArray array(arguments[0]);
  const Value ordinary = Value::Character(u' ');
  const Value* given = Given(arguments, 1);
  const GivenText delimiter(given == nullptr ? ordinary : *given);
  const std::u16string_view between = delimiter.View();
  const std::vector<Value>& items = array.Row();
  Value joined = RoomForText(TextUnitsIn(items) + between.size() * items.size());
  Pace pace(context.services);
  for (std::size_t place = 0; place < items.size(); ++place) {
    if (place > 0) joined.AppendText(between);
    const GivenText item(items[place]);
    joined.AppendText(item.View());
    pace.Done(item.View().size() + 1);
  }
  return joined;
}

// Each part of `text`, at most `most` of them; the last one has the rest.
template <class Take>
void ForEachPart(std::u16string_view text, SoughtText& delimiter, std::size_t most, Take take) {
  std::size_t from = 0;
  for (std::size_t count = 1; count < most && delimiter.Size() > 0; ++count) {
    const std::size_t end = delimiter.FindIn(text, from);
    if (end == SoughtText::nowhere) break;
    take(from, end - from);
    from = end + delimiter.Size();
  }
  take(from, text.size() - from);
}

// The parts are counted first, so that the array is made, and its memory accounted for, in one go.
Value Split(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  const std::u16string_view units = text.View();
  const Value ordinary = Value::Character(u' ');
  const Value* given = Given(arguments, 1);
  const GivenText between(given == nullptr ? ordinary : *given);
  const std::int32_t limit = ChoiceOr(arguments, 2, -1, -1, std::numeric_limits<std::int32_t>::max());
  SoughtText delimiter(between.View(), IgnoresCase(arguments, 3), context.services);
  if (units.empty() || limit == 0) return Value::Array(ArrayBody::Of({}));

  const std::size_t most = limit < 0 ? longestText + 1 : static_cast<std::size_t>(limit);
  std::int32_t lastPart = -1;
  ForEachPart(units, delimiter, most, [&](std::size_t, std::size_t) { ++lastPart; });
  const ArrayRef parts = ArrayBody::Make({{lastPart}});
  auto part = parts->Items().begin();
  ForEachPart(units, delimiter, most,
              [&](std::size_t from, std::size_t count) { *part++ = text.Part(from, count); });
  return Value::Array(parts);
}

Value Filter(LibraryContext& context, Arguments arguments) {
  const GivenArray array(arguments[0]);
  const GivenText part(arguments[1]);
  const bool wanted = FlagOr(arguments, 2, true);
  SoughtText sought(part.View(), IgnoresCase(arguments, 3), context.services);
  std::vector<Value> found;
  for (const Value& item : array.Row()) {
    const GivenText text(item);
    const bool has = sought.FindIn(text.View(), 0) != SoughtText::nowhere;
    if (has == wanted) found.push_back(text.Part(0, text.View().size()));
  }
  return Value::Array(ArrayBody::Of(std::move(found)));
}

constexpr auto functions = std::to_array<Builtin>({
    {u"Array", 0, std::numeric_limits<int>::max(), ArrayFunction},
    {u"Filter", 2, 4, Filter},
    {u"IsArray", 1, 1, IsArray},
    {u"Join", 1, 2, Join},
    {u"LBound", 1, 2, LBound},
    {u"Split", 1, 4, Split},
    {u"UBound", 1, 2, UBound},
});

}  // namespace

std::span<const Builtin> ArrayFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
