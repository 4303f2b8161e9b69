#include "job/SeparationPlaces.h"

#include "host/Text.h"

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

    std::string PlaceForPerson(const Job& job, const SeparationPlace& place)
    {
        return SheetForPerson(job, place.sheetIndex) + ", " + WordOf(place.surface) + ", separation " +
               Host::Quoted(place.separation->name);
    }
}
