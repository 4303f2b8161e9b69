// How a result and its sources come to where they belong, so that a stop at any moment, by a signal or a power cut, loses
// nothing and leaves nothing.
//
// The folders are the only state. What happens to a job, in this order:
//
//   1. The result is written in a hidden folder in `out`, on the file system of its place. Its content is brought to the disk.
//   2. It is renamed to out/JOB.ppf: whole, in one step. `out` is brought to the disk. Not before this may a source move, as
//      from now on only the result stands for the job.
//   3. Each source moves to a hidden folder in `done`. Across file systems it is copied, brought to the disk there, given its
//      name, and only then unlinked in `in`: at any moment a whole one is there. (A failed job has no 1 and 2, goes to
//      `failed`, and has error.txt among its files.)
//   4. The hidden folder and `in` are brought to the disk. Not before that may it get its name, as else a power cut could show
//      a delivered job and a source of it, which would be taken for a job of its own.
//   5. The hidden folder is renamed to done/JOB: in one step the job is over. `done` is brought to the disk.
//
// What a start finds says how far the last run came. A hidden folder in `out`: before 2; it is removed, the sources are all
// in `in`, and the job runs anew. A hidden folder in `done` or `failed`: between 3 and 5; its sources go back to `in`, where
// the rest of them is, and the job runs anew: converting twice gives the same result in the same place, while half of the
// sources would give a wrong one. Neither: before 1 or after 5. Between 2 and 3 the job runs anew, too.
#pragma once

#include "ppfwatch/JobTable.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace PpfWatch
{
    class Delivery
    {
    public:
        /// Absolute paths of folders that are there.
        struct Folders
        {
            std::string in;
            std::string out;
            std::string done;
            std::string failed;
        };
        using Say = std::function<void(Level, const std::string&)>;

        /// The hidden folders are called by `theMark`, which no other watcher of the same `out`, `done` or `failed` has.
        Delivery(Folders theFolders, const std::string& theMark, Say theSay);

        /// Removes what a run that was stopped has left, and takes half-moved sources back. To be called before the first look
        /// at `in`. Throws Failure.
        void Recover();

        /// Brings half-moved sources back to `in`. To be tried again after a move that threw Failure, as that may have come
        /// from a folder that was gone. Throws Failure.
        void TakeBack() const;

        /// A path for a result, for Publish or to be unlinked. The folder is made if need be: throws Failure.
        std::string NewResult();

        /// An obstacle to writing results that is none of any job's: an unreachable folder, a full disk. Empty: none.
        std::string Obstacle() const;

        /// Step 1 from when it is written, and 2: `result` becomes out/JOB.ppf. Throws Failure.
        void Publish(const std::string& result, const std::string& job) const;

        /// Steps 3 to 5 for a job that is done, and for one that has failed with the line `error`. Gives the folder where the
        /// sources are now. Throws Changed if a source is no longer what it was, and Failure; then they all are where they
        /// were, or will be by TakeBack.
        std::string MoveToDone(const std::string& job, const std::vector<Order::Source>& sources) const;
        std::string
        MoveToFailed(const std::string& job, const std::vector<Order::Source>& sources, const std::string& error) const;

        /// Takes away the hidden folder in `out` when nothing is converted.
        void TidyOut() const;

        /// A source is no longer what was converted.
        class Changed : public std::runtime_error
        {
        public:
            using std::runtime_error::runtime_error;
        };

    private:
        std::string MoveTo(
            const std::string& folder, const std::string& job, const std::vector<Order::Source>& sources,
            const std::string& error) const;
        std::string Move(
            const std::string& folder, const std::string& job, const std::vector<Order::Source>& sources,
            const std::string& error) const;
        void TakeBackFrom(const std::string& folder) const;
        void TakeBackJob(const std::string& folder, const std::string& hidden, const std::string& job) const;
        std::string Settle(const std::string& folder, const std::string& hidden, const std::string& job) const;

        Folders folders;
        std::string hiddenName;
        Say say;
        unsigned results = 0; ///< names given
    };
}
