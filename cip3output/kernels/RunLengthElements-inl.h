// Run-length compression for AVX-512 with compression and expansion of bytes. The input is first brought down to its runs,
// one element each, whatever their length; windows of elements then become tokens, all of a window at once. Nothing in
// this depends on where the runs lie, so that there is next to nothing for the branch prediction to miss.
//
// Included by RunLength.cpp for each kind of vectors, so without a guard.
#include "cip3output/kernels/Opaque.h"
#include "cip3output/kernels/RunLengthTokens.h"

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#ifndef RASTEROUTPUT_KERNELS_RUNLENGTHELEMENTS_TABLES
#define RASTEROUTPUT_KERNELS_RUNLENGTHELEMENTS_TABLES
namespace RasterOutput::Kernels::RunLength
{
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
#endif

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        using namespace RunLength;

        constexpr std::size_t VectorSize = 64;
        /// Bits that can be read at any place of a bitmap at once: 64 from the byte boundary in front of it.
        constexpr std::size_t WindowSize = 57;

        /// The lowest `count` bits; 64 at most.
        HWY_INLINE std::uint64_t LowBits(std::size_t count)
        {
            return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
        }

        /// Runs of a stretch of input, each as one element: its value and where it ends. A byte that differs from both its
        /// neighbours is a run of one. Thus the tokens are made of as many bytes as they come to, not as many as they
        /// stand for.
        class Elements
        {
        public:
            HWY_INLINE Elements() { Restart(0); }

            static constexpr std::size_t StretchSize = 4096;
            /// A stretch's elements behind less than a token of the stretch before.
            static constexpr std::size_t Capacity = MaxTokenRun + StretchSize;

            std::size_t Count() const { return count; }
            const unsigned char* Values() const { return values.data(); }

            /// Puts the runs that end at the bits of `runEnds`, each of MaxTokenRun bytes at most, behind the first
            /// `number` elements. `bytes` are the next ones of the input, and `places` theirs. Gives the new number of
            /// elements, for SetCount when it is final: the caller keeps it in a register, as its loop waits for it.
            HWY_INLINE std::size_t PutBehind(std::size_t number, __m512i bytes, __m512i places, std::uint64_t runEnds)
            {
                _mm512_storeu_si512(values.data() + number, _mm512_maskz_compress_epi8(runEnds, bytes));
                _mm512_storeu_si512(ends.data() + 1 + number, _mm512_maskz_compress_epi8(runEnds, places));
                return number + static_cast<std::size_t>(_mm_popcnt_u64(runEnds));
            }

            HWY_INLINE void SetCount(std::size_t number) { count = number; }

            /// Drops the first `number` elements.
            HWY_INLINE void Drop(std::size_t number)
            {
                count -= number;
                std::memmove(values.data(), values.data() + number, count);
                std::memmove(ends.data(), ends.data() + number, count + 1);
            }

            /// Drops all elements; the next one begins at `place`.
            HWY_INLINE void Restart(std::size_t place)
            {
                count = 0;
                ends[0] = static_cast<unsigned char>(place - 1);
            }

            /// The lengths of a vector of runs, of no meaning behind the last one.
            HWY_INLINE __m512i Lengths(std::size_t first) const
            {
                return _mm512_sub_epi8(
                    _mm512_loadu_si512(ends.data() + first + 1), _mm512_loadu_si512(ends.data() + first));
            }

            /// The length of one run.
            std::size_t Length(std::size_t element) const
            {
                return static_cast<unsigned char>(ends[element + 1] - ends[element]);
            }

        private:
            std::array<unsigned char, Capacity + VectorSize> values;
            /// The place of each run's last byte, modulo 256, behind that of the run in front of the first.
            std::array<unsigned char, 1 + Capacity + VectorSize> ends;
            std::size_t count = 0;
        };

        /// Which elements are runs of two and more, and with which ones tokens begin, a bit per element.
        class TokenMap
        {
        public:
            /// If the elements are all there is, their end counts as a token's beginning.
            HWY_INLINE void Describe(const Elements& elements, bool areAll)
            {
                size = elements.Count();
                std::uint64_t before = ~std::uint64_t{0};
                for (std::size_t word = 0; word * VectorSize < size; ++word)
                {
                    const std::uint64_t runsHere =
                        _mm512_cmpgt_epu8_mask(elements.Lengths(word * VectorSize), _mm512_set1_epi8(1));
                    runs[word] = runsHere;
                    starts[word] = runsHere | runsHere << 1 | before >> 63;
                    before = runsHere;
                }
                const std::size_t lastWord = size / VectorSize;
                const std::uint64_t end = std::uint64_t{areAll ? 1U : 0U} << size % VectorSize;
                starts[lastWord] = size % VectorSize == 0 ? end : (starts[lastWord] & LowBits(size % VectorSize)) | end;
                starts[lastWord + 1] = 0;
            }

