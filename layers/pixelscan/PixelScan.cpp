// Searches in runs of bytes, compiled once per instruction set by including itself; the best that the machine has is
// chosen at run time, once per call.
#include <PixelScan.h>

#include <cstddef>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixelscan/PixelScan.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace PixelScan
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        // Address of the first byte in the vector at `position` that differs, or null.
        template <class D>
        HWY_INLINE const std::uint8_t* FirstOther(D d, const std::uint8_t* position, hn::Vec<D> wanted)
        {
            const std::ptrdiff_t lane = hn::FindFirstTrue(d, hn::Ne(hn::LoadU(d, position), wanted));
            return lane < 0 ? nullptr : position + lane;
        }

        // For ranges of at least one vector.
        template <class D>
        HWY_INLINE const std::uint8_t*
        ScanVectors(D d, const std::uint8_t* begin, const std::uint8_t* end, std::uint8_t value)
        {
            const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
            const auto wanted = hn::Set(d, value);
            const std::uint8_t* position = begin;
            // Four vectors per test: on a long run the test costs more than the bytes.
            for (; end - position >= 4 * lanes; position += 4 * lanes)
            {
                const auto first = hn::Xor(hn::LoadU(d, position), wanted);
                const auto second = hn::Xor(hn::LoadU(d, position + lanes), wanted);
                const auto third = hn::Xor(hn::LoadU(d, position + 2 * lanes), wanted);
                const auto fourth = hn::Xor(hn::LoadU(d, position + 3 * lanes), wanted);
                const auto differences = hn::Or(hn::Or(first, second), hn::Or(third, fourth));
                if (!hn::AllTrue(d, hn::Eq(differences, hn::Zero(d))))
                {
                    break;
                }
            }
            for (; end - position >= lanes; position += lanes)
            {
                if (const std::uint8_t* const other = FirstOther(d, position, wanted))
                {
                    return other;
                }
            }
            // What is left is less than a vector. The last whole vector of the range covers it, and begins with bytes
            // that have passed already.
            const std::uint8_t* const other = FirstOther(d, end - lanes, wanted);
            return other != nullptr ? other : end;
        }

        const std::uint8_t* Scan(const std::uint8_t* begin, const std::uint8_t* end, std::uint8_t value)
        {
            const hn::ScalableTag<std::uint8_t> wide;
            const hn::CappedTag<std::uint8_t, 16> narrow;
            const auto length = static_cast<std::size_t>(end - begin);
            if (length >= hn::Lanes(wide))
            {
                return ScanVectors(wide, begin, end, value);
            }
            if (length >= hn::Lanes(narrow))
            {
                return ScanVectors(narrow, begin, end, value);
            }
            while (begin != end && *begin == value)
            {
                ++begin;
            }
            return begin;
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace PixelScan
{
    HWY_EXPORT(Scan);

    const unsigned char* firstNonZero(const unsigned char* begin, const unsigned char* end)
    {
        return HWY_DYNAMIC_DISPATCH(Scan)(begin, end, 0);
    }

    const unsigned char* firstOtherThan(const unsigned char* begin, const unsigned char* end, unsigned char value)
    {
        return HWY_DYNAMIC_DISPATCH(Scan)(begin, end, value);
    }
}
#endif
