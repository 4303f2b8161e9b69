#include "job/SizeCheck.h"

#include "host/Failure.h"
#include "host/Text.h"
#include "job/Look.h"

namespace Jobs
{
    namespace
    {
        struct Size
        {
            SeparationPlace place;
            RasterFeedDescription found;
        };

        std::string SizeForPerson(const Size& size)
        {
            return std::string(WordOf(size.place.surface)) + ' ' + Host::Quoted(size.place.separation->name) + ", " +
                   size.place.separation->file + ImageForPerson(*size.place.separation) + ", has " +
                   std::to_string(size.found.width) + " x " + std::to_string(size.found.height) + " pixels" +
                   (size.found.isReduced ? " once it is reduced" : "");
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
            const RasterFeedDescription found = LookAt(job, place, RasterFeedDepth::Header);
            if (!found.accepted)
            {
                continue;
            }
            const Size size{place, found};
            if (!first)
            {
                first = size;
            }
            if (found.width != first->found.width || found.height != first->found.height)
            {
                throw Host::Failure(
                    SheetForPerson(job, place.sheetIndex) + ": the separations differ in size: " +
                    SizeForPerson(*first) + "; " + SizeForPerson(size) + " (--mixed-sizes lets them through)");
            }
        }
    }
}
