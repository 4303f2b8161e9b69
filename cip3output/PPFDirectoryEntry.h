// One sheet's line in the PPF directory at the head of a document.
#pragma once

#include "cip3output/PpfFormat.h"

#include <array>
#include <cstdint>
#include <string>

namespace RasterOutput
{
    /// Where a sheet's section lies and what the sheet is called. All zero and empty until the sheet is written.
    struct PPFDirectoryEntry
    {
        /// Bytes from the start of the file to the sheet's first byte.
        std::uint32_t offset = 0;
        /// Bytes of the sheet's section, its last empty line included.
        std::uint32_t length = 0;
        /// PpfFormat::MaxSheetNameSize bytes at most.
        std::string sheetName;
    };

    using PPFDirectoryLine = std::array<char, PpfFormat::DirectoryLineSize>;

    /// The entry as it stands in the file. Of a name that is too long, as much as fits: the line has its size whatever
    /// the entry holds. Never throws.
    PPFDirectoryLine FormatDirectoryLine(const PPFDirectoryEntry& entry) noexcept;
}
