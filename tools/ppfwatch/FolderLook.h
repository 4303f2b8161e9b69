// The watched folder as it is. Two things tell of changes, and both as names to look at: the system's notices, and a look
// at the whole folder by itself, without which a network folder would never say anything.
#pragma once

#include "host/Descriptor.h"
#include "ppfwatch/JobTable.h"

#include <functional>
#include <set>
#include <string>

#include <sys/types.h>

namespace PpfWatch
{
    class FolderLook : public Files
    {
    public:
        /// `thePath` is absolute.
        explicit FolderLook(std::string thePath);

        /// For poll: readable when there are notices. -1 if the system gives none.
        int NoticeNumber() const { return notices.Number(); }

        struct Notices
        {
            std::set<std::string> names; ///< that something happened to
            bool isAllUncertain = false; ///< some were lost, or the folder itself changed: look at all of it
        };

        /// Takes the notices that are there. Does not wait.
        Notices TakeNotices();

        /// Calls `seen` for each name in the folder, with a stamp if it is a regular file; notices are those of this very
        /// folder from before the first call on. An errno value if the folder cannot be read whole; 0: done.
        int List(const std::function<void(const std::string& name, std::optional<Stamp> stamp)>& seen);

        /// Opens the folder itself, to be locked. Not open: errno says why.
        Host::Descriptor Open() const;

        std::optional<Stamp> Look(const std::string& name) override;
        TiffExtent ExtentOf(const std::string& name) override;
        std::optional<JobFileNames> NamesIn(const std::string& jobFile) override;
        std::vector<std::string> FilesOfSet(const std::string& pattern) override;

        /// Absolute path of a name.
        std::string PathOf(const std::string& name) const;

    private:
        void Watch(int folder);
        std::string NameOf(const std::string& written) const;

        std::string path;
        Host::Descriptor notices;
        int watch = -1;
        dev_t device = 0; ///< of the folder that is watched
        ino_t number = 0; ///< likewise
    };
}
