// A program that is run again and again with the same arguments, each time with another of its calls made to fail.
#pragma once

#include "tests/faults/Order.h"

#include <cstdint>
#include <string>
#include <utility>
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
        std::string stack; ///< at the call that failed: "module(function+offset)" per line, innermost first
    };

    /// A call of the system or an allocation that the program makes.
    struct Call
    {
        std::string name;    ///< as in Fault
        std::uint64_t stack; ///< the same for the same stack, of all runs of a program
    };

    class FaultedProgram
    {
    public:
        /// The program at `path`, in `folder`, where it finds TMPDIR too, with `input` on standard input. What it starts
        /// itself is looked for beside it first. Throws std::system_error.
        FaultedProgram(
            const std::string& path, const std::vector<std::string>& arguments, const std::string& folder,
            const std::string& input);
        ~FaultedProgram();
        FaultedProgram(const FaultedProgram&) = delete;
        FaultedProgram& operator=(const FaultedProgram&) = delete;

        Outcome Run(const Fault& fault);

        /// Runs it with nothing failing; gives the calls in their order, too.
        std::pair<Outcome, std::vector<Call>> Record();

    private:
        Outcome RunOrdered();

        int input;
        int output;
        int errors;
        int stack;
        int commands;
        SharedMemory* shared;
        long process;
    };
}
