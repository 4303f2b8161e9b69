// ASCII85 encoding, compiled once for every kind of vectors and chosen at run time.
//
// A group's number is split at 85 * 85 = 7225 into its leading digit and two pairs of digits, and the pairs at 85. All
// divisions are multiplications with a rounded reciprocal that is exact over the range at hand. The leading digits stand
// in one vector and the other four digits of each group in another; byte shuffles bring them into line, and leave out
// what 'z' stands for.
#include "cip3output/kernels/ASCII85.h"

#include "cip3output/PpfFormat.h"
#include "cip3output/kernels/Opaque.h"

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
        /// For all x below 2^32 / PairBase, the float 128 + x / PairBase, made with this for 128, has the whole quotient in
        /// the bits above its lowest QuotientShift. The offset's 4 units of 2^-16 are more than the rounding of product
        /// and sum, and less than 1 / PairBase.
        constexpr float QuotientOffset = 128.0f + 4.0f / 65536;
        constexpr int QuotientShift = 16;
        constexpr std::uint32_t QuotientBits = 0x7F;
        /// For all x below PairBase: x / ASCII85Base == (x * DigitReciprocal) >> (16 + DigitShift).
        constexpr std::uint16_t DigitReciprocal = 12337;
        constexpr int DigitShift = 4;

        /// Takes the bytes of each 32-bit lane in reverse order.
        constexpr std::array<unsigned char, 16> ReversedLanes = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};

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
            /// The leading digit in each lane's lowest byte; above it, anything.
            V leading;
            /// The other four digits of each lane's group, in their order in memory.
            V others;
        };

        /// Turns vectors of groups into digits. Holds the constants that this takes, so that they stay in registers.
        template <class D>
        class DigitMaker
        {
        public:
            using V = hn::Vec<D>;

            // Written out, because one that the compiler adds would not be compiled for this target.
            HWY_INLINE DigitMaker() {}

            /// The digits of groups as they stand in memory.
            HWY_INLINE Digits<V> operator()(V groups) const
            {
                const V numbers = hn::BitCast(Lanes(), hn::TableLookupBytes(hn::BitCast(Bytes(), groups), reversed));
                const V upper = UpperDigits(numbers);
                const V leading = LeadingDigit(upper);
                // Remainders are below 2^16, so that 16 bits of each product suffice.
                const auto firstPair = hn::Sub(Pairs16(upper), hn::Mul(Pairs16(leading), pairBase));
                const auto secondPair = hn::Sub(Pairs16(numbers), hn::Mul(Pairs16(upper), pairBase));
                const auto pairs = hn::OddEven(Pairs16(hn::ShiftLeft<16>(hn::BitCast(Lanes(), secondPair))), firstPair);

                // A pair p = 85 * t + u becomes the bytes t, u: t + 256 * u = 256 * p - (256 * 85 - 1) * t.
                const auto tens = hn::ShiftRight<DigitShift>(hn::MulHigh(pairs, digitReciprocal));
                const auto both = hn::Sub(hn::ShiftLeft<8>(pairs), hn::Mul(tens, tensToBytes));
                return {hn::Add(leading, zeroDigits), hn::Add(hn::BitCast(Lanes(), both), zeroDigits)};
            }

            /// The same with 'z' for the leading digit of the groups in `zero`.
            HWY_INLINE Digits<V> WithZeros(V groups, hn::Mask<D> zero) const
            {
                const Digits<V> digits = (*this)(groups);
                return {
                    hn::IfThenElse(zero, hn::Set(Lanes(), std::uint32_t{ZeroGroup}), digits.leading), digits.others};
            }

        private:
            using Lanes = D;
            using Bytes = hn::Repartition<unsigned char, D>;
            using Halves = hn::Repartition<std::uint16_t, D>;
            using Products = hn::Repartition<std::uint64_t, D>;
            using Floats = hn::RebindToFloat<D>;
            using Signed = hn::RebindToSigned<D>;

            static HWY_INLINE hn::Vec<Halves> Pairs16(V lanes) { return hn::BitCast(Halves(), lanes); }

            /// number / PairBase: the high halves of the products with the reciprocal, of even and odd lanes.
            HWY_INLINE V UpperDigits(V numbers) const
            {
                const auto even = hn::MulEven(numbers, pairReciprocal);
                const auto oddNumbers = hn::ShiftRight<32>(hn::BitCast(Products(), numbers));
                const auto odd = hn::MulEven(hn::BitCast(Lanes(), oddNumbers), pairReciprocal);
                const auto evenHigh = hn::ShiftRight<32>(even);
                return hn::ShiftRight<PairShift>(hn::BitCast(Lanes(), hn::Or(evenHigh, hn::And(odd, highHalf))));
            }

            /// upper / PairBase, which is below 128: in the highest bits of a mantissa, when 128 is added.
            HWY_INLINE V LeadingDigit(V upper) const
            {
                const auto upperFloat = hn::ConvertTo(Floats(), hn::BitCast(Signed(), upper));
                const auto quotient = hn::MulAdd(upperFloat, pairScale, quotientOffset);
                return hn::And(hn::ShiftRight<QuotientShift>(hn::BitCast(Lanes(), quotient)), quotientBits);
            }

            hn::Vec<Bytes> reversed = hn::LoadDup128(Bytes(), ReversedLanes.data());
            V pairReciprocal = hn::Set(Lanes(), Opaque(PairReciprocal));
            hn::Vec<Products> highHalf = hn::Set(Products(), Opaque(std::uint64_t{0xFFFFFFFF00000000U}));
            hn::Vec<Floats> pairScale = hn::Set(Floats(), Opaque(1.0f / PairBase));
            hn::Vec<Floats> quotientOffset = hn::Set(Floats(), Opaque(QuotientOffset));
            V quotientBits = hn::Set(Lanes(), Opaque(QuotientBits));
            hn::Vec<Halves> pairBase = hn::Set(Halves(), Opaque(static_cast<std::uint16_t>(PairBase)));
            hn::Vec<Halves> digitReciprocal = hn::Set(Halves(), Opaque(DigitReciprocal));
            hn::Vec<Halves> tensToBytes = hn::Set(Halves(), Opaque(static_cast<std::uint16_t>(256 * ASCII85Base - 1)));
            V zeroDigits = hn::Set(Lanes(), Opaque(Zero * 0x01010101U));
        };

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

        /// The characters of up to sixteen groups on their way into memory.
        class WideStore
        {
        public:
            using V = hn::Vec512<std::uint32_t>;

            HWY_INLINE WideStore() {}

            /// Sixteen groups none of which is zero.
            HWY_INLINE unsigned char* All(Digits<V> digits, unsigned char* output) const
            {
                _mm512_storeu_si512(output, _mm512_permutex2var_epi8(digits.others.raw, first, digits.leading.raw));
                const __m512i rest = _mm512_permutex2var_epi8(digits.others.raw, last, digits.leading.raw);
                _mm_storeu_si128(reinterpret_cast<__m128i*>(output + 64), _mm512_castsi512_si128(rest));
                return output + WideCharacters;
            }

            /// The first `groups` groups, of which those in `zeros` are zero.
            HWY_INLINE unsigned char*
            Some(Digits<V> digits, std::size_t groups, std::uint32_t zeros, unsigned char* output) const
            {
                const std::size_t firstGroups = groups < WideGroups / 2 ? groups : WideGroups / 2;
                output = StoreWithoutZeros(
                    _mm512_permutex2var_epi8(digits.others.raw, first, digits.leading.raw), firstGroups, zeros, output);
                return StoreWithoutZeros(
                    _mm512_permutex2var_epi8(digits.others.raw, secondHalf, digits.leading.raw), groups - firstGroups,
                    zeros >> WideGroups / 2, output);
            }

        private:
            __m512i first = _mm512_loadu_si512(WideIndices.data());
            __m512i secondHalf = _mm512_loadu_si512(WideIndices.data() + WideCharacters / 2);
            __m512i last = _mm512_loadu_si512(WideIndices.data() + 64);
        };

        unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output)
        {
            const DigitMaker<hn::FixedTag<std::uint32_t, WideGroups>> makeDigits;
            const WideStore store;
            constexpr std::uint32_t allZeros = (1U << WideGroups) - 1;
            for (; groups >= WideGroups; groups -= WideGroups, input += WideGroups * ASCII85GroupSize)
            {
                const __m512i bytes = _mm512_loadu_si512(input);
                const __mmask16 zeros = _mm512_testn_epi32_mask(bytes, bytes);
                if (zeros == allZeros)
                {
                    std::memset(output, ZeroGroup, WideGroups);
                    output += WideGroups;
                    continue;
                }
                output = zeros == 0 ? store.All(makeDigits({bytes}), output)
                                    : store.Some(makeDigits.WithZeros({bytes}, {zeros}), WideGroups, zeros, output);
            }
            if (groups != 0)
            {
                const auto valid = static_cast<__mmask16>((1U << groups) - 1);
                const __m512i bytes = _mm512_maskz_loadu_epi32(valid, input);
                const __mmask16 zeros = _mm512_testn_epi32_mask(bytes, bytes);
                output = store.Some(makeDigits.WithZeros({bytes}, {zeros}), groups, zeros, output);
            }
            return output;
        }

