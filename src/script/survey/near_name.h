// SPDX-License-Identifier: GPL-3.0-or-later
// Names that were meant to be others.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quarlin::survey {

inline constexpr std::array<std::u16string_view, 6> hookNames{u"InitTask",      u"Task",       u"ReceiveChar",
                                                              u"ReceiveString", u"SendString", u"EndTask"};

// How many letters must be changed, added, left out or swapped with their neighbour, without regard to case.
std::size_t Distance(std::u16string_view one, std::u16string_view other);

// The hook that a name differs from by its underscores, or by one letter of five and no more than two;
// nothing for a hook itself.
std::optional<std::u16string_view> HookMeantBy(std::u16string_view name);

}  // namespace quarlin::survey
