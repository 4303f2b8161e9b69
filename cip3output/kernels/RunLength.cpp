// Run-length compression, compiled once for every kind of vectors and chosen at run time.
//
// Everything follows from one bit per byte: whether it equals the byte behind it. Where the machine can compress and
// expand vectors of bytes, all tokens of a window of 64 bytes are made at once. Elsewhere the bits of a stretch are
// turned into a list of the runs' edges, and the tokens are written from edge to edge; that asks for one unpredictable
// branch per stretch where a search from token to token would ask for one per token.
#include "cip3output/kernels/RunLength.h"

#include "cip3output/PpfFormat.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/RunLength.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef RASTEROUTPUT_RUNLENGTH_COMMON
#define RASTEROUTPUT_RUNLENGTH_COMMON
namespace RasterOutput::Kernels
{
    namespace RunLength
    {
        using PpfFormat::LiteralBias;
        using PpfFormat::MaxTokenRun;
        using PpfFormat::RepeatBias;

        /// Writes a repeat run of any length; what a last token of one byte is left with is a literal run.
        inline unsigned char* PutRun(unsigned char value, std::size_t length, unsigned char* output)
        {
            for (; length >= MaxTokenRun; length -= MaxTokenRun)
            {
                *output++ = static_cast<unsigned char>(RepeatBias - MaxTokenRun);
                *output++ = value;
            }
            if (length != 0)
            {
                // Modulo 256 a length of 1 gives 0, the length byte of a literal run of 1.
                *output++ = static_cast<unsigned char>(RepeatBias - length);
                *output++ = value;
            }
            return output;
        }

        /// Writes a literal run of any length.
        inline unsigned char* PutLiteral(const unsigned char* input, std::size_t length, unsigned char* output)
        {
            while (length != 0)
            {
                const std::size_t count = std::min(length, MaxTokenRun);
                *output++ = static_cast<unsigned char>(count - LiteralBias);
                std::memcpy(output, input, count);
                input += count;
                output += count;
                length -= count;
            }
            return output;
        }

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

        /// 0 to 64.
        constexpr std::array<unsigned char, 65> MakeCountedPlaces()
        {
            std::array<unsigned char, 65> places{};
            for (std::size_t i = 0; i < places.size(); ++i)
            {
                places[i] = static_cast<unsigned char>(i);
            }
            return places;
        }

        constexpr std::array<unsigned char, 65> CountedPlaces = MakeCountedPlaces();

        /// Takes bytes of two vectors in turn: 0 of the first, 0 of the second (as 64), 1 of the first and so on.
        constexpr std::array<unsigned char, 128> MakeInterleavedPlaces()
        {
            std::array<unsigned char, 128> places{};
            for (std::size_t i = 0; i < places.size(); ++i)
            {
                places[i] = static_cast<unsigned char>(i / 2 + i % 2 * 64);
            }
            return places;
        }

        constexpr std::array<unsigned char, 128> InterleavedPlaces = MakeInterleavedPlaces();
    }
}
#endif

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        using namespace RunLength;

