#include "job/Conversion.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/InputFile.h"
#include "host/Output.h"
#include "host/Progress.h"
#include "host/Text.h"
#include "job/FailureCause.h"
#include "job/InkFile.h"
#include "job/LibraryRun.h"
#include "job/SeparationPlaces.h"
#include "job/SizeCheck.h"
#include "job/SurfaceMessages.h"
#include "job/WrittenCheck.h"

#include <cerrno>
#include <chrono>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Jobs
{
    namespace
    {
        /// A run shorter than this needs no progress.
        constexpr std::chrono::milliseconds ProgressDelay(1000);

        /// The status of the file at `path`, all zero if there is none.
        struct stat StatusOf(const std::string& path)
        {
            struct stat status = {};
            if (stat(path.c_str(), &status) != 0)
            {
                status = {};
            }
            return status;
        }

        bool IsSameFile(const struct stat& left, const struct stat& right)
        {
            return left.st_ino != 0 && left.st_ino == right.st_ino && left.st_dev == right.st_dev;
        }

        void CheckOutputIsNoInput(const Job& job, const ConversionSettings& settings)
        {
            const struct stat output = StatusOf(settings.output);
            if (IsSameFile(output, StatusOf(settings.jobFile)))
            {
                throw Host::UsageError(settings.output + ": the output would replace the job file");
            }
            for (const SeparationPlace& place : PlacesOf(job))
            {
                if (IsSameFile(output, StatusOf(place.separation->file)))
                {
                    throw Host::UsageError(
                        settings.output + ": the output would replace the file of " + PlaceForPerson(job, place));
                }
            }
        }

        /// What is read of the files; the inks of one file share it.
        std::uint64_t BytesOfSeparations(const Job& job)
        {
            std::uint64_t bytes = 0;
            const std::string* before = nullptr;
            for (const SeparationPlace& place : PlacesOf(job))
            {
                const std::string& file = place.separation->file;
                const bool isRead = before != nullptr && *before == file && place.separation->channel != 0;
                bytes += isRead ? 0 : static_cast<std::uint64_t>(StatusOf(file).st_size);
                before = &file;
            }
            return bytes;
        }

        /// The library's words and, after them, what they leave open.
        [[noreturn]] void FailAs(const LibraryFailure& failure, const Job& job, const Host::Output& output)
        {
            const std::string words = failure.what();
            if (words != LibraryCouldNotOpen)
            {
                throw Host::Failure(words + ": " + CauseInSeparations(job));
            }
            const Host::Descriptor file(open(output.Path().c_str(), O_WRONLY | O_CLOEXEC));
            throw Host::Failure(
                words + ": " + output.Name() + (file.IsOpen() ? "" : ": its draft: " + Host::SystemText(errno)));
        }

        void CheckWritten(const Host::Output& output, const Job& job, bool mixedSizes)
        {
            std::string finding;
            try
            {
                const Host::InputFile file(output.Path(), {});
                finding = FindingInWrittenFile(file.Bytes(), job, mixedSizes);
            }
            catch (const Host::Failure& failure)
            {
                finding = failure.what();
            }
            if (finding.empty())
            {
                return;
            }
            const std::string obstacle = output.ObstacleToWriting();
            throw Host::Failure(
                output.Name() + ": the file failed its check after writing: " + finding +
                (obstacle.empty() ? "" : ": " + obstacle));
        }

        void CheckBefore(const Job& job, const ConversionSettings& settings, std::ostream& messages)
        {
            if (!settings.mixedSizes)
            {
                CheckSizes(job);
            }
            if (settings.verbose)
            {
                SaySurfaces(messages, job);
            }
            if (settings.isTerminal)
            {
                SayWhatIsKeptLarge(messages, job);
            }
        }

        void Write(const Job& job, const ConversionSettings& settings, Host::Output& output)
        {
            {
                std::optional<Host::Progress> progress;
                if (settings.isTerminal)
                {
                    progress.emplace(STDERR_FILENO, BytesOfSeparations(job), "of the separations", ProgressDelay);
                }
                try
                {
                    RunLibrary(job, output.Path(), settings.threads);
                }
                catch (const LibraryFailure& failure)
                {
                    FailAs(failure, job, output);
                }
            }
            CheckWritten(output, job, settings.mixedSizes);
            output.Publish();
        }
    }

    void Convert(const Job& job, const ConversionSettings& settings, std::ostream& messages)
    {
        CheckOutputIsNoInput(job, settings);
        const Job whole = WithInksOfFiles(job);
        CheckBefore(whole, settings, messages);
        Host::Output output(settings.output, settings.durability);
        Write(whole, settings, output);
    }

    void Convert(const Job& job, const ConversionSettings& settings, Host::Output& output, std::ostream& messages)
    {
        const Job whole = WithInksOfFiles(job);
        CheckBefore(whole, settings, messages);
        Write(whole, settings, output);
    }
}
