// A stage of a raster pipeline. Its entry points test the bit depth of what they receive, call the handler for that
// shape and depth, and keep the counters, so that a concrete stage writes handlers only for what it supports.
#pragma once

#include "rasteroutput/Broadcaster.h"
#include "rasteroutput/Listener.h"
#include "rasteroutput/ProcessorParameters.h"

#include <cstdint>
#include <string>

namespace RasterOutput
{
    class ClientParameterExtractor;
    class RasterBandRef;
    class RawChunkRef;
    class ScanLineRef;

    /// Abstract stage, driven by one thread in this order:
    /// Initialize (ProcessScanLine | ProcessRasterBand | ProcessTile)* Finalize.
    /// The order is not enforced here; a stage that depends on it tests it itself. References are valid for the call
    /// that hands them over. Whatever a handler throws passes to the caller, and the counters stay as they were.
    class Processor : public Listener, public Broadcaster
    {
    public:
        /// May throw std::bad_alloc.
        Processor();
        ~Processor() override;

        /// Sets up for a job: clears the counters, takes over `description`, has the ExtractionDispatcher move the
        /// client's parameters from `extractor` into this stage, then calls InitializeProcess() and AfterInitialize().
        /// Throws std::runtime_error "Function not found" if nothing is registered for the pair of concrete types, and
        /// what the steps throw; `description` has been taken over by then.
        void Initialize(const ProcessorParameters& description, ClientParameterExtractor& extractor);

        /// Ends the job by FinalizeProcess().
        void Finalize();

        /// Takes one row. Throws Exception if its depth is neither 1 nor 8 bits, and what the handler throws.
        void ProcessScanLine(const ScanLineRef& line);

        /// Takes several full rows. Throws as ProcessScanLine does. Should a row fail inside the default handlers, the
        /// rows before it stay counted.
        void ProcessRasterBand(const RasterBandRef& band);

        /// Takes one tile; tiles come from left to right, then from top to bottom. Throws as ProcessScanLine does.
        void ProcessTile(const RawChunkRef& tile);

        /// The raster being processed. Its owner may assign it at any time; the counters do not follow.
        ProcessorParameters parameters;

    protected:
        /// Units of vertical progress that a band of this kind stands for; its rows by default.
        virtual std::int32_t RowsInChunk(const RawChunkRef& chunk);
        /// Keeps its place for derived stages; the framework does not call it.
        virtual void ReservedHook1(std::uint32_t value);
        /// Keeps its place for derived stages; the framework does not call it.
        virtual void ReservedHook2(std::uint32_t value);
        /// Sets up the concrete stage, with the client's parameters in place.
        virtual void InitializeProcess() = 0;
        /// Closes the concrete stage.
        virtual void FinalizeProcess() = 0;
        /// Last step of Initialize(), with the arguments of that call.
        virtual void AfterInitialize(const ProcessorParameters& description, ClientParameterExtractor& extractor) = 0;
        /// Keeps its place for derived stages; the framework does not call it.
        virtual void ReservedHook3(std::uint32_t value) = 0;
        /// Takes a row of packed bits. Refuses it by default.
        virtual void ProcessScanLine1Bit(const ScanLineRef& line);
        /// Takes a row of bytes. Refuses it by default.
        virtual void ProcessScanLine8Bit(const ScanLineRef& line);
        /// Takes a band of packed bits. Passes it row by row to ProcessScanLine() by default.
        virtual void ProcessRasterBand1Bit(const RasterBandRef& band);
        /// Takes a band of bytes. Passes it row by row to ProcessScanLine() by default.
        virtual void ProcessRasterBand8Bit(const RasterBandRef& band);
        /// Keeps its place for derived stages; the framework does not call it.
        virtual void ReservedHook4(std::uint32_t value) = 0;
        /// Takes a tile of packed bits. Refuses it by default.
        virtual void ProcessTile1Bit(const RawChunkRef& tile);
        /// Takes a tile of bytes. Refuses it by default.
        virtual void ProcessTile8Bit(const RawChunkRef& tile);

        /// Pixels of the current row of tiles received so far.
        std::int32_t currentX = 0;
        /// Rows received since Initialize().
        std::int32_t currentY = 0;
        /// Tiles received in the current row of tiles.
        std::int32_t tileColumn = 0;
        /// Units of vertical progress: scan lines, RowsInChunk() of bands, rows of tiles.
        std::int32_t rowCount = 0;
        /// A name for the stage; the framework does not read it.
        std::string label;

    private:
        void SplitIntoScanLines(const RasterBandRef& band);
    };
}
