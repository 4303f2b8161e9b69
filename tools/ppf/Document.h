// What a print production file holds, as records: the directory, the sheets with their sides, and the preview image of
// each separation, whose data stays where it is in the file. Apart from the reader that fills them, so that a program
// can work on a document without knowing how it was read.
#pragma once

#include "ppf/Failure.h"
#include "ppf/Orientation.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Ppf
{
    /// "/key value def". Both are the text of the file: the key without its slash, the value without the white space
    /// around it.
    struct Entry
    {
        std::string_view key;
        std::string_view value;
    };

    /// One line of the directory at the head of a file of several sheets.
    struct DirectoryEntry
    {
        /// Where the entry itself stands in the file.
        std::uint64_t position;
        /// First byte of the sheet's section, from the first byte of the file.
        std::uint64_t offset;
        /// Bytes of the sheet's section.
        std::uint64_t length;
        std::string sheetName;
    };

    enum class Compression
    {
        None,
        RunLength,
        Dct,
        Unknown
    };

    enum class Encoding
    {
        Binary,
        AsciiHex,
        Ascii85
    };

    /// Pixels per inch along the rows and along the columns, as stored.
    struct Resolution
    {
        double x;
        double y;
    };

    /// A preview image: the ink of one separation, or of four at once where its pixels have four components.
    struct Preview
    {
        /// Where the word CIP3PreviewImage stands.
        std::uint64_t offset = 0;
        /// Pixels of a row and number of rows, as stored: before the matrix is applied. At least 1, below 2^31.
        std::uint64_t width = 0;
        std::uint64_t height = 0;
        unsigned bitsPerComponent = 0;
        unsigned components = 0;
        /// Nothing if the section has no matrix; the image is then taken as upright.
        std::optional<Matrix> matrix;
        std::optional<Resolution> resolution;
        Compression compression = Compression::None;
        /// The name in the file, without its slash.
        std::string_view compressionName;
        Encoding encoding = Encoding::Binary;
        std::string_view encodingName;
        /// The encoded data with its end mark, and with "<~" if ASCII85 begins so.
        std::string_view data;
        /// The separation of each component.
        std::vector<std::string> inks;

        /// Bytes of a row in the decoded data: rows begin at full bytes.
        std::uint64_t StoredRowBytes() const { return (width * components * bitsPerComponent + 7) / 8; }
        /// Bytes of the decoded data. Below 2^64 by the limits on width and height.
        std::uint64_t StoredBytes() const { return StoredRowBytes() * height; }
        /// Components of a row: what a decoded row has in bytes once every component has one of its own.
        std::uint64_t RowSamples() const { return width * components; }

        /// How the image lies, and its size and resolution once it is upright: across the sheet and up the sheet.
        Orientation OrientationOnSheet() const { return matrix ? OrientationOf(*matrix) : Orientation(); }
        std::uint64_t UprightWidth() const { return OrientationOnSheet().transposed ? height : width; }
        std::uint64_t UprightHeight() const { return OrientationOnSheet().transposed ? width : height; }
        std::optional<Resolution> UprightResolution() const;
    };

    enum class Side
    {
        Front,
        Back
    };

    /// "front" or "back".
    std::string_view NameOf(Side side);

    struct Surface
    {
        Side side = Side::Front;
        std::uint64_t offset = 0;
        /// The decoded list of separation names that holds here: the surface's own or, without one, its sheet's.
        std::vector<std::string> separationNames;
        std::vector<Entry> entries;
        std::vector<Preview> previews;
    };

    struct Sheet
    {
        /// First byte of the section, which is that of the word CIP3BeginSheet.
        std::uint64_t offset = 0;
        /// Bytes up to and including the end of the line of CIP3EndSheet and of one empty line after it.
        std::uint64_t length = 0;
        /// Offset after the word CIP3EndSheet, and after the end of its line.
        std::uint64_t endOfWord = 0;
        std::uint64_t endOfLine = 0;
        std::vector<Entry> entries;
        std::vector<Surface> surfaces;

        /// The text of the last definition of a key, or nothing.
        std::optional<std::string_view> Find(std::string_view key) const;
        /// The decoded name, or an empty string if the section has none.
        std::string JobName() const;
        std::string SheetName() const;
        /// The text of the extent, without the brackets around it; an empty one if the section has none.
        std::string_view Extent() const;
        /// The entries that are neither the name of job or sheet, the extent, nor a transfer curve without effect.
        std::vector<Entry> Parameters() const;
    };

    struct Document
    {
        /// The file, which has to outlive the document.
        std::string_view bytes;
        /// As the header gives it, for example "3.0".
        std::string version;
        bool hasDirectory = false;
        std::vector<DirectoryEntry> directory;
        std::vector<Sheet> sheets;
        /// Offset after the closing comment.
        std::uint64_t end = 0;
        /// What ended the reading before the file's end. What was read before it is in the fields above.
        std::optional<Finding> damage;
        /// What a user of the file should know, although it can be read.
        std::vector<Finding> remarks;

        /// The remark that the value of an entry is left out; null for any other value.
        const Finding* WhyLeftOut(std::string_view value) const;

        /// Offset in the file of a piece of its text.
        std::uint64_t OffsetOf(std::string_view text) const
        {
            return static_cast<std::uint64_t>(text.data() - bytes.data());
        }
    };

    /// A value as a name for people: a string or a name decoded, anything else as the text of the file.
    std::string DecodedName(std::string_view value);
}
