// ASCII85 encoding, compiled once for every kind of vectors and chosen at run time.
//
// A group's number is split at 85 * 85 = 7225 into its leading digit and two pairs of digits, and the pairs at 85. All
// divisions are multiplications with a rounded reciprocal that is exact over the range at hand. The leading digits stand
// in one vector and the other four digits of each group in another; byte shuffles bring them into line, and leave out
// what 'z' stands for.
#include "cip3output/kernels/ASCII85.h"

#include "cip3output/PpfFormat.h"

#include <array>
#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/ASCII85.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef RASTEROUTPUT_ASCII85_TABLES
#define RASTEROUTPUT_ASCII85_TABLES
namespace RasterOutput::Kernels
{
    namespace ASCII85
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
        /// For all x below PairBase: x / ASCII85Base == (x * DigitReciprocal) >> (16 + DigitShift).
        constexpr std::uint16_t DigitReciprocal = 12337;
        constexpr int DigitShift = 4;

        /// Groups of a 128-bit block, and the characters that they become at most.
        constexpr std::size_t BlockGroups = 4;
        constexpr std::size_t BlockCharacters = BlockGroups * ASCII85DigitCount;

        /// How a block's first 16 characters are put together, for a set of groups that are zero. Characters behind
        /// those can only be digits 1 to 4 of the last group. An index of 0x80 takes nothing.
        struct BlockShuffle
        {
            std::array<unsigned char, 16> leading;
            std::array<unsigned char, 16> others;
        };

        /// Indexed by a bit per group, the first group's lowest: 1 if the group is zero.
        constexpr std::array<BlockShuffle, 16> MakeBlockShuffles()
        {
            std::array<BlockShuffle, 16> shuffles{};
            for (std::size_t zeros = 0; zeros < shuffles.size(); ++zeros)
            {
                BlockShuffle& shuffle = shuffles[zeros];
                std::size_t place = 0;
                for (std::size_t group = 0; group < BlockGroups; ++group)
                {
                    const bool isZero = (zeros >> group & 1) != 0;
                    const std::size_t characters = isZero ? 1 : ASCII85DigitCount;
                    for (std::size_t digit = 0; digit < characters && place < 16; ++digit, ++place)
                    {
                        const std::size_t lane = group * ASCII85GroupSize;
                        shuffle.leading[place] = static_cast<unsigned char>(digit == 0 ? lane : 0x80);
                        shuffle.others[place] = static_cast<unsigned char>(digit == 0 ? 0x80 : lane + digit - 1);
                    }
                }
                for (; place < 16; ++place)
                {
                    shuffle.leading[place] = 0x80;
                    shuffle.others[place] = 0x80;
                }
            }
            return shuffles;
        }

        constexpr std::array<BlockShuffle, 16> BlockShuffles = MakeBlockShuffles();

        /// Groups of a 512-bit vector, and the characters that they become at most.
        constexpr std::size_t WideGroups = 16;
        constexpr std::size_t WideCharacters = WideGroups * ASCII85DigitCount;

        /// Where each of WideCharacters comes from: a byte of the digits 1 to 4, or, from 64 on, of the leading digits.
        constexpr std::array<unsigned char, WideCharacters + 64> MakeWideIndices()
        {
            std::array<unsigned char, WideCharacters + 64> indices{};
            for (std::size_t place = 0; place < WideCharacters; ++place)
            {
                const std::size_t lane = place / ASCII85DigitCount * ASCII85GroupSize;
                const std::size_t digit = place % ASCII85DigitCount;
                indices[place] = static_cast<unsigned char>(digit == 0 ? 64 + lane : lane + digit - 1);
            }
            return indices;
        }

