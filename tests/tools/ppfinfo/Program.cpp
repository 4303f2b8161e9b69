#include "tests/tools/ppfinfo/Program.h"

#include "host/Descriptor.h"
#include "host/Text.h"
#include "ppfinfo/Options.h"
#include "ppfinfo/Run.h"

#include <gtest/gtest.h>
#include <png.h>

#include <filesystem>

#include <sys/mman.h>
#include <unistd.h>

namespace PpfInfoTest
{
    using namespace PpfInfo;

    namespace
    {
        Host::ExitStatus Run(const std::vector<std::string>& arguments, int output, std::string& answer)
        {
            std::vector<const char*> argv = {"ppfinfo"};
            for (const std::string& argument : arguments)
            {
                argv.push_back(argument.c_str());
            }
            const CommandLine line = ReadCommandLine(static_cast<int>(argv.size()), argv.data());
            if (!line.answer.empty())
            {
                answer = line.answer;
                return Host::ExitDone;
            }
            Host::DescriptorStream out(output);
            return PpfInfo::Run(line.options, out);
        }
    }

    Outcome RunWith(const std::vector<std::string>& arguments)
    {
        const Host::Descriptor output(memfd_create("standard output", MFD_CLOEXEC));
        Outcome outcome;
        std::string answer;
        try
        {
            outcome.status = Run(arguments, output.Number(), answer);
        }
        catch (const Host::UsageError& error)
        {
            outcome.status = Host::ExitUsage;
            outcome.error = Host::OneLine(error.what());
        }
        catch (const std::exception& error)
        {
            outcome.status = Host::ExitFailed;
            outcome.error = Host::OneLine(error.what());
        }
        outcome.out = answer + Folder::BytesOf("/proc/self/fd/" + std::to_string(output.Number()));
        return outcome;
    }

    Outcome RunOn(const std::string& bytes, std::vector<std::string> arguments)
    {
        const Folder folder;
        folder.Write("job.ppf", bytes);
        arguments.emplace_back("job.ppf");
        const std::filesystem::path before = std::filesystem::current_path();
        std::filesystem::current_path(folder.Path());
        Outcome outcome = RunWith(arguments);
        std::filesystem::current_path(before);
        return outcome;
    }

    std::string ReportOf(const std::string& bytes, std::vector<std::string> arguments, int status)
    {
        const Folder folder;
        arguments.insert(arguments.end(), {"--report", folder / "r.html"});
        const Outcome outcome = RunOn(bytes, arguments);
        EXPECT_EQ(outcome.status, status) << outcome.error;
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"r.html"});
        return folder.Read("r.html");
    }

    std::vector<unsigned char> SamplesOf(const std::string& png, unsigned format)
    {
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        EXPECT_TRUE(png_image_begin_read_from_memory(&image, png.data(), png.size()));
        image.format = format;
        std::vector<unsigned char> samples(PNG_IMAGE_SIZE(image));
        EXPECT_TRUE(png_image_finish_read(&image, nullptr, samples.data(), 0, nullptr));
        return samples;
    }
}