            /// The bits of WindowSize elements from `first` on, and some of no meaning above.
            HWY_INLINE std::uint64_t Starts(std::size_t first) const { return WindowAt(starts, first); }
            HWY_INLINE std::uint64_t Runs(std::size_t first) const { return WindowAt(runs, first); }

            /// The next beginning of a token behind `element`; the number of elements if there is none.
            HWY_INLINE std::size_t NextStart(std::size_t element) const
            {
                std::size_t word = (element + 1) / VectorSize;
                std::uint64_t bits = starts[word] & ~LowBits((element + 1) % VectorSize);
                while (bits == 0)
                {
                    if (++word > size / VectorSize)
                    {
                        return size;
                    }
                    bits = starts[word];
                }
                return word * VectorSize + _tzcnt_u64(bits);
            }

        private:
            using Words = std::array<std::uint64_t, Elements::Capacity / VectorSize + 3>;

            static HWY_INLINE std::uint64_t WindowAt(const Words& words, std::size_t bit)
            {
                std::uint64_t window;
                std::memcpy(&window, reinterpret_cast<const unsigned char*>(words.data()) + bit / 8, sizeof window);
                return window >> bit % 8;
            }

            std::size_t size = 0;
            Words starts;
            Words runs;
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

        /// Turns elements into tokens, a window at a time.
        class TokenWriter
        {
        public:
            /// There is room up to `roomEnd`.
            HWY_INLINE explicit TokenWriter(unsigned char* roomEnd)
                : end(roomEnd)
            {
            }

            /// Writes the tokens of `elements` to `output`, drops those written and gives the end. Unless the elements
            /// are all there is, the last token may go on behind them, so it stays; but never a whole token's bytes.
            HWY_INLINE unsigned char* Write(Elements& elements, bool areAll, unsigned char* output)
            {
                map.Describe(elements, areAll);
                std::size_t first = 0;
                while (first < elements.Count())
                {
                    const std::uint64_t starts = map.Starts(first) & LowBits(WindowSize);
                    const std::size_t size = 63 - hwy::Num0BitsAboveMS1Bit_Nonzero64(starts);
                    if (HWY_LIKELY(size != 0))
                    {
                        output = WriteWindow(elements, first, starts, size, output);
                        first += size;
                        continue;
                    }
                    // The last token, or a literal run longer than a window: a run is never longer than one element.
                    const std::size_t next = map.NextStart(first);
                    if (next == elements.Count() && !areAll)
                    {
                        const std::size_t whole = (next - first) / MaxTokenRun * MaxTokenRun;
                        output = PutLongLiteral(elements.Values() + first, whole, output);
                        first += whole;
                        break;
                    }
                    output = PutLongLiteral(elements.Values() + first, next - first, output);
                    first = next;
                    if (first != elements.Count())
                    {
                        // What ends a literal run is a run. Alone it would make a poor window.
                        output = PutRun(elements.Values()[first], elements.Length(first), output);
                        ++first;
                    }
                }
                elements.Drop(first);
                return output;
            }

        private:
            /// Writes the tokens of `size` elements from `first` on, which begin at the bits of `starts`; there is a bit
            /// at their end, too.
            HWY_INLINE unsigned char* WriteWindow(
                const Elements& elements, std::size_t first, std::uint64_t starts, std::size_t size,
                unsigned char* output) const
            {
                const std::uint64_t inside = LowBits(size);
                const std::uint64_t firsts = starts & inside;
                // A run's length byte is 257 less its length, modulo 256.
                const __m512i runBytes = _mm512_sub_epi8(_mm512_set1_epi8(1), elements.Lengths(first));
                const __m512i lengthBytes =
                    _mm512_mask_mov_epi8(LiteralBytes(firsts, starts & (starts - 1)), map.Runs(first), runBytes);
                // Each element has two places, its token's length byte and its value.
                const __m512i values = _mm512_loadu_si512(elements.Values() + first);
                const __m512i lower = _mm512_loadu_si512(InterleavedPlaces.data());
                const __m512i upper = _mm512_loadu_si512(InterleavedPlaces.data() + VectorSize);
                output =
                    Put(_mm512_permutex2var_epi8(lengthBytes, lower, values),
                        _pdep_u64(firsts, LengthPlaces) | (~LengthPlaces & LowBits(2 * size)), output);
                return Put(
                    _mm512_permutex2var_epi8(lengthBytes, upper, values),
                    _pdep_u64(firsts >> 32, LengthPlaces) | _pdep_u64(inside >> 32, ~LengthPlaces), output);
            }

            /// Of an element's two places that of the length byte.
            static constexpr std::uint64_t LengthPlaces = 0x5555555555555555U;

