// A line goes from the reader to the painter in the buffer that the reader fills: no byte is copied on the way.
#include "frontend/TiffSeparation.h"

#include "cip3output/CIP3Painter.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/TiffReader.h"
#include "rasteroutput/ScanLineRef.h"

#include <memory>

namespace Sheetvane
{
    namespace
    {
        void ReadHeader(const TiffReaderGuard& reader, RasterFeedImageHeader& header)
        {
            if (RasterFeedHeader(reader.Get(), &header) != 0)
            {
                ThrowFailure(FailureText::TiffHeaderNotRead, __LINE__);
            }
        }

        /// One planar line of `length` 8-bit pixels at `bytes`. A length above the largest signed width wraps: only the
        /// range of bytes says how long the line is.
        RasterOutput::ScanLineRef LineIn(unsigned char* bytes, std::uint32_t length)
        {
            RasterOutput::ScanLineRef line;
            line.componentsPerSample = 1;
            line.bitsPerComponent = 8;
            line.planar = 1;
            line.width = static_cast<std::int32_t>(length);
            line.ResetPlanes();
            line[0].SetRange(bytes, bytes + length);
            return line;
        }
    }

    void ReadTiffGeometry(const std::string& path, std::uint32_t& width, std::uint32_t& height, double& resolution)
    {
        const TiffReaderGuard reader(OpenTiffReader(path));
        RasterFeedImageHeader header; // NOLINT(cppcoreguidelines-pro-type-member-init): the reader fills it
        ReadHeader(reader, header);

        width = header.lineLength;
        height = header.lineCount;
        // The document's last digits depend on these operations and their order.
        const double inches = static_cast<double>(header.widthExtent) / static_cast<double>(header.unitsPerInch);
        resolution = static_cast<double>(header.lineLength) / inches;
    }

    void ConvertSeparation(RasterOutput::CIP3Painter& painter, const std::string& path)
    {
        const TiffReaderGuard reader(OpenTiffReader(path));
        RasterFeedImageHeader header; // NOLINT(cppcoreguidelines-pro-type-member-init): the reader fills it
        ReadHeader(reader, header);

        painter.BeginSeparation();
        const std::unique_ptr<unsigned char[]> buffer(new unsigned char[header.lineLength]); // content undetermined
        const RasterOutput::ScanLineRef line = LineIn(buffer.get(), header.lineLength);
        unsigned char* const lines[] = {buffer.get()};
        for (std::uint32_t count = 0; count < header.lineCount; ++count)
        {
            if (RasterFeedLine(reader.Get(), lines, 1) != 0)
            {
                ThrowFailure(FailureText::TiffLineNotRead, __LINE__);
            }
            painter.ProcessScanLine(line);
        }
        painter.EndSeparation();
    }
}
