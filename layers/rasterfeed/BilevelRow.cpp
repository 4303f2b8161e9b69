// Expansion of bits, compiled once for every kind of vectors and chosen at run time.
#include "rasterfeed/BilevelRow.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterfeed/BilevelRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace RasterFeed
{
    namespace
    {
        namespace HWY_NAMESPACE
        {
            namespace hn = hwy::HWY_NAMESPACE;

            // What 16 bytes of a row become: the unit of the work.
            constexpr std::size_t UnitBytes = 16;
            constexpr std::size_t UnitSamples = UnitBytes * 8;

#if HWY_TARGET == HWY_SCALAR
            // A machine that cannot shuffle bytes.
            void ExpandUnit(const unsigned char* row, unsigned char flip, unsigned char* line)
            {
                for (std::size_t i = 0; i < UnitSamples; ++i)
                {
                    line[i] = static_cast<unsigned char>((row[i / 8] & 0x80u >> i % 8) != 0 ? ~flip : flip);
                }
            }
#else
            // Each lane takes the byte that holds its bit, and looks at that bit alone.
            HWY_ALIGN constexpr unsigned char ByteOf[64] = {
                0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3,
                4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6, 6, 6, 7, 7, 7, 7, 7, 7, 7, 7};
            HWY_ALIGN constexpr unsigned char BitOf[16] = {0x80, 0x40, 0x20, 0x10, 8, 4, 2, 1,
                                                           0x80, 0x40, 0x20, 0x10, 8, 4, 2, 1};

            HWY_INLINE void ExpandUnit(const unsigned char* row, unsigned char flip, unsigned char* line)
            {
                const hn::CappedTag<unsigned char, sizeof ByteOf> tag;
                const std::size_t lanes = hn::Lanes(tag);
                const auto bytes = hn::LoadDup128(tag, row);
                for (std::size_t i = 0; i < UnitSamples; i += lanes)
                {
                    const auto first = hn::Set(tag, static_cast<unsigned char>(i / 8));
                    const auto spread = hn::TableLookupBytes(bytes, hn::Add(hn::Load(tag, ByteOf), first));
                    const auto isOne = hn::VecFromMask(tag, hn::TestBit(spread, hn::LoadDup128(tag, BitOf)));
                    hn::StoreU(hn::Xor(isOne, hn::Set(tag, flip)), tag, line + i);
                }
            }
#endif

            void ExpandRow(const unsigned char* row, std::size_t samples, unsigned char flip, unsigned char* line)
            {
                for (; samples >= UnitSamples; samples -= UnitSamples, row += UnitBytes, line += UnitSamples)
                {
                    ExpandUnit(row, flip, line);
                }
                if (samples > 0)
                {
                    // The rest by way of buffers of its own, so that nothing is read or written beyond the ends.
                    unsigned char lastRow[UnitBytes] = {};
                    unsigned char lastLine[UnitSamples];
                    std::memcpy(lastRow, row, (samples + 7) / 8);
                    ExpandUnit(lastRow, flip, lastLine);
                    std::memcpy(line, lastLine, samples);
                }
            }
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace RasterFeed
{
    namespace
    {
        HWY_EXPORT(ExpandRow);
    }

    void ExpandBilevelRow(const unsigned char* row, std::size_t samples, unsigned char flip, unsigned char* line)
    {
        HWY_DYNAMIC_DISPATCH(ExpandRow)(row, samples, flip, line);
    }
}
#endif
