// SPDX-License-Identifier: GPL-3.0-or-later
// Texts of the toolkit and of the script values: both UTF-16.
#pragma once

#include <QString>
#include <string_view>

namespace quarlin::jscript {

inline QString ToQt(std::u16string_view text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

// Lives as long as `text`.
inline std::u16string_view View(const QString& text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

}  // namespace quarlin::jscript
