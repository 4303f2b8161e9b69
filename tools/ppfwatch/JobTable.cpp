#include "ppfwatch/JobTable.h"

#include "job/InkSet.h"

#include <algorithm>

namespace PpfWatch
{
    namespace
    {
        constexpr char JobFileEnd[] = ".json";
        constexpr char PdfEnd[] = ".pdf";

        /// With the number of separations that was asked for a job waits no longer than this for a change.
        constexpr std::chrono::seconds ShortSettle{1};

        std::optional<std::string> StemOf(const std::string& name, const std::string& end)
        {
            const bool hasEnd =
                name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
            return hasEnd ? std::optional(name.substr(0, name.size() - end.size())) : std::nullopt;
        }

        bool IsInFolder(const std::string& name)
        {
            return name.front() != '/';
        }

        bool IsDirectlyInFolder(const std::string& name)
        {
            return name.find('/') == std::string::npos;
        }
    }

    JobTable::JobTable(Rules theRules, Files& theFiles, Say theSay)
        : rules(std::move(theRules))
        , files(theFiles)
        , say(std::move(theSay))
    {
    }

    std::string JobTable::KeyOf(JobKind kind, const std::string& name)
    {
        return "sjp"[static_cast<std::size_t>(kind)] + name;
    }

    void JobTable::Seen(const std::string& name, std::optional<Stamp> stamp, Time now)
    {
        const auto [place, isNew] = known.try_emplace(name);
        File& file = place->second;
        file.listing = listing;
        const Stamp seen = stamp.value_or(Stamp());
        if (!isNew && file.stamp == seen)
        {
            return;
        }
        file.stamp = seen;
        file.isKnownWhole = false;
        if (file.jobs.empty())
        {
            if (stamp)
            {
                Place(*place, now);
            }
            else if (!file.hasNoPlace && !IsLeftAlone(name))
            {
                file.hasNoPlace = true;
                say(Level::Warning, name + ": this is not a file; it stays where it is");
            }
            return;
        }
        for (Job* const job : std::vector<Job*>(file.jobs))
        {
            if (job->kind == JobKind::JobFile && job->files.front() == &*place && job->phase != Phase::Running)
            {
                ReadJobFile(*job, now);
            }
            Touch(*job, now);
        }
    }

    /// Finds the jobs that take a file which none has.
    void JobTable::Place(FileNode& file, Time now)
    {
        const std::string& name = file.first;
        const std::vector<Job*> claimants = ClaimantsOf(name);
        for (Job* const job : claimants)
        {
            Attach(file, *job, now);
        }
        if (!claimants.empty())
        {
            return;
        }
        std::string why = "its name does not fit";
        if (!IsLeftAlone(name))
        {
            for (const auto& [kind, end] : {std::pair(JobKind::JobFile, JobFileEnd), std::pair(JobKind::Pdf, PdfEnd)})
            {
                const std::optional<std::string> stem = StemOf(name, end);
                if (stem && IsJobName(*stem))
                {
                    Job& job = JobCalled(kind, *stem, now);
                    Attach(file, job, now);
                    if (kind == JobKind::JobFile && job.phase != Phase::Running)
                    {
                        ReadJobFile(job, now);
                    }
                    return;
                }
            }
            const std::optional<SeparationName> fields = rules.names.Match(name);
            if (fields && IsJobName(fields->job))
            {
                Attach(file, JobCalled(JobKind::Set, fields->job, now), now);
                return;
            }
            if (fields)
            {
                why = "no file can be called as its job is";
            }
        }
        if (!file.second.hasNoPlace)
        {
            file.second.hasNoPlace = true;
            say(Level::Warning, name + ": " + why + "; it stays where it is");
        }
    }

    JobTable::Job& JobTable::JobCalled(JobKind kind, const std::string& name, Time now)
    {
        const auto [place, isNew] = jobs.try_emplace(KeyOf(kind, name));
        Job& job = place->second;
        if (isNew)
        {
            job.kind = kind;
            job.name = name;
            Schedule(job, Phase::Settling, now + rules.settle);
        }
        return job;
    }

    std::vector<JobTable::Job*> JobTable::ClaimantsOf(const std::string& name) const
    {
        const auto found = claims.find(name);
        std::vector<Job*> claimants = found == claims.end() ? std::vector<Job*>() : found->second;
        for (const auto& [pattern, job] : setClaims)
        {
            if (Jobs::IsInSet(pattern, name) && std::find(claimants.begin(), claimants.end(), job) == claimants.end())
            {
                claimants.push_back(job);
            }
        }
        return claimants;
    }

