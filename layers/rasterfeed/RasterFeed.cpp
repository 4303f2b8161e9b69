// The operations of the interface: results for refusals, and the callbacks' exceptions unchanged.

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SeparationReader.h"

#include <RasterFeedLib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

struct RasterFeedReader
{
    RasterFeedReader(const RasterFeedCallbacks& callbacks, const char* name)
        : separation(callbacks, name)
    {
    }

    enum class State
    {
        Opened, ///< waits for RasterFeedHeader
        Lines,  ///< gives lines
        Failed  ///< can only be ended
    };

    RasterFeed::SeparationReader separation;
    RasterFeedSelection selection;
    std::vector<std::uint32_t> channels; ///< in place of the selection's own, if there are any
    bool isSelected = false;
    State state = State::Opened;
};

namespace RasterFeed
{
    namespace
    {
        constexpr std::int32_t Done = 0;
        constexpr std::int32_t Failed = -1;
        constexpr std::uint32_t MostChannels = 32;

        /// Runs `operation` in `state`, and leaves the reader in `next` if it succeeds.
        template <class Operation>
        std::int32_t
        Run(RasterFeedHandle reader, RasterFeedReader::State state, RasterFeedReader::State next, Operation operation)
        {
            if (reader == nullptr || reader->state != state)
            {
                return Failed;
            }
            reader->state = RasterFeedReader::State::Failed;
            try
            {
                operation(reader->separation);
            }
            catch (const Refusal&)
            {
                return Failed;
            }
            catch (const std::bad_alloc&)
            {
                return Failed;
            }
            reader->state = next;
            return Done;
        }

        void Keep(RasterFeedReader& reader, const RasterFeedSelection& selection)
        {
            if (reader.isSelected || !IsSelection(selection))
            {
                throw Refusal("no selection, or a second one");
            }
            reader.selection = selection;
            reader.isSelected = true;
        }
    }
}

RasterFeedHandle RasterFeedInit(const RasterFeedOpenRecord* record)
{
    if (std::memchr(record->path, 0, sizeof record->path) == nullptr)
    {
        return nullptr;
    }
    try
    {
        return new RasterFeedReader(record->callbacks, record->path);
    }
    catch (const RasterFeed::Refusal&)
    {
        return nullptr;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

std::int32_t RasterFeedSelect(RasterFeedHandle reader, const RasterFeedSelection* selection)
{
    const RasterFeedReader::State opened = RasterFeedReader::State::Opened;
    return RasterFeed::Run(
        reader, opened, opened, [&](RasterFeed::SeparationReader&) { RasterFeed::Keep(*reader, *selection); });
}

std::int32_t RasterFeedSelectChannels(
    RasterFeedHandle reader, const RasterFeedSelection* selection, const std::uint32_t* channels, std::uint32_t count)
{
    const RasterFeedReader::State opened = RasterFeedReader::State::Opened;
    return RasterFeed::Run(
        reader, opened, opened,
        [&](RasterFeed::SeparationReader&)
        {
            if (count < 1 || count > RasterFeed::MostChannels || std::count(channels, channels + count, 0U) != 0)
            {
                throw RasterFeed::Refusal("no channels");
            }
            reader->channels.assign(channels, channels + count);
            RasterFeed::Keep(*reader, *selection);
        });
}

std::int32_t RasterFeedHeader(RasterFeedHandle reader, RasterFeedImageHeader* header)
{
    return RasterFeed::Run(
        reader, RasterFeedReader::State::Opened, RasterFeedReader::State::Lines,
        [&](RasterFeed::SeparationReader& separation)
        {
            separation.ReadHeader(reader->selection, reader->channels);
            *header = {};
            header->unitsPerInch = separation.Units().unitsPerInch;
            header->widthExtent = separation.Units().extent;
            header->lineCount = separation.Height();
            header->lineLength = separation.Width();
        });
}

std::int32_t RasterFeedLine(RasterFeedHandle reader, unsigned char* const* lines, std::uint32_t count)
{
    if (count != 1)
    {
        return RasterFeed::Failed;
    }
    return RasterFeed::Run(
        reader, RasterFeedReader::State::Lines, RasterFeedReader::State::Lines,
        [&](RasterFeed::SeparationReader& separation) { separation.ReadLine(lines[0]); });
}

void RasterFeedEnd(RasterFeedHandle reader, std::int32_t*)
{
    const std::unique_ptr<RasterFeedReader> owner(reader);
    if (owner)
    {
        owner->separation.Close();
    }
}
