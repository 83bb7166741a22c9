// Small file operations, each with one outcome to look at.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace quarlin {

// The whole file, or nothing when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

// Replaces or creates the file.
std::error_code WriteWholeFile(const std::filesystem::path& file, std::string_view content);

// Writes over the beginning of the file, creating it if need be; what stands behind it stays.
std::error_code OverwriteFile(const std::filesystem::path& file, std::string_view content);

// Adds to the end of the file, creating it if need be. Opened and closed in the call, so a log that was
// moved away meanwhile starts afresh. `written` counts what reached the file, also on an error.
std::error_code AppendToFile(const std::filesystem::path& file, std::string_view content,
                             std::size_t& written);

}  // namespace quarlin
