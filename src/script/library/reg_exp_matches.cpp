// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/reg_exp_matches.h"

#include <algorithm>
#include <array>
#include <limits>

#include "script/library/reg_exp_search.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

constexpr std::uint32_t noPlace = std::numeric_limits<std::uint32_t>::max();
static_assert(longestText < noPlace);

// Walks over anything that has Count and At.
template <class Collection>
class IndexWalk final : public Enumerator {
 public:
  explicit IndexWalk(Collection* collection) : collection_(collection) {}
  std::optional<Value> Next() override {
    if (next_ == collection_->Count()) return std::nullopt;
    return collection_->At(next_++);
  }

 private:
  Ref<Collection> collection_;
  std::size_t next_ = 0;
};

template <class Collection>
Value ItemMember(Collection& self, Arguments arguments) {
  const std::int32_t index = CountOf(arguments[0]);
  if (index < 0 || static_cast<std::size_t>(index) >= self.Count()) throw ScriptError(invalidCall);
  return self.At(static_cast<std::size_t>(index));
}

template <class Collection>
Value CountMember(Collection& self, Arguments) {
  return CountValue(self.Count());
}

constexpr auto subMatchesMembers = std::to_array<Member<SubMatches>>({
    {u"Item", MemberKind::Indexed, 1, 1, ItemMember<SubMatches>, nullptr, true},
    {u"Count", MemberKind::Property, 0, 0, CountMember<SubMatches>},
});

constexpr auto matchMembers = std::to_array<Member<Match>>({
    {u"Value", MemberKind::Property, 0, 0, [](Match& self, Arguments) { return self.Text(); }, nullptr, true},
    {u"FirstIndex", MemberKind::Property, 0, 0,
     [](Match& self, Arguments) { return CountValue(self.Begin()); }},
    {u"Length", MemberKind::Property, 0, 0, [](Match& self, Arguments) { return CountValue(self.Length()); }},
    {u"SubMatches", MemberKind::Property, 0, 0, [](Match& self, Arguments) { return self.Parts(); }},
});

constexpr auto matchCollectionMembers = std::to_array<Member<MatchCollection>>({
    {u"Item", MemberKind::Indexed, 1, 1, ItemMember<MatchCollection>, nullptr, true},
    {u"Count", MemberKind::Property, 0, 0, CountMember<MatchCollection>},
});

}  // namespace

void MatchList::Add(const PatternSearch& found) {
  const std::size_t needed = places_.size() + Width();
  if (needed > places_.capacity()) {
    const std::size_t capacity = std::max(needed, places_.capacity() * 2);
    share_.Resize(capacity * sizeof(Place));
    places_.reserve(capacity);
  }
  for (std::uint32_t group = 0; group <= groups_; ++group) {
    const bool matched = found.Begin(group) != PatternSearch::unmatched;
    places_.push_back({matched ? static_cast<std::uint32_t>(found.Begin(group)) : noPlace,
                       matched ? static_cast<std::uint32_t>(found.End(group)) : noPlace});
  }
}

Value MatchList::Text(std::size_t match, std::uint32_t group) const {
  const Place& place = places_[match * Width() + group];
  if (place.begin == noPlace) return {};
  return Value::String(text_.AsText().substr(place.begin, place.end - place.begin));
}

std::size_t MatchList::Length(std::size_t match) const {
  const Place& place = places_[match * Width()];
  return place.end - place.begin;
}

std::span<const Member<SubMatches>> SubMatches::Members() {
  return subMatchesMembers;
}

std::unique_ptr<Enumerator> SubMatches::Enumerate() {
  return std::make_unique<IndexWalk<SubMatches>>(this);
}

std::span<const Member<Match>> Match::Members() {
  return matchMembers;
}

Value Match::Parts() const {
  return NewObject<SubMatches>(list_, match_);
}

std::span<const Member<MatchCollection>> MatchCollection::Members() {
  return matchCollectionMembers;
}

std::unique_ptr<Enumerator> MatchCollection::Enumerate() {
  return std::make_unique<IndexWalk<MatchCollection>>(this);
}

Value MatchCollection::At(std::size_t index) const {
  return NewObject<Match>(list_, index);
}

}  // namespace quarlin::vbs
