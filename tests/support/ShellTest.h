// Runs of a built program as a shell sees them: exit status, what it says where, and what it leaves behind.
#pragma once

#include "tests/support/Folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace TestSupport
{
    class ShellTest : public ::testing::Test
    {
    protected:
        /// `theProgram`: the path of the program that commands call by its name.
        explicit ShellTest(std::string theProgram)
            : program(std::move(theProgram))
        {
        }

        /// Runs `commands` in a shell, in `folder`, with $jobs and $said for those folders; variables are not split. Gives
        /// the exit status, -1 if a signal ended the shell. Whatever it is, nothing may be left in TMPDIR.
        int Run(const std::string& commands) const;

        /// Starts the program alone, in the same surroundings; what it says comes after what others have said in Error().
        pid_t Start(const std::vector<std::string>& arguments) const;

        /// Sends `signal`, unless it is 0, to such a process and waits for its end; gives the exit status, or the negative of
        /// the signal that ended it.
        static int End(pid_t process, int signal);

        std::string Out() const { return said.Read("out"); }
        std::string Error() const { return said.Read("error"); }

        /// Puts a program of this shell text in the place of `name` for what runs from now on.
        void StandIn(const std::string& name, const std::string& script) const;

        Folder folder;    ///< the current one
        Folder jobs;      ///< for what a command reads from elsewhere
        Folder temporary; ///< TMPDIR
        Folder said;
        Folder programs; ///< first on the PATH
        std::string program;
    };

    /// Waits until it is so, but not for ever; gives whether it is.
    bool Until(const std::function<bool()>& isSo);
}
