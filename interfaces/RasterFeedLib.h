// The TIFF reader: one ink separation as a header and a sequence of 8-bit lines.
//
// Calls on a reader: RasterFeedInit (RasterFeedSelect | RasterFeedSelectChannels)? RasterFeedHeader RasterFeedLine*
// RasterFeedEnd
// Delivered bytes: 0 is full ink (black), 255 is paper, whatever the photometric form of the file.
#pragma once

#include <FileBlockLib.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

/// How the upright image is turned: rotated counterclockwise by so many degrees and then, for the second four, mirrored top
/// to bottom (so Flip180 mirrors left to right).
enum class RasterFeedOrientation
{
    Rotate0,
    Rotate90,
    Rotate180,
    Rotate270,
    Flip0,
    Flip90,
    Flip180,
    Flip270
};

/// A view of the image that a file holds. As it is made it is the upright image itself. The orientation comes first, then
/// the reduction. "Across" and "down" are those of the turned image; a quarter turn exchanges the file's resolutions.
struct RasterFeedSelection
{
    /// Wanted, pixels per inch across and down. 0: as the image has it. An image is reduced where both of its resolutions are
    /// above this and above `reduceAbove`, and is kept as it is where not; it is never enlarged.
    double resolution = 0;
    double reduceAbove = 0; ///< pixels per inch; see `resolution`

    /// Stands in place of what the file says, in both directions; pixels per inch. 0: the file's.
    double inputResolution = 0;

    RasterFeedOrientation orientation = RasterFeedOrientation::Rotate0;

    /// Which ink of a file that holds several: a directory of the file's chain, every one of them counted, and a sample of
    /// its pixels, both from 1. If one of them is 0 it stands for 1. If both are: the first image that is neither a
    /// reduced-resolution image nor a mask, which has to be one ink.
    std::uint32_t page = 0;
    std::uint32_t channel = 0;
};

/// Makes header and lines those of the view that `selection` describes; without this call they are those of the upright
/// image. At most once per reader, before RasterFeedHeader; the reader keeps a copy. 0 on success; anything else for a
/// resolution that is negative, infinite or not a number, an orientation that is none of the eight, and a call out of
/// order, after which the reader accepts RasterFeedEnd alone. Whether the file has the page and channel shows in
/// RasterFeedHeader.
///
/// A reduced image of an image of W x H pixels at X x Y pixels per inch has max(1, floor(W / cx + 1/2)) columns, cx being X
/// / resolution; column i reaches from e(i) to e(i + 1), e(i) = floor(i x cx x 65536 + 1/2), in 1/65536 of an input column;
/// rows likewise. A pixel is the mean of the values that it covers, weighted by their parts of its area, what lies outside
/// the image being paper, rounded to the nearest, a half upwards.
///
/// A view that is turned by a quarter is held in memory as it is delivered, and is refused by RasterFeedHeader if it takes
/// more than 256 MiB. All others are read line by line.
std::int32_t RasterFeedSelect(RasterFeedHandle reader, const RasterFeedSelection* selection);

/// In place of RasterFeedSelect: the views of `count` channels, 1 to 32, of the selection's page, whose own `channel` does
/// not count. The header is that of each of them. RasterFeedLine gives all lines of the first, then all of the second and
/// so on. Where they are reduced and the samples of a pixel are stored together, one decoding serves as many of them as
/// fit into 256 MiB; else each is decoded by itself.
std::int32_t RasterFeedSelectChannels(
    RasterFeedHandle reader, const RasterFeedSelection* selection, const std::uint32_t* channels, std::uint32_t count);

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

/// What a TIFF holds, or why it cannot be a separation. All numbers are 0 if it is not accepted.
struct RasterFeedDescription
{
    bool accepted;
    std::uint32_t width;  ///< pixels of a line, as delivered
    std::uint32_t height; ///< lines, as delivered
    double resolution;    ///< pixels per inch across, as delivered

    bool isReduced;            ///< by the selection's resolution
    std::uint32_t inputWidth;  ///< pixels across, turned but not reduced
    std::uint32_t inputHeight; ///< pixels down, turned but not reduced
    double inputAcross;        ///< pixels per inch across, turned but not reduced
    double inputDown;          ///< pixels per inch down, turned but not reduced

    /// Whether RasterFeedSelectChannels decodes once for several channels of this view.
    bool sharesDecoding;

    std::string reason; ///< one line: the file, what was found, what is accepted; empty if accepted
};

/// How far RasterFeedProbe looks.
enum class RasterFeedDepth
{
    Header, ///< the directory alone
    Lines   ///< every line is decoded too
};

/// Looks at the TIFF at `path` without a reader: for hosts that want to know beforehand, or to say what went wrong.
/// The file is found as FileBlockOpen finds it, with the default extension ".tif", and the reason begins with the name under
/// which it was opened. To be refused is not a failure. With a selection the view that it describes is looked at; it has to be
/// one that RasterFeedSelect takes. Throws std::bad_alloc only.
RasterFeedDescription
RasterFeedProbe(const std::string& path, RasterFeedDepth depth, const RasterFeedSelection& selection = {});

/// One ink of a file.
struct RasterFeedInk
{
    std::uint32_t page;    ///< as in a selection
    std::uint32_t channel; ///< as in a selection
    std::string name;      ///< UTF-8, not empty; no two of a file are alike
};

/// The inks that a file holds, or why they cannot be told.
struct RasterFeedInkList
{
    std::vector<RasterFeedInk> inks; ///< page by page, in the order of their samples; empty if there is a reason
    std::string reason;              ///< one line: the file, page and sample, and what to do; empty if there are inks
};

/// Finds the inks of the TIFF at `path`, which is found as by RasterFeedProbe. Every page that is neither a
/// reduced-resolution image nor a mask gives one for each of its samples that is not alpha; no image data is looked at.
/// Names: InkNames; else, where the InkSet is CMYK or not stated, Cyan, Magenta, Yellow, Black, and for further samples the
/// names in the image resources; for a page of one sample InkNames, else PageName. Throws std::bad_alloc only.
RasterFeedInkList RasterFeedInks(const std::string& path);
