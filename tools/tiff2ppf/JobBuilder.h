// A job as the command line spells it, option by option: what follows a sheet belongs to it, so that the order counts.
#pragma once

#include "job/Job.h"

#include <string>

namespace Tiff2Ppf
{
    using Jobs::Job;
    using Jobs::Separation;
    using Jobs::Sheet;

    /// Calls: (OpenSheet (AddFront | AddBack | AddParameter)*)* Take
    /// All but Take throw Host::UsageError with the option's name.
    class JobBuilder
    {
    public:
        /// Relative file names are going to stand relative to `folder`, absolute.
        JobBuilder(const std::string& theJobName, const std::string& theFolder);

        void OpenSheet(const std::string& name);
        void AddFront(const std::string& inkAndFile);      ///< INK=FILE, split at the first '='
        void AddBack(const std::string& inkAndFile);       ///< the same
        void AddParameter(const std::string& keyAndValue); ///< KEY=VALUE, likewise

        /// The job, not checked as a whole: see CheckJob.
        Job Take();

    private:
        Sheet& SheetFor(const std::string& option);
        Separation SeparationOf(const std::string& option, const std::string& inkAndFile) const;

        std::string jobName;
        std::string folder;
        Job job;
    };
}
