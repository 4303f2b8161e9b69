// From directory to plan, and from stored rows to the lines of the view.
#include "rasterfeed/SeparationReader.h"

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/HeldImage.h"
#include "rasterfeed/ImageLines.h"
#include "rasterfeed/ReducedLines.h"
#include "rasterfeed/Refusal.h"

#include <algorithm>
#include <string>
#include <utility>

namespace RasterFeed
{
    namespace
    {
        void CheckHeldSize(const View& view)
        {
            const std::uint64_t bytes = std::uint64_t{view.across.cells} * view.down.cells;
            if (view.turn.isTransposed && bytes > LargestHeldImage)
            {
                throw Refusal(
                    "a quarter turn of " + std::to_string(view.across.cells) + " x " + std::to_string(view.down.cells) +
                    " pixels, which takes " + std::to_string(bytes) + " bytes of memory; up to " +
                    std::to_string(LargestHeldImage) +
                    " are accepted: ask for a lower resolution or for no quarter turn");
            }
        }

        CellEdges EdgesOf(const ViewSide& side, bool isFlipped)
        {
            return CellEdges(side.pixels, side.cells, side.pixelsPerCell, isFlipped);
        }

        /// Whether the view is held whole. Compressed rows that are wanted from the bottom are, as far as there is space for
        /// it: a strip that is decoded to its end before its last row is at hand takes more memory, or more than there may be.
        bool IsHeld(const SeparationForm& form, const View& view)
        {
            const bool isInOrder = form.tiled || form.compression == COMPRESSION_NONE || !view.turn.flipsRows;
            return view.turn.isTransposed || (view.isReduced && !isInOrder &&
                                              std::uint64_t{view.across.cells} * view.down.cells <= LargestHeldImage);
        }
    }

    SeparationReader::SeparationReader(const RasterFeedCallbacks& callbacks, const char* name)
        : source(callbacks, name)
    {
        file.emplace(source);
    }

    void SeparationReader::ReadHeader(const RasterFeedSelection& selection, const std::vector<std::uint32_t>& channels)
    {
        const bool isChosen = selection.page != 0 || selection.channel != 0 || !channels.empty();
        page = isChosen ? std::max(selection.page, 1U) : 0;
        chosen = !channels.empty() ? channels : std::vector{isChosen ? std::max(selection.channel, 1U) : 0};
        channel = chosen.front();
        try
        {
            page != 0 ? file->SelectPage(page) : file->SelectImage();
            for (const std::uint32_t next : chosen)
            {
                channel = next;
                forms.push_back(InspectForm(*file, channel));
            }
            view = ChooseView(forms.front(), selection);
            CheckHeldSize(view);
            file->UseCodec();
            BeginLines();
        }
        catch (const Refusal& refusal)
        {
            throw Refusal(Place() + refusal.what());
        }
        units = ExpressWidth(Width(), view.resolution);
    }

    void SeparationReader::BeginLines()
    {
        channel = chosen[begun];
        const SeparationForm& form = forms[begun];
        std::vector<unsigned> samples = {form.sample};
        if (SharesDecoding())
        {
            const std::uint64_t most = LargestHeldImage / (std::uint64_t{Width()} * Height());
            while (begun + samples.size() < forms.size() && samples.size() < most)
            {
                samples.push_back(forms[begun + samples.size()].sample);
            }
        }
        lines.reset(); // before its successor takes as much memory
        MakeLines(form, samples);
        begun += samples.size();
        linesLeft = std::uint64_t{Height()} * samples.size();
    }

    void SeparationReader::MakeLines(const SeparationForm& form, const std::vector<unsigned>& samples)
    {
        const bool isHeld = samples.size() > 1 || IsHeld(form, view);
        const bool fromBottom = view.turn.flipsRows && !isHeld;
        RowOrder rows(MakeRowSource(*file, form, PlanDecoding(*file, form, fromBottom)), form.height, fromBottom);

        // The sides of the stored image.
        const ViewSide& columns = view.turn.isTransposed ? view.down : view.across;
        const ViewSide& down = view.turn.isTransposed ? view.across : view.down;
        if (view.isReduced)
        {
            lines = std::make_unique<ReducedLines>(
                std::move(rows), form, samples, EdgesOf(columns, view.turn.flipsColumns),
                EdgesOf(down, view.turn.flipsRows && isHeld), view.turn.flipsColumns);
        }
        else
        {
            lines = std::make_unique<ImageLines>(std::move(rows), form, view.turn.flipsColumns);
        }
        if (isHeld)
        {
            lines = std::make_unique<HeldImage>(
                std::move(lines), columns.cells, down.cells, samples.size(), view.turn.isTransposed,
                view.turn.flipsRows);
        }
    }

    void SeparationReader::ReadLine(unsigned char* line)
    {
        try
        {
            if (linesLeft == 0 && begun < forms.size())
            {
                BeginLines();
            }
            lines->Next(line, Width());
            --linesLeft;
        }
        catch (const Refusal& refusal)
        {
            throw Refusal(Place() + refusal.what());
        }
    }

    std::string SeparationReader::Place() const
    {
        return page == 0 ? "" : "page " + std::to_string(page) + ", channel " + std::to_string(channel) + ": ";
    }

    void SeparationReader::Close()
    {
        lines.reset();
        file.reset();
        source.Close();
    }
}
