// The programs as a person runs them, with every single call that can fail made to fail. Whatever it is: the exit status says
// what happened, a failure is one line, and what is on the disk is the older file or the whole new one.
#include "tests/faults/FaultedProgram.h"
#include "tests/faults/Scenario.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <sstream>

namespace FaultTest
{
    namespace
    {
        class Sweep : public testing::TestWithParam<Scenario>
        {
        protected:
            Sweep()
                : program(
                      scenario.program == "tiff2ppf" ? TIFF2PPF_PROGRAM : PPFINFO_PROGRAM, scenario.arguments,
                      folder.Path(), scenario.input)
            {
                good = Run({});
                filesOfGood = FilesIn(folder.Path());
                EXPECT_EQ(good.status, scenario.status) << good.errors;
            }

            Outcome Run(const Fault& fault)
            {
                for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
                {
                    std::filesystem::remove_all(entry);
                }
                for (const auto& [name, bytes] : scenario.files)
                {
                    folder.Write(name, bytes);
                }
                return program.Run(fault);
            }

            /// Runs with the first call of `call` that fails, the second and so on, up to the last there is.
            void SweepOver(Fault fault)
            {
                for (fault.number = 1;; ++fault.number)
                {
                    const Outcome outcome = Run(fault);
                    if (!outcome.hasFaultHappened)
                    {
                        break;
                    }
                    const std::string wrong = WhatIsWrong(outcome, fault);
                    if (!wrong.empty())
                    {
                        ADD_FAILURE() << fault.call << " number " << fault.number
                                      << (fault.withAllAfter ? " and all after it" : "")
                                      << (fault.isShort ? ", short" : "") << ": " << wrong << "\nstatus "
                                      << outcome.status << ", errors: " << outcome.errors << outcome.stack;
                    }
                }
            }

            std::string WhatIsWrong(const Outcome& outcome, const Fault& fault) const
            {
                if (outcome.signal != 0)
                {
                    return "ended by signal " + std::to_string(outcome.signal);
                }
                if (outcome.status == 0 && good.status == 0)
                {
                    // What --verbose says may be less than it would be, and nothing else.
                    // CLI11 composes the text of --help on a stream that swallows a single want of memory.
                    const bool isHelp = scenario.name == "Help" && fault.call == "allocation" && !fault.withAllAfter;
                    const bool isWhole = (outcome.out == good.out || isHelp) && FilesIn(folder.Path()) == filesOfGood;
                    return isWhole ? "" : "success without the whole result";
                }
                const bool isJobFile = outcome.errors.find("the job file cannot be read") != std::string::npos;
                if (outcome.status != 1 && outcome.status != (isJobFile ? 2 : good.status))
                {
                    return "another exit status";
                }
                if (fault.error == EINTR || fault.isShort)
                {
                    return outcome.status == good.status ? "" : "a failure that need not be";
                }
                if (const std::string lines = WrongLine(outcome.errors, fault); !lines.empty())
                {
                    return lines;
                }
                if (good.out.compare(0, outcome.out.size(), outcome.out) != 0)
                {
                    return "something else on standard output";
                }
                return WrongFile();
            }

            /// One line says what failed; the others are what --verbose says in any case.
            std::string WrongLine(const std::string& errors, const Fault& fault) const
            {
                const std::string start = scenario.program + ": error: ";
                std::istringstream lines(errors);
                int count = 0;
                for (std::string line; std::getline(lines, line);)
                {
                    const bool isError = line.compare(0, start.size(), start) == 0;
                    count += isError ? 1 : 0;
                    if (!isError && good.errors.find(line + '\n') == std::string::npos)
                    {
                        return "another line than an error";
                    }
                }
                // Findings are on standard output, and the line itself may be what cannot be written.
                const bool isFinding = good.status == 1 && good.errors.empty() && errors.empty();
                const bool isUnwritten = fault.call == "write" && errors.empty();
                return count == 1 || isFinding || isUnwritten ? "" : "not one line that says what failed";
            }

            std::string WrongFile() const
            {
                const Files files = FilesIn(folder.Path());
                for (const auto& [name, bytes] : files)
                {
                    const auto before = scenario.files.find(name);
                    const auto after = filesOfGood.find(name);
                    const bool isBefore = before != scenario.files.end() && before->second == bytes;
                    const bool isAfter = after != filesOfGood.end() && after->second == bytes;
                    if (!isBefore && !isAfter)
                    {
                        return "left behind: " + name;
                    }
                }
                for (const auto& [name, bytes] : scenario.files)
                {
                    if (files.count(name) == 0)
                    {
                        return "lost: " + name;
                    }
                }
                return {};
            }

            Scenario scenario = GetParam();
            TestSupport::Folder folder;
            FaultedProgram program;
            Outcome good;
            Files filesOfGood;
        };

        std::string NameOf(const testing::TestParamInfo<Scenario>& scenario)
        {
            return scenario.param.program + scenario.param.name;
        }
    }

    INSTANTIATE_TEST_SUITE_P(, Sweep, testing::ValuesIn(Scenarios()), NameOf);

    TEST_P(Sweep, AnyAllocationThatFails)
    {
        SweepOver({"allocation", 1, false, ENOMEM});
    }

    TEST_P(Sweep, MemoryThatIsExhausted)
    {
        SweepOver({"allocation", 1, true, ENOMEM});
    }

    TEST_P(Sweep, AnySystemCallThatFails)
    {
        const std::pair<const char*, int> errors[] = {
            {"access", EIO},   {"close", EIO},    {"fchmod", EPERM},  {"fchown", EPERM},      {"fcntl", EMFILE},
            {"fstat", EIO},    {"fsync", EIO},    {"ftruncate", EIO}, {"getentropy", ENOSYS}, {"lseek", EIO},
            {"lstat", EIO},    {"mkdir", EROFS},  {"mmap", ENOMEM},   {"open", EMFILE},       {"openat", EDQUOT},
            {"pread", EIO},    {"read", EIO},     {"rename", EBUSY},  {"renameat", EBUSY},    {"stat", EACCES},
            {"write", ENOSPC}, {"writev", ENOSPC}};
        for (const auto& [call, error] : errors)
        {
            SweepOver({call, 1, false, error});
        }
    }

    TEST_P(Sweep, ReadingAndWritingThatIsShortOrInterrupted)
    {
        for (const char* call : {"pread", "read", "write", "writev"})
        {
            SweepOver({call, 1, false, EINTR});
            SweepOver({call, 1, false, 0, true});
        }
        for (const char* call : {"fsync", "open", "openat"})
        {
            SweepOver({call, 1, false, EINTR});
        }
    }
}
