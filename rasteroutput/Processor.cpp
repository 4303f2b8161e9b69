// Dispatch by bit depth, the counters, and the handlers that every stage has until it writes its own.
#include "rasteroutput/Processor.h"

#include "rasteroutput/Exception.h"
#include "rasteroutput/ExtractionDispatcher.h"
#include "rasteroutput/RasterBandRef.h"
#include "rasteroutput/ScanLineCursor.h"

namespace RasterOutput
{
    namespace
    {
        constexpr char OneBitRefused[] = "1 bit data is not supported by this painter process";
        constexpr char EightBitRefused[] = "8 bit data is not supported by this painter process";

        // A long job may pass the range of a counter, which then wraps round rather than stop the job.
        void Advance(std::int32_t& counter, std::int32_t by)
        {
            counter = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) + static_cast<std::uint32_t>(by));
        }

        void TakeBack(std::int32_t& counter, std::int32_t by)
        {
            counter = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) - static_cast<std::uint32_t>(by));
        }
    }

    Processor::Processor() = default;
    Processor::~Processor() = default;

    void Processor::Initialize(const ProcessorParameters& description, ClientParameterExtractor& extractor)
    {
        currentX = 0;
        currentY = 0;
        tileColumn = 0;
        rowCount = 0;
        parameters = description;
        ExtractionDispatcher::Instance().Go(*this, extractor);
        InitializeProcess();
        AfterInitialize(description, extractor);
    }

    void Processor::Finalize()
    {
        FinalizeProcess();
    }

    void Processor::ProcessScanLine(const ScanLineRef& line)
    {
        switch (line.BitsPerComponent())
        {
        case 1:
            ProcessScanLine1Bit(line);
            break;
        case 8:
            ProcessScanLine8Bit(line);
            break;
        default:
            throw Exception("Unsupported bit depth in Processor::ProcessScanLine");
        }
        Advance(currentY, 1);
        Advance(rowCount, 1);
    }

    void Processor::ProcessRasterBand(const RasterBandRef& band)
    {
        switch (band.BitsPerComponent())
        {
        case 1:
            ProcessRasterBand1Bit(band);
            break;
        case 8:
            ProcessRasterBand8Bit(band);
            break;
        default:
            throw Exception("Unsupported bit depth in Processor::ProcessRasterBand");
        }
        Advance(currentY, band.GetHeight());
        Advance(rowCount, RowsInChunk(band));
    }

    void Processor::ProcessTile(const RawChunkRef& tile)
    {
        switch (tile.BitsPerComponent())
        {
        case 1:
            ProcessTile1Bit(tile);
            break;
        case 8:
            ProcessTile8Bit(tile);
            break;
        default:
            throw Exception("Unsupported bit depth in Processor::ProcessTile");
        }
        Advance(tileColumn, 1);
        Advance(currentX, tile.GetWidth());
        if (currentX >= parameters.width)
        {
            currentX = 0;
            Advance(currentY, tile.GetHeight());
            Advance(rowCount, 1);
            tileColumn = 0;
        }
    }

    std::int32_t Processor::RowsInChunk(const RawChunkRef& chunk)
    {
        return chunk.GetHeight();
    }

    void Processor::ReservedHook1(std::uint32_t) {}

    void Processor::ReservedHook2(std::uint32_t) {}

    void Processor::ProcessScanLine1Bit(const ScanLineRef&)
    {
        throw Exception(OneBitRefused);
    }

    void Processor::ProcessScanLine8Bit(const ScanLineRef&)
    {
        throw Exception(EightBitRefused);
    }

    void Processor::ProcessRasterBand1Bit(const RasterBandRef& band)
    {
        SplitIntoScanLines(band);
    }

    void Processor::ProcessRasterBand8Bit(const RasterBandRef& band)
    {
        SplitIntoScanLines(band);
    }

    void Processor::ProcessTile1Bit(const RawChunkRef&)
    {
        throw Exception(OneBitRefused);
    }

    void Processor::ProcessTile8Bit(const RawChunkRef&)
    {
        throw Exception(EightBitRefused);
    }

    void Processor::SplitIntoScanLines(const RasterBandRef& band)
    {
        ScanLineCursor cursor(
            band.componentsPerSample, band.planar, band.bitsPerComponent, band.planes, band.GetRowStride(),
            band.firstByteOffset, static_cast<std::uint32_t>(band.width), 0);
        ScanLineRef row; // a handler may change what it is given, and the cursor goes on from its own
        for (std::int32_t remaining = band.GetHeight(); remaining > 0; --remaining)
        {
            row = cursor.line;
            ProcessScanLine(row);
            // There is nothing to refer to after the last row.
            if (remaining > 1)
            {
                cursor.Step();
            }
        }
        // The rows have been counted one by one, and ProcessRasterBand() counts the band as a whole.
        TakeBack(currentY, band.GetHeight());
        TakeBack(rowCount, RowsInChunk(band));
    }
}
