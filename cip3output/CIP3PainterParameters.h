// What a client decides for one document: where it goes, how many sheets it holds, how its previews are written.
#pragma once

#include <cstdint>
#include <string>

namespace RasterOutput
{
    /// Values of CIP3PainterParameters::compression. Any other value writes an empty name and compresses nothing.
    namespace CIP3CompressionValue
    {
        constexpr std::int32_t None = 0;
        constexpr std::int32_t RunLength = 1;
    }

    /// Values of CIP3PainterParameters::encoding. Any other value writes an empty name and encodes nothing.
    namespace CIP3EncodingValue
    {
        constexpr std::int32_t Binary = 0;
        constexpr std::int32_t ASCIIHex = 1;
        constexpr std::int32_t ASCII85 = 2;
    }

    /// Parameters of one document.
    struct CIP3PainterParameters
    {
        /// Full path of the file to write; an existing file is replaced.
        std::wstring filePath;
        /// Number of sheets that the document will hold.
        std::uint32_t sheetCount = 0;
        /// One of CIP3CompressionValue.
        std::int32_t compression = CIP3CompressionValue::None;
        /// One of CIP3EncodingValue.
        std::int32_t encoding = CIP3EncodingValue::Binary;
    };
}
