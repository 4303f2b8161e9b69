// The words of the format: sections, keys and filter names. Here once, so that the logic holds none of them.
#pragma once

#include <string_view>

namespace Ppf
{
    namespace Word
    {
        /// How a file begins; its first line goes on with the version of the document conventions.
        inline constexpr std::string_view Magic = "%!PS";
        /// The header comment that carries the file version.
        inline constexpr std::string_view Version = "%%CIP3-File Version";
        inline constexpr std::string_view EndOfFile = "%%CIP3EndOfFile";

        /// A section is opened by CIP3Begin and its name, and closed by CIP3End and the same name.
        inline constexpr std::string_view Begin = "CIP3Begin";
        inline constexpr std::string_view End = "CIP3End";
        inline constexpr std::string_view Directory = "PPFDirectory";
        inline constexpr std::string_view Sheet = "Sheet";
        inline constexpr std::string_view Front = "Front";
        inline constexpr std::string_view Back = "Back";
        inline constexpr std::string_view PreviewImage = "PreviewImage";
        inline constexpr std::string_view Separation = "Separation";

        inline constexpr std::string_view DirectoryEntry = "CIP3PPFDirEntry";
        inline constexpr std::string_view Image = "CIP3PreviewImage";
        inline constexpr std::string_view Def = "def";
    }

    namespace Key
    {
        /// How all keys of the format begin.
        inline constexpr std::string_view Start = "/CIP3";

        inline constexpr std::string_view JobName = "CIP3AdmJobName";
        inline constexpr std::string_view SheetName = "CIP3AdmSheetName";
        inline constexpr std::string_view Extent = "CIP3AdmPSExtent";
        inline constexpr std::string_view SeparationNames = "CIP3AdmSeparationNames";
        inline constexpr std::string_view FilmCurve = "CIP3TransferFilmCurveData";
        inline constexpr std::string_view PlateCurve = "CIP3TransferPlateCurveData";

        inline constexpr std::string_view Width = "CIP3PreviewImageWidth";
        inline constexpr std::string_view Height = "CIP3PreviewImageHeight";
        inline constexpr std::string_view BitsPerComponent = "CIP3PreviewImageBitsPerComp";
        inline constexpr std::string_view Components = "CIP3PreviewImageComponents";
        inline constexpr std::string_view Matrix = "CIP3PreviewImageMatrix";
        inline constexpr std::string_view Resolution = "CIP3PreviewImageResolution";
        inline constexpr std::string_view Compression = "CIP3PreviewImageCompression";
        inline constexpr std::string_view Encoding = "CIP3PreviewImageEncoding";
    }

    namespace Filter
    {
        inline constexpr std::string_view None = "None";
        inline constexpr std::string_view RunLength = "RunLengthDecode";
        inline constexpr std::string_view Dct = "DCTDecode";
        inline constexpr std::string_view Binary = "Binary";
        inline constexpr std::string_view AsciiHex = "ASCIIHexDecode";
        inline constexpr std::string_view Ascii85 = "ASCII85Decode";

        /// End marks of encoded data.
        inline constexpr std::string_view AsciiHexEnd = ">";
        inline constexpr std::string_view Ascii85End = "~>";
        /// What ASCII85 data may begin with.
        inline constexpr std::string_view Ascii85Begin = "<~";

        /// The length byte that ends run-length data.
        inline constexpr unsigned char RunLengthEnd = 0x80;
    }
}
