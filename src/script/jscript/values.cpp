// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/values.h"

#include <QDateTime>
#include <QJSEngine>
#include <array>
#include <cmath>
#include <limits>

#include "script/jscript/text.h"
#include "script/values/array.h"

namespace quarlin::jscript {

using vbs::Kind;
using vbs::Value;

namespace {

constexpr int deepestArray = 100;
constexpr double millisecondsPerDay = 86'400'000;
constexpr double currencyScale = 10'000;

QDate DayZero() {
  return QDate(1899, 12, 30);
}

// An object of the script that the host keeps, as in a dictionary.
class KeptObject : public vbs::Dispatch {
 public:
  explicit KeptObject(const QJSValue& value) : value_(value) {}
  const QJSValue& Get() const { return value_; }

  std::u16string_view TypeName() const override { return u"JScriptTypeInfo"; }
  std::optional<int> Find(std::u16string_view) override { return std::nullopt; }
  vbs::MemberKind KindOf(int) override { return vbs::MemberKind::Property; }
  Value Invoke(int, vbs::Arguments arguments) override {
    if (!arguments.empty()) throw vbs::ScriptError(vbs::wrongArgumentCount);
    return Value::String(View(value_.toString()));
  }
  void Put(int, vbs::Arguments, const Value&, vbs::PutKind) override {
    throw vbs::ScriptError(vbs::noSuchMember);
  }
  bool HasDefault() override { return true; }

 private:
  QJSValue value_;
};

// In front of day 0 the fraction counts forward too: -1.25 is six o'clock on day -1.
QJSValue DateToScript(QJSEngine& engine, double days) {
  const double day = std::trunc(days);
  const auto milliseconds = static_cast<int>(std::lround(std::fabs(days - day) * millisecondsPerDay));
  const QDateTime midnight(DayZero().addDays(static_cast<qint64>(day)), QTime(0, 0));
  return engine.toScriptValue(
      QDateTime(midnight.date().addDays(milliseconds / static_cast<int>(millisecondsPerDay)),
                QTime::fromMSecsSinceStartOfDay(milliseconds % static_cast<int>(millisecondsPerDay))));
}

Value DateToHost(const QDateTime& moment) {
  const QDateTime local = moment.toLocalTime();
  if (!local.isValid()) throw vbs::ScriptError(vbs::invalidCall);
  const auto day = static_cast<double>(DayZero().daysTo(local.date()));
  const double fraction = local.time().msecsSinceStartOfDay() / millisecondsPerDay;
  return Value::Date(day < 0 ? day - fraction : day + fraction);
}

QJSValue ArrayToScript(QJSEngine& engine, HostObjects& objects, const vbs::ArrayBody& array) {
  const std::vector<Value>& items = array.Items();
  QJSValue result = engine.newArray(static_cast<uint>(items.size()));
  for (std::size_t index = 0; index < items.size(); ++index)
    result.setProperty(static_cast<quint32>(index), ToScript(engine, objects, items[index]));
  if (array.Dimensions() == 1) return result;
  QJSValue bounds = engine.newArray(static_cast<uint>(array.Dimensions()));
  for (std::size_t dimension = 0; dimension < array.Dimensions(); ++dimension)
    bounds.setProperty(static_cast<quint32>(dimension), array.UpperBound(dimension));
  result.setProperty("$bounds", bounds);
  return result;
}

Value ToHostWithin(const QJSValue& value, int depth);

Value ArrayToHost(const QJSValue& array, int depth) {
  if (depth > deepestArray) throw vbs::ScriptError(vbs::outOfStackSpace);
  const double length = array.property("length").toNumber();
  if (length > std::numeric_limits<std::int32_t>::max()) throw vbs::ScriptError(vbs::outOfMemory);
  const auto count = static_cast<std::int32_t>(length);
  vbs::ArrayRef result = vbs::ArrayBody::Make(std::array{count - 1});
  for (std::int32_t index = 0; index < count; ++index) {
    const QJSValue item = array.property(static_cast<quint32>(index));
    result->Items()[static_cast<std::size_t>(index)] = ToHostWithin(item, depth + 1);
  }
  return Value::Array(result);
}

// A facade tells its handle; one that stands for a member waiting for its index tells the member too.
Value ObjectToHost(const QJSValue& value) {
  const auto* handle = qobject_cast<HostHandle*>(value.property("$handle").toQObject());
  if (handle == nullptr) return Value::Object(vbs::ObjectRef(new KeptObject(value)));
  const int member = value.property("$member").toInt();
  if (member > vbs::Dispatch::defaultMember) return vbs::ObjectRef(handle->Object())->Invoke(member, {});
  return Value::Object(handle->Object());
}

Value NumberToHost(double number) {
  const bool fits = number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::int32_t>::max() && number == std::trunc(number);
  return fits ? Value::Long(static_cast<std::int32_t>(number)) : Value::Double(number);
}

Value ToHostWithin(const QJSValue& value, int depth) {
  if (value.isString()) return Value::String(View(value.toString()));
  if (value.isNumber()) return NumberToHost(value.toNumber());
  if (value.isBool()) return Value::Bool(value.toBool());
  if (value.isNull()) return Value::Null();
  if (!value.isObject()) return Value();
  if (value.isArray()) return ArrayToHost(value, depth);
  if (value.isDate()) return DateToHost(value.toDateTime());
  return ObjectToHost(value);
}

QJSValue ObjectToScript(HostObjects& objects, vbs::Dispatch* object) {
  if (object == nullptr) return QJSValue(QJSValue::NullValue);
  if (const auto* kept = dynamic_cast<KeptObject*>(object)) return kept->Get();
  return objects.Wrap(vbs::ObjectRef(object));
}

QJSValue TextToScript(HostObjects& objects, std::u16string_view text) {
  if (text.size() == 1 && text[0] < 256) return objects.Character(text[0]);
  return QJSValue(ToQt(text));
}

}  // namespace

QJSValue ToScript(QJSEngine& engine, HostObjects& objects, const Value& given) {
  const Value& value = given.Followed();
  switch (value.GetKind()) {
    case Kind::Empty:
    case Kind::Error:
    case Kind::Reference:
      return QJSValue();
    case Kind::Null:
      return QJSValue(QJSValue::NullValue);
    case Kind::Boolean:
      return QJSValue(value.AsBool());
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return QJSValue(static_cast<int>(value.AsWhole()));
    case Kind::Single:
    case Kind::Double:
      return QJSValue(value.AsReal());
    case Kind::Currency:
      return QJSValue(static_cast<double>(value.AsWhole()) / currencyScale);
    case Kind::Date:
      return DateToScript(engine, value.AsReal());
    case Kind::String:
      return TextToScript(objects, value.AsText());
    case Kind::Array:
      return ArrayToScript(engine, objects, value.AsArray());
    case Kind::Object:
      return ObjectToScript(objects, value.AsObject());
  }
  return QJSValue();
}

Value ToHost(const QJSValue& value) {
  return ToHostWithin(value, 0);
}

}  // namespace quarlin::jscript
