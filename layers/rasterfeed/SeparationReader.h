// One separation from its file to its lines: where the parts of this layer meet. It stands apart from the operations of
// the interface, which only turn its exceptions into results.
#pragma once

#include "rasterfeed/RowSource.h"
#include "rasterfeed/SampleExpansion.h"
#include "rasterfeed/SeparationForm.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"
#include "rasterfeed/WidthInUnits.h"

#include <RasterFeedLib.h>

#include <memory>
#include <optional>

namespace RasterFeed
{
    /// A reader on one file. ReadHeader ReadLine* Close?
    /// Throws Refusal for what cannot be a separation, and what the callbacks throw; after either only Close is left.
    class SeparationReader
    {
    public:
        /// Opens `name` through the callbacks.
        SeparationReader(const RasterFeedCallbacks& callbacks, const char* name);

        /// Finds the image and makes ready for its first line.
        void ReadHeader();

        std::uint32_t Width() const { return form.width; }   ///< pixels
        std::uint32_t Height() const { return form.height; } ///< lines
        const WidthInUnits& Units() const { return units; }

        /// Writes the next line of the upright image, Width() bytes, to `line`.
        void ReadLine(unsigned char* line);

        /// Closes the file; what the `close` callback throws goes on, the file being closed either way.
        void Close();

    private:
        SourceFile source;
        std::optional<TiffFile> file;
        SeparationForm form = {};
        WidthInUnits units = {1, 1};
        std::unique_ptr<RowSource> rows;
        std::optional<SampleExpansion> expansion;
        std::unique_ptr<unsigned char[]> packedRow; ///< holds a row that cannot be decoded into its line
        std::uint32_t nextLine = 0;
    };
}
