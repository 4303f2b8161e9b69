// The TIFF reader: one ink separation as a header and a sequence of 8-bit lines.
//
// Calls on a reader: RasterFeedInit RasterFeedHeader RasterFeedLine* RasterFeedEnd
// Delivered bytes: 0 is full ink (black), 255 is paper, whatever the photometric form of the file.
#pragma once

#include <FileBlockLib.h>

#include <cstddef>
#include <cstdint>
#include <string>

/// One open reader. Owned by the caller of RasterFeedInit, until RasterFeedEnd.
struct RasterFeedReader;
using RasterFeedHandle = RasterFeedReader*;

/// File access and events, by position. Plain functions; each may throw, and what it throws leaves the reader's
/// operation that called it unchanged, after libtiff has returned.
struct RasterFeedCallbacks
{
    FileBlock (*open)(const char* name);
    std::int64_t (*seek)(FileBlock block, std::uint32_t position);
    std::int64_t (*read)(FileBlock block, void* buffer, std::uint32_t size);
    std::int32_t (*close)(FileBlock block);
    void (*idle)();    ///< not called by this reader, which never waits
    void (*failure)(); ///< called when `seek` or `read` gives -1 on an open file; does not return: it throws
};

/// What RasterFeedInit needs; the reader keeps a copy of what it uses. The reserved fields may hold anything.
struct RasterFeedOpenRecord
{
    char path[1024]; ///< zero-terminated bytes
    RasterFeedCallbacks callbacks;
    std::uint32_t reserved1;
    std::uint32_t valueWords[4]; ///< 0, 255, 0, 255
    std::uint32_t word1;         ///< 0
    std::uint32_t word2;         ///< 0
    std::uint32_t reserved2;
    std::uint32_t word3; ///< 0
    char text[256];      ///< empty
};

/// What RasterFeedHeader fills in.
struct RasterFeedImageHeader
{
    unsigned char reserved1[16];
    std::int32_t unitsPerInch; ///< units of `widthExtent` in one inch
    unsigned char reserved2[8];
    std::int32_t widthExtent; ///< width of the image in those units
    std::uint32_t lineCount;  ///< lines of the image
    std::uint32_t lineLength; ///< bytes of a delivered line, one per pixel
    unsigned char reserved3[472];
};
static_assert(offsetof(RasterFeedOpenRecord, callbacks) == 1024 && sizeof(RasterFeedCallbacks) == 6 * sizeof(void*));
static_assert(
    offsetof(RasterFeedImageHeader, unitsPerInch) == 16 && offsetof(RasterFeedImageHeader, widthExtent) == 28);
static_assert(offsetof(RasterFeedImageHeader, lineLength) == 36 && sizeof(RasterFeedImageHeader) == 512);

/// Opens the file named in the record through its `open` callback. Null for a file that did not open or is not a TIFF, and
/// for want of memory; nothing is left to end then, nor if a callback throws.
RasterFeedHandle RasterFeedInit(const RasterFeedOpenRecord* record);

/// Fills `header`. Once per reader, before the first line. 0 on success; otherwise a separation may not be
/// such an image, its data is not all in the file, or memory is exhausted. After a failure, as after an exception of a callback, the
/// reader accepts RasterFeedEnd alone.
std::int32_t RasterFeedHeader(RasterFeedHandle reader, RasterFeedImageHeader* header);

/// Writes the next line, `lineLength` bytes, to lines[0]; `count` is 1. Lines come from the top of the upright image.
/// 0 on success; anything else for data that ends early or cannot be decoded, for a call before RasterFeedHeader and
/// for one after the last line.
std::int32_t RasterFeedLine(RasterFeedHandle reader, unsigned char* const* lines, std::uint32_t count);

/// Closes the file through the `close` callback and ends the reader. Exactly once for each handle, also after a
/// failure or an exception. `scratch` may be written.
void RasterFeedEnd(RasterFeedHandle reader, std::int32_t* scratch);

/// What a TIFF holds, or why it cannot be a separation.
struct RasterFeedDescription
{
    bool accepted;
    std::uint32_t width;  ///< pixels, upright; 0 if not accepted
    std::uint32_t height; ///< pixels, upright; 0 if not accepted
    double resolution;    ///< pixels per inch
    std::string reason;   ///< one line: the file, what was found, what is accepted; empty if accepted
};

/// How far RasterFeedProbe looks.
enum class RasterFeedDepth
{
    Header, ///< the directory alone
    Lines   ///< every line is decoded too
};

/// Looks at the TIFF at `path` without a reader: for hosts that want to know beforehand, or to say what went wrong.
/// The file is found as FileBlockOpen finds it, with the default extension ".tif", and the reason begins with the name under
/// which it was opened. To be refused is not a failure. Throws std::bad_alloc only.
RasterFeedDescription RasterFeedProbe(const std::string& path, RasterFeedDepth depth);
