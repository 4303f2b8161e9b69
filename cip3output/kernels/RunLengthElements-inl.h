// Run-length compression for AVX-512 with compression and expansion of bytes. The input is first brought down to its runs, an
// element each, whatever their length; up to 57 elements then become tokens at once. Next to nothing in this depends on where
// the runs lie, so that there is little for the processor to foresee wrongly. Without it the whole conversion of a flat page
// takes 1.18 times as long, and that of a photo 1.13 times.
//
// Included by RunLength.cpp for some kinds of vectors, so without a guard.
#include "cip3output/kernels/RunLengthTokens.h"

#include <hwy/highway.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        constexpr std::size_t VectorSize = 64;

        /// Bytes of input whose runs are taken in at once, and the elements that these are at most.
        constexpr std::size_t Stretch = 2048;

        /// Bits that can be read from any place of a bitmap at once: 64 from the byte before it.
        constexpr std::size_t WindowSize = 57;

        /// 0 to 63, and the places of two vectors' bytes in turn: 0 of the first, 0 of the second (as 64), 1 of the first and
        /// so on.
        struct PlaceTables
        {
            constexpr PlaceTables()
            {
                for (std::size_t i = 0; i < VectorSize; ++i)
                {
                    counted[i] = static_cast<unsigned char>(i);
                    inTurn[2 * i] = static_cast<unsigned char>(i);
                    inTurn[2 * i + 1] = static_cast<unsigned char>(i + VectorSize);
                }
            }

            unsigned char counted[VectorSize] = {};
            unsigned char inTurn[2 * VectorSize] = {};
        };
        constexpr PlaceTables Tables;

        /// The lowest `count` bits; 64 at most.
        HWY_INLINE std::uint64_t LowBits(std::size_t count)
        {
            return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
        }

        /// The runs of a stretch of input, each as one element: its value and where it ends. A byte that differs from both its
        /// neighbours is a run of one.
        class Elements
        {
        public:
            /// Takes in the runs from `begin` on that end in the next stretch, or the first one if none does, up to one that is
            /// longer than a token.
            HWY_INLINE void Read(const unsigned char* input, std::size_t size, std::size_t begin)
            {
                count = 0;
                end = begin;
                longRun = 0;
                ends[0] = static_cast<unsigned char>(begin - 1);
                for (place = begin; place < size && (place < begin + Stretch || count == 0); place += VectorSize)
                {
                    std::uint64_t runEnds = 0;
                    const __m512i bytes = ReadVector(input + place, size - place, runEnds);
                    if (runEnds == 0)
                    {
                        continue;
                    }
                    const std::size_t firstEnd = place + _tzcnt_u64(runEnds) + 1;
                    if (HWY_UNLIKELY(firstEnd - end > PpfFormat::MaxTokenRun))
                    {
                        longRun = firstEnd - end;
                        return;
                    }
                    const __m512i places =
                        _mm512_add_epi8(_mm512_loadu_si512(Tables.counted), _mm512_set1_epi8(static_cast<char>(place)));
                    _mm512_storeu_si512(values + count, _mm512_maskz_compress_epi8(runEnds, bytes));
                    _mm512_storeu_si512(ends + 1 + count, _mm512_maskz_compress_epi8(runEnds, places));
                    count += static_cast<std::size_t>(_mm_popcnt_u64(runEnds));
                    end = place + VectorSize - hwy::Num0BitsAboveMS1Bit_Nonzero64(runEnds);
                }
            }

            std::size_t Count() const { return count; }

            /// The place in the input after the last element, and the length of the run there if it is longer than a token.
            std::size_t End() const { return end; }
            std::size_t LongRun() const { return longRun; }

            /// Whether a literal run that goes up to the last element may go on after it: unless the input ends there, or a byte
            /// that equals the next one comes.
            bool IsOpen(std::size_t size) const { return end == place && end != size; }

            const unsigned char* Values() const { return values; }

            /// The lengths of a vector of runs, of no meaning after the last one.
            HWY_INLINE __m512i Lengths(std::size_t first) const
            {
                return _mm512_sub_epi8(_mm512_loadu_si512(ends + first + 1), _mm512_loadu_si512(ends + first));
            }

        private:
            /// The bytes at `place`, and a bit for each that does not equal the byte after it. The very last one ends a run in
            /// any case.
            static HWY_INLINE __m512i ReadVector(const unsigned char* from, std::size_t left, std::uint64_t& runEnds)
            {
                if (HWY_LIKELY(left > VectorSize))
                {
                    const __m512i bytes = _mm512_loadu_si512(from);
                    runEnds = _mm512_cmpneq_epi8_mask(bytes, _mm512_loadu_si512(from + 1));
                    return bytes;
                }
                const std::uint64_t present = LowBits(left);
                const std::uint64_t pairs = present >> 1;
                const __m512i bytes = _mm512_maskz_loadu_epi8(present, from);
                const __m512i next = _mm512_maskz_loadu_epi8(pairs, from + 1);
                runEnds = _mm512_mask_cmpneq_epi8_mask(pairs, bytes, next) | (present ^ pairs);
                return bytes;
            }

            unsigned char values[Stretch + VectorSize];
            /// Places of the runs' last bytes, modulo 256, after that of the byte before the first run.
            unsigned char ends[1 + Stretch + VectorSize];
            std::size_t count = 0;
            std::size_t end = 0;
            std::size_t place = 0; ///< up to which the input has been looked at
            std::size_t longRun = 0;
        };

        /// Which elements are runs of two and more, and with which ones tokens begin, a bit per element. Where the last token
        /// ends with the elements, their end counts as a token's beginning.
        class TokenMap
        {
        public:
            HWY_INLINE TokenMap(const Elements& elements, bool isOpen)
                : size(elements.Count())
            {
                std::uint64_t before = ~std::uint64_t{0}; // `here` of the word before; what comes first begins a token
                for (std::size_t word = 0; word * VectorSize <= size; ++word)
                {
                    const std::uint64_t here =
                        _mm512_cmpgt_epu8_mask(elements.Lengths(word * VectorSize), _mm512_set1_epi8(1)) &
                        LowBits(std::min(VectorSize, size - word * VectorSize));
                    runs[word] = here;
                    starts[word] = here | here << 1 | before >> (VectorSize - 1);
                    before = here;
                }
                starts[size / VectorSize + 1] = 0;
                if (!isOpen)
                {
                    starts[size / VectorSize] |= std::uint64_t{1} << size % VectorSize;
                }
            }

            /// The bits of WindowSize elements from `first` on, and some of no meaning above.
            HWY_INLINE std::uint64_t Starts(std::size_t first) const { return WindowAt(starts, first); }
            HWY_INLINE std::uint64_t Runs(std::size_t first) const { return WindowAt(runs, first); }

            /// The next beginning of a token after `element`; none: one more than the number of elements.
            HWY_INLINE std::size_t NextStart(std::size_t element) const
            {
                std::size_t word = (element + 1) / VectorSize;
                std::uint64_t bits = starts[word] & ~LowBits((element + 1) % VectorSize);
                while (bits == 0 && word < size / VectorSize)
                {
                    bits = starts[++word];
                }
                return bits != 0 ? word * VectorSize + _tzcnt_u64(bits) : size + 1;
            }

        private:
            using Words = std::uint64_t[Stretch / VectorSize + 3];

            static HWY_INLINE std::uint64_t WindowAt(const Words& words, std::size_t bit)
            {
                std::uint64_t window = 0;
                std::memcpy(&window, reinterpret_cast<const unsigned char*>(words) + bit / 8, sizeof window);
                return window >> bit % 8;
            }

            std::size_t size;
            Words starts;
            Words runs;
        };

        /// Writes those of `bytes` that have a bit in `present`.
        HWY_INLINE unsigned char* PutBytes(__m512i bytes, std::uint64_t present, unsigned char* output)
        {
            const auto count = static_cast<std::size_t>(_mm_popcnt_u64(present));
            _mm512_mask_storeu_epi8(output, LowBits(count), _mm512_maskz_compress_epi8(present, bytes));
            return output + count;
        }

        /// Writes the tokens of `size` elements from `first` on, which begin at the bits of `starts`; there is a bit at their
        /// end, too.
        HWY_INLINE unsigned char* PutWindow(
            const Elements& elements, const TokenMap& map, std::size_t first, std::uint64_t starts, std::size_t size,
            unsigned char* output)
        {
            const std::uint64_t inside = LowBits(size);
            const std::uint64_t firsts = starts & inside;
            // Of a literal run the elements up to the next token, less one: at its first element.
            const __m512i counted = _mm512_loadu_si512(Tables.counted);
            const __m512i next =
                _mm512_maskz_expand_epi8(firsts, _mm512_maskz_compress_epi8(starts & (starts - 1), counted));
            const __m512i literalBytes = _mm512_sub_epi8(next, _mm512_add_epi8(counted, _mm512_set1_epi8(1)));
            // A run's length byte is 257 less its length, modulo 256.
            const __m512i runBytes = _mm512_sub_epi8(_mm512_set1_epi8(1), elements.Lengths(first));
            const __m512i lengthBytes = _mm512_mask_mov_epi8(literalBytes, map.Runs(first), runBytes);

            // Each element has two places, its token's length byte and its value.
            constexpr std::uint64_t LengthPlaces = 0x5555555555555555U;
            constexpr std::size_t Half = VectorSize / 2;
            const __m512i values = _mm512_loadu_si512(elements.Values() + first);
            const __m512i lower = _mm512_loadu_si512(Tables.inTurn);
            const __m512i upper = _mm512_loadu_si512(Tables.inTurn + VectorSize);
            output = PutBytes(
                _mm512_permutex2var_epi8(lengthBytes, lower, values),
                _pdep_u64(firsts, LengthPlaces) | _pdep_u64(inside, ~LengthPlaces), output);
            return PutBytes(
                _mm512_permutex2var_epi8(lengthBytes, upper, values),
                _pdep_u64(firsts >> Half, LengthPlaces) | _pdep_u64(inside >> Half, ~LengthPlaces), output);
        }

        /// Writes the tokens of `elements` to `output`, whose end it moves on; gives how many bytes are left of a literal run
        /// that may go on after them, less than a token's.
        HWY_INLINE std::size_t PutElements(const Elements& elements, bool isOpen, unsigned char*& output)
        {
            const TokenMap map(elements, isOpen);
            for (std::size_t first = 0; first < elements.Count();)
            {
                const std::uint64_t starts = map.Starts(first) & LowBits(WindowSize);
                const std::size_t size = VectorSize - 1 - hwy::Num0BitsAboveMS1Bit_Nonzero64(starts);
                if (HWY_LIKELY(size != 0))
                {
                    output = PutWindow(elements, map, first, starts, size, output);
                    first += size;
                    continue;
                }
                // A literal run longer than a window, or one that may go on.
                const std::size_t next = map.NextStart(first);
                const std::size_t left =
                    next > elements.Count() ? (elements.Count() - first) % PpfFormat::MaxTokenRun : 0;
                const std::size_t length = std::min(next, elements.Count()) - first - left;
                output = PutLiteral(elements.Values() + first, length, length, output);
                first += length;
                if (next > elements.Count())
                {
                    return left;
                }
            }
            return 0;
        }

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            Elements elements;
            for (std::size_t place = 0; place < size;)
            {
                elements.Read(input, size, place);
                place = elements.End() - PutElements(elements, elements.IsOpen(size), output);
                if (elements.LongRun() != 0)
                {
                    output = PutRun(input[place], elements.LongRun(), output);
                    place += elements.LongRun();
                }
            }
            return output;
        }
    }
}
HWY_AFTER_NAMESPACE();
