// A separation that Ghostscript wrote, line by line: as it is, or turned and reduced.
#pragma once

#include <RasterFeedLib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Pdf2Ppf
{
    /// Calls: SeparationLines Next*. Whatever cannot be read throws Host::Failure that names the file and the reason.
    class SeparationLines
    {
    public:
        /// Opens the TIFF at `path` for the view `selection`.
        SeparationLines(const std::string& path, const RasterFeedSelection& selection);

        std::uint32_t Width() const { return header.lineLength; } ///< pixels
        std::uint32_t Height() const { return header.lineCount; } ///< lines

        /// The next of its lines, from the top: 0 full ink, 255 paper. Valid until the next call.
        const std::vector<unsigned char>& Next();

    private:
        struct ReaderEnd
        {
            void operator()(RasterFeedReader* reader) const;
        };

        [[noreturn]] void Fail() const;

        std::string path;
        RasterFeedSelection selection;
        std::unique_ptr<RasterFeedReader, ReaderEnd> reader;
        RasterFeedImageHeader header = {};
        std::vector<unsigned char> line;
    };
}
