// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/shown_value.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "script/values/array.h"
#include "script/values/conversions.h"
#include "script/values/dispatch.h"
#include "script/vbscript/machine/instance.h"

namespace quarlin {

using vbs::Dispatch;
using vbs::Kind;
using vbs::MemberKind;
using vbs::Value;

namespace {

constexpr std::size_t shownOfText = 200;
constexpr char16_t signOfNul = 0x2400;  // the signs for control characters follow it in their order
constexpr char16_t signOfDelete = 0x2421;

std::u16string Number(std::size_t number) {
  return vbs::Utf16Of(std::to_string(number));
}

// Runs what may fail in an object, and turns its failure into the line.
template <class Read>
ShownValue Tried(const std::u16string& name, Read read) {
  try {
    return Show(name, read());
  } catch (const vbs::ScriptError& error) {
    return ShowFailure(name, error.FullDescription());
  }
}

std::u16string BoundsText(const vbs::ArrayBody& array) {
  std::u16string text;
  for (std::size_t i = 0; i < array.Dimensions(); ++i) {
    text += i == 0 ? u"0 To " : u", 0 To ";
    text += vbs::Utf16Of(std::to_string(array.UpperBound(i)));
  }
  return u"(" + (text.empty() ? u"not sized" : text) + u")";
}

// The value of the default property, which tells more of a control than the name of its kind does.
std::u16string ObjectText(Dispatch& object) {
  std::u16string text(object.TypeName());
  const bool readable = object.AsInstance() == nullptr && object.HasDefault() &&
                        object.KindOf(Dispatch::defaultMember) == MemberKind::Property;
  if (!readable) return text;
  const ShownValue shown = Tried({}, [&] { return object.Invoke(Dispatch::defaultMember, {}); });
  return shown.opens || shown.type.empty() ? text : text + u" " + shown.text;
}

std::u16string TextOf(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
      return u"Empty";
    case Kind::Null:
      return u"Null";
    case Kind::Error:
      return u"left out";
    case Kind::String:
      return QuotedText(value.AsText(), shownOfText);
    case Kind::Date:
      return u"#" + vbs::ToText(value) + u"#";
    case Kind::Array:
      return BoundsText(value.AsArray());
    case Kind::Object:
      return value.IsNothing() ? u"Nothing" : ObjectText(*value.AsObject());
    default:
      return vbs::ToText(value);
  }
}

// Collects the lines from a number on, and as many as are shown at once.
class Piece {
 public:
  explicit Piece(std::size_t first) : toSkip_(first) {}

  // Whether the next line is wanted; it is counted.
  bool Wants() {
    if (toSkip_ > 0) {
      --toSkip_;
      return false;
    }
    if (parts_.rows.size() < shownAtOnce) return true;
    parts_.more = true;
    return false;
  }
  bool Full() const { return parts_.more; }
  void Add(ShownValue row) { parts_.rows.push_back(std::move(row)); }
  ShownParts Take() { return std::move(parts_); }

 private:
  std::size_t toSkip_;
  ShownParts parts_;
};

// The elements as they lie in memory, the first index running fastest.
ShownParts ElementsOf(const vbs::ArrayBody& array, std::size_t first) {
  ShownParts parts;
  const std::vector<Value>& items = array.Items();
  const std::size_t end = std::min(items.size(), first + shownAtOnce);
  for (std::size_t place = first; place < end; ++place) {
    std::u16string name;
    std::size_t rest = place;
    for (std::size_t i = 0; i < array.Dimensions(); ++i) {
      const auto size = static_cast<std::size_t>(array.UpperBound(i)) + 1;
      name += (i == 0 ? u"(" : u", ") + Number(rest % size);
      rest /= size;
    }
    parts.rows.push_back(Show(name + u")", items[place]));
  }
  parts.more = end < items.size();
  return parts;
}

void AddFields(vbs::Instance& instance, Piece& piece) {
  for (const vbs::ClassMember& member : instance.Info().members) {
    if (member.field == vbs::ClassMember::none || !piece.Wants()) continue;
    piece.Add(Show(member.name, instance.Fields()[static_cast<std::size_t>(member.field)]));
  }
}

// An indexed property may give something without an index, too: a control array does.
void AddProperties(Dispatch& object, Piece& piece) {
  for (const std::u16string& name : object.MemberNames()) {
    if (piece.Full()) return;
    const auto member = object.Find(name);
    if (!member || object.KindOf(*member) == MemberKind::Method) continue;
    ShownValue shown = Tried(name, [&] { return object.Invoke(*member, {}); });
    const bool wantsIndex = shown.type.empty() && object.KindOf(*member) == MemberKind::Indexed;
    if (!wantsIndex && piece.Wants()) piece.Add(std::move(shown));
  }
}

// What For Each walks over; a dictionary's are its keys, and their values are what one wants to see.
void AddItems(Dispatch& object, Piece& piece) {
  const auto items = object.Enumerate();
  if (!items) return;
  const bool isDictionary = object.TypeName() == u"Dictionary";
  std::size_t place = 0;
  for (auto item = items->Next(); item && !piece.Full(); item = items->Next(), ++place) {
    if (!piece.Wants()) continue;
    if (isDictionary) {
      piece.Add(Tried(u"(" + TextOf(*item) + u")", [&] {
        return vbs::InvokeByName(object, u"Item", {&*item, 1});
      }));
    } else {
      piece.Add(Show(u"(" + Number(place) + u")", *item));
    }
  }
}

}  // namespace

std::u16string QuotedText(std::u16string_view text, std::size_t most) {
  std::u16string quoted = u"\"";
  for (const char16_t unit : text.substr(0, most)) {
    if (unit < u' ') {
      quoted += static_cast<char16_t>(signOfNul + unit);
    } else {
      quoted += unit == 0x7F ? signOfDelete : unit;
    }
    if (unit == u'"') quoted += unit;
  }
  quoted += u'"';
  if (text.size() > most) quoted += u"\u2026 (" + Number(text.size()) + u" characters)";
  return quoted;
}

ShownValue Show(std::u16string name, Value value) {
  ShownValue shown{std::move(name), TextOf(value), vbs::TypeNameOf(value), false, std::move(value)};
  shown.opens = (shown.value.IsArray() && !shown.value.AsArray().Items().empty()) ||
                (shown.value.IsObject() && !shown.value.IsNothing());
  return shown;
}

ShownValue ShowFailure(std::u16string name, std::u16string_view why) {
  return {std::move(name), std::u16string(why), {}, false, {}};
}

ShownParts PartsOf(const Value& value, std::size_t first) {
  if (value.IsArray()) return ElementsOf(value.AsArray(), first);
  Piece piece(first);
  if (!value.IsObject() || value.IsNothing()) return piece.Take();
  const vbs::ObjectRef object(value.AsObject());
  try {
    if (vbs::Instance* instance = object->AsInstance()) {
      AddFields(*instance, piece);
    } else {
      AddProperties(*object, piece);
      AddItems(*object, piece);
    }
  } catch (const vbs::ScriptError& error) {
    piece.Add(ShowFailure(u"\u2026", error.FullDescription()));
  }
  return piece.Take();
}

}  // namespace quarlin
