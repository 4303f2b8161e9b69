// One conversion, in a process of its own.
//
// The programs that stand beside this one do the work, rather than a fork of this process that calls the library: a fork
// would have to carry the library, all the formats it reads and a copy of the watcher's memory; a watcher that runs for
// months goes on with the programs as they are after an upgrade; PDFs need a program anyhow; and what a job is told when it
// fails is then to the letter what the program would have said. Starting a program costs a few milliseconds, less than
// bringing its result to the disk. Whatever becomes of it, a crash or a hostile TIFF that takes all memory, the watcher
// sees an exit status.
#pragma once

#include "host/Descriptor.h"
#include "ppfwatch/JobDescription.h"

#include <string>

#include <sys/types.h>

namespace PpfWatch
{
    /// Where conversions take place.
    struct Workplace
    {
        std::string programs;  ///< folder of the converting programs
        std::string in;        ///< they run here, so that names of sources are relative to it
        std::string temporary; ///< folder for their temporary files
    };

    class Conversion
    {
    public:
        /// Starts it; it writes `result`, an absolute path. It outlives neither this process nor, as it is in a group of its
        /// own, ends by a terminal's interrupt. Throws Failure if the system gives no process; a program that is not there
        /// is a conversion that fails.
        Conversion(const JobDescription& job, const std::string& result, const Workplace& place);
        ~Conversion() = default;
        Conversion(Conversion&&) = default;
        Conversion& operator=(Conversion&&) = default;

        /// Whether it has ended. Does not wait.
        bool HasEnded();

        /// After its end: whether there is a result.
        bool IsDone() const;

        /// After its end without a result: the line that the program said, or what has to be said in its place.
        std::string ErrorLine() const;

    private:
        std::string program;
        Host::Descriptor said; ///< what it wrote to standard error
        pid_t process = -1;
        int status = 0;
        bool hasEnded = false;
    };
}
