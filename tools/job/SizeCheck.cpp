#include "job/SizeCheck.h"

#include "host/Failure.h"
#include "host/Text.h"
#include "job/SeparationPlaces.h"

#include <RasterFeedLib.h>

namespace Jobs
{
    namespace
    {
        struct Size
        {
            SeparationPlace place;
            std::uint32_t width;  ///< pixels
            std::uint32_t height; ///< pixels
        };

        std::string SizeForPerson(const Size& size)
        {
            return std::string(WordOf(size.place.surface)) + ' ' + Host::Quoted(size.place.separation->name) + ", " +
                   size.place.separation->file + ", has " + std::to_string(size.width) + " x " +
                   std::to_string(size.height) + " pixels";
        }
    }

    void CheckSizes(const Job& job)
    {
        std::optional<Size> first;
        for (const SeparationPlace& place : PlacesOf(job))
        {
            const Sheet& sheet = job.sheets[place.sheetIndex];
            if (sheet.front.size() + sheet.back.size() == 1)
            {
                continue;
            }
            if (place.isFirstOfSheet)
            {
                first.reset();
            }
            const RasterFeedDescription found = RasterFeedProbe(place.separation->file, RasterFeedDepth::Header);
            if (!found.accepted)
            {
                continue;
            }
            const Size size{place, found.width, found.height};
            if (!first)
            {
                first = size;
            }
            if (size.width != first->width || size.height != first->height)
            {
                throw Host::Failure(
                    SheetForPerson(job, place.sheetIndex) + ": the separations differ in size: " +
                    SizeForPerson(*first) + "; " + SizeForPerson(size) + " (--mixed-sizes lets them through)");
            }
        }
    }
}
