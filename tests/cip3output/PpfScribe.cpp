#include "tests/cip3output/PpfScribe.h"

#include "cip3output/CIP3ParameterExtractor.h"
#include "rasteroutput/ExtractionDispatcher.h"

#include <WidePathLib.h>

namespace CIP3OutputTest
{
    using namespace RasterOutput;

    PpfScribe::PpfScribe(std::uint32_t sheetCount, std::int32_t compression, std::int32_t encoding)
    {
        document.filePath = Utf8ToWide(path);
        document.sheetCount = sheetCount;
        document.compression = compression;
        document.encoding = encoding;
        sheet.jobName = "J";
        sheet.units = CIP3Units::Inch;
        sheet.extentX = 2;
        sheet.extentY = 1;
        ExtractionDispatcher::Instance().Add<CIP3Painter, Sheetvane::CIP3ParameterExtractor>(&ApplyParameters);
    }

    PpfScribe::~PpfScribe()
    {
        ExtractionDispatcher::Instance().Remove<CIP3Painter, Sheetvane::CIP3ParameterExtractor>();
    }

    void PpfScribe::Start()
    {
        ProcessorParameters raster;
        raster.xResolution = 2;
        raster.yResolution = 2;
        raster.bitsPerComponent = 8;
        raster.planar = 1;
        Sheetvane::CIP3ParameterExtractor extractor;
        extractor.painterParameters = document;
        painter.Initialize(raster, extractor);
    }

    void PpfScribe::StartSurface(const std::vector<std::string>& names)
    {
        Start();
        BeginSheet();
        BeginSurface(0, names);
    }

    std::string PpfScribe::FinishSurface()
    {
        EndSurface();
        EndSheet();
        return Finish();
    }

    void PpfScribe::BeginSheet(const std::string& name)
    {
        sheet.sheetName = name;
        painter.BeginSheet(sheet);
    }

    void PpfScribe::BeginSurface(std::int32_t side, const std::vector<std::string>& names)
    {
        CIP3SurfaceParameters surface;
        surface.side = side;
        surface.separationNames = names;
        painter.BeginSurface(surface);
    }

    void PpfScribe::Separation(const std::vector<std::string>& lines)
    {
        painter.parameters.width = lines.empty() ? 0 : static_cast<std::int32_t>(lines.front().size());
        painter.parameters.height = static_cast<std::int32_t>(lines.size());
        painter.BeginSeparation();
        for (const std::string& line : lines)
        {
            std::string bytes = line;
            painter.ProcessScanLine(LineOver(bytes));
        }
        painter.EndSeparation();
    }

    std::string PpfScribe::Finish()
    {
        painter.Finalize();
        return File();
    }

    void PpfScribe::Sheet(const std::string& name, const std::vector<std::string>& lines)
    {
        BeginSheet(name);
        BeginSurface();
        Separation(lines);
        EndSurface();
        EndSheet();
    }

    std::string PpfScribe::File() const
    {
        return FileExists() ? TestSupport::Folder::BytesOf(path) : "";
    }

    ScanLineRef LineOver(std::string& bytes)
    {
        auto* const begin = reinterpret_cast<unsigned char*>(bytes.data());
        ScanLineRef line;
        line.componentsPerSample = 1;
        line.bitsPerComponent = 8;
        line.width = static_cast<std::int32_t>(bytes.size());
        line.ResetPlanes();
        line[0].SetRange(begin, begin + bytes.size());
        return line;
    }

    std::string Between(const std::string& text, const std::string& begin, const std::string& end)
    {
        const std::size_t from = text.find(begin);
        const std::size_t to = from == std::string::npos ? from : text.find(end, from + begin.size());
        return to == std::string::npos ? "(not found)" : text.substr(from + begin.size(), to - from - begin.size());
    }

    std::string PreviewData(const std::string& file)
    {
        return Between(file, "CIP3PreviewImage ", "\nCIP3EndSeparation\n");
    }

    std::string FileOf(std::int32_t compression, std::int32_t encoding, const std::vector<std::string>& lines)
    {
        PpfScribe scribe(1, compression, encoding);
        scribe.Start();
        scribe.Sheet("S1", lines);
        return scribe.Finish();
    }
}
