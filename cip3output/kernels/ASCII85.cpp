// ASCII85 encoding, compiled once for every kind of vectors and chosen at run time.
//
// A group's number is split at 85 * 85 into its leading digit and two pairs of digits, and the pairs at 85; the divisions
// are multiplications that are exact over the range at hand. That is done for a vector of groups at once. With a plain loop a
// whole conversion takes 1.2 (flat) to 1.8 (noise) times as long.
#include "cip3output/kernels/ASCII85.h"

#include "cip3output/PpfFormat.h"

#include <array>
#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/ASCII85.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef RASTEROUTPUT_ASCII85_CONSTANTS
#define RASTEROUTPUT_ASCII85_CONSTANTS
namespace RasterOutput::Kernels::ASCII85
{
    using PpfFormat::ASCII85Base;
    using PpfFormat::ASCII85DigitCount;
    using PpfFormat::ASCII85GroupSize;
    constexpr unsigned char Zero = static_cast<unsigned char>(PpfFormat::ASCII85Zero);
    constexpr unsigned char ZeroGroup = static_cast<unsigned char>(PpfFormat::ASCII85ZeroGroup);

    /// A pair of digits is below this.
    constexpr std::uint32_t PairBase = ASCII85Base * ASCII85Base;
    /// For all x below 2^32: x / PairBase == (x * PairReciprocal) >> (32 + PairShift).
    constexpr std::uint32_t PairReciprocal = 2434904643U;
    constexpr int PairShift = 12;
    /// For all x below 2^32 / PairBase, x / PairBase is the whole part of x * PairScale in floats: the scale is too large by
    /// more than is lost by rounding, and by less than is missing to the next whole number.
    constexpr float PairScale = 1.0000005F / PairBase;
    /// For all x below PairBase: x / ASCII85Base == (x * DigitReciprocal) >> (16 + DigitShift).
    constexpr std::uint16_t DigitReciprocal = 12337;
    constexpr int DigitShift = 4;

    /// Bytes of a 128-bit block, by their places in another; None takes a zero.
    using Shuffle = std::array<unsigned char, 16>;
    constexpr unsigned char None = 0x80;
    /// The bytes of each 32-bit lane in reverse order.
    constexpr Shuffle ReversedLanes = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};
    /// The first 16 of a block's 20 characters: the leading digits, each in the lowest byte of its lane ...
    constexpr Shuffle LeadingPlaces = {0,    None, None, None, None, 4,    None, None,
                                       None, None, 8,    None, None, None, None, 12};
    /// ... and the others of the first three groups.
    constexpr Shuffle OtherPlaces = {None, 0, 1, 2, 3, None, 4, 5, 6, 7, None, 8, 9, 10, 11, None};
}
#endif

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        using namespace ASCII85;

