// One separation from its file to its lines: where the parts of this layer meet. It stands apart from the operations of
// the interface, which only turn its exceptions into results.
#pragma once

#include "rasterfeed/LineSource.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"
#include "rasterfeed/View.h"
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

        /// Finds the image and makes ready for the first line of the view that `selection` describes.
        void ReadHeader(const RasterFeedSelection& selection);

        const View& Shown() const { return view; }
        std::uint32_t Width() const { return view.across.cells; } ///< pixels of a line
        std::uint32_t Height() const { return view.down.cells; }  ///< lines
        const WidthInUnits& Units() const { return units; }

        /// Writes the next line of the view, Width() bytes, to `line`.
        void ReadLine(unsigned char* line);

        /// Closes the file; what the `close` callback throws goes on, the file being closed either way.
        void Close();

    private:
        SourceFile source;
        std::optional<TiffFile> file;
        View view = {};
        WidthInUnits units = {1, 1};
        std::unique_ptr<LineSource> lines;
    };
}
