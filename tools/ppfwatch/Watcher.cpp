#include "ppfwatch/Watcher.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        using std::chrono::milliseconds;

        /// Between two looks at the whole folder, and before what did not work is tried again.
        constexpr std::chrono::seconds LookTime{10};
        constexpr std::chrono::seconds RetryTime{10};

        /// Notices are taken so often at most: a file that is being written makes thousands of them.
        constexpr milliseconds NoticeTime{50};

        /// Jobs that are examined between two starts of conversions, so that workers do not wait while thousands are.
        constexpr std::size_t ExaminedAtOnce = 16;

        /// Makes the folder if it is missing; gives it as it is.
        const std::string& Made(const std::string& folder)
        {
            Host::MakeFolders(folder, true);
            return folder;
        }

        /// Sixteen digits that are always the same for a path.
        std::string MarkOf(const std::string& path)
        {
            // FNV-1a of 64 bits, whose constants these are.
            std::uint64_t hash = 0xCBF29CE484222325U;
            for (const char byte : std::filesystem::canonical(path).string())
            {
                hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
            }
            std::array<char, 17> digits{};
            std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
            return digits.data();
        }
    }

    Watcher::Watcher(const Config& theConfig, Settings theSettings, const Log& theLog, const SignalQueue& theSignals)
        : config(theConfig)
        , settings(std::move(theSettings))
        , log(theLog)
        , signals(theSignals)
        , look(Made(config.in))
        , mark(MarkOf(config.in))
        , delivery(
              {config.in, Made(config.out), Made(config.done), Made(config.failed)}, mark,
              [this](Level level, const std::string& event) { Say(level, event); })
        , scratch((Lock(), mark)) // nothing of another watcher's may be touched
        , table(
              {config.names, config.settle, config.separations}, look,
              [this](Level level, const std::string& event) { Say(level, event); })
    {
        delivery.Recover();
    }

    void Watcher::Lock()
    {
        lock = look.Open();
        if (!lock.IsOpen())
        {
            throw Host::Failure(config.in + " cannot be looked at: " + Host::SystemText(errno));
        }
        // A conversion that a killed watcher was just starting may still have the lock for a moment.
        constexpr int Tries = 10;
        for (int i = 0; i < Tries; ++i)
        {
            if (flock(lock.Number(), LOCK_EX | LOCK_NB) == 0)
            {
                return;
            }
            if (errno != EWOULDBLOCK)
            {
                Say(Level::Warning, config.in + " cannot be locked: " + Host::SystemText(errno) +
                                        "; see to it that no other process watches it");
                return;
            }
            std::this_thread::sleep_for(NoticeTime);
        }
        throw Host::Failure(config.in + " is watched by another process already; one is enough, end one of them");
    }

    Watcher::End Watcher::Run()
    {
        Say(Level::Info, "watching " + config.in);
        for (;;)
        {
            now = std::chrono::steady_clock::now();
            TakeSignals();
            FinishConversions();
            MoveUnmoved();
            if (now >= nextLook)
            {
                LookAtAll();
            }
            else if (now >= noticesFrom)
            {
                LookAtNotices();
            }
            table.Examine(now, ExaminedAtOnce);
            StartConversions();
            if (running.empty())
            {
                delivery.TidyOut();
                scratch.Remove();
                if (IsOver())
                {
                    break;
                }
            }
            Wait();
        }
        if (newConfig && !isEnding)
        {
            return End::NewConfig;
        }
        Say(Level::Info, "no longer watching " + config.in);
        return End::Asked;
    }

    bool Watcher::IsOver() const
    {
        return isEnding || newConfig || (settings.once && table.Busy() == unmoved.size());
    }

    void Watcher::TakeSignals()
    {
        while (const std::optional<int> signal = signals.Take())
        {
            if (*signal == SIGTERM || *signal == SIGINT)
            {
                isEnding = true;
            }
            else if (*signal == SIGHUP)
            {
                try
                {
                    newConfig = LoadConfig(settings.configPath);
                    Say(Level::Info, "the configuration is read again");
                }
                catch (const Host::UsageError& error)
                {
                    Say(Level::Error, std::string(error.what()) + "; the old configuration stays");
                }
            }
        }
    }

    void Watcher::LookAtAll()
    {
        nextLook = now + LookTime;
        table.BeginListing();
        const int problem =
            look.List([this](const std::string& name, std::optional<Stamp> stamp) { table.Seen(name, stamp, now); });
        if (problem != 0)
        {
            Trouble(config.in + " cannot be looked at: " + Host::SystemText(problem), lookTrouble);
            return;
        }
        table.EndListing(now);
        GoOn(lookTrouble);
    }

    void Watcher::LookAtNotices()
    {
        const FolderLook::Notices notices = look.TakeNotices();
        if (!notices.names.empty())
        {
            noticesFrom = now + NoticeTime;
        }
        if (notices.isAllUncertain)
        {
            noticesFrom = now + NoticeTime;
            nextLook = now + NoticeTime;
        }
        for (const std::string& name : notices.names)
        {
            const std::optional<Stamp> stamp = look.Look(name);
            std::error_code ignored; // a share that is gone says so when it is looked at
            if (stamp || std::filesystem::exists(std::filesystem::symlink_status(look.PathOf(name), ignored)))
            {
                table.Seen(name, stamp, now);
            }
            else
            {
                table.Gone(name, now);
            }
        }
    }

    void Watcher::StartConversions()
    {
        while (running.size() < config.workers && now >= startFrom && !isEnding && !newConfig)
        {
            std::optional<Order> order = table.Take();
            if (!order)
            {
                return;
            }
            Start(std::move(*order));
        }
    }

    void Watcher::Start(Order order)
    {
        std::string error;
        JobDescription job;
        try
        {
            job = Describe(order, config);
        }
        catch (const Host::Failure& failure)
        {
            error = std::string("ppfwatch: error: ") + failure.what();
        }
        if (!error.empty())
        {
            MoveSources({std::move(order), error, {}, now});
            return;
        }
        try
        {
            scratch.Make();
            std::string result = delivery.NewResult();
            Conversion conversion(job, result, {settings.programs, config.in, scratch.Path()});
            const std::size_t files = order.sources.size();
            Say(Level::Info, order.job + ": converting " + std::to_string(files) + (files == 1 ? " file" : " files"));
            running.push_back({std::move(order), std::move(result), std::move(conversion)});
        }
        catch (const Host::Failure& failure)
        {
            Trouble(failure.what(), jobTrouble);
            table.Again(order, RetryTime, now);
        }
    }

    void Watcher::FinishConversions()
    {
        for (auto next = running.begin(); next != running.end();)
        {
            const auto ended = next++;
            if (ended->conversion.HasEnded())
            {
                Finish(*ended);
                running.erase(ended);
            }
        }
    }

    void Watcher::Finish(const Running& over)
    {
        const Order& order = over.order;
        if (HaveSourcesChanged(order))
        {
            unlink(over.result.c_str());
            Say(Level::Info, order.job + ": a file of it has changed while it was converted; it settles again");
            table.Again(order, milliseconds(0), now);
            return;
        }
        const std::string error = over.conversion.IsDone() ? Publish(over) : over.conversion.ErrorLine();
        unlink(over.result.c_str());
        const std::string obstacle = error.empty() ? std::string() : delivery.Obstacle();
        if (obstacle.empty())
        {
            MoveSources({order, error, {}, now});
            return;
        }
        Trouble(obstacle + "; " + order.job + " waits for it: " + error, jobTrouble);
        table.Again(order, RetryTime, now);
    }

    /// Gives the line of what went wrong; empty: nothing.
    std::string Watcher::Publish(const Running& done)
    {
        try
        {
            delivery.Publish(done.result, done.order.job);
            GoOn(jobTrouble);
            return {};
        }
        catch (const Host::Failure& failure)
        {
            return std::string("ppfwatch: error: ") + failure.what();
        }
    }

    /// Ends a job. If its sources cannot be moved, that is tried again.
    void Watcher::MoveSources(Over over)
    {
        const Order& order = over.order;
        const std::vector<Order::Source> sources = table.LeavingWith(order);
        try
        {
            if (over.error.empty())
            {
                const std::string place = delivery.MoveToDone(order.job, sources);
                Say(Level::Info,
                    order.job + ": done, " + config.out + '/' + order.job + ".ppf; its files are in " + place);
            }
            else
            {
                hasFailed = true;
                const std::string place = delivery.MoveToFailed(order.job, sources, over.error);
                Say(Level::Error, order.job + ": failed: " + over.error + "; its files are in " + place);
            }
            table.Finished(order, sources, now);
        }
        catch (const Delivery::Changed& changed)
        {
            Say(Level::Info, order.job + ": " + changed.what() + "; it settles again");
            table.Again(order, milliseconds(0), now);
        }
        catch (const Host::Failure& failure)
        {
            hasFailed = true;
            if (over.trouble != failure.what())
            {
                over.trouble = failure.what();
                Say(Level::Error, order.job + ": " + over.trouble + "; its files are moved as soon as they can be");
            }
            over.next = now + RetryTime;
            unmoved.push_back(std::move(over));
        }
    }

    void Watcher::MoveUnmoved()
    {
        const bool isOneDue =
            std::any_of(unmoved.begin(), unmoved.end(), [&](const Over& over) { return over.next <= now; });
        if (!isOneDue)
        {
            return;
        }
        try
        {
            delivery.TakeBack();
        }
        catch (const Host::Failure&)
        {
            // Said when it began. The others wait as well, as their sources go the same way.
            for (Over& over : unmoved)
            {
                over.next = now + RetryTime;
            }
            return;
        }
        for (Over& over : std::exchange(unmoved, {}))
        {
            if (over.next > now)
            {
                unmoved.push_back(std::move(over));
            }
            else if (HaveSourcesChanged(over.order))
            {
                table.Again(over.order, milliseconds(0), now);
            }
            else
            {
                MoveSources(std::move(over));
            }
        }
    }

    /// Also whether a set of a job file has got a file: that may be in the result already, and would stay behind.
    bool Watcher::HaveSourcesChanged(const Order& order)
    {
        const auto isSource = [&](const std::string& name)
        {
            return std::any_of(
                order.sources.begin(), order.sources.end(),
                [&](const Order::Source& source) { return source.name == name; });
        };
        if (order.kind == JobKind::JobFile)
        {
            const JobFileNames names = look.NamesIn(order.sources.front().name).value_or(JobFileNames());
            for (const std::string& pattern : names.sets)
            {
                const std::vector<std::string> files = look.FilesOfSet(pattern);
                if (!std::all_of(files.begin(), files.end(), isSource))
                {
                    return true;
                }
            }
        }
        return std::any_of(
            order.sources.begin(), order.sources.end(),
            [&](const Order::Source& source) { return look.Look(source.name) != source.stamp; });
    }

    /// Says what keeps things from going on, once, and lets them rest. A run that is not to last gives up.
    void Watcher::Trouble(const std::string& what, std::string& said)
    {
        startFrom = now + RetryTime;
        if (said != what)
        {
            said = what;
            Say(Level::Error, what + (settings.once ? "" : "; it is tried again every 10 seconds"));
        }
        if (settings.once)
        {
            hasFailed = true;
            isEnding = true;
        }
    }

    void Watcher::GoOn(std::string& said)
    {
        if (!said.empty())
        {
            Say(Level::Info, "it goes on, this is over: " + std::exchange(said, {}));
        }
    }

    void Watcher::Wait()
    {
        Time until = nextLook;
        const auto sooner = [&](Time time) { until = std::min(until, time); };
        if (const std::optional<Time> examination = table.NextExamination())
        {
            sooner(*examination);
        }
        for (const Over& over : unmoved)
        {
            sooner(over.next);
        }
        if (startFrom > now)
        {
            sooner(startFrom);
        }
        const bool areNoticesTaken = now >= noticesFrom;
        if (!areNoticesTaken)
        {
            sooner(noticesFrom);
        }
        const auto left = std::chrono::ceil<milliseconds>(until - std::chrono::steady_clock::now());
        std::array<pollfd, 2> files = {
            {{signals.Number(), POLLIN, 0}, {areNoticesTaken ? look.NoticeNumber() : -1, POLLIN, 0}}};
        poll(files.data(), files.size(), static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
    }
}
