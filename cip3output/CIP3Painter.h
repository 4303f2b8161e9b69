// The painter that makes a PPF file of sheets, surfaces, separations and scan lines. The document is built in memory;
// the file on disk stays empty until the document is complete.
#pragma once

#include "cip3output/ASCII85Filter.h"
#include "cip3output/ASCIIHexFilter.h"
#include "cip3output/CIP3OutputFile.h"
#include "cip3output/CIP3PainterParameters.h"
#include "cip3output/CIP3SheetParameters.h"
#include "cip3output/CIP3SurfaceParameters.h"
#include "cip3output/PPFDirectoryEntry.h"
#include "cip3output/RunLengthFilter.h"
#include "rasteroutput/Painter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace RasterOutput
{
    class ClientParameterExtractor;

    /// Builds one document at a time, for one thread, in this order:
    ///     Initialize (BeginSheet (BeginSurface (BeginSeparation ProcessScanLine* EndSeparation)* EndSurface)* EndSheet)*
    ///     Finalize
    /// and may then begin again. The order is the caller's duty; nothing tests it beyond what is said here. Takes 8-bit
    /// planar scan lines; anything else fails. Number and length of the lines are taken as they come.
    ///
    /// Failures are CIP3PainterExceptions, and whatever memory that runs out throws. A document that would pass
    /// PpfFormat::MaxDocumentSize is refused with std::length_error. After a failure the painter is fit to be destroyed,
    /// which leaves the file as Initialize made it: there, and empty.
    class CIP3Painter : public Painter
    {
    public:
        CIP3Painter();

        /// A document that is not finalised is lost; its file stays empty.
        ~CIP3Painter() override;

        void HandleBroadcast(std::uint32_t message, std::uint32_t data) override;

        /// Begins the next sheet. Fails with TooManySheets beyond the number of sheets that was announced, and with
        /// InvalidSheet unless both extents are above 0, the job name is not empty, and the sheet name fits the
        /// directory and, in a document of several sheets, is not empty. Then the document stays as it was.
        void BeginSheet(const CIP3SheetParameters& sheet);

        /// Begins a surface of the sheet. Fails with InvalidSurface if it has no separation; then the document stays as it
        /// was.
        void BeginSurface(const CIP3SurfaceParameters& newSurface);

        /// Begins the next separation of the surface, of the size and resolution that `parameters` now gives. Fails with
        /// UnsupportedRaster unless `parameters` says 8 bits and planar; then the document stays as it was.
        void BeginSeparation();

        /// Ends the separation's data.
        void EndSeparation();

        void EndSurface();

        void EndSheet();

    protected:
        /// Inverts the line's first plane in place, then compresses, encodes and appends it to the document. Fails with
        /// UnsupportedRaster for an interleaved line, which is then unchanged.
        void ProcessScanLine8Bit(const ScanLineRef& line) override;

        /// Opens the file and begins the document. Fails with FileStillOpen while a document is open, and with
        /// CouldNotOpenFile.
        void InitializePainter() override;

        /// Completes the document, writes it to the file and closes that. Whether the file took it all is not checked.
        void FinalizePainter() override;

    private:
        friend void ApplyParameters(Processor& processor, ClientParameterExtractor& extractor);

        void WriteHeader();
        void WriteTrailer();
        void WriteDirectory();
        void WriteExtent(const CIP3SheetParameters& sheet);
        void WriteEncoded(const DataRef& data);
        void WriteEndOfData();

        DocumentBuffer& Document() { return outputFile->document; }

        /// What the client decided for this document.
        CIP3PainterParameters painterParameters;
        /// One entry per expected sheet, in sheet order.
        std::vector<PPFDirectoryEntry> directory;
        /// Where the directory begins in the document.
        std::uint32_t directoryOffset = 0;
        /// The open document; null when there is none.
        std::unique_ptr<CIP3OutputFile> outputFile;
        /// The sheet that is being built or comes next.
        std::uint32_t sheetIndex = 0;
        /// What the last BeginSurface was given.
        CIP3SurfaceParameters surface;
        /// These exist from BeginSeparation to EndSeparation, as far as the document's parameters ask for them.
        std::unique_ptr<RunLengthFilter> runLengthFilter;
        std::unique_ptr<ASCIIHexFilter> asciiHexFilter;
        std::unique_ptr<ASCII85Filter> ascii85Filter;
    };

    /// Gives a CIP3Painter the parameters that a Sheetvane::CIP3ParameterExtractor carries: the handler for this pair in
    /// the ExtractionDispatcher. Throws std::bad_cast if either argument is something else.
    void ApplyParameters(Processor& processor, ClientParameterExtractor& extractor);
}
