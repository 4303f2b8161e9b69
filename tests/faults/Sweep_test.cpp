// The programs as a person runs them, with every single call that can fail made to fail. Whatever it is: the exit status says
// what happened, a failure is one line, and what is on the disk is the older file or the whole new one.
#include "tests/faults/FaultedProgram.h"
#include "tests/faults/Scenario.h"
#include "tests/support/Folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <tuple>

namespace FaultTest
{
    namespace
    {
        /// What a call that fails says: what it might, and where the programs tell errors apart, another than they expect.
        int ErrorOf(const std::string& call)
        {
            static const std::map<std::string, int> errors = {
                {"allocation", ENOMEM},   {"fchmod", EPERM},          {"fchown", EPERM},      {"fcntl", EMFILE},
                {"fork", EAGAIN},         {"getcwd", ENOENT},         {"getentropy", ENOSYS}, {"mkdir", EROFS},
                {"mmap", ENOMEM},         {"open", EMFILE},           {"openat", EDQUOT},     {"pipe2", EMFILE},
                {"posix_spawnp", EAGAIN}, {"pthread_create", EAGAIN}, {"rename", EBUSY},      {"renameat", EBUSY},
                {"renameat2", EBUSY},     {"stat", EACCES},           {"write", ENOSPC},      {"writev", ENOSPC}};
            const auto found = errors.find(call);
            return found == errors.end() ? EIO : found->second;
        }

        class Sweep : public testing::TestWithParam<Program>
        {
        protected:
            Sweep()
            {
                // What is copied finds the scripts beside it.
                Fill(helpers.Path(), GetParam().helpers);
                for (const auto& [name, script] : GetParam().helpers)
                {
                    std::filesystem::permissions(helpers / name, std::filesystem::perms::owner_all);
                }
                std::filesystem::copy_file(PROGRAMS "/" + GetParam().name, helpers / GetParam().name);
            }

            /// Runs with `fault` at each call of those names, and what is true of all of them in it. Where nothing tells two
            /// calls apart, as in two scenarios that begin alike, one of them fails.
            template <class IsMeant>
            void SweepOver(Fault fault, IsMeant isMeant)
            {
                std::set<std::tuple<std::string, std::uint64_t, long>> done;
                for (const Scenario& next : GetParam().scenarios)
                {
                    scenario = next;
                    const std::vector<Call> calls = Prepare();
                    std::map<std::string, long> numbers;
                    std::map<std::pair<std::string, std::uint64_t>, long> turns;
                    for (const Call& call : calls)
                    {
                        const long number = ++numbers[call.name];
                        const long turn = ++turns[{call.name, call.stack}];
                        // Where all fail it is the first turn that tells.
                        if (isMeant(call.name) && (turn == 1 || !fault.withAllAfter) &&
                            done.insert({call.name, call.stack, turn}).second)
                        {
                            fault.call = call.name;
                            fault.number = number;
                            RunWith(fault);
                        }
                    }
                }
            }

            /// Runs the scenario with nothing failing; gives the calls that it makes.
            std::vector<Call> Prepare()
            {
                program.emplace(helpers / GetParam().name, scenario.arguments, folder.Path(), scenario.input);
                Fill(folder.Path(), scenario.files);
                auto [outcome, calls] = program->Record();
                good = outcome;
                filesOfGood = TestSupport::Folder::FilesIn(folder.Path());
                EXPECT_EQ(good.status, scenario.status) << scenario.name << ": " << good.errors;
                return calls;
            }

            void RunWith(Fault fault)
            {
                if (fault.error == 0 && !fault.isShort)
                {
                    fault.error = ErrorOf(fault.call);
                }
                Fill(folder.Path(), scenario.files);
                const Outcome outcome = program->Run(fault);
                const std::string wrong = WhatIsWrong(outcome, fault);
                if (!wrong.empty())
                {
                    ADD_FAILURE() << scenario.name << ", " << fault.call << " number " << fault.number
                                  << (fault.withAllAfter ? " and all after it" : "") << (fault.isShort ? ", short" : "")
                                  << ": " << wrong << "\nstatus " << outcome.status << ", errors: " << outcome.errors
                                  << outcome.stack;
                }
            }

            std::string WhatIsWrong(const Outcome& outcome, const Fault& fault)
            {
                if (outcome.signal != 0)
                {
                    return "ended by signal " + std::to_string(outcome.signal);
                }
                if (GetParam().isMadeGoodByTheNext && good.status != 2)
                {
                    return WhatIsWrongInTheEnd(outcome, fault);
                }
                if (outcome.status == 0 && good.status == 0)
                {
                    // What --verbose says may be less than it would be, and nothing else.
                    // CLI11 composes the text of --help on a stream that swallows a single want of memory.
                    const bool isHelp = scenario.name == "help" && fault.call == "allocation" && !fault.withAllAfter;
                    const bool isWhole = (outcome.out == good.out || isHelp) && FilesAfter(fault) == filesOfGood;
                    return isWhole ? "" : "success without the whole result";
                }
                // Where paths stand relative to, which files a set has and what is to be done are parts of the order.
                const bool isOrder = outcome.errors.find("the job file cannot be read") != std::string::npos ||
                                     outcome.errors.find("--back-set: ") != std::string::npos ||
                                     outcome.errors.find("the current folder cannot be found") != std::string::npos;
                if (outcome.status != 1 && outcome.status != (isOrder ? 2 : good.status))
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
                return WrongFile(fault);
            }

