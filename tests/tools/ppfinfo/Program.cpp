#include "tests/tools/ppfinfo/Program.h"

#include "ppfinfo/Options.h"
#include "ppfinfo/Run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <unistd.h>

namespace PpfInfo::Test
{
    Folder::Folder()
        : path(testing::TempDir() + "ppfinfo-XXXXXX")
    {
        EXPECT_NE(mkdtemp(path.data()), nullptr);
    }

    Folder::~Folder()
    {
        std::filesystem::remove_all(path);
    }

    std::string Folder::Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    std::string Folder::Read(const std::string& name) const
    {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::vector<std::string> Folder::Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
        {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    Outcome RunWith(const std::vector<std::string>& arguments)
    {
        std::vector<const char*> argv = {"ppfinfo"};
        for (const std::string& argument : arguments)
        {
            argv.push_back(argument.c_str());
        }
        const CommandLine line = ReadCommandLine(static_cast<int>(argv.size()), argv.data());
        if (line.outcome == CommandLine::Outcome::Answer)
        {
            return {0, line.text, ""};
        }
        if (line.outcome == CommandLine::Outcome::UsageError)
        {
            return {UsageError, "", line.text};
        }
        std::ostringstream out;
        std::ostringstream errors;
        const int status = PpfInfo::Run(line.options, out, errors);
        return {status, out.str(), errors.str()};
    }

    Outcome RunOn(const std::string& bytes, std::vector<std::string> arguments)
    {
        const Folder folder;
        const std::string file = folder.Write("job.ppf", bytes);
        arguments.push_back(file);
        Outcome outcome = RunWith(arguments);
        // The folder's name is another in each run.
        for (std::string* text : {&outcome.out, &outcome.errors})
        {
            for (std::size_t at = text->find(file); at != std::string::npos; at = text->find(file))
            {
                text->replace(at, file.size(), "job.ppf");
            }
        }
        return outcome;
    }
}
