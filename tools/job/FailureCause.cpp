#include "job/FailureCause.h"

#include "job/Look.h"

namespace Jobs
{
    namespace
    {
        /// The record in which the library hands a path to its reader has room for this many bytes.
        constexpr std::size_t MaxPathBytes = sizeof(RasterFeedOpenRecord::path) - 1;

        /// Why the library does not take the separation at `place`; empty if it does.
        std::string RefusalOf(const Job& job, const SeparationPlace& place)
        {
            const std::string& path = place.separation->file;
            if (path.size() > MaxPathBytes)
            {
                return path + ": the path has " + std::to_string(path.size()) + " bytes, and the limit is " +
                       std::to_string(MaxPathBytes);
            }
            const RasterFeedDescription found = LookAt(job, place, RasterFeedDepth::Lines);
            if (!found.accepted)
            {
                return found.reason;
            }
            // Without an extent the sheet has no size in the file.
            const bool hasExtent = found.width > 0 && found.height > 0 && found.resolution > 0;
            if (place.isFirstOfSheet && !hasExtent)
            {
                return path + ImageForPerson(*place.separation) +
                       ": the image has no extent: " + std::to_string(found.width) + " x " +
                       std::to_string(found.height) + " pixels at " + std::to_string(found.resolution) + " per inch";
            }
            return {};
        }
    }

    std::string CauseInSeparations(const Job& job)
    {
        // In the order of the library, which reads each to its end before it opens the next.
        for (const SeparationPlace& place : PlacesOf(job))
        {
            if (const std::string refusal = RefusalOf(job, place); !refusal.empty())
            {
                return PlaceForPerson(job, place) + ": " + refusal;
            }
        }
        return "every separation can be read now, so try again; if it fails again, memory is short or the output would "
               "have more than 4294967295 bytes: make several files of the job";
    }
}