#if HWY_TARGET <= HWY_AVX3_DL

        constexpr std::size_t VectorSize = 64;
        /// Bits that can be read at any place of a bitmap at once: 64 from the byte boundary in front of it.
        constexpr std::size_t WindowSize = 57;

        /// The lowest `count` bits; 64 at most.
        HWY_INLINE std::uint64_t LowBits(std::size_t count)
        {
            return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
        }

        /// The end of the run that begins at `begin`.
        HWY_INLINE const unsigned char* FindRunEnd(const unsigned char* begin, const unsigned char* end)
        {
            const __m512i value = _mm512_set1_epi8(static_cast<char>(*begin));
            for (const unsigned char* place = begin; place < end; place += VectorSize)
            {
                const std::uint64_t valid = LowBits(std::min(VectorSize, static_cast<std::size_t>(end - place)));
                const std::uint64_t other =
                    _mm512_mask_cmpneq_epi8_mask(valid, _mm512_maskz_loadu_epi8(valid, place), value);
                if (other != 0)
                {
                    return place + _tzcnt_u64(other);
                }
            }
            return end;
        }

        /// The first byte from `place` on that equals the byte behind it, or `end`.
        HWY_INLINE const unsigned char* FindPair(const unsigned char* place, const unsigned char* end)
        {
            for (; place + 1 < end; place += VectorSize)
            {
                const std::uint64_t valid = LowBits(std::min(VectorSize, static_cast<std::size_t>(end - place - 1)));
                const std::uint64_t equal = _mm512_mask_cmpeq_epi8_mask(
                    valid, _mm512_maskz_loadu_epi8(valid, place), _mm512_maskz_loadu_epi8(valid, place + 1));
                if (equal != 0)
                {
                    return place + _tzcnt_u64(equal);
                }
            }
            return end;
        }

        /// Where the tokens of a stretch of input begin, a bit per byte. Tokens are cut at the stretch's front, which has
        /// to be a token's beginning, but not at its end.
        class TokenMap
        {
        public:
            static constexpr std::size_t StretchSize = 4096;

            /// Describes the input from `begin` on, up to StretchSize bytes of it.
            HWY_INLINE void Describe(const unsigned char* begin, const unsigned char* end)
            {
                const auto left = static_cast<std::size_t>(end - begin);
                size = std::min(left, StretchSize);
                std::uint64_t equalBefore = 0;
                std::uint64_t inRunsBefore = 0;
                for (std::size_t word = 0; word * VectorSize < size; ++word, begin += VectorSize)
                {
                    const std::uint64_t equal = EqualToNext(begin, end);
                    const std::uint64_t shifted = equal << 1 | equalBefore >> 63;
                    const std::uint64_t inRun = equal | shifted;
                    // A run begins where a byte equals the next one only, a literal run where no run goes on.
                    const std::uint64_t runStarts = equal & ~shifted;
                    const std::uint64_t literalStarts = ~inRun & (inRun << 1 | inRunsBefore >> 63);
                    starts[word] = runStarts | literalStarts;
                    inRuns[word] = inRun;
                    equalBefore = equal;
                    inRunsBefore = inRun;
                }
                starts[0] |= 1;
                // Bits behind the stretch: its end begins a token only if that is the end of the input.
                const std::size_t lastWord = size / VectorSize;
                starts[lastWord] = lastWord * VectorSize == size ? 0 : starts[lastWord] & LowBits(size % VectorSize);
                starts[lastWord] |= left == size ? std::uint64_t{1} << size % VectorSize : 0;
                starts[lastWord + 1] = 0;
                inRuns[lastWord + 1] = 0;
            }

            /// The bits of WindowSize bytes from `place` on, and some of no meaning above.
            HWY_INLINE std::uint64_t Starts(std::size_t place) const { return WindowAt(starts, place); }
            HWY_INLINE std::uint64_t InRuns(std::size_t place) const { return WindowAt(inRuns, place); }

            /// The next beginning of a token behind `place`, or NotFound.
            HWY_INLINE std::size_t NextStart(std::size_t place) const
            {
                std::size_t word = (place + 1) / 64;
                std::uint64_t bits = starts[word] & ~LowBits((place + 1) % 64);
                while (bits == 0)
                {
                    if (++word > size / 64)
                    {
                        return NotFound;
                    }
                    bits = starts[word];
                }
                return word * 64 + _tzcnt_u64(bits);
            }

            static constexpr std::size_t NotFound = ~std::size_t{0};

        private:
            using Words = std::array<std::uint64_t, StretchSize / 64 + 2>;

            /// A bit for each of 64 bytes from `place` on that equals the byte behind it, all within the input.
            static HWY_INLINE std::uint64_t EqualToNext(const unsigned char* place, const unsigned char* end)
            {
                if (HWY_LIKELY(end - place > static_cast<std::ptrdiff_t>(VectorSize)))
                {
                    return _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(place), _mm512_loadu_si512(place + 1));
                }
                const std::uint64_t valid = LowBits(static_cast<std::size_t>(end - place) - 1);
                return _mm512_mask_cmpeq_epi8_mask(
                    valid, _mm512_maskz_loadu_epi8(valid, place), _mm512_maskz_loadu_epi8(valid, place + 1));
            }

            static HWY_INLINE std::uint64_t WindowAt(const Words& words, std::size_t place)
            {
                std::uint64_t window;
                std::memcpy(&window, reinterpret_cast<const unsigned char*>(words.data()) + place / 8, sizeof window);
                return window >> place % 8;
            }

            /// Bytes of the stretch.
            std::size_t size = 0;
            Words starts;
            Words inRuns;
        };

        /// Writes a run of any length.
        HWY_INLINE unsigned char* PutLongRun(unsigned char value, std::size_t length, unsigned char* output)
        {
            constexpr std::size_t tokensPerStore = VectorSize / 2;
            const __m512i tokens =
                _mm512_set1_epi16(static_cast<short>((RepeatBias - MaxTokenRun) | std::size_t{value} << 8));
            for (; length >= tokensPerStore * MaxTokenRun; length -= tokensPerStore * MaxTokenRun)
            {
                _mm512_storeu_si512(output, tokens);
                output += VectorSize;
            }
            const std::size_t full = length / MaxTokenRun;
            _mm512_mask_storeu_epi8(output, LowBits(2 * full), tokens);
            return PutRun(value, length % MaxTokenRun, output + 2 * full);
        }

        /// Writes a literal run of any length.
        HWY_INLINE unsigned char* PutLongLiteral(const unsigned char* input, std::size_t length, unsigned char* output)
        {
            for (; length >= MaxTokenRun; length -= MaxTokenRun)
            {
                *output = static_cast<unsigned char>(MaxTokenRun - LiteralBias);
                _mm512_storeu_si512(output + 1, _mm512_loadu_si512(input));
                _mm512_storeu_si512(output + 1 + VectorSize, _mm512_loadu_si512(input + VectorSize));
                input += MaxTokenRun;
                output += 1 + MaxTokenRun;
            }
            if (length != 0)
            {
                *output = static_cast<unsigned char>(length - LiteralBias);
                const std::uint64_t first = LowBits(std::min(length, VectorSize));
                const std::uint64_t second = LowBits(length - std::min(length, VectorSize));
                _mm512_mask_storeu_epi8(output + 1, first, _mm512_maskz_loadu_epi8(first, input));
                _mm512_mask_storeu_epi8(
                    output + 1 + VectorSize, second, _mm512_maskz_loadu_epi8(second, input + VectorSize));
                output += 1 + length;
            }
            return output;
        }

        /// Makes the tokens of windows. Holds the constants that this takes, so that they stay in registers.
        class WindowEncoder
        {
        public:
            // Written out, because one that the compiler adds would not be compiled for this target.
            HWY_INLINE WindowEncoder() {}

            /// Writes the tokens of the first `size` of `bytes`, none of which goes on behind them. `starts` has a bit
            /// where one begins and a bit at `size`, `inRuns` a bit for each byte in a run of two and more. If `whole`,
            /// there is room for two whole vectors.
            HWY_INLINE unsigned char* operator()(
                __m512i bytes, std::uint64_t starts, std::uint64_t inRuns, std::size_t size, bool whole,
                unsigned char* output) const
            {
                const std::uint64_t inside = LowBits(size);
                const std::uint64_t firsts = starts & inside;
                // All of a literal run goes out, and one byte of a repeat run.
                const std::uint64_t kept = (firsts | ~inRuns) & inside;
                const __m512i lengths = LengthBytes(starts & (starts - 1), firsts, inRuns);
                // Each byte is spread out to two places, its token's length byte and the byte itself.
                const std::uint64_t lower = _pdep_u64(firsts, LengthPlaces) | _pdep_u64(kept, ~LengthPlaces);
                const std::uint64_t upper =
                    _pdep_u64(firsts >> 32, LengthPlaces) | _pdep_u64(kept >> 32, ~LengthPlaces);
                output = Put(_mm512_permutex2var_epi8(lengths, lowerPlaces, bytes), lower, whole, output);
                return Put(_mm512_permutex2var_epi8(lengths, upperPlaces, bytes), upper, whole, output);
            }

        private:
            /// Of the places that bytes are spread out to, those of length bytes.
            static constexpr std::uint64_t LengthPlaces = 0x5555555555555555U;

            /// The length bytes of tokens at the places of their first bytes.
            HWY_INLINE __m512i LengthBytes(std::uint64_t ends, std::uint64_t firsts, std::uint64_t inRuns) const
            {
                const __m512i end = _mm512_maskz_expand_epi8(firsts, _mm512_maskz_compress_epi8(ends, places));
                // A literal run has its length less one, a repeat run 257 less its length: the one negated, modulo 256.
                const __m512i lessOne = _mm512_sub_epi8(end, nextPlaces);
                return _mm512_mask_sub_epi8(lessOne, inRuns, _mm512_setzero_si512(), lessOne);
            }

            static HWY_INLINE unsigned char*
            Put(__m512i bytes, std::uint64_t present, bool whole, unsigned char* output)
            {
                const auto count = static_cast<std::size_t>(_mm_popcnt_u64(present));
                const __m512i packed = _mm512_maskz_compress_epi8(present, bytes);
                if (HWY_LIKELY(whole))
                {
                    _mm512_storeu_si512(output, packed);
                }
                else
                {
                    _mm512_mask_storeu_epi8(output, LowBits(count), packed);
                }
                return output + count;
            }

            __m512i places = _mm512_loadu_si512(CountedPlaces.data());
            __m512i nextPlaces = _mm512_loadu_si512(CountedPlaces.data() + 1);
            __m512i lowerPlaces = _mm512_loadu_si512(InterleavedPlaces.data());
            __m512i upperPlaces = _mm512_loadu_si512(InterleavedPlaces.data() + VectorSize);
        };

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            const WindowEncoder encode;
            TokenMap map;
            while (input != end)
            {
                map.Describe(input, end);
                std::size_t place = 0;
                while (input + place != end)
                {
                    const unsigned char* const here = input + place;
                    const std::uint64_t starts = map.Starts(place) & LowBits(WindowSize);
                    // What begins last may go on behind the window, so it is left for the next one.
                    const std::size_t complete = 63 - hwy::Num0BitsAboveMS1Bit_Nonzero64(starts);
                    if (complete != 0)
                    {
                        const auto left = static_cast<std::size_t>(end - here);
                        const bool whole = left >= VectorSize;
                        const __m512i bytes =
                            HWY_LIKELY(whole) ? _mm512_loadu_si512(here) : _mm512_maskz_loadu_epi8(LowBits(left), here);
                        output = encode(bytes, starts, map.InRuns(place), complete, whole, output);
                        place += complete;
                        continue;
                    }
                    std::size_t next = map.NextStart(place);
                    const bool isRun = (map.InRuns(place) & 1) != 0;
                    if (next == TokenMap::NotFound)
                    {
                        if (place != 0)
                        {
                            break;
                        }
                        next = static_cast<std::size_t>((isRun ? FindRunEnd(here, end) : FindPair(here, end)) - input);
                    }
                    output =
                        isRun ? PutLongRun(*here, next - place, output) : PutLongLiteral(here, next - place, output);
                    place = next;
                    if (place >= TokenMap::StretchSize)
                    {
                        break;
                    }
                }
                input += place;
            }
            return output;
        }

