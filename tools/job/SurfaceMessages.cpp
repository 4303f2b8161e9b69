#include "job/SurfaceMessages.h"

#include "host/Program.h"
#include "host/Text.h"
#include "job/Look.h"

#include <array>
#include <charconv>
#include <ostream>

namespace Jobs
{
    namespace
    {
        /// With six digits at most: "50.8", "299.999".
        std::string TextOf(double number)
        {
            constexpr int Digits = 6;
            std::array<char, 32> text{};
            const auto end =
                std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, Digits);
            return {text.data(), end.ptr};
        }

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
                return TextOf(found.width, found.height) + " pixels at " + TextOf(found.resolution) + " per inch: ";
            }
            const std::string across = TextOf(found.inputAcross);
            const std::string down = TextOf(found.inputDown);
            return TextOf(found.inputWidth, found.inputHeight) + " pixels at " +
                   (across == down ? across : across + " x " + down) + " per inch to " +
                   TextOf(found.width, found.height) + " at " + TextOf(found.resolution) + ": ";
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
                const std::string wanted = TextOf(AutoReduction.resolution);
                Say(messages, std::string(Host::ProgramName()) + ": " + PlaceForPerson(job, place) + " keeps its " +
                                  TextOf(found.resolution) + " pixels per inch; a preview has about " + wanted +
                                  ", which --resolution " + wanted + " makes of it");
                return;
            }
        }
    }
}
