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
#include <string>
#include <vector>

namespace RasterFeed
{
    /// A reader on one file. ReadHeader ReadLine* Close?
    /// Throws Refusal for what cannot be a separation, and what the callbacks throw; after either only Close is left.
    class SeparationReader
    {
    public:
        /// Opens `name` through the callbacks.
        SeparationReader(const RasterFeedCallbacks& callbacks, const char* name);

        /// Finds the image and makes ready for the first line of the view that `selection` describes; where there are
        /// `channels`, of the views of each of those in turn, counted from 1.
        void ReadHeader(const RasterFeedSelection& selection, const std::vector<std::uint32_t>& channels = {});

        /// Whether one decoding serves several channels of the view.
        bool SharesDecoding() const { return view.isReduced && forms.front().samples > 1; }

        const View& Shown() const { return view; }
        std::uint32_t Width() const { return view.across.cells; } ///< pixels of a line
        std::uint32_t Height() const { return view.down.cells; }  ///< lines
        const WidthInUnits& Units() const { return units; }

        /// Writes the next line, Width() bytes, to `line`: Height() lines of each channel.
        void ReadLine(unsigned char* line);

        /// Closes the file; what the `close` callback throws goes on, the file being closed either way.
        void Close();

    private:
        void BeginLines();
        void MakeLines(const SeparationForm& form, const std::vector<unsigned>& samples);

        /// What a refusal begins with: the page and channel, if they were chosen.
        std::string Place() const;

        SourceFile source;
        std::optional<TiffFile> file;
        std::uint32_t page = 0;            ///< as it was chosen; 0 if it was not
        std::vector<std::uint32_t> chosen; ///< the channels in turn; 0 for the one that there is
        std::uint32_t channel = 0;         ///< the one at hand, or the first of those that are decoded at once
        std::vector<SeparationForm> forms; ///< of each channel
        std::size_t begun = 0;             ///< channels whose lines are made
        std::uint64_t linesLeft = 0;       ///< of those
        View view = {};
        WidthInUnits units = {1, 1};
        std::unique_ptr<LineSource> lines;
    };
}
