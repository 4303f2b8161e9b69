// From pages to samples to names, and the words for what a person can do where a name is missing.
#include "rasterfeed/Inks.h"

#include "rasterfeed/InkNames.h"
#include "rasterfeed/Refusal.h"
#include "rasterfeed/SeparationForm.h"
#include "rasterfeed/TiffFile.h"

#include <algorithm>
#include <string>
#include <utility>

namespace RasterFeed
{
    namespace
    {
        constexpr std::size_t MostInks = 1024; // of a file; a press prints a handful

        /// The samples of the present page that are inks, from 1.
        std::vector<std::uint32_t> InkChannels(const TiffFile& file, std::uint32_t samples)
        {
            const NumberList& extra = file.Facts().extraSamples;
            std::vector<std::uint32_t> channels;
            for (std::uint32_t channel = 1; channel <= samples; ++channel)
            {
                // The extra samples are the last ones.
                const std::uint64_t fromEnd = samples - channel + 1;
                const std::uint64_t kind =
                    fromEnd <= extra.count ? file.NumberIn(extra, extra.count - fromEnd) : EXTRASAMPLE_UNSPECIFIED;
                if (kind != EXTRASAMPLE_ASSOCALPHA && kind != EXTRASAMPLE_UNASSALPHA)
                {
                    channels.push_back(channel);
                }
            }
            return channels;
        }

        [[noreturn]] void RefuseInk(const RasterFeedInk& ink, const std::string& why)
        {
            const std::string channel = std::to_string(ink.channel);
            throw Refusal(
                "sample " + channel + why + "; name the inks by hand, this one by \"page\": " +
                std::to_string(ink.page) + " and \"channel\": " + channel);
        }

        void AppendInksOfPage(const TiffFile& file, std::vector<RasterFeedInk>& inks)
        {
            const SeparationForm form = InspectForm(file, 1);
            const std::uint32_t samples = form.samples * form.planes;
            const std::vector<std::uint32_t> channels = InkChannels(file, samples);
            std::vector<std::string> names = NamesOfInks(file, samples, channels);
            for (std::size_t i = 0; i < channels.size(); ++i)
            {
                RasterFeedInk ink = {file.Page(), channels[i], std::move(names[i])};
                if (ink.name.empty())
                {
                    RefuseInk(ink, " has no name");
                }
                const auto same = std::find_if(
                    inks.begin(), inks.end(), [&](const RasterFeedInk& other) { return other.name == ink.name; });
                if (same != inks.end())
                {
                    RefuseInk(
                        ink, " has the name of page " + std::to_string(same->page) + ", sample " +
                                 std::to_string(same->channel) + ", \"" + ink.name + '"');
                }
                if (inks.size() == MostInks)
                {
                    throw Refusal("more than 1024 inks; up to 1024 are accepted");
                }
                inks.push_back(std::move(ink));
            }
        }
    }

    std::vector<RasterFeedInk> InksOf(TiffFile& file)
    {
        std::vector<RasterFeedInk> inks;
        try
        {
            for (bool isPage = true; isPage; isPage = file.NextPage())
            {
                if (!file.IsAside() && file.Facts().photometric != PHOTOMETRIC_MASK)
                {
                    AppendInksOfPage(file, inks);
                }
            }
        }
        catch (const Refusal& refusal)
        {
            throw Refusal("page " + std::to_string(file.Page()) + ": " + refusal.what());
        }
        if (inks.empty())
        {
            throw Refusal("only reduced-resolution images, masks and alpha channels; a page with an ink is needed");
        }
        return inks;
    }
}
