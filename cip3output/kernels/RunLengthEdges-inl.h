// Run-length compression for vectors of any kind. From the bits of which bytes equal their neighbours a list of the runs'
// edges is made, a stretch at a time, and the tokens are written from edge to edge. That asks for few branches that are
// not to be foreseen, where a search from token to token asks for one per token. A stretch of nothing but runs, as flat
// areas and tints are, needs only their ends.
//
// Included by RunLength.cpp for each kind of vectors, so without a guard.
#include "cip3output/kernels/RunLengthTokens.h"

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#ifndef RASTEROUTPUT_KERNELS_RUNLENGTHEDGES_TABLES
#define RASTEROUTPUT_KERNELS_RUNLENGTHEDGES_TABLES
namespace RasterOutput::Kernels::RunLength
{
    /// For each byte, the places of its bits that are 1, lowest first.
    constexpr std::array<std::array<unsigned char, 8>, 256> MakeBitPlaces()
    {
        std::array<std::array<unsigned char, 8>, 256> places{};
        for (std::size_t byte = 0; byte < places.size(); ++byte)
        {
            std::size_t count = 0;
            for (unsigned char bit = 0; bit < 8; ++bit)
            {
                if ((byte >> bit & 1) != 0)
                {
                    places[byte][count++] = bit;
                }
            }
        }
        return places;
    }

