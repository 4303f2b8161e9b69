// libtiff's client procedures and handlers, and the choice of the image.
#include "rasterfeed/TiffFile.h"

#include "rasterfeed/FaxRow.h"
#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"

#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace RasterFeed
{
    namespace
    {
        // All metadata of one directory together. Profiles and previews take a few MiB; more is an attack on memory.
        constexpr std::uint64_t MostTagBytes = 32ull * 1024 * 1024;

        // Reduced images and masks before the image proper. Real files have a handful.
        constexpr int MostDirectories = 64;

        // Pages that are counted, and entries of directories that are looked at one after the other: thousands of pages.
        constexpr std::uint32_t MostPages = 4096;
        constexpr std::uint64_t MostEntriesInTurn = 65536;

        // Where libtiff finds the directory that it is shown: no file reaches so far.
        constexpr std::uint64_t ShownAt = std::uint64_t{1} << 40;

        // What libtiff calls the source of the JPEG library's errors.
        constexpr const char* JpegModule = "JPEGLib";

        // Remarks on data that is read exactly all the same.
        constexpr const char* Harmless[] = {"Old-style LZW codes", "JPEG strip size exceeds expected dimensions"};
    }

    TiffFile::TiffFile(SourceFile& file)
        : source(file)
        , preamble(ReadPreamble(file))
        , handle(nullptr, TIFFCleanup)
    {
        const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(
            TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
        if (!options)
        {
            throw std::bad_alloc();
        }
        TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(LargestTag));
        TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepError, this);
        TIFFOpenOptionsSetWarningHandlerExtR(options.get(), KeepWarning, this);
        // "m": no mapping, since a file that shrinks under a mapping kills the process. "c": strips as they are in the file. "h": no
        // directory yet.
        handle.reset(TIFFClientOpenExt(
            "", "rmch", this, ReadBytes, WriteBytes, SeekTo, IgnoreClose, GetSize, nullptr, nullptr, options.get()));
        Rethrow();
        if (!handle)
        {
            RefuseDamaged();
        }
        Enter(preamble.firstDirectory);
    }

    void TiffFile::SelectImage()
    {
        for (int looked = 1;; ++looked)
        {
            if (!IsAside())
            {
                return;
            }
            if (facts.next == 0 || looked == MostDirectories)
            {
                throw Refusal("only reduced-resolution images and masks; one image of full resolution is needed");
            }
            Enter(facts.next);
            ++page;
        }
    }

    void TiffFile::SelectPage(std::uint32_t number)
    {
        if (number > MostPages)
        {
            throw Refusal("only the first 4096 pages are counted");
        }
        std::uint64_t directory = preamble.firstDirectory;
        while (page < number)
        {
            CheckNotVisited(directory);
            directory = NextDirectory(source, preamble, directory);
            if (directory == 0)
            {
                throw Refusal("the file has " + std::to_string(page) + (page == 1 ? " page" : " pages"));
            }
            ++page;
        }
        if (page > 1)
        {
            CheckNotVisited(directory);
            Enter(directory);
        }
    }

    bool TiffFile::NextPage()
    {
        if (page == 1)
        {
            CheckNotVisited(preamble.firstDirectory);
        }
        if (facts.next == 0)
        {
            return false;
        }
        CheckNotVisited(facts.next);
        ++page;
        entriesBefore += facts.entries;
        if (entriesBefore > MostEntriesInTurn)
        {
            throw Refusal(
                "directories of " + std::to_string(entriesBefore) + " entries before it; up to 65536 are accepted");
        }
        Enter(facts.next);
        return true;
    }

    bool TiffFile::IsAside() const
    {
        const auto kind = Field<std::uint32_t>(TIFFTAG_SUBFILETYPE, 0);
        return (kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) != 0 || facts.isReducedImage;
    }

    void TiffFile::CheckNotVisited(std::uint64_t directory)
    {
        if (!visited.insert(directory).second)
        {
            throw Refusal(
                "the pages run in a circle after page " + std::to_string(page) + "; a chain with an end is needed");
        }
    }

    // Several of libtiff's codecs do not notice that there was no memory for their fields or data, so that is looked at here: what is then set or got, they would know.
    void TiffFile::UseCodec()
    {
        TIFF* const tiff = handle.get();
        const auto compression = static_cast<std::uint16_t>(Compression());
        bool ready = Call([&](TIFF*) { return TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression); }) == 1;
        if (compression == COMPRESSION_JPEG)
        {
            std::uint32_t bytes = 0;
            const void* tables = nullptr;
            ready = ready && (TIFFGetField(tiff, TIFFTAG_JPEGTABLES, &bytes, &tables) != 1 || tables != nullptr);
        }
        else if (IsFax(compression))
        {
            ready = ready && TIFFSetField(tiff, TIFFTAG_FAXFILLFUNC, &FillFaxRow) == 1;
            if (compression == COMPRESSION_CCITTFAX3)
            {
                ready = ready && TIFFSetField(tiff, TIFFTAG_T4OPTIONS, facts.faxOptions.value_or(0)) == 1;
            }
        }
        else if (HasPredictor(compression))
        {
            ready = ready && TIFFSetField(tiff, TIFFTAG_PREDICTOR, Predictor()) == 1;
        }
        if (!ready)
        {
            throw std::bad_alloc();
        }
    }

    std::optional<std::uint64_t> TiffFile::StatedStripBytes(std::uint32_t strip) const
    {
        const NumberList& list = facts.stripBytes;
        const std::uint64_t bytes = strip < list.count ? NumberIn(list, strip) : 0;
        return bytes != 0 ? std::optional(bytes) : std::nullopt;
    }

    std::uint64_t TiffFile::DecodedRowBytes() const
    {
        return IsTiled() ? TIFFTileRowSize64(handle.get()) : TIFFScanlineSize64(handle.get());
    }

    // libtiff gets a directory of the entries alone that say how the image is stored, and enters it with a codec that needs no
    // memory. Where memory is short while it makes a field for an entry that it does not know, or while another codec adds its
    // own, libtiff goes on without any fields at all, and crashes at the next entry.
    void TiffFile::Enter(std::uint64_t directory)
    {
        facts = ReadDirectoryFacts(source, preamble, directory);
        if (facts.tagBytes > MostTagBytes)
        {
            throw Refusal("metadata of " + std::to_string(facts.tagBytes) + " bytes; up to 32 MiB are accepted");
        }
        shown = DirectoryBytes(preamble, facts.formEntries);
        if (Call([&](TIFF* tiff) { return TIFFSetSubDirectory(tiff, ShownAt); }) != 1)
        {
            RefuseDamaged();
        }
    }

    void TiffFile::Rethrow()
    {
        if (pending)
        {
            std::rethrow_exception(std::exchange(pending, nullptr));
        }
    }

    void TiffFile::RefuseDamaged()
    {
        throw Refusal("damaged TIFF structure (" + std::string(message) + "); a sound directory is needed");
    }

    tmsize_t TiffFile::ReadBytes(thandle_t self, void* to, tmsize_t count)
    {
        // Never negative: libtiff adds the result to what it has before it looks at the sign.
        auto& file = *static_cast<TiffFile*>(self);
        if (file.pending || count <= 0)
        {
            return 0;
        }
        try
        {
            const auto wanted = static_cast<std::size_t>(count);
            std::size_t got = 0;
            if (file.position < ShownAt)
            {
                got = file.source.Read(file.position, to, wanted);
            }
            else if (file.position - ShownAt < file.shown.size())
            {
                got = file.shown.copy(static_cast<char*>(to), wanted, file.position - ShownAt);
            }
            file.position += got;
            return static_cast<tmsize_t>(got);
        }
        catch (...)
        {
            file.pending = std::current_exception();
            return 0;
        }
    }

    tmsize_t TiffFile::WriteBytes(thandle_t, void*, tmsize_t)
    {
        return 0;
    }

    toff_t TiffFile::SeekTo(thandle_t self, toff_t offset, int origin)
    {
        auto& file = *static_cast<TiffFile*>(self);
        const toff_t base = origin == SEEK_CUR ? file.position : origin == SEEK_END ? file.source.Size() : 0;
        file.position = base + offset;
        return file.position;
    }

    toff_t TiffFile::GetSize(thandle_t self)
    {
        return static_cast<TiffFile*>(self)->source.Size();
    }

    int TiffFile::IgnoreClose(thandle_t)
    {
        return 0;
    }

    int TiffFile::KeepError(TIFF*, void* self, const char* module, const char* format, va_list arguments)
    {
        auto& file = *static_cast<TiffFile*>(self);
        file.Keep(true, format, arguments);
        if (file.leavesJpeg && module != nullptr && std::strcmp(module, JpegModule) == 0)
        {
            std::longjmp(file.outsideJpeg, 1);
        }
        return 1; // libtiff's process-wide handler is not asked
    }

    int TiffFile::KeepWarning(TIFF*, void* self, const char*, const char* format, va_list arguments)
    {
        static_cast<TiffFile*>(self)->Keep(false, format, arguments);
        return 1;
    }

    void TiffFile::Keep(bool isError, const char* format, va_list arguments)
    {
        // What follows a first error are its consequences.
        if (message[0] != '\0' && (messageIsError || !isError))
        {
            return;
        }
        char text[sizeof message];
        std::vsnprintf(text, sizeof text, format, arguments);
        for (const char* remark : Harmless)
        {
            if (std::strncmp(text, remark, std::strlen(remark)) == 0)
            {
                return;
            }
        }
        std::snprintf(message, sizeof message, "%s", text[0] != '\0' ? text : "no reason given");
        messageIsError = isError;
    }
}
