#include "ppfwatch/Log.h"

#include "host/Descriptor.h"
#include "host/Text.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <tuple>

namespace PpfWatch
{
    namespace
    {
        /// Room for what is wrong and for two of the longest paths.
        constexpr std::size_t MaxLineBytes = 10000;

        std::string TimeNow()
        {
            const std::time_t now = std::time(nullptr);
            std::tm local = {};
            localtime_r(&now, &local);
            std::array<char, 64> text{};
            return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S%z ", &local)};
        }
    }

    Log::Form Log::FormOfEnvironment()
    {
        const bool isService = std::getenv("JOURNAL_STREAM") != nullptr && std::getenv("INVOCATION_ID") != nullptr;
        return isService ? Form::Journal : Form::Timed;
    }

    Log::Log(int theFile, Form theForm)
        : file(theFile)
        , form(theForm)
    {
    }

    void Log::Say(Level level, std::string_view event) const
    {
        const std::string head =
            form == Form::Journal ? '<' + std::to_string(static_cast<int>(level)) + '>' : TimeNow();
        const std::string line = head + Host::OneLine(Host::Shortened(event, MaxLineBytes)) + '\n';
        std::ignore = Host::WriteAll(file, line.data(), line.size());
    }
}
