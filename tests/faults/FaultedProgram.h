// A program that is run again and again with the same arguments, each time with another of its calls made to fail.
#pragma once

#include "tests/faults/Order.h"

#include <string>
#include <vector>

namespace FaultTest
{
    /// What is to fail in a run.
    struct Fault
    {
        std::string call; ///< "allocation" or the name of a system call; empty: nothing fails
        long number = 1;
        bool withAllAfter = false;
        int error = 0;
        bool isShort = false;
    };

    struct Outcome
    {
        bool hasFaultHappened;
        int signal; ///< that ended the process; 0 if none did
        int status; ///< the exit status if none did
        std::string out;
        std::string errors;
        std::string stack; ///< at the call that failed: "module+offset" per line, innermost first
    };

    class FaultedProgram
    {
    public:
        /// The program at `path`, in `folder`, where it finds TMPDIR too, with `input` on standard input. Throws
        /// std::system_error.
        FaultedProgram(
            const std::string& path, const std::vector<std::string>& arguments, const std::string& folder,
            const std::string& input);
        ~FaultedProgram();
        FaultedProgram(const FaultedProgram&) = delete;
        FaultedProgram& operator=(const FaultedProgram&) = delete;

        Outcome Run(const Fault& fault);

    private:
        std::string StackOf() const;

        int input;
        int output;
        int errors;
        int commands;
        Order* order;
        long process;
    };
}
