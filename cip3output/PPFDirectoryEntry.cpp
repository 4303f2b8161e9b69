// Layout of a directory line.
#include "cip3output/PPFDirectoryEntry.h"

#include <algorithm>

namespace RasterOutput
{
    namespace
    {
        /// Writes `number` in DirectoryNumberWidth digits; gives the place after them.
        char* PutNumber(char* place, std::uint32_t number)
        {
            char* const end = place + PpfFormat::DirectoryNumberWidth;
            for (char* digit = end; digit != place; number /= 10)
            {
                *--digit = static_cast<char>('0' + number % 10);
            }
            return end;
        }

        /// Writes the name in its parentheses and fills the field with blanks; gives the place after it.
        char* PutName(char* place, const std::string& name)
        {
            char* const end = place + PpfFormat::DirectoryNameWidth;
            *place++ = '(';
            place = std::copy_n(name.data(), std::min(name.size(), PpfFormat::MaxSheetNameSize), place);
            *place++ = ')';
            std::fill(place, end, ' ');
            return end;
        }
    }

    PPFDirectoryLine FormatDirectoryLine(const PPFDirectoryEntry& entry) noexcept
    {
        static_assert(
            2 * PpfFormat::DirectoryNumberWidth + 2 + PpfFormat::DirectoryNameWidth +
                PpfFormat::DirectoryLineEnd.size() ==
            PpfFormat::DirectoryLineSize);

        PPFDirectoryLine line;
        char* place = PutNumber(line.data(), entry.offset);
        *place++ = ' ';
        place = PutNumber(place, entry.length);
        *place++ = ' ';
        place = PutName(place, entry.sheetName);
        std::copy(PpfFormat::DirectoryLineEnd.begin(), PpfFormat::DirectoryLineEnd.end(), place);
        return line;
    }
}
