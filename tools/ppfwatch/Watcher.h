// The watcher of one folder: here what is seen, what is known and what is done meet, in one loop on one thread.
#pragma once

#include "host/Descriptor.h"
#include "ppfwatch/Config.h"
#include "ppfwatch/Conversion.h"
#include "ppfwatch/Delivery.h"
#include "ppfwatch/FolderLook.h"
#include "ppfwatch/JobTable.h"
#include "ppfwatch/Log.h"
#include "ppfwatch/Scratch.h"
#include "ppfwatch/SignalQueue.h"

#include <list>
#include <optional>
#include <string>

namespace PpfWatch
{
    class Watcher
    {
    public:
        enum class End
        {
            Asked,     ///< by a signal or --once
            NewConfig, ///< there is another configuration: see NewConfig()
        };

        struct Settings
        {
            std::string configPath; ///< to be read again
            std::string programs;   ///< folder of the programs that convert
            bool once;
        };

        /// Makes missing folders, locks `in`, and puts in order what an earlier run has left. Throws Failure, also if another
        /// process watches `in`.
        Watcher(const Config& theConfig, Settings theSettings, const Log& theLog, const SignalQueue& theSignals);

        /// Watches until it is asked to end; what is being converted then is finished. Throws Failure.
        End Run();

        /// After Run: the configuration that a signal asked for.
        const Config& NewConfig() const { return *newConfig; }

        /// Whether a job has failed, or could not be dealt with.
        bool HasFailed() const { return hasFailed; }

    private:
        struct Running
        {
            Order order;
            std::string result;
            Conversion conversion;
        };
        /// A job that is over but for the moving of its sources.
        struct Over
        {
            Order order;
            std::string error;   ///< empty: it is done
            std::string trouble; ///< that kept its sources from being moved, as it was said
            Time next;           ///< when they are to be moved
        };

        void Lock();
        void TakeSignals();
        void LookAtAll();
        void LookAtNotices();
        void StartConversions();
        void Start(Order order);
        void FinishConversions();
        void Finish(const Running& running);
        std::string Publish(const Running& done);
        void MoveSources(Over over);
        void MoveUnmoved();
        bool HaveSourcesChanged(const Order& order);
        void Trouble(const std::string& what, std::string& said);
        void GoOn(std::string& said);
        bool IsOver() const;
        void Wait();
        void Say(Level level, const std::string& event) const { log.Say(level, event); }

        Config config;
        Settings settings;
        const Log& log;
        const SignalQueue& signals;
        FolderLook look;
        Host::Descriptor lock;
        std::string mark; ///< of `in`, in the names of folders that only this watcher uses
        Delivery delivery;
        Scratch scratch;
        JobTable table;
        std::list<Running> running;
        std::list<Over> unmoved;
        std::optional<Config> newConfig;
        Time now;
        Time nextLook;           ///< at all of the folder
        Time noticesFrom;        ///< none are taken before
        Time startFrom;          ///< nothing is started before
        std::string lookTrouble; ///< what keeps the folder from being looked at, as it was said; empty: nothing
        std::string jobTrouble;  ///< likewise, jobs from being converted or delivered
        bool isEnding = false;
        bool hasFailed = false;
    };
}
