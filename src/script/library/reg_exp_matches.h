// SPDX-License-Identifier: GPL-3.0-or-later
// What Execute of a regular expression returns: the collection of matches, each match, and its submatches.
// All of them are views of one list of places, so a million matches cost eight bytes each and group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "script/values/dispatch.h"
#include "script/values/heap_share.h"

namespace quarlin::vbs {

class PatternSearch;

// Where in a text the matches lie.
class MatchList final : public Counted {
 public:
  MatchList(Value text, std::uint32_t groups) : text_(std::move(text)), groups_(groups) {}

  void Add(const PatternSearch& found);

  std::size_t Count() const { return places_.size() / Width(); }
  std::uint32_t Groups() const { return groups_; }  // beside the match itself, which is group 0

  // The text of a group; Empty for one that took no part.
  Value Text(std::size_t match, std::uint32_t group) const;
  std::size_t Begin(std::size_t match) const { return places_[match * Width()].begin; }
  std::size_t Length(std::size_t match) const;

 private:
  struct Place {
    std::uint32_t begin;
    std::uint32_t end;
  };
  std::size_t Width() const { return groups_ + std::size_t{1}; }

  Value text_;
  std::uint32_t groups_;
  HeapShare share_;
  std::vector<Place> places_;
};

class SubMatches final : public TableObject<SubMatches> {
 public:
  SubMatches(Ref<MatchList> list, std::size_t match) : list_(std::move(list)), match_(match) {}
  static std::span<const Member<SubMatches>> Members();
  std::u16string_view TypeName() const override { return u"ISubMatches"; }
  std::unique_ptr<Enumerator> Enumerate() override;

  std::size_t Count() const { return list_->Groups(); }
  Value At(std::size_t index) const { return list_->Text(match_, static_cast<std::uint32_t>(index + 1)); }

 private:
  Ref<MatchList> list_;
  std::size_t match_;
};

class Match final : public TableObject<Match> {
 public:
  Match(Ref<MatchList> list, std::size_t match) : list_(std::move(list)), match_(match) {}
  static std::span<const Member<Match>> Members();
  std::u16string_view TypeName() const override { return u"IMatch2"; }

  Value Text() const { return list_->Text(match_, 0); }
  std::size_t Begin() const { return list_->Begin(match_); }
  std::size_t Length() const { return list_->Length(match_); }
  Value Parts() const;

 private:
  Ref<MatchList> list_;
  std::size_t match_;
};

class MatchCollection final : public TableObject<MatchCollection> {
 public:
  explicit MatchCollection(Ref<MatchList> list) : list_(std::move(list)) {}
  static std::span<const Member<MatchCollection>> Members();
  std::u16string_view TypeName() const override { return u"IMatchCollection2"; }
  std::unique_ptr<Enumerator> Enumerate() override;

  std::size_t Count() const { return list_->Count(); }
  Value At(std::size_t index) const;

 private:
  Ref<MatchList> list_;
};

}  // namespace quarlin::vbs
