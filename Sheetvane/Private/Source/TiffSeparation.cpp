// A line goes from the reader to the painter in the buffer that the reader fills: no byte is copied on the way.
#include "frontend/TiffSeparation.h"

#include "cip3output/CIP3Painter.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/ReadAhead.h"
#include "frontend/TiffReader.h"
#include "rasteroutput/ScanLineRef.h"

#include <cstddef>
#include <memory>

namespace Sheetvane
{
    namespace
    {
        constexpr std::uint64_t LargestTogether = 256ull * 1024 * 1024; // bytes of previews that are read together

        /// A file of which no view has been asked for is read as if there were none.
        bool IsWhole(const RasterFeedSelection& view)
        {
            return view.resolution == 0 && view.inputResolution == 0 &&
                   view.orientation == RasterFeedOrientation::Rotate0 && view.page == 0 && view.channel == 0;
        }

        std::int32_t
        Select(RasterFeedHandle reader, const RasterFeedSelection& view, const std::vector<std::uint32_t>& channels)
        {
            if (!channels.empty())
            {
                return RasterFeedSelectChannels(
                    reader, &view, channels.data(), static_cast<std::uint32_t>(channels.size()));
            }
            return IsWhole(view) ? 0 : RasterFeedSelect(reader, &view);
        }

        void ReadHeader(
            const TiffReaderGuard& reader, const RasterFeedSelection& view, const std::vector<std::uint32_t>& channels,
            RasterFeedImageHeader& header)
        {
            if (Select(reader.Get(), view, channels) != 0)
            {
                ThrowFailure(FailureText::TiffHeaderNotRead, __LINE__);
            }
            if (RasterFeedHeader(reader.Get(), &header) != 0)
            {
                ThrowFailure(FailureText::TiffHeaderNotRead, __LINE__);
            }
        }

        void ReadLine(const TiffReaderGuard& reader, unsigned char* bytes)
        {
            if (RasterFeedLine(reader.Get(), &bytes, 1) != 0)
            {
                ThrowFailure(FailureText::TiffLineNotRead, __LINE__);
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

    void ReadTiffGeometry(
        const std::string& path, const RasterFeedSelection& view, std::uint32_t& width, std::uint32_t& height,
        double& resolution)
    {
        const TiffReaderGuard reader(OpenTiffReader(path));
        RasterFeedImageHeader header; // NOLINT(cppcoreguidelines-pro-type-member-init): the reader fills it
        ReadHeader(reader, view, {}, header);

        width = header.lineLength;
        height = header.lineCount;
        // The document's last digits depend on these operations and their order.
        const double inches = static_cast<double>(header.widthExtent) / static_cast<double>(header.unitsPerInch);
        resolution = static_cast<double>(header.lineLength) / inches;
    }

    void ConvertSeparations(RasterOutput::CIP3Painter& painter, const TiffView& tiff)
    {
        const TiffReaderGuard reader(OpenTiffReader(tiff.path));
        RasterFeedImageHeader header; // NOLINT(cppcoreguidelines-pro-type-member-init): the reader fills it
        ReadHeader(reader, tiff.view, tiff.channels, header);

        const std::size_t separations = tiff.Separations();
        for (std::size_t index = 0; index < separations; ++index)
        {
            painter.BeginSeparation();
            const std::unique_ptr<unsigned char[]> buffer(new unsigned char[header.lineLength]); // content undetermined
            const RasterOutput::ScanLineRef line = LineIn(buffer.get(), header.lineLength);
            for (std::uint32_t count = 0; count < header.lineCount; ++count)
            {
                ReadLine(reader, buffer.get());
                painter.ProcessScanLine(line);
            }
            painter.EndSeparation();
        }
    }

    std::unique_ptr<Preview> ReadPreview(const TiffView& tiff, const std::atomic<bool>& isEnding)
    {
        const std::size_t separations = tiff.Separations();
        const RasterFeedDescription found = RasterFeedProbe(tiff.path, RasterFeedDepth::Header, tiff.view);
        const bool isTooLarge =
            separations > 1 && std::uint64_t{found.width} * found.height > LargestTogether / separations;
        if (!found.isReduced || isTooLarge)
        {
            return nullptr;
        }
        const TiffReaderGuard reader(OpenTiffReader(tiff.path));
        RasterFeedImageHeader header; // NOLINT(cppcoreguidelines-pro-type-member-init): the reader fills it
        ReadHeader(reader, tiff.view, tiff.channels, header);

        auto preview = std::make_unique<Preview>();
        preview->lineLength = header.lineLength;
        preview->lineCount = header.lineCount;
        preview->separations = separations;
        const std::size_t lines = header.lineCount * separations;
        preview->bytes.reset(new unsigned char[header.lineLength * lines]);
        for (std::size_t count = 0; count < lines; ++count)
        {
            if (isEnding)
            {
                return nullptr;
            }
            ReadLine(reader, preview->Line(count));
        }
        return preview;
    }

    void ConvertPreview(RasterOutput::CIP3Painter& painter, Preview& preview)
    {
        RasterOutput::ScanLineRef line = LineIn(preview.Line(0), preview.lineLength);
        for (std::size_t index = 0; index < preview.separations; ++index)
        {
            painter.BeginSeparation();
            for (std::uint32_t count = 0; count < preview.lineCount; ++count)
            {
                unsigned char* const bytes = preview.Line(index * preview.lineCount + count);
                line[0].SetRange(bytes, bytes + preview.lineLength);
                painter.ProcessScanLine(line);
            }
            painter.EndSeparation();
        }
    }
}