#elif HWY_TARGET != HWY_SCALAR

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
            std::array<unsigned char, 64 + 1> padded;
            std::memcpy(padded.data(), place, count);
            std::fill(padded.begin() + count, padded.end(), static_cast<unsigned char>(~place[count - 1]));
            return EqualToNext(padded.data()) & ((std::uint64_t{1} << (count - 1)) - 1);
        }

        /// Places in a stretch of input at which runs begin and end, in turn: a run's first byte, its last byte. With
        /// room for a few more, which are written and not meant.
        using Edges = std::array<std::uint16_t, StretchSize + 8>;

        /// Writes the places of all bits of `changes`, the lowest of which stands for `place`.
        HWY_INLINE void PutEdges(std::uint64_t changes, std::size_t place, std::size_t count, std::uint16_t* edges)
        {
            constexpr std::size_t few = 8;
            constexpr std::uint64_t topBit = std::uint64_t{1} << 63;
            if (count <= few)
            {
                // Always all steps, as their number is not to be foreseen. The bit keeps something to be found.
                for (std::size_t i = 0; i < few; ++i, changes &= changes - 1)
                {
                    edges[i] = static_cast<std::uint16_t>(place + hwy::Num0BitsBelowLS1Bit_Nonzero64(changes | topBit));
                }
                return;
            }
            const hn::CappedTag<std::uint16_t, 8> tag;
            const hn::Rebind<unsigned char, decltype(tag)> byteTag;
            auto base = hn::Set(tag, static_cast<std::uint16_t>(place));
            for (std::size_t byte = 0; byte < 8; ++byte, changes >>= 8)
            {
                const auto& bitPlaces = BitPlaces[changes & 0xFF];
                hn::StoreU(hn::Add(base, hn::PromoteTo(tag, hn::LoadU(byteTag, bitPlaces.data()))), tag, edges);
                base = hn::Add(base, hn::Set(tag, 8));
                edges += hwy::PopCount(changes & 0xFF);
            }
        }

        /// Lists the edges of the input from `begin` on, up to StretchSize bytes of it; gives their number. `before` is
        /// 1 if the byte in front of the stretch equals its first one, and afterwards says the same of the next stretch.
        HWY_INLINE std::size_t
        ListEdges(const unsigned char* begin, const unsigned char* end, std::uint64_t& before, Edges& edges)
        {
            std::size_t count = 0;
            std::uint64_t carry = before;
            const auto left = static_cast<std::size_t>(end - begin);
            for (std::size_t place = 0; place < std::min(left, StretchSize); place += 64)
            {
                const std::uint64_t equal = HWY_LIKELY(left - place > 64)
                                                ? EqualToNext(begin + place)
                                                : EqualToNextAtEnd(begin + place, left - place);
                const std::uint64_t changes = equal ^ (equal << 1 | carry);
                carry = equal >> 63;
                if (changes != 0)
                {
                    const std::size_t number = hwy::PopCount(changes);
                    PutEdges(changes, place, number, edges.data() + count);
                    count += number;
                }
            }
            before = carry;
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
            return output + 2 * (rest != 0);
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

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            const unsigned char* literal = input;
            // A run that goes on behind its stretch.
            const unsigned char* open = nullptr;
            std::uint64_t before = 0;
            Edges edges;
            for (const unsigned char* stretch = input; stretch < end;)
            {
                const std::size_t count = ListEdges(stretch, end, before, edges);
                std::size_t next = 0;
                if (open != nullptr && count != 0)
                {
                    const unsigned char* const last = stretch + edges[next++];
                    output = PutPair(literal, open, last, end, output);
                    literal = last + 1;
                    open = nullptr;
                }
                for (; next + 2 <= count; next += 2)
                {
                    const unsigned char* const last = stretch + edges[next + 1];
                    output = PutPair(literal, stretch + edges[next], last, end, output);
                    literal = last + 1;
                }
                if (next < count)
                {
                    open = stretch + edges[next];
                }
                stretch += std::min(StretchSize, static_cast<std::size_t>(end - stretch));
            }
            return PutLiteral(literal, static_cast<std::size_t>(end - literal), output);
        }

#else

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            while (input != end)
            {
                const unsigned char* const pair = std::adjacent_find(input, end);
                output = PutLiteral(input, static_cast<std::size_t>(pair - input), output);
                input = pair;
                if (pair != end)
                {
                    const unsigned char value = *pair;
                    input = std::find_if(pair, end, [value](unsigned char byte) { return byte != value; });
                    output = PutRun(value, static_cast<std::size_t>(input - pair), output);
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
    HWY_EXPORT(EncodeRunLength);

    unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output) noexcept
    {
        return HWY_DYNAMIC_DISPATCH(EncodeRunLength)(input, size, output);
    }
}
#endif
