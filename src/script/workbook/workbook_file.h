// SPDX-License-Identifier: GPL-3.0-or-later
// A workbook as a file.
#pragma once

#include <filesystem>

#include "script/values/services.h"
#include "script/workbook/workbook.h"

namespace quarlin::vbs::sheets {

// Writes the whole workbook in the .xlsx format; the file is the old one or the new one, never half of it.
// Error 1004 when it cannot be written, and the error that ends the script when it is to stop meanwhile.
void WriteBook(const Book& book, const std::filesystem::path& file, Services& services);

}  // namespace quarlin::vbs::sheets
