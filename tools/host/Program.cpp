#include "host/Program.h"

#include "host/Descriptor.h"
#include "host/Signals.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <new>
#include <tuple>

#include <fcntl.h>
#include <unistd.h>

namespace Host
{
    namespace
    {
        /// Enough for what is wrong and for two of the longest paths; what is left out stands in the middle.
        constexpr std::size_t MaxLineBytes = 10000;

        const char* programName = "";

        /// A descriptor that the program was started without would become that of the first file it opens, and what is
        /// meant for a person would go there. In its place comes one that can be neither read nor written for good.
        void OpenStandardDescriptors()
        {
            for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number)
            {
                if (fcntl(number, F_GETFD) == -1 && errno == EBADF)
                {
                    std::ignore = open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY);
                }
            }
        }
    }

    const char* ProgramName() noexcept
    {
        return programName;
    }

    void SayPlainly(const char* text) noexcept
    {
        std::array<char, 256> line{};
        std::size_t size = 0;
        for (const char* part : {programName, ": error: ", text, "\n"})
        {
            const std::size_t length = std::min(std::strlen(part), line.size() - size);
            std::memcpy(line.data() + size, part, length);
            size += length;
        }
        std::ignore = WriteAll(STDERR_FILENO, line.data(), size);
    }

    void SayError(std::string_view text) noexcept
    {
        try
        {
            const std::string line =
                std::string(programName) + ": error: " + OneLine(Shortened(text, MaxLineBytes)) + '\n';
            std::ignore = WriteAll(STDERR_FILENO, line.data(), line.size());
        }
        catch (const std::exception&)
        {
            SayPlainly("memory is exhausted");
        }
    }

    ExitStatus RunProgram(
        const char* name, int argc, const char* const* argv, ExitStatus (*work)(int, const char* const*)) noexcept
    {
        programName = name;
        OpenStandardDescriptors();
        HandleSignals();
        try
        {
            return work(argc, argv);
        }
        catch (const UsageError& error)
        {
            SayError(error.what());
            return ExitUsage;
        }
        catch (const std::bad_alloc&)
        {
            SayPlainly("memory is exhausted");
        }
        catch (const std::exception& error)
        {
            SayError(error.what());
        }
        return ExitFailed;
    }

    void Answer(const std::string& text)
    {
        if (!WriteAll(STDOUT_FILENO, text.data(), text.size()))
        {
            throw Failure("standard output cannot be written: " + SystemText(errno));
        }
    }
}
