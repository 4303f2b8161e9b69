// The sections inside a sheet, and the road of a scan line into its separation's data.
#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3PainterException.h"
#include "cip3output/NumberText.h"
#include "cip3output/kernels/Invert.h"
#include "rasteroutput/ScanLineRef.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace RasterOutput
{
    namespace
    {
        using Entries = std::map<std::string, std::string>;

        constexpr std::int32_t FrontSide = 0;

        std::string_view UnitName(CIP3Units units)
        {
            switch (units)
            {
            case CIP3Units::Millimetre:
                return "mm";
            case CIP3Units::Centimetre:
                return "cm";
            case CIP3Units::Inch:
                return "inch";
            case CIP3Units::Point:
                return "point";
            }
            return "";
        }

        std::string_view SideName(std::int32_t side)
        {
            return side == FrontSide ? "Front" : "Back";
        }

        std::string_view CompressionName(std::int32_t compression)
        {
            switch (compression)
            {
            case CIP3CompressionValue::None:
                return "None";
            case CIP3CompressionValue::RunLength:
                return "RunLengthDecode";
            default:
                return "";
            }
        }

        std::string_view EncodingName(std::int32_t encoding)
        {
            switch (encoding)
            {
            case CIP3EncodingValue::Binary:
                return "Binary";
            case CIP3EncodingValue::ASCIIHex:
                return "ASCIIHexDecode";
            case CIP3EncodingValue::ASCII85:
                return "ASCII85Decode";
            default:
                return "";
            }
        }

        std::string_view Characters(const DataRef& data)
        {
            return {reinterpret_cast<const char*>(data.begin), data.size()};
        }

        void Write(DocumentBuffer& document, std::initializer_list<std::string_view> pieces)
        {
            for (const std::string_view piece : pieces)
            {
                document.Write(piece);
            }
        }

        void WriteEntry(DocumentBuffer& document, std::string_view key, std::string_view value)
        {
            Write(document, {"/", key, " ", value, " def\n"});
        }
    }

    void CIP3Painter::BeginSheet(const CIP3SheetParameters& sheet)
    {
        if (sheetIndex >= directory.size())
        {
            throw CIP3PainterException(CIP3PainterText::TooManySheets, CIP3PainterFailure::TooManySheets);
        }
        PPFDirectoryEntry& entry = directory[sheetIndex];
        entry.offset = static_cast<std::uint32_t>(Document().Position());
        entry.sheetName = sheet.sheetName;

        const bool nameSuffices = !sheet.sheetName.empty() || painterParameters.sheetCount <= 1;
        const bool nameFits = sheet.sheetName.size() <= PpfFormat::MaxSheetNameSize;
        if (!(sheet.extentX > 0.0 && sheet.extentY > 0.0 && !sheet.jobName.empty() && nameSuffices && nameFits))
        {
            throw CIP3PainterException(CIP3PainterText::InvalidSheet, CIP3PainterFailure::InvalidSheet);
        }

        Document().Write(PpfFormat::BeginSheet);
        Write(Document(), {"/CIP3AdmJobName (", sheet.jobName, ") def\n"});
        if (!sheet.sheetName.empty())
        {
            Write(Document(), {"/CIP3AdmSheetName (", sheet.sheetName, ") def\n"});
        }
        WriteExtent(sheet);
        Document().Write(PpfFormat::TransferCurves);
        for (const auto& [key, value] : sheet.optionalParameters)
        {
            if (key != PpfFormat::ExtentKey)
            {
                WriteEntry(Document(), key, value);
            }
        }
        Document().Write(PpfFormat::LineEnd);
    }

    void CIP3Painter::WriteExtent(const CIP3SheetParameters& sheet)
    {
        const auto given = sheet.optionalParameters.find(std::string(PpfFormat::ExtentKey));
        if (given != sheet.optionalParameters.end() && !given->second.empty())
        {
            WriteEntry(Document(), given->first, given->second);
            return;
        }
        const std::string_view unit = UnitName(sheet.units);
        Write(
            Document(), {"/", PpfFormat::ExtentKey, " [ ", NumberText::General(sheet.extentX), " ", unit, " ",
                         NumberText::General(sheet.extentY), " ", unit, " ] def\n"});
    }

    void CIP3Painter::BeginSurface(const CIP3SurfaceParameters& newSurface)
    {
        if (newSurface.separationNames.empty())
        {
            throw CIP3PainterException(CIP3PainterText::InvalidSurface, CIP3PainterFailure::InvalidSurface);
        }
        Write(Document(), {"CIP3Begin", SideName(newSurface.side), "\n/CIP3AdmSeparationNames [ "});
        for (const std::string& name : newSurface.separationNames)
        {
            Write(Document(), {"(", name, ") "});
        }
        Document().Write("] def\n");
        for (const auto& [key, value] : newSurface.optionalParameters)
        {
            WriteEntry(Document(), key, value);
        }
        Document().Write(PpfFormat::BeginPreviewImage);
        surface = newSurface;
    }

    void CIP3Painter::BeginSeparation()
    {
        if (parameters.bitsPerComponent != 8 || parameters.planar != 1)
        {
            throw CIP3PainterException(CIP3PainterText::NotPlanar8Bit, CIP3PainterFailure::UnsupportedRaster);
        }
        const NumberText width = NumberText::Decimal(parameters.width);
        const NumberText height = NumberText::Decimal(parameters.height);
        // Negated in 64 bits: the smallest 32-bit number has no negative.
        const NumberText minusHeight = NumberText::Decimal(-std::int64_t{parameters.height});
        Write(
            Document(), {PpfFormat::BeginSeparation,
                         "/CIP3PreviewImageWidth ",
                         width,
                         " def\n",
                         "/CIP3PreviewImageHeight ",
                         height,
                         " def\n",
                         "/CIP3PreviewImageBitsPerComp ",
                         NumberText::Decimal(parameters.bitsPerComponent),
                         " def\n",
                         "/CIP3PreviewImageComponents 1 def\n",
                         "/CIP3PreviewImageMatrix [",
                         width,
                         " 0 0 ",
                         minusHeight,
                         " 0 ",
                         height,
                         "] def\n",
                         "/CIP3PreviewImageResolution [",
                         NumberText::General(parameters.xResolution),
                         " ",
                         NumberText::General(parameters.yResolution),
                         "] def\n",
                         "/CIP3PreviewImageCompression /",
                         CompressionName(painterParameters.compression),
                         " def\n",
                         "/CIP3PreviewImageEncoding /",
                         EncodingName(painterParameters.encoding),
                         " def\n",
                         PpfFormat::PreviewImage});

        const auto filterIf = [](auto& filter, bool wanted)
        {
            filter.reset();
            if (wanted)
            {
                filter = std::make_unique<typename std::decay_t<decltype(filter)>::element_type>();
            }
        };
        filterIf(runLengthFilter, painterParameters.compression == CIP3CompressionValue::RunLength);
        filterIf(asciiHexFilter, painterParameters.encoding == CIP3EncodingValue::ASCIIHex);
        filterIf(ascii85Filter, painterParameters.encoding == CIP3EncodingValue::ASCII85);
    }

    void CIP3Painter::ProcessScanLine8Bit(const ScanLineRef& line)
    {
        if (line.IsInterleaved())
        {
            throw CIP3PainterException(CIP3PainterText::Interleaved, CIP3PainterFailure::UnsupportedRaster);
        }
        DataRef data;
        if (line.size() != 0)
        {
            data = line[0];
        }
        Kernels::InvertBytes(data.begin, data.size());
        if (runLengthFilter)
        {
            data = runLengthFilter->Filter(data);
        }
        if (asciiHexFilter || ascii85Filter)
        {
            Document().Write(PpfFormat::LineEnd);
        }
        WriteEncoded(data);
    }

    void CIP3Painter::WriteEncoded(const DataRef& data)
    {
        if (asciiHexFilter)
        {
            Document().Write(Characters(asciiHexFilter->Filter(data)));
        }
        else if (ascii85Filter)
        {
            Document().Write(Characters(ascii85Filter->Filter(data)));
        }
        else
        {
            Document().Write(Characters(data));
        }
    }

    void CIP3Painter::WriteEndOfData()
    {
        if (runLengthFilter)
        {
            WriteEncoded(runLengthFilter->Finish());
        }
        if (asciiHexFilter)
        {
            Document().Write(Characters(asciiHexFilter->Finish()));
        }
        if (ascii85Filter)
        {
            Document().Write(Characters(ascii85Filter->Finish()));
        }
    }

    void CIP3Painter::EndSeparation()
    {
        WriteEndOfData();
        Document().Write(PpfFormat::LineEnd);
        Document().Write(PpfFormat::EndSeparation);
        runLengthFilter.reset();
        asciiHexFilter.reset();
        ascii85Filter.reset();
    }

    void CIP3Painter::EndSurface()
    {
        Write(Document(), {PpfFormat::EndPreviewImage, "CIP3End", SideName(surface.side), "\n\n"});
    }

    void CIP3Painter::EndSheet()
    {
        Document().Write(PpfFormat::EndSheet);
        PPFDirectoryEntry& entry = directory[sheetIndex];
        entry.length = static_cast<std::uint32_t>(Document().Position()) - entry.offset;
        ++sheetIndex;
    }
}
