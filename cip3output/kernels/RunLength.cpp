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

        constexpr std::size_t WindowSize = 64;

        /// The lowest `count` bits; 64 at most.
        HWY_INLINE std::uint64_t LowBits(std::uint64_t count)
        {
            return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
        }

        /// The end of the run that begins at `begin` and holds at least its first `known` bytes.
        HWY_INLINE const unsigned char*
        FindRunEnd(const unsigned char* begin, std::size_t known, const unsigned char* end)
        {
            const __m512i value = _mm512_set1_epi8(static_cast<char>(*begin));
            const unsigned char* place = begin + known;
            for (; end - place >= static_cast<std::ptrdiff_t>(WindowSize); place += WindowSize)
            {
                const std::uint64_t other = _mm512_cmpneq_epi8_mask(_mm512_loadu_si512(place), value);
                if (other != 0)
                {
                    return place + _tzcnt_u64(other);
                }
            }
            const std::uint64_t valid = LowBits(static_cast<std::uint64_t>(end - place));
            const std::uint64_t other =
                _mm512_mask_cmpneq_epi8_mask(valid, _mm512_maskz_loadu_epi8(valid, place), value);
            return other != 0 ? place + _tzcnt_u64(other) : end;
        }

        /// The first byte from `place` on that equals the byte behind it, or `end`.
        HWY_INLINE const unsigned char* FindPair(const unsigned char* place, const unsigned char* end)
        {
            for (; end - place > static_cast<std::ptrdiff_t>(WindowSize); place += WindowSize)
            {
                const std::uint64_t equal =
                    _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(place), _mm512_loadu_si512(place + 1));
                if (equal != 0)
                {
                    return place + _tzcnt_u64(equal);
                }
            }
            if (place == end)
            {
                return end;
            }
            const std::uint64_t valid = LowBits(static_cast<std::uint64_t>(end - place - 1));
            const std::uint64_t equal = _mm512_mask_cmpeq_epi8_mask(
                valid, _mm512_maskz_loadu_epi8(valid, place), _mm512_maskz_loadu_epi8(valid, place + 1));
            return equal != 0 ? place + _tzcnt_u64(equal) : end;
        }

        /// Writes a run of `length` bytes, WindowSize at least.
        HWY_INLINE unsigned char* PutLongRun(unsigned char value, std::size_t length, unsigned char* output)
        {
            constexpr std::size_t tokensPerStore = 32;
            const __m512i tokens =
                _mm512_set1_epi16(static_cast<short>((RepeatBias - MaxTokenRun) | std::size_t{value} << 8));
            for (std::size_t full = length / MaxTokenRun; full != 0;)
            {
                const std::size_t stored = full < tokensPerStore ? full : tokensPerStore;
                _mm512_storeu_si512(output, tokens);
                output += 2 * stored;
                full -= stored;
            }
            return PutRun(value, length % MaxTokenRun, output);
        }

        /// Writes a literal run of `length` bytes, WindowSize at least.
        HWY_INLINE unsigned char* PutLongLiteral(const unsigned char* input, std::size_t length, unsigned char* output)
        {
            for (; length >= MaxTokenRun; length -= MaxTokenRun)
            {
                *output = static_cast<unsigned char>(MaxTokenRun - LiteralBias);
                _mm512_storeu_si512(output + 1, _mm512_loadu_si512(input));
                _mm512_storeu_si512(output + 1 + WindowSize, _mm512_loadu_si512(input + WindowSize));
                input += MaxTokenRun;
                output += 1 + MaxTokenRun;
            }
            if (length != 0)
            {
                *output = static_cast<unsigned char>(length - LiteralBias);
                const std::uint64_t first = LowBits(length < WindowSize ? length : WindowSize);
                const std::uint64_t second = LowBits(length < WindowSize ? 0 : length - WindowSize);
                _mm512_mask_storeu_epi8(output + 1, first, _mm512_maskz_loadu_epi8(first, input));
                _mm512_mask_storeu_epi8(
                    output + 1 + WindowSize, second, _mm512_maskz_loadu_epi8(second, input + WindowSize));
                output += 1 + length;
            }
            return output;
        }

        /// The tokens of the input's next bytes, as bits, a bit per byte.
        struct Window
        {
            /// First bytes of tokens that are complete in the window.
            std::uint64_t starts;
            /// The same without the first one, and with the end of the last one.
            std::uint64_t nexts;
            /// Bytes that are in runs of two and more.
            std::uint64_t inRuns;
            /// Bytes that go out: all of a literal run, one of a repeat run.
            std::uint64_t kept;
            /// Bytes that the complete tokens stand for; 0 if even the first token goes on behind the window.
            std::uint64_t size;
        };

        /// Finds the tokens from a token's beginning on. `equal` has a bit for each byte that equals the byte behind it,
        /// `end` a bit at the end of the input if that is in the window.
        HWY_INLINE Window FindTokens(std::uint64_t equal, std::uint64_t end)
        {
            Window window;
            const std::uint64_t equalBefore = equal << 1;
            window.inRuns = equal | equalBefore;
            const std::uint64_t starts =
                (equal & ~equalBefore) | (~window.inRuns & window.inRuns << 1) | std::uint64_t{1} | end;
            // What begins last may go on behind the window, so it is left for the next one.
            window.size = 63 - hwy::Num0BitsAboveMS1Bit_Nonzero64(starts);
            const std::uint64_t inside = LowBits(window.size);
            window.starts = starts & inside;
            window.nexts = starts & (starts - 1);
            window.kept = (window.starts | ~window.inRuns) & inside;
            return window;
        }

        /// Puts the length bytes of a window's tokens at the places of their first bytes.
        HWY_INLINE __m512i LengthBytes(const Window& window)
        {
            alignas(64) static constexpr auto places = []
            {
                std::array<unsigned char, WindowSize> all{};
                for (std::size_t i = 0; i < all.size(); ++i)
                {
                    all[i] = static_cast<unsigned char>(i);
                }
                return all;
            }();
            const __m512i here = _mm512_load_si512(places.data());
            const __m512i next =
                _mm512_maskz_expand_epi8(window.starts, _mm512_maskz_compress_epi8(window.nexts, here));
            // A literal run has its length less one, a repeat run 257 less its length: the one negated, modulo 256.
            const __m512i lessOne = _mm512_add_epi8(_mm512_sub_epi8(next, here), _mm512_set1_epi8(-1));
            return _mm512_mask_sub_epi8(lessOne, window.inRuns, _mm512_setzero_si512(), lessOne);
        }

        /// For each byte of a window its length byte, if it is a token's first, and the byte itself, if it goes out: 128
        /// places in two halves, each with its bits of what is to be written.
        struct Spread
        {
            __m512i bytes[2];
            std::uint64_t present[2];
        };

        HWY_INLINE Spread SpreadOut(const Window& window, __m512i bytes)
        {
            alignas(64) static constexpr auto interleave = []
            {
                std::array<unsigned char, 2 * WindowSize> all{};
                for (std::size_t i = 0; i < all.size(); ++i)
                {
                    all[i] = static_cast<unsigned char>(i % 2 == 0 ? i / 2 : WindowSize + i / 2);
                }
                return all;
            }();
            constexpr std::uint64_t lengthPlaces = 0x5555555555555555U;
            const __m512i lengths = LengthBytes(window);
            Spread spread;
            spread.bytes[0] = _mm512_permutex2var_epi8(lengths, _mm512_load_si512(interleave.data()), bytes);
            spread.bytes[1] =
                _mm512_permutex2var_epi8(lengths, _mm512_load_si512(interleave.data() + WindowSize), bytes);
            spread.present[0] = _pdep_u64(window.starts, lengthPlaces) | _pdep_u64(window.kept, ~lengthPlaces);
            spread.present[1] =
                _pdep_u64(window.starts >> 32, lengthPlaces) | _pdep_u64(window.kept >> 32, ~lengthPlaces);
            return spread;
        }

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            while (input != end)
            {
                const auto left = static_cast<std::size_t>(end - input);
                const bool whole = left > WindowSize;
                const std::uint64_t valid = whole ? ~std::uint64_t{0} : LowBits(left);
                const std::uint64_t pairs = whole ? ~std::uint64_t{0} : LowBits(left - 1);
                const __m512i bytes = _mm512_maskz_loadu_epi8(valid, input);
                const __m512i behind = _mm512_maskz_loadu_epi8(pairs, input + 1);
                const std::uint64_t equal = _mm512_mask_cmpeq_epi8_mask(pairs, bytes, behind);
                const Window window = FindTokens(equal, left < WindowSize ? std::uint64_t{1} << left : 0);
                if (window.size == 0)
                {
                    if ((equal & 1) != 0)
                    {
                        const unsigned char* const next = FindRunEnd(input, WindowSize, end);
                        output = PutLongRun(*input, static_cast<std::size_t>(next - input), output);
                        input = next;
                    }
                    else
                    {
                        const unsigned char* const next = FindPair(input + WindowSize, end);
                        output = PutLongLiteral(input, static_cast<std::size_t>(next - input), output);
                        input = next;
                    }
                    continue;
                }
                const Spread spread = SpreadOut(window, bytes);
                for (std::size_t half = 0; half < 2; ++half)
                {
                    const auto count = static_cast<std::uint64_t>(_mm_popcnt_u64(spread.present[half]));
                    const __m512i packed = _mm512_maskz_compress_epi8(spread.present[half], spread.bytes[half]);
                    if (whole)
                    {
                        _mm512_storeu_si512(output, packed);
                    }
                    else
                    {
                        _mm512_mask_storeu_epi8(output, LowBits(count), packed);
                    }
                    output += count;
                }
                input += window.size;
            }
            return output;
        }

