// The jobs of a watched folder and how far each is: the plain state machine of the watcher. It knows no clock and no file
// system but what it is handed, and gives the same answer whoever noticed a change, the system or a look at the folder.
//
//   Settling: files have come or changed; when nothing has for long enough, the job is examined
//   Waiting:  settled, but a file is missing, cannot be looked at, or is not a whole TIFF; examined again now and then, and
//             after any change
//   Ready:    whole; to be taken
//   Running:  taken; leaves the table by Finished, or settles once more after Again
#pragma once

#include "ppfwatch/JobFileNames.h"
#include "ppfwatch/Log.h"
#include "ppfwatch/NamePattern.h"
#include "ppfwatch/Stamp.h"
#include "ppfwatch/TiffExtent.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace PpfWatch
{
    using Time = std::chrono::steady_clock::time_point;

    /// The files as they are now. Names are relative to the watched folder if they lie in it, else absolute.
    class Files
    {
    public:
        Files() = default;
        virtual ~Files() = default;
        Files(const Files&) = delete;
        Files& operator=(const Files&) = delete;

        /// The stamp of a regular file; none if there is no such file.
        virtual std::optional<Stamp> Look(const std::string& name) = 0;
        virtual TiffExtent ExtentOf(const std::string& name) = 0;
        /// What a job file names, as names of this folder. None if it is not JSON.
        virtual std::optional<JobFileNames> NamesIn(const std::string& jobFile) = 0;
        /// The files of a set that lies in another folder; none if that cannot be read.
        virtual std::vector<std::string> FilesOfSet(const std::string& pattern) = 0;
    };

    enum class JobKind
    {
        Set,     ///< separations whose names fit the pattern and name the same job
        JobFile, ///< NAME.json and the files that it names
        Pdf      ///< NAME.pdf
    };

    /// A whole job, as it was when it was taken.
    struct Order
    {
        struct Source
        {
            std::string name;
            Stamp stamp;
        };

        JobKind kind;
        std::string job;             ///< its name
        std::vector<Source> sources; ///< a job file or PDF stands first
    };

    class JobTable
    {
    public:
        struct Rules
        {
            NamePattern names;
            std::chrono::milliseconds settle;
            std::size_t separations; ///< 0: a job is never whole by its number of files
        };
        using Say = std::function<void(Level, const std::string&)>;

        /// A job that waits is examined again after this time, as nothing tells of files elsewhere.
        static constexpr std::chrono::seconds WaitingTime{10};

        /// `theFiles` stays the caller's.
        JobTable(Rules theRules, Files& theFiles, Say theSay);

        /// There is a file `name` in the folder; without a stamp it is something else that has this name.
        void Seen(const std::string& name, std::optional<Stamp> stamp, Time now);

        /// There is no file `name` in the folder any more.
        void Gone(const std::string& name, Time now);

        /// Between these two Seen is called for all that is in the folder: all else is gone.
        void BeginListing();
        void EndListing(Time now);

        /// Examines the jobs whose time has come, the earliest first, but no more than `most`.
        void Examine(Time now, std::size_t most);

        /// When Examine has something to do next; none if only a change can bring it.
        std::optional<Time> NextExamination() const;

        /// The whole job that has waited longest; none if there is none.
        std::optional<Order> Take();

        /// Of the sources of a job that was taken, those that leave the folder with it: they lie in it, no other job needs
        /// them, and they are not of those that stay, whoever names them.
        std::vector<Order::Source> LeavingWith(const Order& order) const;

        /// The job is over and the files `left` have gone. What has come for it meanwhile is a new job.
        void Finished(const Order& order, const std::vector<Order::Source>& left, Time now);

        /// The job is as it was before it was taken, and settles again; it is not examined sooner than after `rest`.
        void Again(const Order& order, std::chrono::milliseconds rest, Time now);

        /// Jobs that are not waiting for somebody else.
        std::size_t Busy() const { return jobs.size() - waiting; }

    private:
        struct Job;

        struct File
        {
            Stamp stamp;
            unsigned listing = 0;                  ///< the last one that it was in; 0: it is not in the folder itself
            bool hasNoPlace = false;               ///< it was said that no job takes it
            TiffExtent extent = TiffExtent::Whole; ///< as it was said last
            bool isKnownWhole = false;             ///< with this stamp
            std::vector<Job*> jobs;                ///< that have it among their files
        };
        using FileNode = std::pair<const std::string, File>;

        enum class Phase
        {
            Settling,
            Waiting,
            Ready,
            Running
        };

        struct Job
        {
            JobKind kind = JobKind::Set;
            std::string name;
            std::vector<FileNode*> files; ///< a job file or PDF stands first
            JobFileNames wanted;          ///< of a job file
            std::string missing;          ///< of a job file: what it was said to wait for
            Phase phase = Phase::Settling;
            Time due;
        };
        using JobNode = std::pair<const std::string, Job>;

        void Place(FileNode& file, Time now);
        Job& JobCalled(JobKind kind, const std::string& name, Time now);
        void Attach(FileNode& file, Job& job, Time now);
        void Detach(FileNode& file, Job& job, Time now);
        void Forget(FileNode& file, Time now);
        void Touch(Job& job, Time now);
        void Schedule(Job& job, Phase phase, Time due);
        void SetPhase(Job& job, Phase phase);
        void Drop(Job& job, Time now);
        void ReadJobFile(Job& job, Time now);
        void Claim(Job& job);
        void Unclaim(Job& job);
        void TakeFile(Job& job, const std::string& name, Time now);
        void FindHome(FileNode& file, Time now);
        std::vector<std::string> NamesOfSet(const std::string& pattern) const;
        std::vector<Job*> ClaimantsOf(const std::string& name) const;
        void ExamineJob(Job& job, Time now);
        bool HaveFilesChanged(Job& job, Time now);
        bool CanFilesBeLookedAt(const Job& job) const;
        bool IsAllThere(Job& job);
        bool AreTiffsWhole(Job& job);
        Job* Find(const Order& order);
        static std::string KeyOf(JobKind kind, const std::string& name);

        Rules rules;
        Files& files;
        Say say;
        std::map<std::string, File> known;                         ///< by name, so that a set is a range of it
        std::unordered_map<std::string, Job> jobs;                 ///< by kind and name; nodes stay where they are
        std::set<std::pair<Time, Job*>> timeline;                  ///< of jobs that settle or wait
        std::deque<std::string> ready;                             ///< keys of jobs; of some that no longer are
        std::unordered_map<std::string, std::vector<Job*>> claims; ///< of job files: on files by name
        std::set<std::pair<std::string, Job*>> setClaims;          ///< likewise on all that fits a pattern
        std::size_t waiting = 0;                                   ///< jobs in this phase
        unsigned listing = 1;
    };
}