        constexpr std::array<unsigned char, WideCharacters + 64> WideIndices = MakeWideIndices();
    }
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

        /// The characters of a vector of groups, one group to a 32-bit lane.
        template <class V>
        struct Digits
        {
            /// The leading digit in each lane's lowest byte, zeros above; 'z' in its place for a group of zeros.
            V leading;
            /// The other four digits of each lane's group, in their order in memory.
            V others;
        };

        /// Groups as they stand in memory, turned into their numbers.
        template <class D, class V = hn::Vec<D>>
        HWY_INLINE V NumbersFromBytes(D tag, V bytes)
        {
            alignas(16) static constexpr unsigned char reversed[16] = {3,  2,  1, 0, 7,  6,  5,  4,
                                                                       11, 10, 9, 8, 15, 14, 13, 12};
            const hn::Repartition<unsigned char, D> byteTag;
            return hn::BitCast(
                tag, hn::TableLookupBytes(hn::BitCast(byteTag, bytes), hn::LoadDup128(byteTag, reversed)));
        }

        template <class D, class V = hn::Vec<D>, class M = hn::Mask<D>>
        HWY_INLINE Digits<V> DigitsOf(D tag, V numbers, M zero)
        {
            const hn::Repartition<std::uint64_t, D> productTag;
            const hn::Repartition<std::uint16_t, D> pairTag;
            const hn::RebindToFloat<D> floatTag;
            const hn::RebindToSigned<D> signedTag;

            // High halves of the products with the reciprocal, of the even lanes and of the odd ones.
            const auto reciprocal = hn::Set(tag, PairReciprocal);
            const auto even = hn::MulEven(numbers, reciprocal);
            const auto oddNumbers = hn::BitCast(tag, hn::ShiftRight<32>(hn::BitCast(productTag, numbers)));
            const auto odd = hn::MulEven(oddNumbers, reciprocal);
            const auto products = hn::OddEven(hn::BitCast(tag, odd), hn::BitCast(tag, hn::ShiftRight<32>(even)));
            const V upper = hn::ShiftRight<PairShift>(products);

            // The quotient is below 2^20, so a float holds it; half a unit in front keeps the rounding from mattering.
            const auto scale = hn::Set(floatTag, 1.0f / PairBase);
            const auto half = hn::Set(floatTag, 0.5f / PairBase);
            const auto upperFloat = hn::ConvertTo(floatTag, hn::BitCast(signedTag, upper));
            const V leading = hn::BitCast(tag, hn::ConvertTo(signedTag, hn::MulAdd(upperFloat, scale, half)));

            // Remainders are below 2^16, so that 16 bits of each product suffice.
            const auto pairBase = hn::Set(pairTag, static_cast<std::uint16_t>(PairBase));
            const auto remainder = [&](V dividend, V quotient)
            {
                return hn::BitCast(
                    tag, hn::Sub(hn::BitCast(pairTag, dividend), hn::Mul(hn::BitCast(pairTag, quotient), pairBase)));
            };
            const auto firstPair = hn::BitCast(pairTag, remainder(upper, leading));
            const auto secondPair = hn::BitCast(pairTag, hn::ShiftLeft<16>(remainder(numbers, upper)));
            const auto pairs = hn::OddEven(secondPair, firstPair);

            // A pair p = 85 * t + u becomes the bytes t, u: t + 256 * u = 256 * p - (256 * 85 - 1) * t.
            const auto tens = hn::ShiftRight<DigitShift>(hn::MulHigh(pairs, hn::Set(pairTag, DigitReciprocal)));
            const auto both = hn::Sub(
                hn::ShiftLeft<8>(pairs),
                hn::Mul(tens, hn::Set(pairTag, static_cast<std::uint16_t>(256 * ASCII85Base - 1))));

            const V others = hn::Add(hn::BitCast(tag, both), hn::Set(tag, Zero * 0x01010101U));
            const V leadingCharacter = hn::Add(leading, hn::Set(tag, std::uint32_t{Zero}));
            return {hn::IfThenElse(zero, hn::Set(tag, std::uint32_t{ZeroGroup}), leadingCharacter), others};
        }

#endif
#if HWY_TARGET <= HWY_AVX3_DL

        /// Writes up to eight groups that stand at the front of `characters`, without what 'z' stands for.
        HWY_INLINE unsigned char*
        StoreWithoutZeros(__m512i characters, std::size_t groups, std::uint32_t zeros, unsigned char* output)
        {
            constexpr std::uint64_t firstDigits = 0x0842108421ULL; // a bit for each of eight groups
            constexpr std::uint64_t allDigits = 0x1F;
            const std::uint64_t present = _pdep_u64(~zeros, firstDigits) * allDigits | firstDigits;
            const std::uint64_t kept = _bzhi_u64(present, static_cast<unsigned>(groups * ASCII85DigitCount));
            const auto count = static_cast<unsigned>(_mm_popcnt_u64(kept));
            _mm512_mask_storeu_epi8(
                output, _bzhi_u64(~std::uint64_t{0}, count), _mm512_maskz_compress_epi8(kept, characters));
            return output + count;
        }

        unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output)
        {
            const hn::FixedTag<std::uint32_t, WideGroups> tag;
            const __m512i firstIndices = _mm512_loadu_si512(WideIndices.data());
            const __m512i lastIndices = _mm512_loadu_si512(WideIndices.data() + 64);
            const __m512i secondHalfIndices = _mm512_loadu_si512(WideIndices.data() + WideCharacters / 2);

            while (groups != 0)
            {
                const std::size_t count = groups < WideGroups ? groups : WideGroups;
                const auto valid = static_cast<__mmask16>((1U << count) - 1U);
                const __m512i bytes = _mm512_maskz_loadu_epi32(valid, input);
                const std::uint32_t zeros = _mm512_mask_testn_epi32_mask(valid, bytes, bytes);
                input += count * ASCII85GroupSize;
                groups -= count;
                if (zeros == 0xFFFF)
                {
                    std::memset(output, ZeroGroup, WideGroups);
                    output += WideGroups;
                    continue;
                }
                const auto digits = DigitsOf(
                    tag, NumbersFromBytes(tag, hn::Vec<decltype(tag)>{bytes}),
                    hn::Mask512<std::uint32_t>{static_cast<__mmask16>(zeros)});
                if (zeros == 0 && count == WideGroups)
                {
                    _mm512_storeu_si512(
                        output, _mm512_permutex2var_epi8(digits.others.raw, firstIndices, digits.leading.raw));
                    _mm_storeu_si128(
                        reinterpret_cast<__m128i*>(output + 64),
                        _mm512_castsi512_si128(
                            _mm512_permutex2var_epi8(digits.others.raw, lastIndices, digits.leading.raw)));
                    output += WideCharacters;
                    continue;
                }
                const std::size_t firstCount = count < WideGroups / 2 ? count : WideGroups / 2;
                output = StoreWithoutZeros(
                    _mm512_permutex2var_epi8(digits.others.raw, firstIndices, digits.leading.raw), firstCount, zeros,
                    output);
                output = StoreWithoutZeros(
                    _mm512_permutex2var_epi8(digits.others.raw, secondHalfIndices, digits.leading.raw),
                    count - firstCount, zeros >> WideGroups / 2, output);
            }
            return output;
        }

