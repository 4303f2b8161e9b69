// A job as the command line spells it, option by option: what follows a sheet belongs to it, so that the order counts.
#pragma once

#include "job/Job.h"

#include <set>
#include <string>

namespace Tiff2Ppf
{
    using Jobs::Job;
    using Jobs::Separation;
    using Jobs::Sheet;

    /// Calls: (SetOrientation)* (OpenSheet (AddFile | AddInks | AddSet | AddParameter | SetOrientation)*)* Take
    /// All but Take throw Host::UsageError with the option's name.
    class JobBuilder
    {
    public:
        /// Relative file names are going to stand relative to `folder`, absolute.
        JobBuilder(const std::string& theJobName, const std::string& theFolder);

        void OpenSheet(const std::string& name);

        /// Separations of the side that `option`, --front... or --back..., is about.
        void AddFile(const std::string& option, const std::string& inkAndFile); ///< INK=FILE, split at the first '='
        void AddInks(const std::string& option, const std::string& file);       ///< every ink that the file holds
        void AddSet(const std::string& option, const std::string& pattern);     ///< the files that fit now

        void AddParameter(const std::string& keyAndValue); ///< KEY=VALUE, split likewise

        /// Of the sheet that was opened last, or, before the first, of all that have none of their own. `option` is
        /// --front-orientation or --back-orientation.
        void SetOrientation(const std::string& option, Jobs::Orientation orientation);

        /// The job, not checked as a whole: see CheckJob.
        Job Take();

    private:
        Sheet& SheetFor(const std::string& option);
        std::vector<Separation>& SideFor(const std::string& option);

        std::string folder;
        Sheet blank; ///< what a sheet is when it is opened
        Job job;
        std::set<std::string> orientationsHere; ///< the options that were given since the last sheet was opened
    };
}
