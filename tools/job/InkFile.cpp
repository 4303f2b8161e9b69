#include "job/InkFile.h"

#include "host/Failure.h"
#include "job/SeparationPlaces.h"

#include <RasterFeedLib.h>

#include <utility>

namespace Jobs
{
    namespace
    {
        void FillIn(const Job& job, std::size_t sheetIndex, Surface surface, std::vector<Separation>& side)
        {
            std::vector<Separation> filled;
            for (Separation& separation : side)
            {
                if (!separation.isEveryInk)
                {
                    filled.push_back(std::move(separation));
                    continue;
                }
                const RasterFeedInkList found = RasterFeedInks(separation.file);
                if (!found.reason.empty())
                {
                    throw Host::Failure(SheetForPerson(job, sheetIndex) + ", " + WordOf(surface) + ": " + found.reason);
                }
                for (const RasterFeedInk& ink : found.inks)
                {
                    filled.push_back({ink.name, separation.file, ink.page, ink.channel});
                }
            }
            side = std::move(filled);
        }
    }

    Separation EveryInkOf(const std::string& file)
    {
        Separation separation;
        separation.file = file;
        separation.isEveryInk = true;
        return separation;
    }

    Job WithInksOfFiles(Job job)
    {
        for (std::size_t i = 0; i < job.sheets.size(); ++i)
        {
            FillIn(job, i, Surface::Front, job.sheets[i].front);
            FillIn(job, i, Surface::Back, job.sheets[i].back);
        }
        return job;
    }
}
