#include "host/ProgramOptions.h"

#include <algorithm>
#include <memory>

namespace Host
{
    namespace
    {
        /// Help with a usage of our own: the parser knows nothing of what the order of the options means.
        class HelpFormatter : public CLI::Formatter
        {
        public:
            explicit HelpFormatter(const std::string& theUsage)
                : usage(theUsage)
            {
            }
            std::string make_usage(const CLI::App*, std::string) const override { return usage; }

        private:
            std::string usage;
        };
    }

    ProgramOptions::ProgramOptions(
        const std::string& theName, const std::string& version, const std::string& description,
        const std::string& usage, const std::string& footer)
        : name(theName)
        , app(description, theName)
    {
        app.formatter(std::make_shared<HelpFormatter>(usage));
        app.footer(footer);
        app.set_help_flag("-h,--help", "Print this text and end");
        app.set_version_flag("--version", name + ' ' + version, "Print the version and end");
    }

    CLI::Option* ProgramOptions::Add(const std::string& option, const std::string& form, const std::string& description)
    {
        if (option.front() == '-')
        {
            valueOptions.push_back(option);
        }
        return app.add_option(option, description)->type_name(form);
    }

    CLI::Option*
    ProgramOptions::AddRepeatable(const std::string& option, const std::string& form, const std::string& description)
    {
        return Add(option, form, description)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }

    CLI::Option* ProgramOptions::AddFlag(const std::string& option, const std::string& description)
    {
        return app.add_flag(option, description);
    }

    std::string ProgramOptions::Parse(int argc, const char* const* argv)
    {
        try
        {
            app.parse(ReversedArguments(argc, argv));
        }
        catch (const CLI::CallForHelp&)
        {
            return app.help();
        }
        catch (const CLI::CallForVersion& version)
        {
            return std::string(version.what()) + '\n';
        }
        catch (const CLI::ParseError& error)
        {
            Refuse(error.what());
        }
        return {};
    }

    void ProgramOptions::Refuse(const std::string& why) const
    {
        throw UsageError(why + "; see " + name + " --help");
    }

    /// The arguments, the last one first, as the parser wants them. `--sheet=` becomes two arguments, as the parser would take
    /// the empty value for a missing one.
    std::vector<std::string> ProgramOptions::ReversedArguments(int argc, const char* const* argv) const
    {
        std::vector<std::string> arguments;
        bool isValue = false;
        for (int i = 1; i < argc; ++i)
        {
            std::string argument = argv[i];
            const bool isLong = argument.rfind("--", 0) == 0;
            const bool isCut =
                !isValue && isLong && argument.back() == '=' && TakesValue(argument.substr(0, argument.size() - 1));
            if (isCut)
            {
                argument.pop_back();
            }
            isValue = !isValue && !isCut && TakesValue(argument);
            arguments.push_back(std::move(argument));
            if (isCut)
            {
                arguments.emplace_back();
            }
        }
        std::reverse(arguments.begin(), arguments.end());
        return arguments;
    }

    bool ProgramOptions::TakesValue(const std::string& argument) const
    {
        return std::find(valueOptions.begin(), valueOptions.end(), argument) != valueOptions.end();
    }

    std::string TextOf(const CLI::Option* option)
    {
        return option->empty() ? std::string() : option->results().back();
    }
}