#elif HWY_TARGET != HWY_SCALAR

        /// Bytes of input whose edges are listed at once.
        constexpr std::size_t StretchSize = 2048;
        /// A literal run up to this size is copied in one go, without looking at its length.
        constexpr std::size_t LiteralStep = 32;

        using Bits = std::array<unsigned char, StretchSize / 8 + 64>;

        /// Sets a bit for each of `count` bytes from `begin` on that equals the byte behind it, all within the input.
        HWY_INLINE void
        FindEqual(const unsigned char* begin, std::size_t count, const unsigned char* inputEnd, Bits& bits)
        {
            const hn::CappedTag<unsigned char, 64> tag;
            const std::size_t lanes = hn::Lanes(tag);
            std::size_t done = 0;
            for (; done + lanes <= count && begin + done + lanes < inputEnd; done += lanes)
            {
                hn::StoreMaskBits(
                    tag, hn::Eq(hn::LoadU(tag, begin + done), hn::LoadU(tag, begin + done + 1)),
                    bits.data() + done / 8);
            }
            std::memset(bits.data() + done / 8, 0, bits.size() - done / 8);
            for (; done < count && begin + done + 1 < inputEnd; ++done)
            {
                const unsigned equal = begin[done] == begin[done + 1];
                bits[done / 8] = static_cast<unsigned char>(bits[done / 8] | equal << done % 8);
            }
        }

        /// Places in the input at which runs begin and end, in turn: a run's first byte, its last byte.
        struct Edges
        {
            std::array<std::uint32_t, StretchSize + 1 + 8> places;
            std::size_t count = 0;
            /// 1 if the last byte of the stretch before equals the first one behind it.
            unsigned carry = 0;
        };

        /// Appends the edges of the stretch that begins at `base`.
        HWY_INLINE void ListEdges(const Bits& equal, std::size_t size, std::uint32_t base, Edges& edges)
        {
            const hn::CappedTag<std::uint32_t, 8> placeTag;
            const hn::Rebind<unsigned char, decltype(placeTag)> byteTag;
            const std::size_t lanes = hn::Lanes(placeTag);
            for (std::size_t done = 0; done < size; done += 64)
            {
                std::uint64_t word = 0;
                for (std::size_t i = 0; i < 8; ++i)
                {
                    word |= std::uint64_t{equal[done / 8 + i]} << 8 * i;
                }
                std::uint64_t changes = word ^ (word << 1 | edges.carry);
                edges.carry = static_cast<unsigned>(word >> 63);
                for (auto place = static_cast<std::uint32_t>(base + done); changes != 0; changes >>= 8, place += 8)
                {
                    const auto& bitPlaces = BitPlaces[changes & 0xFF];
                    for (std::size_t i = 0; i < 8; i += lanes)
                    {
                        const auto offsets = hn::PromoteTo(placeTag, hn::LoadU(byteTag, bitPlaces.data() + i));
                        hn::StoreU(
                            hn::Add(offsets, hn::Set(placeTag, place)), placeTag,
                            edges.places.data() + edges.count + i);
                    }
                    edges.count += hwy::PopCount(changes & 0xFF);
                }
            }
        }

        /// Writes the literal run in front of a run, and the run.
        HWY_INLINE unsigned char* PutPair(
            const unsigned char* input, std::size_t size, std::size_t literal, std::size_t first, std::size_t last,
            unsigned char* output)
        {
            const std::size_t literalSize = first - literal;
            const std::size_t runSize = last - first + 1;
            if (HWY_LIKELY(literalSize <= LiteralStep && runSize <= MaxTokenRun && literal + LiteralStep <= size))
            {
                const hn::CappedTag<unsigned char, LiteralStep> tag;
                *output = static_cast<unsigned char>(literalSize - LiteralBias);
                for (std::size_t i = 0; i < LiteralStep; i += hn::Lanes(tag))
                {
                    hn::StoreU(hn::LoadU(tag, input + literal + i), tag, output + 1 + i);
                }
                // Without a literal run the length byte just written is taken back.
                output += literalSize + (literalSize != 0);
                output[0] = static_cast<unsigned char>(RepeatBias - runSize);
                output[1] = input[first];
                return output + 2;
            }
            return PutRun(input[first], runSize, PutLiteral(input + literal, literalSize, output));
        }

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            Bits equal;
            Edges edges;
            std::size_t literal = 0;
            for (std::size_t done = 0; done < size; done += StretchSize)
            {
                const std::size_t stretch = std::min(StretchSize, size - done);
                FindEqual(input + done, stretch, input + size, equal);
                ListEdges(equal, stretch, static_cast<std::uint32_t>(done), edges);
                std::size_t next = 0;
                for (; next + 2 <= edges.count; next += 2)
                {
                    output = PutPair(input, size, literal, edges.places[next], edges.places[next + 1], output);
                    literal = std::size_t{edges.places[next + 1]} + 1;
                }
                // A run that goes on behind the stretch ends in a later one.
                if (next < edges.count)
                {
                    edges.places[0] = edges.places[next];
                }
                edges.count -= next;
            }
            return PutLiteral(input + literal, size - literal, output);
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
