// One TIFF as libtiff sees it. It stands apart as the border to a C library: exceptions of the callbacks stop here and
// go on once libtiff has returned, libtiff's messages are kept instead of printed, and what it may allocate is bounded
// before it starts.
#pragma once

#include "rasterfeed/DirectoryFacts.h"

#include <tiffio.h>

#include <csetjmp>
#include <cstdarg>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace RasterFeed
{
    class SourceFile;

    /// A TIFF that is open from the constructor to the destructor, at its first page.
    /// (SelectImage | SelectPage | NextPage*)? (UseCodec Call*)?
    class TiffFile
    {
    public:
        /// Opens what `source` holds; `source` must live longer. Throws Refusal for what is not a TIFF or is damaged, and
        /// whatever the callbacks below `source` throw.
        explicit TiffFile(SourceFile& source);
        TiffFile(const TiffFile&) = delete;
        TiffFile& operator=(const TiffFile&) = delete;

        /// Goes on to the first directory that is neither a reduced-resolution image nor a mask. Throws Refusal if there is
        /// none.
        void SelectImage();

        /// Goes to the directory that is the `number`-th of the file's chain, from 1. Throws Refusal if there is none.
        void SelectPage(std::uint32_t number);

        /// Goes on to the next directory, if there is one. Throws Refusal if the chain runs in a circle or is too long.
        bool NextPage();

        /// The number of the present directory in the file's chain, from 1.
        std::uint32_t Page() const { return page; }

        /// Whether the present directory is a reduced-resolution image or a mask.
        bool IsAside() const;

        /// What the present directory states.
        const DirectoryFacts& Facts() const { return facts; }

        /// A tag's value, or `otherwise` if it is absent; libtiff's own default for the tag, if it has one, comes first.
        template <class Value>
        Value Field(std::uint32_t tag, Value otherwise) const
        {
            Value value = otherwise;
            return TIFFGetFieldDefaulted(handle.get(), tag, &value) == 1 ? value : otherwise;
        }

        bool IsTiled() const { return TIFFIsTiled(handle.get()) != 0; }

        /// Whether 16-bit samples have the other byte order than the machine.
        bool IsByteSwapped() const { return TIFFIsByteSwapped(handle.get()) != 0; }

        /// The compression, and the predictor of an image whose compression may have one, as the directory states them.
        std::uint32_t Compression() const { return facts.compression.value_or(COMPRESSION_NONE); }
        std::uint32_t Predictor() const { return facts.predictor.value_or(PREDICTOR_NONE); }

        /// Makes ready to decode the image of the present directory, of an accepted form. Throws std::bad_alloc.
        void UseCodec();

        /// Where a strip or tile is, and how long: bytes.
        std::uint64_t ChunkOffset(std::uint32_t chunk) const { return TIFFGetStrileOffset(handle.get(), chunk); }
        std::uint64_t ChunkBytes(std::uint32_t chunk) const { return TIFFGetStrileByteCount(handle.get(), chunk); }

        /// The length of a strip as the directory states it; nothing where it states none.
        std::optional<std::uint64_t> StatedStripBytes(std::uint32_t strip) const;

        /// Number `index` of a list of the present directory, which has as many. Throws Refusal if the file ends before it.
        std::uint64_t NumberIn(const NumberList& list, std::uint64_t index) const
        {
            return NumberInList(source, preamble, list, index);
        }

        /// Bytes of a decoded row of the image or, if it is tiled, of a tile.
        std::uint64_t DecodedRowBytes() const;

        /// Gives what `operation` gives, called with libtiff's handle. What a callback threw meanwhile is thrown then.
        template <class Operation>
        auto Call(Operation operation)
        {
            message[0] = '\0';
            const auto result = operation(handle.get());
            Rethrow();
            return result;
        }

        /// Calls `decode`, a decoding function of libtiff, like Call, but never returns into libtiff after an error of the
        /// JPEG library; gives -1 then, and only the destructor is left. libtiff goes on where that library had no memory
        /// for its state, and crashes. `decode` may hold nothing that has a destructor.
        template <class Decoding>
        tmsize_t CallJpeg(Decoding decode)
        {
            message[0] = '\0';
            leavesJpeg = true;
            const volatile tmsize_t result = setjmp(outsideJpeg) == 0 ? decode(handle.get()) : -1;
            leavesJpeg = false;
            Rethrow();
            return result;
        }

        /// libtiff's first error during the last Call, or else its first warning; empty if there was neither. Remarks about
        /// forms that are read exactly all the same do not count.
        std::string_view Complaint() const { return message; }

        SourceFile& Source() const { return source; }

    private:
        static tmsize_t ReadBytes(thandle_t self, void* to, tmsize_t count);
        static tmsize_t WriteBytes(thandle_t, void*, tmsize_t);
        static toff_t SeekTo(thandle_t self, toff_t offset, int origin);
        static toff_t GetSize(thandle_t self);
        static int IgnoreClose(thandle_t);
        static int KeepError(TIFF*, void* self, const char* module, const char* format, va_list arguments);
        static int KeepWarning(TIFF*, void* self, const char* module, const char* format, va_list arguments);

        void Enter(std::uint64_t directory);
        void CheckNotVisited(std::uint64_t directory);
        void Keep(bool isError, const char* format, va_list arguments);
        void Rethrow();
        [[noreturn]] void RefuseDamaged();

        SourceFile& source;
        TiffPreamble preamble;
        DirectoryFacts facts;
        std::uint32_t page = 1;
        std::uint64_t entriesBefore = 0;           ///< of the directories before this one, but for SelectImage
        std::unordered_set<std::uint64_t> visited; ///< the directories of the pages up to this one, but for SelectImage
        std::string shown;          ///< the directory that libtiff sees, as if it stood far after the end of the file
        std::uint64_t position = 0; ///< libtiff's place in the file
        std::exception_ptr pending; ///< what a callback threw below libtiff
        char message[256] = "";     ///< see Complaint; needs no memory, which may be what libtiff complains about
        bool messageIsError = false;
        bool leavesJpeg = false; ///< an error of the JPEG library goes to `outsideJpeg`
        std::jmp_buf outsideJpeg = {};
        std::unique_ptr<TIFF, decltype(&TIFFCleanup)> handle; ///< last, to go before what libtiff's callbacks use
    };
}