    constexpr std::array<std::array<unsigned char, 8>, 256> BitPlaces = MakeBitPlaces();
}
#endif

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        using namespace RunLength;

        /// Bytes of input whose edges are listed at once.
        constexpr std::size_t StretchSize = 2048;
        /// A literal run up to this size is copied in one go, without looking at its length.
        constexpr std::size_t LiteralStep = 32;

        HWY_INLINE void CopyLiteralStep(const unsigned char* input, unsigned char* output)
        {
            const hn::CappedTag<unsigned char, LiteralStep> tag;
            for (std::size_t i = 0; i < LiteralStep; i += hn::Lanes(tag))
            {
                hn::StoreU(hn::LoadU(tag, input + i), tag, output + i);
            }
        }

        /// A bit for each of 64 bytes from `place` on that equals the byte behind it.
        HWY_INLINE std::uint64_t EqualToNext(const unsigned char* place)
        {
            const hn::CappedTag<unsigned char, 64> tag;
            std::uint64_t equal = 0;
            for (std::size_t i = 0; i < 64; i += hn::Lanes(tag))
            {
                // The first lane's bit is the lowest of the first byte, on a little-endian machine of the whole.
                std::uint64_t bits = 0;
                hn::StoreMaskBits(
                    tag, hn::Eq(hn::LoadU(tag, place + i), hn::LoadU(tag, place + i + 1)),
                    reinterpret_cast<unsigned char*>(&bits));
                equal |= bits << i;
            }
            return equal;
        }

        /// The same for the last `count` bytes of the input, 64 at most. The very last one equals nothing.
        HWY_INLINE std::uint64_t EqualToNextAtEnd(const unsigned char* place, std::size_t count)
        {
            // Not cleared first: under the address sanitizer the compiler clears it by vectors that the stack is not
            // aligned for. NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
            std::array<unsigned char, 64 + 1> padded;
            std::memcpy(padded.data(), place, count);
            std::fill(padded.begin() + count, padded.end(), static_cast<unsigned char>(~place[count - 1]));
            return EqualToNext(padded.data()) & ((std::uint64_t{1} << (count - 1)) - 1);
        }

        /// A stretch of input as bits.
        struct Stretch
        {
            /// A bit for each byte that equals the byte behind it.
            std::array<std::uint64_t, StretchSize / 64> equal;
            std::size_t size;
            /// 1 if the byte in front of the stretch equals its first one.
            std::uint64_t before;
            /// The same of the next stretch.
            std::uint64_t after;
            /// Whether any byte equals neither of its neighbours.
            bool hasLiteral;
        };

        /// Reads the stretch behind the one that is there, which begins at `begin`: up to StretchSize bytes.
        HWY_INLINE void ReadStretch(const unsigned char* begin, const unsigned char* end, Stretch& stretch)
        {
            const auto left = static_cast<std::size_t>(end - begin);
            stretch.size = std::min(left, StretchSize);
            stretch.before = stretch.after;
            std::uint64_t carry = stretch.before;
            std::uint64_t literal = 0;
            for (std::size_t place = 0; place < stretch.size; place += 64)
            {
                const bool isLast = left - place <= 64;
                const std::uint64_t equal =
                    HWY_LIKELY(!isLast) ? EqualToNext(begin + place) : EqualToNextAtEnd(begin + place, left - place);
                const std::uint64_t valid = isLast ? ~std::uint64_t{0} >> (64 - (left - place)) : ~std::uint64_t{0};
                literal |= ~(equal | equal << 1 | carry) & valid;
                stretch.equal[place / 64] = equal;
                carry = equal >> 63;
            }
            stretch.after = carry;
            stretch.hasLiteral = literal != 0;
        }

        /// Places in a stretch, with room for a few more, which are written and not meant.
        using Places = std::array<std::uint16_t, StretchSize + 8>;

        /// Writes the places of all `count` bits of `bits`, the lowest of which stands for `place`. Up to `few` of them
        /// are written without a look at how many there are.
        template <std::size_t Few>
        HWY_INLINE void PutPlaces(std::uint64_t bits, std::size_t place, std::size_t count, std::uint16_t* places)
        {
            constexpr std::uint64_t TopBit = std::uint64_t{1} << 63;
            if (count <= Few)
            {
                // Always all steps, as their number is not to be foreseen. The bit keeps something to be found.
                for (std::size_t i = 0; i < Few; ++i, bits &= bits - 1)
                {
                    places[i] = static_cast<std::uint16_t>(place + hwy::Num0BitsBelowLS1Bit_Nonzero64(bits | TopBit));
                }
                return;
            }
            const hn::CappedTag<std::uint16_t, 8> tag;
            const hn::Rebind<unsigned char, decltype(tag)> byteTag;
            auto base = hn::Set(tag, static_cast<std::uint16_t>(place));
            for (std::size_t byte = 0; byte < 8; ++byte, bits >>= 8)
            {
                const auto& bitPlaces = BitPlaces[bits & 0xFF];
                hn::StoreU(hn::Add(base, hn::PromoteTo(tag, hn::LoadU(byteTag, bitPlaces.data()))), tag, places);
                base = hn::Add(base, hn::Set(tag, 8));
                places += hwy::PopCount(bits & 0xFF);
            }
        }

        /// Lists the places at which runs begin and end, in turn: a run's first byte, its last byte. Gives their number.
        HWY_INLINE std::size_t ListEdges(const Stretch& stretch, Places& edges)
        {
            std::size_t count = 0;
            std::uint64_t carry = stretch.before;
            for (std::size_t place = 0; place < stretch.size; place += 64)
            {
                const std::uint64_t equal = stretch.equal[place / 64];
                const std::uint64_t changes = equal ^ (equal << 1 | carry);
                carry = equal >> 63;
                if (changes != 0)
                {
                    const std::size_t number = hwy::PopCount(changes);
                    PutPlaces<8>(changes, place, number, edges.data() + count);
                    count += number;
                }
            }
            return count;
        }

        /// Lists the places of the last bytes of runs in a stretch that holds nothing else; gives their number.
        HWY_INLINE std::size_t ListRunEnds(const Stretch& stretch, Places& ends)
        {
            std::size_t count = 0;
            for (std::size_t place = 0; place < stretch.size; place += 64)
            {
                const std::size_t left = stretch.size - place;
                const std::uint64_t valid = left < 64 ? (std::uint64_t{1} << left) - 1 : ~std::uint64_t{0};
                const std::uint64_t runEnds = ~stretch.equal[place / 64] & valid;
                if (runEnds != 0)
                {
                    const std::size_t number = hwy::PopCount(runEnds);
                    PutPlaces<4>(runEnds, place, number, ends.data() + count);
                    count += number;
                }
            }
            return count;
        }

        /// Writes a run of more than one token.
        HWY_INLINE unsigned char* PutLongRun(unsigned char value, std::size_t length, unsigned char* output)
        {
            const hn::FixedTag<std::uint16_t, 8> tag;
            const auto tokens =
                hn::Set(tag, static_cast<std::uint16_t>((RepeatBias - MaxTokenRun) | std::size_t{value} << 8));
            const std::size_t full = length / MaxTokenRun;
            for (std::size_t i = 0; i < full; i += hn::Lanes(tag))
            {
                hn::StoreU(
                    hn::BitCast(hn::Repartition<unsigned char, decltype(tag)>(), tokens),
                    hn::Repartition<unsigned char, decltype(tag)>(), output + 2 * i);
            }
            output += 2 * full;
            const std::size_t rest = length % MaxTokenRun;
            output[0] = static_cast<unsigned char>(RepeatBias - rest);
            output[1] = value;
            return rest != 0 ? output + 2 : output;
        }

        /// Writes a literal run of any length; LiteralStep bytes behind it are still input.
        HWY_INLINE unsigned char* PutLongLiteral(const unsigned char* input, std::size_t length, unsigned char* output)
        {
            while (length != 0)
            {
                const std::size_t token = std::min(length, MaxTokenRun);
                *output++ = static_cast<unsigned char>(token - LiteralBias);
                for (std::size_t i = 0; i < token; i += LiteralStep)
                {
                    CopyLiteralStep(input + i, output + i);
                }
                input += token;
                output += token;
                length -= token;
            }
            return output;
        }

        /// Writes what is between `literal` and a run as a literal run, and the run.
        HWY_INLINE unsigned char* PutPair(
            const unsigned char* literal, const unsigned char* first, const unsigned char* last,
            const unsigned char* end, unsigned char* output)
        {
            const auto literalSize = static_cast<std::size_t>(first - literal);
            const auto runSize = static_cast<std::size_t>(last - first) + 1;
            const auto left = static_cast<std::size_t>(end - literal);
            if (HWY_LIKELY(literalSize <= LiteralStep && left >= LiteralStep))
            {
                *output = static_cast<unsigned char>(literalSize - LiteralBias);
                CopyLiteralStep(literal, output + 1);
                // Without a literal run the length byte just written is taken back.
                output += literalSize + (literalSize != 0);
            }
            else
            {
                output = left >= literalSize + LiteralStep ? PutLongLiteral(literal, literalSize, output)
                                                           : PutLiteral(literal, literalSize, output);
            }
            if (HWY_LIKELY(runSize <= MaxTokenRun))
            {
                output[0] = static_cast<unsigned char>(RepeatBias - runSize);
                output[1] = *first;
                return output + 2;
            }
            return PutLongRun(*first, runSize, output);
        }

        /// Writes runs that follow each other without a gap, the first of them behind the place ends[0].
        HWY_INLINE unsigned char*
        PutRuns(const unsigned char* stretch, const std::uint16_t* ends, std::size_t count, unsigned char* output)
        {
            for (std::size_t i = 1; i < count; ++i)
            {
                const unsigned char value = stretch[ends[i]];
                const std::size_t length = static_cast<std::size_t>(ends[i]) - ends[i - 1];
                if (HWY_LIKELY(length <= MaxTokenRun))
                {
                    output[0] = static_cast<unsigned char>(RepeatBias - length);
                    output[1] = value;
                    output += 2;
                }
                else
                {
                    output = PutLongRun(value, length, output);
                }
            }
            return output;
        }

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            const unsigned char* literal = input;
            // A run that goes on behind its stretch.
            const unsigned char* open = nullptr;
            Stretch stretch; // NOLINT(cppcoreguidelines-pro-type-member-init): ReadStretch fills the rest
            stretch.after = 0;
            Places places;
            for (const unsigned char* begin = input; begin < end; begin += stretch.size)
            {
                ReadStretch(begin, end, stretch);
                if (!stretch.hasLiteral)
                {
                    const std::size_t count = ListRunEnds(stretch, places);
                    open = open != nullptr ? open : begin;
                    if (count != 0)
                    {
                        output = PutPair(literal, open, begin + places[0], end, output);
                        output = PutRuns(begin, places.data(), count, output);
                        literal = begin + places[count - 1] + 1;
                        open = stretch.after != 0 ? literal : nullptr;
                    }
                    continue;
                }
                const std::size_t count = ListEdges(stretch, places);
                std::size_t next = 0;
                if (open != nullptr && count != 0)
                {
                    const unsigned char* const last = begin + places[next++];
                    output = PutPair(literal, open, last, end, output);
                    literal = last + 1;
                    open = nullptr;
                }
                for (; next + 2 <= count; next += 2)
                {
                    const unsigned char* const last = begin + places[next + 1];
                    output = PutPair(literal, begin + places[next], last, end, output);
                    literal = last + 1;
                }
                if (next < count)
                {
                    open = begin + places[next];
                }
            }
            return PutLiteral(literal, static_cast<std::size_t>(end - literal), output);
        }
    }
}
HWY_AFTER_NAMESPACE();
