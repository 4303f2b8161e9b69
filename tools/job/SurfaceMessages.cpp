#include "job/SurfaceMessages.h"

#include "host/Number.h"
#include "host/Program.h"
#include "host/Text.h"
#include "job/Look.h"

#include <ostream>

namespace Jobs
{
    namespace
    {
        std::string TextOf(std::uint32_t width, std::uint32_t height)
        {
            return std::to_string(width) + " x " + std::to_string(height);
        }

        /// `400 x 300 pixels at 50.8 per inch: `, or nothing of a file that cannot be read: the conversion says why.
        std::string SizeText(const RasterFeedDescription& found)
        {
            if (!found.accepted)
            {
                return {};
            }
            if (!found.isReduced)
            {
                return TextOf(found.width, found.height) + " pixels at " + Host::ShortText(found.resolution) +
                       " per inch: ";
            }
            const std::string across = Host::ShortText(found.inputAcross);
            const std::string down = Host::ShortText(found.inputDown);
            return TextOf(found.inputWidth, found.inputHeight) + " pixels at " +
                   (across == down ? across : across + " x " + down) + " per inch to " +
                   TextOf(found.width, found.height) + " at " + Host::ShortText(found.resolution) + ": ";
        }

        void Say(std::ostream& messages, const std::string& line)
        {
            messages << Host::OneLine(line) + '\n' << std::flush;
        }
    }

    void SaySurfaces(std::ostream& messages, const Job& job)
    {
        std::string line;
        const SeparationPlace* before = nullptr;
        const std::vector<SeparationPlace> places = PlacesOf(job);
        for (const SeparationPlace& place : places)
        {
            const bool goesOn =
                before != nullptr && before->sheetIndex == place.sheetIndex && before->surface == place.surface;
            if (before != nullptr && !goesOn)
            {
                Say(messages, line);
            }
            line = goesOn ? line + ", "
                          : SheetForPerson(job, place.sheetIndex) + ", " + WordOf(place.surface) + ": " +
                                SizeText(LookAt(job, place, RasterFeedDepth::Header));
            line += place.separation->name;
            before = &place;
        }
        if (before != nullptr)
        {
            Say(messages, line);
        }
    }

    void SayWhatIsKeptLarge(std::ostream& messages, const Job& job)
    {
        for (const SeparationPlace& place : PlacesOf(job))
        {
            const RasterFeedDescription found = LookAt(job, place, RasterFeedDepth::Header);
            if (!found.isReduced && found.resolution > AutoReduction.onlyAbove)
            {
                const std::string wanted = Host::ShortText(AutoReduction.resolution);
                Say(messages, std::string(Host::ProgramName()) + ": " + PlaceForPerson(job, place) + " keeps its " +
                                  Host::ShortText(found.resolution) + " pixels per inch; a preview has about " +
                                  wanted + ", which --resolution " + wanted + " makes of it");
                return;
            }
        }
    }
}
