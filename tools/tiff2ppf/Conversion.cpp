#include "tiff2ppf/Conversion.h"

#include "ppf/FileMap.h"
#include "tiff2ppf/Failure.h"
#include "tiff2ppf/FailureCause.h"
#include "tiff2ppf/LibraryRun.h"
#include "tiff2ppf/Output.h"
#include "tiff2ppf/Progress.h"
#include "tiff2ppf/ReadBack.h"
#include "tiff2ppf/SeparationPlaces.h"
#include "tiff2ppf/SizeCheck.h"
#include "tiff2ppf/Text.h"
#include "tiff2ppf/WrittenFile.h"

#include <RasterFeedLib.h>

#include <chrono>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <system_error>

namespace Tiff2Ppf
{
    namespace
    {
        namespace fs = std::filesystem;

        /// A run shorter than this needs no progress.
        constexpr std::chrono::milliseconds ProgressDelay(1000);

        void CheckOutputIsNoInput(const Job& job, const ConversionSettings& settings)
        {
            std::error_code none;
            if (fs::equivalent(settings.output, settings.jobFile, none))
            {
                throw UsageError(settings.output + ": the output would replace the job file");
            }
            for (const SeparationPlace& place : PlacesOf(job))
            {
                if (fs::equivalent(settings.output, place.separation->file, none))
                {
                    throw UsageError(
                        settings.output + ": the output would replace the file of " + PlaceForPerson(job, place));
                }
            }
        }

        std::uint64_t BytesOfSeparations(const Job& job)
        {
            std::uint64_t bytes = 0;
            for (const SeparationPlace& place : PlacesOf(job))
            {
                std::error_code problem;
                const std::uintmax_t size = fs::file_size(place.separation->file, problem);
                bytes += problem ? 0 : size;
            }
            return bytes;
        }

        /// `sheet 1 "S1", front: 400 x 300 pixels at 50.8 per inch: Cyan, Black` for each surface that has separations.
        void SaySurface(
            std::ostream& messages, const Job& job, std::size_t sheetIndex, Surface surface,
            const std::vector<Separation>& separations)
        {
            if (separations.empty())
            {
                return;
            }
            std::ostringstream line;
            line << SheetForPerson(job, sheetIndex) << ", " << WordOf(surface) << ": ";
            const RasterFeedDescription found = RasterFeedProbe(separations.front().file, RasterFeedDepth::Header);
            if (found.accepted)
            {
                line << found.width << " x " << found.height << " pixels at " << found.resolution << " per inch: ";
            }
            const char* comma = "";
            for (const Separation& separation : separations)
            {
                line << comma << separation.name;
                comma = ", ";
            }
            messages << OneLine(line.str()) << std::endl;
        }

        void SaySurfaces(std::ostream& messages, const Job& job)
        {
            for (std::size_t i = 0; i < job.sheets.size(); ++i)
            {
                SaySurface(messages, job, i, Surface::Front, job.sheets[i].front);
                SaySurface(messages, job, i, Surface::Back, job.sheets[i].back);
            }
        }

        /// The library's words and, behind them, what they leave open.
        [[noreturn]] void FailAs(const LibraryFailure& failure, const Job& job, const Output& output)
        {
            // Once the library has made its file, its failures are about the separations.
            if (output.Work().Exists())
            {
                throw ConversionError(failure.what() + (": " + CauseInSeparations(job)));
            }
            const std::string obstacle = output.ObstacleToWriting();
            throw ConversionError(failure.what() + (": " + output.Name()) + (obstacle.empty() ? "" : ": " + obstacle));
        }

        std::string FaultAfterWriting(const std::string& path, const Job& job, bool mixedSizes)
        {
            try
            {
                const Ppf::FileMap file(path);
                std::string fault = FaultOfWrittenFile(file.Bytes(), job);
                if (fault.empty() && !mixedSizes && IsReadable(job))
                {
                    fault = FaultOnReadingBack(file.Bytes(), job);
                }
                return fault;
            }
            catch (const std::system_error& error)
            {
                return "the file cannot be read: " + error.code().message();
            }
        }

        void CheckWritten(const Output& output, const Job& job, bool mixedSizes)
        {
            const std::string fault = FaultAfterWriting(output.Work().Path(), job, mixedSizes);
            if (fault.empty())
            {
                return;
            }
            const std::string obstacle = output.ObstacleToWriting();
            throw ConversionError(
                output.Name() + ": the file failed its check after writing: " + fault +
                (obstacle.empty() ? "" : ": " + obstacle));
        }
    }

    void Convert(const Job& job, const ConversionSettings& settings, std::ostream& messages)
    {
        CheckOutputIsNoInput(job, settings);
        if (!settings.mixedSizes)
        {
            CheckSizes(job);
        }
        if (settings.verbose)
        {
            SaySurfaces(messages, job);
        }

        const std::unique_ptr<Output> output = OpenOutput(settings.output);
        {
            std::optional<Progress> progress;
            if (settings.showProgress)
            {
                progress.emplace(messages, BytesOfSeparations(job), ProgressDelay);
            }
            try
            {
                RunLibrary(job, output->Work().Path());
            }
            catch (const LibraryFailure& failure)
            {
                FailAs(failure, job, *output);
            }
        }
        CheckWritten(*output, job, settings.mixedSizes);
        output->Publish();
    }
}