#else
#if HWY_TARGET != HWY_SCALAR

        /// Calls `step` on a vector's 128-bit blocks in turn, on each with the digits of its groups and their bits in
        /// `zeros`, and with the result of the call before.
        template <class D, class Step, class V = hn::Vec<D>>
        HWY_INLINE unsigned char*
        ForEachBlock(D tag, Digits<V> digits, std::size_t zeros, unsigned char* output, Step step)
        {
            if constexpr (hn::MaxLanes(tag) > BlockGroups)
            {
                const hn::Half<D> half;
                using HalfDigits = Digits<hn::Vec<decltype(half)>>;
                constexpr std::size_t Groups = hn::MaxLanes(half);
                const HalfDigits lower{hn::LowerHalf(half, digits.leading), hn::LowerHalf(half, digits.others)};
                const HalfDigits upper{hn::UpperHalf(half, digits.leading), hn::UpperHalf(half, digits.others)};
                output = ForEachBlock(half, lower, zeros & ((std::size_t{1} << Groups) - 1), output, step);
                return ForEachBlock(half, upper, zeros >> Groups, output, step);
            }
            else
            {
                return step(digits, zeros, output);
            }
        }

        /// The characters of vectors of groups on their way into memory, 20 at most to a block: the last group's digits
        /// 1 to 4 are put behind the place of the first 16 characters, which come on top.
        template <class D>
        class BlockStore
        {
        public:
            using V = hn::Vec<D>;

            HWY_INLINE BlockStore() {}

            /// A vector of groups none of which is zero.
            HWY_INLINE unsigned char* All(Digits<V> digits, unsigned char* output) const
            {
                const auto first = hn::Or(
                    hn::TableLookupBytesOr0(hn::BitCast(Bytes(), digits.leading), leadingPlaces),
                    hn::TableLookupBytesOr0(hn::BitCast(Bytes(), digits.others), otherPlaces));
                const auto put = [](auto block, std::size_t, unsigned char* place)
                {
                    hn::StoreU(hn::BitCast(Block(), block.others), Block(), place + BlockCharacters - 16);
                    hn::StoreU(hn::BitCast(Block(), block.leading), Block(), place);
                    return place + BlockCharacters;
                };
                return ForEachBlock(D(), Digits<V>{hn::BitCast(D(), first), digits.others}, 0, output, put);
            }

            /// A vector of groups, of which those in `zeros` are zero.
            HWY_INLINE unsigned char* Some(Digits<V> digits, std::size_t zeros, unsigned char* output) const
            {
                const auto put = [](auto block, std::size_t blockZeros, unsigned char* place)
                {
                    const BlockShuffle& shuffle = BlockShuffles[blockZeros];
                    const auto others = hn::BitCast(Block(), block.others);
                    const auto first = hn::Or(
                        hn::TableLookupBytesOr0(
                            hn::BitCast(Block(), block.leading), hn::LoadU(Block(), shuffle.leading.data())),
                        hn::TableLookupBytesOr0(others, hn::LoadU(Block(), shuffle.others.data())));
                    hn::StoreU(others, Block(), place + BlockCharacters - 16);
                    hn::StoreU(first, Block(), place);
                    return place + BlockCharacters - (ASCII85DigitCount - 1) * hwy::PopCount(std::uint64_t{blockZeros});
                };
                return ForEachBlock(D(), digits, zeros, output, put);
            }

        private:
            using Bytes = hn::Repartition<unsigned char, D>;
            using Block = hn::FixedTag<unsigned char, 16>;

            hn::Vec<Bytes> leadingPlaces = hn::LoadDup128(Bytes(), BlockShuffles[0].leading.data());
            hn::Vec<Bytes> otherPlaces = hn::LoadDup128(Bytes(), BlockShuffles[0].others.data());
        };

        /// Encodes whole vectors of groups; moves `input` and `groups` past them.
        template <class D>
        HWY_INLINE unsigned char*
        EncodeVectors(D tag, const unsigned char*& input, std::size_t& groups, unsigned char* output)
        {
            const hn::Repartition<unsigned char, D> byteTag;
            constexpr std::size_t Lanes = hn::MaxLanes(tag);
            constexpr std::size_t AllZeros = (std::size_t{1} << Lanes) - 1;
            const DigitMaker<D> makeDigits;
            const BlockStore<D> store;
            for (; groups >= Lanes; groups -= Lanes)
            {
                const auto bytes = hn::BitCast(tag, hn::LoadU(byteTag, input));
                const auto zero = hn::Eq(bytes, hn::Zero(tag));
                unsigned char maskBytes[8] = {};
                hn::StoreMaskBits(tag, zero, maskBytes);
                const std::size_t zeros = maskBytes[0] | static_cast<std::size_t>(maskBytes[1]) << 8;
                input += Lanes * ASCII85GroupSize;
                if (zeros == AllZeros)
                {
                    std::memset(output, ZeroGroup, Lanes);
                    output += Lanes;
                }
                else
                {
                    output = zeros == 0 ? store.All(makeDigits(bytes), output)
                                        : store.Some(makeDigits.WithZeros(bytes, zero), zeros, output);
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