            /// The length bytes of literal runs, their length less one, at the places of their first bytes.
            static HWY_INLINE __m512i LiteralBytes(std::uint64_t firsts, std::uint64_t nexts)
            {
                const __m512i here = _mm512_loadu_si512(CountedPlaces.data());
                const __m512i next = _mm512_maskz_expand_epi8(firsts, _mm512_maskz_compress_epi8(nexts, here));
                return _mm512_sub_epi8(next, _mm512_loadu_si512(CountedPlaces.data() + 1));
            }

            /// Writes those of `bytes` that have a bit in `present`.
            HWY_INLINE unsigned char* Put(__m512i bytes, std::uint64_t present, unsigned char* output) const
            {
                const auto count = static_cast<std::size_t>(_mm_popcnt_u64(present));
                const __m512i packed = _mm512_maskz_compress_epi8(present, bytes);
                if (HWY_LIKELY(end - output >= static_cast<std::ptrdiff_t>(VectorSize)))
                {
                    _mm512_storeu_si512(output, packed);
                }
                else
                {
                    _mm512_mask_storeu_epi8(output, LowBits(count), packed);
                }
                return output + count;
            }

            TokenMap map;
            unsigned char* end;
        };

        /// Reads the input a vector at a time.
        class RunReader
        {
        public:
            HWY_INLINE RunReader(const unsigned char* begin, std::size_t length)
                : input(begin)
                , size(length)
            {
            }

            /// Turns the input up to `stretchEnd` into elements. Where a run is too long for one, they are written to
            /// `output` and so is the run; gives the end.
            HWY_INLINE unsigned char*
            Read(std::size_t stretchEnd, Elements& elements, TokenWriter& writer, unsigned char* output)
            {
                std::size_t count = elements.Count();
                for (; place < stretchEnd; place += VectorSize, places = _mm512_add_epi8(places, vectorStep))
                {
                    std::uint64_t runEnds;
                    const __m512i bytes = ReadVector(runEnds);
                    if (runEnds == 0)
                    {
                        continue;
                    }
                    const std::size_t firstEnd = place + _tzcnt_u64(runEnds) + 1;
                    const std::size_t lastEnd = place + 64 - hwy::Num0BitsAboveMS1Bit_Nonzero64(runEnds);
                    if (HWY_UNLIKELY(firstEnd - runBegin > MaxTokenRun))
                    {
                        elements.SetCount(count);
                        output = writer.Write(elements, true, output);
                        output = PutLongRun(input[runBegin], firstEnd - runBegin, output);
                        elements.Restart(firstEnd);
                        count = 0;
                        runEnds &= runEnds - 1;
                    }
                    count = elements.PutBehind(count, bytes, places, runEnds);
                    runBegin = lastEnd;
                }
                elements.SetCount(count);
                return output;
            }

        private:
            /// The bytes at `place`, and a bit for each that is not equal to the byte behind it. The very last one ends
            /// a run in any case.
            HWY_INLINE __m512i ReadVector(std::uint64_t& runEnds) const
            {
                const unsigned char* const begin = input + place;
                const std::size_t left = size - place;
                if (HWY_LIKELY(left > VectorSize))
                {
                    const __m512i bytes = _mm512_loadu_si512(begin);
                    runEnds = _mm512_cmpneq_epi8_mask(bytes, _mm512_loadu_si512(begin + 1));
                    return bytes;
                }
                const std::uint64_t valid = LowBits(left);
                const std::uint64_t pairs = valid >> 1;
                const __m512i bytes = _mm512_maskz_loadu_epi8(valid, begin);
                const __m512i behind = _mm512_maskz_loadu_epi8(pairs, begin + 1);
                runEnds = _mm512_mask_cmpneq_epi8_mask(pairs, bytes, behind) | (valid ^ pairs);
                return bytes;
            }

            const unsigned char* input;
            std::size_t size;
            /// What is read next, and the places of that vector, modulo 256.
            std::size_t place = 0;
            __m512i places = _mm512_loadu_si512(CountedPlaces.data());
            const __m512i vectorStep = _mm512_set1_epi8(Opaque(static_cast<char>(VectorSize)));
            /// Where the run begins that is being read.
            std::size_t runBegin = 0;
        };

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            RunReader reader(input, size);
            TokenWriter writer(output + 2 * size);
            Elements elements;
            for (std::size_t stretch = 0; stretch < size; stretch += Elements::StretchSize)
            {
                const std::size_t stretchEnd = std::min(size, stretch + Elements::StretchSize);
                output = reader.Read(stretchEnd, elements, writer, output);
                output = writer.Write(elements, stretchEnd == size, output);
            }
            return output;
        }
    }
}
HWY_AFTER_NAMESPACE();