    void JobTable::Claim(Job& job)
    {
        for (const std::string& name : job.wanted.files)
        {
            claims[name].push_back(&job);
        }
        for (const std::string& pattern : job.wanted.sets)
        {
            setClaims.insert({pattern, &job});
        }
    }

    void JobTable::Unclaim(Job& job)
    {
        for (const std::string& name : job.wanted.files)
        {
            std::vector<Job*>& claimants = claims[name];
            claimants.erase(std::remove(claimants.begin(), claimants.end(), &job), claimants.end());
            if (claimants.empty())
            {
                claims.erase(name);
            }
        }
        for (const std::string& pattern : job.wanted.sets)
        {
            setClaims.erase({pattern, &job});
        }
    }

    void JobTable::Attach(FileNode& file, Job& job, Time now)
    {
        if (std::find(file.second.jobs.begin(), file.second.jobs.end(), &job) != file.second.jobs.end())
        {
            return;
        }
        file.second.jobs.push_back(&job);
        job.files.push_back(&file);
        Touch(job, now);
    }

    void JobTable::Detach(FileNode& file, Job& job, Time now)
    {
        auto& users = file.second.jobs;
        users.erase(std::remove(users.begin(), users.end(), &job), users.end());
        job.files.erase(std::remove(job.files.begin(), job.files.end(), &file), job.files.end());
        Touch(job, now);
    }

    void JobTable::Touch(Job& job, Time now)
    {
        if (job.phase == Phase::Running)
        {
            return;
        }
        const bool isComplete =
            job.kind == JobKind::Set && rules.separations > 0 && job.files.size() >= rules.separations;
        const auto quiet = isComplete ? std::min<std::chrono::milliseconds>(rules.settle, ShortSettle) : rules.settle;
        Schedule(job, Phase::Settling, now + quiet);
    }

    void JobTable::SetPhase(Job& job, Phase phase)
    {
        waiting += phase == Phase::Waiting ? 1U : 0U;
        waiting -= job.phase == Phase::Waiting ? 1U : 0U;
        timeline.erase({job.due, &job});
        job.phase = phase;
    }

    void JobTable::Schedule(Job& job, Phase phase, Time due)
    {
        SetPhase(job, phase);
        job.due = due;
        timeline.insert({due, &job});
    }

    void JobTable::Gone(const std::string& name, Time now)
    {
        const auto found = known.find(name);
        if (found != known.end())
        {
            Forget(*found, now);
        }
    }

    /// Takes the file out of the table. Jobs that cannot be without it go, too.
    void JobTable::Forget(FileNode& file, Time now)
    {
        for (Job* const job : std::vector<Job*>(file.second.jobs))
        {
            const bool isItself = job->kind != JobKind::Set && job->files.front() == &file;
            Detach(file, *job, now);
            if (job->phase != Phase::Running && (isItself || job->files.empty()))
            {
                Drop(*job, now);
            }
        }
        known.erase(known.find(file.first));
    }

    /// Takes the job out of the table; its files look for another.
    void JobTable::Drop(Job& job, Time now)
    {
        SetPhase(job, Phase::Settling);
        Unclaim(job);
        std::vector<FileNode*> homeless;
        for (FileNode* const file : job.files)
        {
            auto& users = file->second.jobs;
            users.erase(std::remove(users.begin(), users.end(), &job), users.end());
            homeless.push_back(file);
        }
        jobs.erase(jobs.find(KeyOf(job.kind, std::string(job.name))));
        for (FileNode* const file : homeless)
        {
            FindHome(*file, now);
        }
    }

    /// For a file that a job has let go: another job may take it. One that lies elsewhere is forgotten.
    void JobTable::FindHome(FileNode& file, Time now)
    {
        if (!file.second.jobs.empty())
        {
            return;
        }
        if (IsDirectlyInFolder(file.first))
        {
            Place(file, now);
        }
        else
        {
            known.erase(known.find(file.first));
        }
    }

    void JobTable::BeginListing()
    {
        ++listing;
    }

    void JobTable::EndListing(Time now)
    {
        std::vector<std::string> gone;
        for (const auto& [name, file] : known)
        {
            if (file.listing != 0 && file.listing != listing)
            {
                gone.push_back(name);
            }
        }
        for (const std::string& name : gone)
        {
            Gone(name, now);
        }
    }

    std::optional<Time> JobTable::NextExamination() const
    {
        return timeline.empty() ? std::nullopt : std::optional(timeline.begin()->first);
    }

    void JobTable::Examine(Time now, std::size_t most)
    {
        for (std::size_t i = 0; i < most && !timeline.empty() && timeline.begin()->first <= now; ++i)
        {
            ExamineJob(*timeline.begin()->second, now);
        }
    }

