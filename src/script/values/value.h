// SPDX-License-Identifier: GPL-3.0-or-later
// A value of a script: one of the language's kinds in 16 bytes. Texts, arrays and objects are shared by
// counted references, so an object dies the moment its last reference goes. One thread only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "script/values/error.h"
#include "script/values/heap.h"

namespace quarlin::vbs {

class ArrayBody;
class Dispatch;

// In the order that lets one comparison tell what owns a reference: String and all behind it.
enum class Kind : std::uint8_t {
  Empty,
  Null,
  Boolean,
  Byte,
  Integer,  // 16 bit
  Long,     // 32 bit
  Single,
  Double,
  Currency,   // 64-bit integer counting ten-thousandths
  Date,       // days since 1899-12-30; the fraction is the time of day, also in front of day 0
  Error,      // an argument that was left out, number 448
  Reference,  // only inside the machine: another value's place
  String,
  Array,
  Object,  // also Nothing
};

// What everything shared begins with.
class Counted : public heap::Counts {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  void AddReference() noexcept { ++references_; }
  void RemoveReference() noexcept {
    if (--references_ == 0) Bury(*this);
  }
  std::uint32_t References() const { return references_; }

 protected:
  virtual ~Counted() = default;

  // The last reference has gone. An object that runs a script's Class_Terminate here may find itself
  // referred to again afterwards, and then stays.
  virtual void LastReferenceGone() noexcept { delete this; }

 private:
  // Calls LastReferenceGone; a long chain of objects that hold each other goes one after the other
  // instead of one inside the other, which would exhaust the stack.
  static void Bury(Counted& dead) noexcept;

  std::uint32_t references_ = 0;
};

// A counted reference, possibly to nothing.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(T* target) noexcept : target_(target) {
    if (target_ != nullptr) target_->AddReference();
  }
  Ref(const Ref& other) noexcept : Ref(other.target_) {}
  Ref(Ref&& other) noexcept : target_(std::exchange(other.target_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(target_, other.target_);
    return *this;
  }
  ~Ref() {
    if (target_ != nullptr) target_->RemoveReference();
  }

  T* Get() const { return target_; }
  T* operator->() const { return target_; }
  T& operator*() const { return *target_; }
  explicit operator bool() const { return target_ != nullptr; }

 private:
  T* target_ = nullptr;
};

using ObjectRef = Ref<Dispatch>;  // empty: Nothing
using ArrayRef = Ref<ArrayBody>;

// The characters of a text: UTF-16 code units, counted against heap. Nobody changes a body that is shared.
class TextBody final : public Counted {
 public:
  static TextBody* Make(std::u16string_view text, std::size_t capacity = 0);
  std::u16string_view View() const { return {Characters(), length_}; }

  // Appends in place when there is room for it; false changes nothing.
  bool Append(std::u16string_view text);

 private:
  TextBody(std::size_t length, std::size_t capacity) : length_(length), capacity_(capacity) {}
  void LastReferenceGone() noexcept override;

  // They stand right behind the object, in the same piece of memory.
  const char16_t* Characters() const { return reinterpret_cast<const char16_t*>(this + 1); }
  char16_t* Characters() { return reinterpret_cast<char16_t*>(this + 1); }

  std::size_t length_;
  std::size_t capacity_;
};

inline constexpr std::size_t longestText = std::size_t{1} << 28;  // code units; beyond it error 14

class Value {
 public:
  Value() noexcept = default;
  Value(const Value& other) noexcept : kind_(other.kind_), held_(other.held_) {
    if (kind_ >= Kind::String) AddReference();
  }
  Value(Value&& other) noexcept : kind_(std::exchange(other.kind_, Kind::Empty)), held_(other.held_) {}
  Value& operator=(const Value& other) noexcept {
    Value copy(other);
    Swap(copy);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    Value moved(std::move(other));
    Swap(moved);
    return *this;
  }
  ~Value() {
    if (kind_ >= Kind::String) RemoveReference();
  }