#if HWY_TARGET != HWY_SCALAR

        using Lanes = hn::CappedTag<std::uint32_t, 16>;
        using Bytes = hn::Repartition<std::uint8_t, Lanes>;
        using Halves = hn::Repartition<std::uint16_t, Lanes>;
        using Products = hn::Repartition<std::uint64_t, Lanes>;
        using Floats = hn::Repartition<float, Lanes>;
        using Signed = hn::Repartition<std::int32_t, Lanes>;

        constexpr std::size_t VectorGroups = hn::MaxLanes(Lanes());
        /// The bytes of a vector.
        using Characters = std::array<unsigned char, VectorGroups * ASCII85GroupSize>;

        /// The characters of a vector of groups, one group to a 32-bit lane.
        struct Digits
        {
            /// The leading digit in each lane's lowest byte; in the others, anything.
            hn::Vec<Bytes> leading;
            /// The other four digits of each lane's group, in their order in memory.
            hn::Vec<Bytes> others;
        };

        /// numbers / PairBase: the high halves of the products with the reciprocal, of even and odd lanes.
        HWY_INLINE hn::Vec<Lanes> UpperDigits(hn::Vec<Lanes> numbers)
        {
            const auto reciprocal = hn::Set(Lanes(), PairReciprocal);
            const auto oddNumbers = hn::BitCast(Lanes(), hn::ShiftRight<32>(hn::BitCast(Products(), numbers)));
            const auto even = hn::BitCast(Lanes(), hn::ShiftRight<32>(hn::MulEven(numbers, reciprocal)));
            const auto odd = hn::BitCast(Lanes(), hn::MulEven(oddNumbers, reciprocal));
            return hn::ShiftRight<PairShift>(hn::OddEven(odd, even));
        }

        HWY_INLINE Digits MakeDigits(hn::Vec<Lanes> numbers)
        {
            const auto upper = UpperDigits(numbers);
            const auto upperFloat = hn::ConvertTo(Floats(), hn::BitCast(Signed(), upper));
            const auto leading =
                hn::BitCast(Halves(), hn::ConvertTo(Signed(), hn::Mul(upperFloat, hn::Set(Floats(), PairScale))));

            // Remainders are below 2^16, so that 16 bits of each product suffice.
            const auto pairBase = hn::Set(Halves(), static_cast<std::uint16_t>(PairBase));
            const auto firstPair = hn::Sub(hn::BitCast(Halves(), upper), hn::Mul(leading, pairBase));
            const auto secondPair =
                hn::Sub(hn::BitCast(Halves(), numbers), hn::Mul(hn::BitCast(Halves(), upper), pairBase));
            const auto pairs =
                hn::OddEven(hn::BitCast(Halves(), hn::ShiftLeft<16>(hn::BitCast(Lanes(), secondPair))), firstPair);

            // A pair p = 85 * t + u becomes the bytes t, u: t + 256 * u = 256 * p - (256 * 85 - 1) * t.
            const auto tens = hn::ShiftRight<DigitShift>(hn::MulHigh(pairs, hn::Set(Halves(), DigitReciprocal)));
            const auto tensToBytes = hn::Set(Halves(), static_cast<std::uint16_t>(256 * ASCII85Base - 1));
            const auto both = hn::Sub(hn::ShiftLeft<8>(pairs), hn::Mul(tens, tensToBytes));

            const auto zero = hn::Set(Bytes(), Zero);
            return {hn::Add(hn::BitCast(Bytes(), leading), zero), hn::Add(hn::BitCast(Bytes(), both), zero)};
        }

        /// Writes the characters of groups none of which is zero: a block of four at a time, by whole stores that overlap.
        HWY_INLINE unsigned char* PutAll(Digits digits, unsigned char* output)
        {
            const auto front = hn::Or(
                hn::TableLookupBytesOr0(digits.leading, hn::LoadDup128(Bytes(), LeadingPlaces.data())),
                hn::TableLookupBytesOr0(digits.others, hn::LoadDup128(Bytes(), OtherPlaces.data())));
            constexpr std::size_t BlockSize = 16;
            constexpr std::size_t BlockCharacters = BlockSize / ASCII85GroupSize * ASCII85DigitCount;
            HWY_ALIGN Characters first;
            HWY_ALIGN Characters last;
            hn::Store(front, Bytes(), first.data());
            hn::Store(digits.others, Bytes(), last.data());
            for (std::size_t i = 0; i < first.size(); i += BlockSize, output += BlockCharacters)
            {
                std::memcpy(output + BlockCharacters - BlockSize, &last[i], BlockSize);
                std::memcpy(output, &first[i], BlockSize);
            }
            return output;
        }

        /// Writes the characters of groups of which those in `isZero` are zero: one by one, and over what is too much of
        /// one before.
        HWY_INLINE unsigned char* PutSome(Digits digits, hn::Mask<Lanes> isZero, unsigned char* output)
        {
            const auto leading =
                hn::IfThenElse(isZero, hn::Set(Lanes(), ZeroGroup), hn::BitCast(Lanes(), digits.leading));
            HWY_ALIGN Characters first;
            HWY_ALIGN Characters others;
            hn::Store(hn::BitCast(Bytes(), leading), Bytes(), first.data());
            hn::Store(digits.others, Bytes(), others.data());
            for (std::size_t i = 0; i < first.size(); i += ASCII85GroupSize)
            {
                output[0] = first[i];
                std::memcpy(output + 1, &others[i], ASCII85DigitCount - 1);
                output += first[i] == ZeroGroup ? 1 : ASCII85DigitCount;
            }
            return output;
        }

#endif

        unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output)
        {
#if HWY_TARGET != HWY_SCALAR
            for (; groups >= VectorGroups; groups -= VectorGroups, input += VectorGroups * ASCII85GroupSize)
            {
                const auto bytes = hn::LoadU(Bytes(), input);
                const auto numbers =
                    hn::BitCast(Lanes(), hn::TableLookupBytes(bytes, hn::LoadDup128(Bytes(), ReversedLanes.data())));
                const auto isZero = hn::Eq(numbers, hn::Zero(Lanes()));
                const Digits digits = MakeDigits(numbers);
                output = HWY_LIKELY(hn::AllFalse(Lanes(), isZero)) ? PutAll(digits, output)
                                                                   : PutSome(digits, isZero, output);
            }
#endif
            for (; groups != 0; --groups, input += ASCII85GroupSize)
            {
                if ((input[0] | input[1] | input[2] | input[3]) == 0)
                {
                    *output++ = ZeroGroup;
                }
                else
                {
                    Kernels::EncodeASCII85Digits(input, output);
                    output += ASCII85DigitCount;
                }
            }
            return output;
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace RasterOutput::Kernels
{
    HWY_EXPORT(EncodeASCII85);

    unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output) noexcept
    {
        return HWY_DYNAMIC_DISPATCH(EncodeASCII85)(input, groups, output);
    }

    void EncodeASCII85Digits(const unsigned char* group, unsigned char* output) noexcept
    {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < ASCII85::ASCII85GroupSize; ++i)
        {
            number = number << 8 | group[i];
        }
        for (std::size_t digit = ASCII85::ASCII85DigitCount; digit-- != 0; number /= ASCII85::ASCII85Base)
        {
            output[digit] = static_cast<unsigned char>(ASCII85::Zero + number % ASCII85::ASCII85Base);
        }
    }
}
#endif
