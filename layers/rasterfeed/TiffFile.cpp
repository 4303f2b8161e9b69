// libtiff's client procedures and handlers, and the choice of the image.
#include "rasterfeed/TiffFile.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"

#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace
{
    // All metadata of one directory together. Profiles and previews take a few MiB; more is an attack on memory.
    constexpr std::uint64_t MostTagBytes = 32ull * 1024 * 1024;

    // Reduced images and masks in front of the image proper. Real files have a handful.
    constexpr int MostDirectories = 64;

    // Remarks on data that is read exactly all the same.
    constexpr const char* Harmless[] = {"Old-style LZW codes", "JPEG strip size exceeds expected dimensions"};
}

TiffFile::TiffFile(SourceFile& file)
    : source(file)
    , preamble(ReadPreamble(file))
    , handle(nullptr, TIFFCleanup)
{
    LookAt(preamble.firstDirectory);

    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(
        TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (!options)
    {
        throw std::bad_alloc();
    }
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(LargestTag));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), KeepWarning, this);
    // "m": no mapping, since a file that shrinks under a mapping kills the process. "c": strips as they are in the file.
    handle.reset(TIFFClientOpenExt(
        "", "rmc", this, ReadBytes, WriteBytes, SeekTo, IgnoreClose, GetSize, nullptr, nullptr, options.get()));
    Rethrow();
    if (!handle)
    {
        RefuseDamaged();
    }
}

void TiffFile::SelectImage()
{
    for (int looked = 1;; ++looked)
    {
        const auto kind = Field<std::uint32_t>(TIFFTAG_SUBFILETYPE, 0);
        if ((kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) == 0 && !facts.isReducedImage)
        {
            return;
        }
        if (facts.next == 0 || looked == MostDirectories)
        {
            throw Refusal("only reduced-resolution images and masks; one image of full resolution is needed");
        }
        LookAt(facts.next);
        if (Call(TIFFReadDirectory) != 1)
        {
            RefuseDamaged();
        }
    }
}

std::uint16_t TiffFile::Predictor(std::uint16_t compression) const
{
    // Asked only of codecs that have one: for others libtiff's default is read from memory that holds something else.
    std::uint16_t predictor = PREDICTOR_NONE;
    if (compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE ||
        compression == COMPRESSION_DEFLATE || compression == COMPRESSION_ZSTD || compression == COMPRESSION_LZMA)
    {
        TIFFGetField(handle.get(), TIFFTAG_PREDICTOR, &predictor);
    }
    return predictor;
}

std::optional<std::uint64_t> TiffFile::StatedStripBytes(std::uint32_t strip) const
{
    const NumberList& list = facts.stripBytes;
    const std::uint64_t bytes = strip < list.count ? NumberInList(source, preamble, list, strip) : 0;
    return bytes != 0 ? std::optional(bytes) : std::nullopt;
}

std::uint64_t TiffFile::DecodedRowBytes() const
{
    return IsTiled() ? TIFFTileRowSize64(handle.get()) : TIFFScanlineSize64(handle.get());
}

void TiffFile::LookAt(std::uint64_t directory)
{
    facts = ReadDirectoryFacts(source, preamble, directory);
    if (facts.tagBytes > MostTagBytes)
    {
        throw Refusal("metadata of " + std::to_string(facts.tagBytes) + " bytes; up to 32 MiB are accepted");
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
    throw Refusal("damaged TIFF structure (" + message + "); a sound directory is needed");
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
        const std::size_t got = file.source.Read(file.position, to, static_cast<std::size_t>(count));
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

int TiffFile::KeepError(TIFF*, void* self, const char*, const char* format, va_list arguments)
{
    static_cast<TiffFile*>(self)->Keep(true, format, arguments);
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
    if (!message.empty() && (messageIsError || !isError))
    {
        return;
    }
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    for (const char* remark : Harmless)
    {
        if (std::strncmp(text, remark, std::strlen(remark)) == 0)
        {
            return;
        }
    }
    try
    {
        message = text[0] != '\0' ? text : "no reason given";
        messageIsError = isError;
    }
    catch (...)
    {
        pending = std::current_exception();
    }
}