    void JobTable::ExamineJob(Job& job, Time now)
    {
        const std::string key = KeyOf(job.kind, job.name);
        // With a rest of no time at all a change would be looked for again at once, for ever.
        constexpr std::chrono::milliseconds Least{100};
        const Time settled = now + std::max<std::chrono::milliseconds>(rules.settle, Least);
        const bool hasChanged = HaveFilesChanged(job, now);
        if (jobs.find(key) == jobs.end())
        {
            return;
        }
        if (hasChanged)
        {
            Touch(job, now);
            if (job.due <= now)
            {
                Schedule(job, Phase::Settling, settled);
            }
        }
        else if (!CanFilesBeLookedAt(job) || !IsAllThere(job) || !AreTiffsWhole(job))
        {
            Schedule(job, Phase::Waiting, now + WaitingTime);
        }
        else
        {
            SetPhase(job, Phase::Ready);
            ready.push_back(key);
        }
    }

    /// Looks at all files of the job, which may be gone after this.
    bool JobTable::HaveFilesChanged(Job& job, Time now)
    {
        const std::string key = KeyOf(job.kind, job.name);
        bool hasChanged = false;
        for (FileNode* const file : std::vector<FileNode*>(job.files))
        {
            const std::optional<Stamp> stamp = files.Look(file->first);
            if (!stamp)
            {
                hasChanged = true;
                Forget(*file, now);
                if (jobs.find(key) == jobs.end())
                {
                    return true;
                }
            }
            else if (*stamp != file->second.stamp)
            {
                hasChanged = true;
                file->second.stamp = *stamp;
                file->second.isKnownWhole = false;
                for (Job* const user : std::vector<Job*>(file->second.jobs))
                {
                    Touch(*user, now);
                }
            }
        }
        if (job.kind == JobKind::JobFile)
        {
            const std::size_t before = job.files.size();
            ReadJobFile(job, now);
            hasChanged = hasChanged || job.files.size() != before;
        }
        return hasChanged;
    }

    /// Claims the files that the job file names, and lets go those that it no longer does.
    void JobTable::ReadJobFile(Job& job, Time now)
    {
        Unclaim(job);
        job.wanted = files.NamesIn(job.files.front()->first).value_or(JobFileNames());
        Claim(job);
        for (FileNode* const file : std::vector<FileNode*>(job.files.begin() + 1, job.files.end()))
        {
            const std::vector<Job*> claimants = ClaimantsOf(file->first);
            if (std::find(claimants.begin(), claimants.end(), &job) == claimants.end())
            {
                Detach(*file, job, now);
                FindHome(*file, now);
            }
        }
        for (const std::string& name : job.wanted.files)
        {
            TakeFile(job, name, now);
        }
        for (const std::string& pattern : job.wanted.sets)
        {
            for (const std::string& name : NamesOfSet(pattern))
            {
                TakeFile(job, name, now);
            }
        }
    }

    std::vector<std::string> JobTable::NamesOfSet(const std::string& pattern) const
    {
        if (!IsDirectlyInFolder(pattern))
        {
            return files.FilesOfSet(pattern);
        }
        std::vector<std::string> names;
        const std::string begin = pattern.substr(0, pattern.find('*'));
        for (auto file = known.lower_bound(begin); file != known.end() && file->first.rfind(begin, 0) == 0; ++file)
        {
            if (Jobs::IsInSet(pattern, file->first))
            {
                names.push_back(file->first);
            }
        }
        return names;
    }

    /// Gives the job a file that it names, if there is one: from a set that it was in, or from outside the folder.
    void JobTable::TakeFile(Job& job, const std::string& name, Time now)
    {
        auto found = known.find(name);
        if (found == known.end())
        {
            const std::optional<Stamp> stamp = files.Look(name);
            if (!stamp)
            {
                return;
            }
            found = known.try_emplace(name).first;
            found->second.stamp = *stamp;
            found->second.listing = IsDirectlyInFolder(name) ? listing : 0;
        }
        FileNode& file = *found;
        const bool isFile = file.second.stamp != Stamp(); // all in the folder is known, folders too
        if (!isFile || &file == job.files.front())
        {
            return;
        }
        for (Job* const user : std::vector<Job*>(file.second.jobs))
        {
            if (user->kind == JobKind::Set && user->phase != Phase::Running)
            {
                Detach(file, *user, now);
                if (user->files.empty())
                {
                    Drop(*user, now);
                }
            }
        }
        Attach(file, job, now);
    }

    bool JobTable::CanFilesBeLookedAt(const Job& job) const
    {
        const auto file = std::find_if(
            job.files.begin(), job.files.end(), [](const FileNode* next) { return next->second.stamp.isUncertain; });
        if (file != job.files.end() && job.phase != Phase::Waiting)
        {
            say(Level::Warning, (*file)->first + ": it cannot be looked at; job " + job.name + " waits for it");
        }
        return file == job.files.end();
    }

