// The fixed bytes and sizes of the PPF file and of its preview data: every magic number of the format, once.
// docs/ppf-format.md says how they fit together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace RasterOutput::PpfFormat
{
    // Document. A line ends in one LF; an empty line is one LF more.

    constexpr std::string_view LineEnd = "\n";
    /// First bytes of every file: two comments, then a comment of four bytes above 127, so that programs that move files
    /// take it for binary, then an empty line.
    constexpr std::string_view Header = "%!PS-Adobe-3.0\n"
                                        "%%CIP3-File Version 3.0\n"
                                        "%\xE2\xE3\xCF\xD3\n"
                                        "\n";
    constexpr std::string_view Trailer = "%%CIP3EndOfFile\n";
    /// The directory's offsets and lengths have ten decimal digits for 32 bits: no document passes this many bytes.
    constexpr std::size_t MaxDocumentSize = 4294967295U;

    // PPF directory: one line of fixed size per sheet, so that it can be rewritten in place.

    constexpr std::string_view BeginDirectory = "CIP3BeginPPFDirectory\n";
    constexpr std::string_view EndDirectory = "CIP3EndPPFDirectory\n\n";
    /// Shortest document with a directory, in sheets.
    constexpr std::size_t MinSheetsForDirectory = 2;
    /// A directory line, its LF included.
    constexpr std::size_t DirectoryLineSize = 256;
    /// Digits of an offset or a length, filled with '0' on the left.
    constexpr std::size_t DirectoryNumberWidth = 10;
    /// The name in its parentheses, filled with blanks on the right.
    constexpr std::size_t DirectoryNameWidth = 216;
    /// Longest sheet name that fits a directory line.
    constexpr std::size_t MaxSheetNameSize = DirectoryNameWidth - 2;
    /// End of a directory line; the blank before the LF is part of the format.
    constexpr std::string_view DirectoryLineEnd = " CIP3PPFDirEntry \n";

    // Sections of a sheet. A piece without an LF is completed by the value that follows it.

    constexpr std::string_view BeginSheet = "CIP3BeginSheet\n";
    constexpr std::string_view EndSheet = "CIP3EndSheet\n\n";
    /// Key of the entry that may replace the computed extent line.
    constexpr std::string_view ExtentKey = "CIP3AdmPSExtent";
    /// Both curves are linear.
    constexpr std::string_view TransferCurves = "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] def\n"
                                                "/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n";
    constexpr std::string_view BeginPreviewImage = "CIP3BeginPreviewImage\n\n";
    constexpr std::string_view EndPreviewImage = "CIP3EndPreviewImage\n";
    constexpr std::string_view BeginSeparation = "CIP3BeginSeparation\n";
    constexpr std::string_view EndSeparation = "CIP3EndSeparation\n\n";
    /// Stands directly before the preview data. Its blank is its end: what follows is data.
    constexpr std::string_view PreviewImage = "CIP3PreviewImage ";

    // Run-length data: tokens of a length byte and what it stands for.

    /// Most bytes that one token stands for.
    constexpr std::size_t MaxTokenRun = 128;
    /// Length byte of a literal run: its length less this.
    constexpr std::size_t LiteralBias = 1;
    /// Length byte of a repeat run: this less its length.
    constexpr std::size_t RepeatBias = 257;
    /// Length byte that ends the data.
    constexpr std::string_view EndOfRunLengthData = "\x80";

    // ASCIIHex data.

    constexpr std::string_view EndOfASCIIHexData = ">";

    // ASCII85 data: a group of four bytes is a number of five digits to the base 85, most significant first.

    constexpr std::size_t ASCII85GroupSize = 4;
    constexpr std::size_t ASCII85DigitCount = 5;
    constexpr std::uint32_t ASCII85Base = 85;
    /// Character of the digit 0.
    constexpr char ASCII85Zero = '!';
    /// Stands for a whole group of number 0, except for an incomplete one.
    constexpr char ASCII85ZeroGroup = 'z';
    constexpr std::string_view EndOfASCII85Data = "~>";
}
