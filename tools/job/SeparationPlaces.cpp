#include "job/SeparationPlaces.h"

#include "host/Text.h"

#include <algorithm>

namespace Jobs
{
    namespace
    {
        void Append(
            std::vector<SeparationPlace>& places, std::size_t sheetIndex, Surface surface,
            const std::vector<Separation>& separations)
        {
            for (const Separation& separation : separations)
            {
                const bool isFirst = places.empty() || places.back().sheetIndex != sheetIndex;
                places.push_back({sheetIndex, surface, &separation, isFirst});
            }
        }
    }

    const char* WordOf(Surface surface)
    {
        return surface == Surface::Front ? "front" : "back";
    }

    std::vector<SeparationPlace> PlacesOf(const Job& job)
    {
        std::vector<SeparationPlace> places;
        for (std::size_t i = 0; i < job.sheets.size(); ++i)
        {
            Append(places, i, Surface::Front, job.sheets[i].front);
            Append(places, i, Surface::Back, job.sheets[i].back);
        }
        return places;
    }

    std::string ImageForPerson(const Separation& separation)
    {
        if (separation.page == 0 && separation.channel == 0)
        {
            return {};
        }
        return ", page " + std::to_string(std::max(separation.page, 1U)) + ", channel " +
               std::to_string(std::max(separation.channel, 1U));
    }

    std::string PlaceForPerson(const Job& job, const SeparationPlace& place)
    {
        const Separation& separation = *place.separation;
        return SheetForPerson(job, place.sheetIndex) + ", " + WordOf(place.surface) +
               (separation.isEveryInk ? ", every ink" : ", separation " + Host::Quoted(separation.name));
    }
}