#else
#if HWY_TARGET != HWY_SCALAR

        /// Writes the characters of a vector of groups, block by block. `zeros` has a bit per group that is zero.
        template <class D, class V = hn::Vec<D>>
        HWY_INLINE unsigned char* StoreBlocks(D tag, Digits<V> digits, std::size_t zeros, unsigned char* output)
        {
            if constexpr (HWY_MAX_BYTES > 16 && hn::MaxLanes(tag) > BlockGroups)
            {
                const hn::Half<D> halfTag;
                constexpr std::size_t halfGroups = hn::MaxLanes(halfTag);
                using HalfDigits = Digits<hn::Vec<decltype(halfTag)>>;
                output = StoreBlocks(
                    halfTag, HalfDigits{hn::LowerHalf(halfTag, digits.leading), hn::LowerHalf(halfTag, digits.others)},
                    zeros & ((std::size_t{1} << halfGroups) - 1), output);
                return StoreBlocks(
                    halfTag, HalfDigits{hn::UpperHalf(halfTag, digits.leading), hn::UpperHalf(halfTag, digits.others)},
                    zeros >> halfGroups, output);
            }
            else
            {
                const hn::Repartition<unsigned char, D> byteTag;
                const auto leading = hn::BitCast(byteTag, digits.leading);
                const auto others = hn::BitCast(byteTag, digits.others);
                const BlockShuffle& shuffle = BlockShuffles[zeros];
                const auto first = hn::Or(
                    hn::TableLookupBytesOr0(leading, hn::LoadU(byteTag, shuffle.leading.data())),
                    hn::TableLookupBytesOr0(others, hn::LoadU(byteTag, shuffle.others.data())));
                // Puts the last group's digits behind the place of the first 16 characters, which come on top.
                hn::StoreU(others, byteTag, output + BlockCharacters - 16);
                hn::StoreU(first, byteTag, output);
                return output + BlockCharacters - (ASCII85DigitCount - 1) * hwy::PopCount(std::uint64_t{zeros});
            }
        }

        /// Encodes whole vectors of groups; moves `input` and `groups` past them.
        template <class D>
        HWY_INLINE unsigned char*
        EncodeVectors(D tag, const unsigned char*& input, std::size_t& groups, unsigned char* output)
        {
            const hn::Repartition<unsigned char, D> byteTag;
            constexpr std::size_t lanes = hn::MaxLanes(tag);
            constexpr std::size_t allZeros = (std::size_t{1} << lanes) - 1;
            for (; groups >= lanes; groups -= lanes)
            {
                const auto bytes = hn::BitCast(tag, hn::LoadU(byteTag, input));
                const auto zero = hn::Eq(bytes, hn::Zero(tag));
                unsigned char maskBytes[8] = {};
                hn::StoreMaskBits(tag, zero, maskBytes);
                const std::size_t zeros = maskBytes[0] | static_cast<std::size_t>(maskBytes[1]) << 8;
                input += lanes * ASCII85GroupSize;
                if (zeros == allZeros)
                {
                    std::memset(output, ZeroGroup, lanes);
                    output += lanes;
                }
                else
                {
                    output = StoreBlocks(tag, DigitsOf(tag, NumbersFromBytes(tag, bytes), zero), zeros, output);
                }
            }
            return output;
        }

#endif

        unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output)
        {
#if HWY_TARGET != HWY_SCALAR
            output = EncodeVectors(hn::CappedTag<std::uint32_t, WideGroups>(), input, groups, output);
            output = EncodeVectors(hn::CappedTag<std::uint32_t, BlockGroups>(), input, groups, output);
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

#endif
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