            /// One line says what failed; the others are what --verbose says of sheets, as far as it is known.
            std::string WrongLine(const std::string& errors, const Fault& fault) const
            {
                const std::string start = GetParam().name + ": error: ";
                std::istringstream lines(errors);
                int count = 0;
                for (std::string line; std::getline(lines, line);)
                {
                    const bool isError = line.compare(0, start.size(), start) == 0;
                    count += isError ? 1 : 0;
                    if (!isError && line.rfind("sheet ", 0) != 0)
                    {
                        return "another line than an error";
                    }
                }
                // Findings are on standard output, and the line itself may be what cannot be written.
                const bool isFinding = good.status == 1 && good.errors.empty() && errors.empty();
                const bool isUnwritten = fault.call == "write" && errors.empty();
                return count == 1 || isFinding || isUnwritten ? "" : "not one line that says what failed";
            }

            /// What cannot be removed stays.
            Files FilesAfter(const Fault& fault) const
            {
                Files files = TestSupport::Folder::FilesIn(folder.Path());
                for (auto next = files.begin(); next != files.end();)
                {
                    const bool isTemporary = next->first.find("sheetvane-") <= 1;
                    next = isTemporary && fault.call == "unlinkat" ? files.erase(next) : std::next(next);
                }
                return files;
            }

            std::string WrongFile(const Fault& fault) const
            {
                const Files files = FilesAfter(fault);
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

            /// The job is converted or failed, here or when the program runs again, and none of its files is lost.
            std::string WhatIsWrongInTheEnd(const Outcome& outcome, const Fault& fault)
            {
                const bool isError = outcome.errors.find(GetParam().name + ": error: ") != std::string::npos ||
                                     outcome.errors.find("<3>") != std::string::npos || fault.call == "write";
                if (outcome.status != 0 && !isError)
                {
                    return "no line that says what failed";
                }
                program->Run({});
                return Settled(TestSupport::Folder::FilesIn(folder.Path())) == Settled(filesOfGood)
                           ? ""
                           : "not made good by the next run";
            }

            /// The files with the job's in one place, whether it is done or failed; it is either, or nothing is settled.
            static Files Settled(Files files)
            {
                const auto result = files.find("out/J.ppf");
                const bool isFailed = files.erase("failed/J/error.txt") != 0;
                const bool isDone = !isFailed && result != files.end() && result->second == "whole\n";
                files.erase("out/J.ppf"); // a job also fails where its result may not outlive a power cut
                Files settled;
                for (const auto& [name, bytes] : files)
                {
                    const bool isInDone = isDone && name.compare(0, 6, "done/J") == 0;
                    const bool isInFailed = isFailed && name.compare(0, 8, "failed/J") == 0;
                    settled.insert({isInDone || isInFailed ? name.substr(name.find('J')) : name, bytes});
                }
                return settled;
            }

            TestSupport::Folder folder;
            TestSupport::Folder helpers;
            Scenario scenario;
            std::optional<FaultedProgram> program;
            Outcome good;
            Files filesOfGood;
        };

        std::string NameOf(const testing::TestParamInfo<Program>& program)
        {
            return program.param.name;
        }
    }

    INSTANTIATE_TEST_SUITE_P(, Sweep, testing::ValuesIn(Programs()), NameOf);

    TEST_P(Sweep, AnyAllocationThatFails)
    {
        SweepOver({}, [](const std::string& call) { return call == "allocation"; });
    }

    TEST_P(Sweep, MemoryThatIsExhausted)
    {
        Fault fault;
        fault.withAllAfter = true;
        SweepOver(fault, [](const std::string& call) { return call == "allocation"; });
    }

    bool IsSystemCall(const std::string& call)
    {
        return call != "allocation";
    }

    TEST_P(Sweep, AnySystemCallThatFails)
    {
        SweepOver({}, IsSystemCall);
    }

    TEST_P(Sweep, SystemCallsThatFailFromOneOn)
    {
        Fault fault;
        fault.withAllAfter = true;
        // A folder that never says what is in it is waited for.
        SweepOver(fault, [](const std::string& call) { return IsSystemCall(call) && call != "fstatat"; });
    }

    TEST_P(Sweep, ReadingAndWritingThatIsShortOrInterrupted)
    {
        Fault interrupted;
        interrupted.error = EINTR;
        SweepOver(
            interrupted,
            [](const std::string& call)
            {
                static const std::set<std::string> calls = {"fsync", "open", "openat", "poll",
                                                            "pread", "read", "write",  "writev"};
                return calls.count(call) != 0;
            });
        Fault shortened;
        shortened.isShort = true;
        SweepOver(
            shortened, [](const std::string& call)
            { return call == "pread" || call == "read" || call == "write" || call == "writev"; });
    }
}
