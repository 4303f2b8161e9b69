#include "tests/tools/ppfwatch/SmallTiff.h"

#include <cstdint>
#include <vector>

namespace PpfWatchTest
{
    namespace
    {
        struct Entry
        {
            std::uint16_t tag;
            std::uint16_t type; // 3 SHORT, 4 LONG, 5 RATIONAL
            std::uint64_t count;
            std::uint64_t value; ///< or where the values are
        };

        class Writer
        {
        public:
            explicit Writer(TiffForm theForm)
                : form(theForm)
            {
            }

            void Put(std::uint64_t value, std::size_t count)
            {
                for (std::size_t i = 0; i < count; ++i)
                {
                    const std::size_t place = form == TiffForm::Big ? count - 1 - i : i;
                    bytes += static_cast<char>(value >> 8U * place & 0xFFU);
                }
            }

            void PutEntry(const Entry& entry, std::size_t offsetBytes)
            {
                Put(entry.tag, 2);
                Put(entry.type, 2);
                Put(entry.count, offsetBytes);
                const std::size_t bytesEach = entry.type == 3 && entry.count == 1 ? 2 : offsetBytes;
                Put(entry.value, bytesEach);
                bytes.append(offsetBytes - bytesEach, '\0');
            }

            std::string bytes;

        private:
            TiffForm form;
        };
    }

    std::string SmallTiff(unsigned char value, TiffForm form)
    {
        const bool isBig = form == TiffForm::BigOffsets;
        const std::size_t offsetBytes = isBig ? 8 : 4;
        const std::uint64_t directory = isBig ? 16 : 8;
        constexpr std::size_t Entries = 11;
        const std::uint64_t lists = directory + (isBig ? 8 : 2) + Entries * (isBig ? 20 : 12) + offsetBytes;
        const std::uint64_t resolution = lists + 16;
        const std::uint64_t data = resolution + 8;

        Writer writer(form);
        writer.bytes = form == TiffForm::Big ? "MM" : "II";
        writer.Put(isBig ? 43 : 42, 2);
        if (isBig)
        {
            writer.Put(8, 2);
            writer.Put(0, 2);
        }
        writer.Put(directory, offsetBytes);
        writer.Put(Entries, isBig ? 8 : 2);
        const std::vector<Entry> entries = {{256, 3, 1, 4},          {257, 3, 1, 2},         {258, 3, 1, 8},
                                            {259, 3, 1, 1},          {262, 3, 1, 1},         {273, 4, 2, lists},
                                            {278, 3, 1, 1},          {279, 4, 2, lists + 8}, {282, 5, 1, resolution},
                                            {283, 5, 1, resolution}, {296, 3, 1, 2}};
        for (Entry entry : entries)
        {
            // Two numbers of four bytes stand in the entry itself where it has room for them.
            const bool isInPlace = isBig && entry.count == 2;
            if (isInPlace)
            {
                entry.value = entry.tag == 273 ? data | (data + 4) << 32U : 4 | std::uint64_t{4} << 32U;
            }
            if (isBig && entry.type == 5)
            {
                entry.value = 2 | std::uint64_t{1} << 32U;
            }
            writer.PutEntry(entry, offsetBytes);
        }
        writer.Put(0, offsetBytes);
        for (const std::uint64_t number :
             {data, data + 4, std::uint64_t{4}, std::uint64_t{4}, std::uint64_t{2}, std::uint64_t{1}})
        {
            writer.Put(number, 4);
        }
        return writer.bytes + std::string(8, static_cast<char>(value));
    }
}
