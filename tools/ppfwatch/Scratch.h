// The folder for what conversions put down for a moment. Its name is always the same for the same watched folder, so that a
// watcher finds what one before it, that was killed, has left there.
#pragma once

#include <string>

namespace PpfWatch
{
    class Scratch
    {
    public:
        /// A folder below TMPDIR, else /tmp, of this user, with `mark` in its name. What is in it is removed.
        explicit Scratch(const std::string& mark);
        ~Scratch();
        Scratch(const Scratch&) = delete;
        Scratch& operator=(const Scratch&) = delete;

        /// Makes the folder if need be, open to nobody else. Throws Failure, also if there is one of somebody else's.
        void Make() const;

        /// Removes it with all that is in it, if it is this user's.
        void Remove() const noexcept;

        const std::string& Path() const { return path; }

    private:
        bool IsOurs() const noexcept;

        std::string path;
    };
}
