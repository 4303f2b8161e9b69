// What the sweep runs again and again: the programs, their arguments, and the folder that they work in.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace FaultTest
{
    /// What is in a folder, as TestSupport::Folder::FilesIn has it.
    using Files = std::map<std::string, std::string>;

    struct Scenario
    {
        std::string name;
        int status; ///< with which the program ends if nothing fails
        std::vector<std::string> arguments;
        Files files;            ///< in the folder before the run
        std::string input = ""; ///< what is on standard input
    };

    /// A program and all that it is run with.
    struct Program
    {
        std::string name;
        std::vector<Scenario> scenarios;
        Files helpers = {}; ///< scripts that stand in the place of what it starts

        /// It may end anywhere and leave what it has begun; the next run brings that to its end.
        bool isMadeGoodByTheNext = false;
    };

    std::vector<Program> Programs();

    std::ostream& operator<<(std::ostream& out, const Program& program);

    /// Empties `folder` and puts `files` there.
    void Fill(const std::string& folder, const Files& files);
}