  static Value Null() { return Value(Kind::Null, Held{.integer = 0}); }
  static Value Bool(bool value) { return Value(Kind::Boolean, Held{.integer = value ? -1 : 0}); }
  static Value Byte(std::uint8_t value) { return Value(Kind::Byte, Held{.integer = value}); }
  static Value Integer(std::int16_t value) { return Value(Kind::Integer, Held{.integer = value}); }
  static Value Long(std::int32_t value) { return Value(Kind::Long, Held{.integer = value}); }
  static Value Single(float value) { return Value(Kind::Single, Held{.real = static_cast<double>(value)}); }
  static Value Double(double value) { return Value(Kind::Double, Held{.real = value}); }
  static Value Currency(std::int64_t tenThousandths) {
    return Value(Kind::Currency, Held{.integer = tenThousandths});
  }
  static Value Date(double days) { return Value(Kind::Date, Held{.real = days}); }
  static Value String(std::u16string_view text);
  static Value Character(char16_t unit);  // one of a ready set for codes below 256
  static Value Adopt(TextBody* body) { return Value(Kind::String, body); }
  static Value Array(const ArrayRef& array);
  static Value Object(const ObjectRef& object);  // Nothing without one
  static Value Nothing() { return Value(Kind::Object, static_cast<Counted*>(nullptr)); }
  static Value Missing() { return Value(Kind::Error, Held{.integer = 448}); }
  static Value To(Value& place) { return Value(Kind::Reference, Held{.place = &place}); }
  // Empty, as a variable is that nothing was assigned to yet. A copy of it cannot be told from it.
  static Value Untouched() { return Value(Kind::Empty, Held{.integer = untouched}); }
  // The smallest of Integer, Long and Double that holds it.
  static Value Whole(std::int64_t value);

  Kind GetKind() const { return kind_; }
  bool Is(Kind kind) const { return kind_ == kind; }
  bool IsEmpty() const { return kind_ == Kind::Empty; }
  bool IsUntouched() const { return kind_ == Kind::Empty && held_.integer == untouched; }
  bool IsNull() const { return kind_ == Kind::Null; }
  bool IsMissing() const { return kind_ == Kind::Error; }
  bool IsNothing() const { return kind_ == Kind::Object && held_.counted == nullptr; }
  bool IsString() const { return kind_ == Kind::String; }
  bool IsArray() const { return kind_ == Kind::Array; }
  bool IsObject() const { return kind_ == Kind::Object; }

  // Each of the following may only be asked of a value of that kind.
  bool AsBool() const { return held_.integer != 0; }
  std::int64_t AsWhole() const {
    return held_.integer;
  }                                             // Boolean, Byte, Integer, Long, Currency (scaled), Error
  double AsReal() const { return held_.real; }  // Single, Double, Date
  std::u16string_view AsText() const { return Body().View(); }
  ArrayBody& AsArray() const;
  Dispatch* AsObject() const;  // null for Nothing
  Value& Place() const { return *held_.place; }

  // The value itself, or the one whose place it is.
  const Value& Followed() const { return kind_ == Kind::Reference ? *held_.place : *this; }
  Value& Followed() { return kind_ == Kind::Reference ? *held_.place : *this; }

  void Clear() noexcept {
    if (kind_ >= Kind::String) *this = Value();
    kind_ = Kind::Empty;
  }

  // `text` behind a String, in place where nobody shares it. Error 14 beyond longestText.
  void AppendText(std::u16string_view text);

  // The array for writing: one of its own where it is shared. Only of an Array.
  ArrayBody& OwnArray();

  void Swap(Value& other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(held_, other.held_);
  }

 private:
  union Held {
    std::int64_t integer;
    double real;
    Counted* counted;
    Value* place;
  };

  // Beside Empty, where no other value leaves such a number behind.
  static constexpr std::int64_t untouched = 0x5EED'0F0F'A11D'EAD5;

  Value(Kind kind, Held held) noexcept : kind_(kind), held_(held) {}
  Value(Kind kind, Counted* counted) noexcept : kind_(kind), held_{.counted = counted} { AddReference(); }
  TextBody& Body() const { return static_cast<TextBody&>(*held_.counted); }
  void AddReference() const noexcept {
    if (held_.counted != nullptr) held_.counted->AddReference();
  }
  void RemoveReference() const noexcept {
    if (held_.counted != nullptr) held_.counted->RemoveReference();
  }

  Kind kind_ = Kind::Empty;
  Held held_{.integer = 0};
};

static_assert(sizeof(Value) == 16);

}  // namespace quarlin::vbs
