// The words of the format: sections, keys and filter names. Here once, so that the logic holds none of them.
#pragma once

#include <string_view>

namespace ppf
{
    namespace word
    {
        /// How a file begins; its first line goes on with the version of the document conventions.
        inline constexpr std::string_view magic = "%!PS";
        /// The header comment that carries the file version.
        inline constexpr std::string_view version = "%%CIP3-File Version";
        inline constexpr std::string_view endOfFile = "%%CIP3EndOfFile";

        /// A section is opened by CIP3Begin and its name, and closed by CIP3End and the same name.
        inline constexpr std::string_view begin = "CIP3Begin";
        inline constexpr std::string_view end = "CIP3End";
        inline constexpr std::string_view directory = "PPFDirectory";
        inline constexpr std::string_view sheet = "Sheet";
        inline constexpr std::string_view front = "Front";
        inline constexpr std::string_view back = "Back";
        inline constexpr std::string_view previewImage = "PreviewImage";
        inline constexpr std::string_view separation = "Separation";

        inline constexpr std::string_view directoryEntry = "CIP3PPFDirEntry";
        inline constexpr std::string_view image = "CIP3PreviewImage";
        inline constexpr std::string_view def = "def";
    }

    namespace key
    {
        /// How all keys of the format begin.
        inline constexpr std::string_view start = "/CIP3";

        inline constexpr std::string_view jobName = "CIP3AdmJobName";
        inline constexpr std::string_view sheetName = "CIP3AdmSheetName";
        inline constexpr std::string_view extent = "CIP3AdmPSExtent";
        inline constexpr std::string_view separationNames = "CIP3AdmSeparationNames";
        inline constexpr std::string_view filmCurve = "CIP3TransferFilmCurveData";
        inline constexpr std::string_view plateCurve = "CIP3TransferPlateCurveData";

        inline constexpr std::string_view width = "CIP3PreviewImageWidth";
        inline constexpr std::string_view height = "CIP3PreviewImageHeight";
        inline constexpr std::string_view bitsPerComponent = "CIP3PreviewImageBitsPerComp";
        inline constexpr std::string_view components = "CIP3PreviewImageComponents";
        inline constexpr std::string_view matrix = "CIP3PreviewImageMatrix";
        inline constexpr std::string_view resolution = "CIP3PreviewImageResolution";
        inline constexpr std::string_view compression = "CIP3PreviewImageCompression";
        inline constexpr std::string_view encoding = "CIP3PreviewImageEncoding";
    }

    namespace filter
    {
        inline constexpr std::string_view none = "None";
        inline constexpr std::string_view runLength = "RunLengthDecode";
        inline constexpr std::string_view dct = "DCTDecode";
        inline constexpr std::string_view binary = "Binary";
        inline constexpr std::string_view asciiHex = "ASCIIHexDecode";
        inline constexpr std::string_view ascii85 = "ASCII85Decode";

        /// End marks of encoded data.
        inline constexpr std::string_view asciiHexEnd = ">";
        inline constexpr std::string_view ascii85End = "~>";
        /// What ASCII85 data may begin with.
        inline constexpr std::string_view ascii85Begin = "<~";

        /// The length byte that ends run-length data.
        inline constexpr unsigned char runLengthEnd = 0x80;
    }
}