    bool JobTable::IsAllThere(Job& job)
    {
        if (job.kind != JobKind::JobFile)
        {
            return true;
        }
        for (const std::string& name : job.wanted.files)
        {
            const bool isThere = std::any_of(
                job.files.begin(), job.files.end(), [&](const FileNode* file) { return file->first == name; });
            if (!isThere)
            {
                if (job.missing != name)
                {
                    job.missing = name;
                    say(Level::Info, job.name + JobFileEnd + ": waits for " + name);
                }
                return false;
            }
        }
        for (const std::string& pattern : job.wanted.sets)
        {
            const bool isThere = std::any_of(
                job.files.begin(), job.files.end(),
                [&](const FileNode* file) { return Jobs::IsInSet(pattern, file->first); });
            if (!isThere)
            {
                if (job.missing != pattern)
                {
                    job.missing = pattern;
                    say(Level::Info, job.name + JobFileEnd + ": waits for " + pattern);
                }
                return false;
            }
        }
        return true;
    }

    /// A set waits for whatever is not a TIFF yet. What a job file names is meant to be what it is, so that the job fails with it
    /// unless it is still growing.
    bool JobTable::AreTiffsWhole(Job& job)
    {
        if (job.kind == JobKind::Pdf)
        {
            return true;
        }
        bool areWhole = true;
        const std::ptrdiff_t first = job.kind == JobKind::JobFile ? 1 : 0;
        for (auto next = job.files.begin() + first; next != job.files.end(); ++next)
        {
            File& file = (*next)->second;
            if (file.isKnownWhole)
            {
                continue;
            }
            const TiffExtent extent = files.ExtentOf((*next)->first);
            file.isKnownWhole = extent == TiffExtent::Whole;
            if (extent == TiffExtent::Whole || (job.kind == JobKind::JobFile && extent == TiffExtent::NoTiff))
            {
                continue;
            }
            areWhole = false;
            if (file.extent != extent)
            {
                file.extent = extent;
                const char* const why =
                    extent == TiffExtent::Growing ? "the TIFF is not there to its end yet" : "no TIFF that can be read";
                say(Level::Warning, (*next)->first + ": " + why + "; job " + job.name + " waits for it");
            }
        }
        return areWhole;
    }

    std::optional<Order> JobTable::Take()
    {
        while (!ready.empty())
        {
            const auto found = jobs.find(ready.front());
            ready.pop_front();
            if (found == jobs.end() || found->second.phase != Phase::Ready)
            {
                continue;
            }
            Job& job = found->second;
            SetPhase(job, Phase::Running);
            Order order{job.kind, job.name, {}};
            for (const FileNode* const file : job.files)
            {
                order.sources.push_back({file->first, file->second.stamp});
            }
            return order;
        }
        return std::nullopt;
    }

    JobTable::Job* JobTable::Find(const Order& order)
    {
        const auto found = jobs.find(KeyOf(order.kind, order.job));
        return found == jobs.end() ? nullptr : &found->second;
    }

    std::vector<Order::Source> JobTable::LeavingWith(const Order& order) const
    {
        std::vector<Order::Source> leaving;
        for (const Order::Source& source : order.sources)
        {
            const auto file = known.find(source.name);
            const bool isShared = file != known.end() && file->second.jobs.size() > 1;
            if (IsInFolder(source.name) && !isShared && !IsLeftAlone(source.name))
            {
                leaving.push_back(source);
            }
        }
        return leaving;
    }

    void JobTable::Finished(const Order& order, const std::vector<Order::Source>& left, Time now)
    {
        for (const Order::Source& source : left)
        {
            Gone(source.name, now);
        }
        Job* const job = Find(order);
        if (job == nullptr)
        {
            return;
        }
        SetPhase(*job, Phase::Settling);
        // What is left of a set are files that came meanwhile: a job of their own.
        if (order.kind != JobKind::Set || job->files.empty())
        {
            Drop(*job, now);
        }
        else
        {
            Touch(*job, now);
        }
    }

    void JobTable::Again(const Order& order, std::chrono::milliseconds rest, Time now)
    {
        Job* const job = Find(order);
        if (job == nullptr)
        {
            return;
        }
        SetPhase(*job, Phase::Settling);
        const bool hasLostItself = order.kind != JobKind::Set &&
                                   (job->files.empty() || job->files.front()->first != order.sources.front().name);
        if (job->files.empty() || hasLostItself)
        {
            Drop(*job, now);
            return;
        }
        Touch(*job, now);
        if (job->due < now + rest)
        {
            Schedule(*job, Phase::Settling, now + rest);
        }
    }
}
