#include "CommandLine.h"

#include "Failure.h"
#include "Paths.h"
#include "Text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace Tiff2Ppf
{
    namespace
    {
        constexpr char Description[] = "Turns a job's ink separations in TIFF into one CIP3 PPF file.";
        constexpr char Usage[] =
            "Usage: tiff2ppf [options] JOB.json -o OUT.ppf\n"
            "       tiff2ppf [options] --job NAME (--sheet NAME (--front INK=FILE | --back INK=FILE | --param "
            "KEY=VALUE)...)... -o OUT.ppf\n";
        constexpr char Footer[] =
            "Example:\n"
            "  tiff2ppf --job Brochure --sheet Cover --front Cyan=c.tif --front Black=k.tif --back Black=b.tif -o "
            "cover.ppf\n\n"
            "Exit status: 0 the file is written and was checked, 1 the conversion failed, 2 the command line or the\n"
            "job file is wrong.";

        /// Options that take a value, so that the next argument is no option whatever it looks like.
        constexpr std::array<const char*, 8> ValueOptions = {"-o",     "--job",   "--sheet",       "--front",
                                                             "--back", "--param", "--compression", "--encoding"};

        bool TakesValue(const std::string& option)
        {
            return std::find(ValueOptions.begin(), ValueOptions.end(), option) != ValueOptions.end();
        }

        /// The arguments, the last one first, as the parser wants them. `--sheet=` is taken apart, as the parser would
        /// take an empty value for a missing one.
        std::vector<std::string> ReversedArguments(int argc, const char* const* argv)
        {
            std::vector<std::string> arguments;
            bool isValue = false;
            for (int i = 1; i < argc; ++i)
            {
                std::string argument = argv[i];
                const bool isCut = !isValue && argument.size() > 2 && argument.back() == '=' &&
                                   TakesValue(argument.substr(0, argument.size() - 1));
                if (isCut)
                    argument.pop_back();
                isValue = !isValue && !isCut && TakesValue(argument);
                arguments.push_back(std::move(argument));
                if (isCut)
                    arguments.emplace_back();
            }
            std::reverse(arguments.begin(), arguments.end());
            return arguments;
        }

        /// `text` split at its first '='.
        std::pair<std::string, std::string>
        SplitAtSign(const std::string& option, const std::string& text, const char* form)
        {
            const auto sign = text.find('=');
            if (sign == std::string::npos)
                throw UsageError(option + ' ' + Quoted(text) + ": the form is " + form);
            return {text.substr(0, sign), text.substr(sign + 1)};
        }

        /// Builds the job from its options in their order on the command line.
        class JobBuilder
        {
        public:
            explicit JobBuilder(std::string jobName)
                : m_jobName(std::move(jobName))
                , m_folder(CurrentFolder())
            {
            }

            void OpenSheet(const std::string& name)
            {
                m_job.sheets.emplace_back();
                m_job.sheets.back().jobName = m_jobName;
                m_job.sheets.back().sheetName = name;
            }

            void AddFront(const std::string& text) { AddSeparation("--front", SheetFor("--front").front, text); }
            void AddBack(const std::string& text) { AddSeparation("--back", SheetFor("--back").back, text); }

            void AddParameter(const std::string& text)
            {
                Sheet& sheet = SheetFor("--param");
                const auto [key, value] = SplitAtSign("--param", text, "KEY=VALUE");
                if (key.empty())
                    throw UsageError("--param " + Quoted(text) + ": the key is empty");
                if (!sheet.parameters.emplace(key, value).second)
                    throw UsageError(
                        SheetForPerson(m_job, m_job.sheets.size() - 1) + ": --param " + Quoted(key) + " is repeated");
            }

            Job Take() { return std::move(m_job); }

        private:
            Sheet& SheetFor(const std::string& option)
            {
                if (m_job.sheets.empty())
                    throw UsageError(option + " belongs to a sheet: open one with --sheet before it");
                return m_job.sheets.back();
            }

            void AddSeparation(const std::string& option, std::vector<Separation>& separations, const std::string& text)
            {
                const auto [ink, file] = SplitAtSign(option, text, "INK=FILE");
                if (file.empty())
                    throw UsageError(option + ' ' + Quoted(text) + ": the file name is empty");
                separations.push_back({ink, AbsolutePath(file, m_folder)});
            }

            std::string m_jobName;
            std::string m_folder;
            Job m_job;
        };

        template <class Value>
        std::optional<Value>
        ChoiceOf(const CLI::Option& option, std::optional<Value> (*valueOfWord)(const std::string&), const char* words)
        {
            if (option.empty())
                return std::nullopt;
            const std::string& word = option.results().back();
            const std::optional<Value> value = valueOfWord(word);
            if (!value)
                throw UsageError(option.get_name() + ": " + Quoted(word) + " is none of: " + words);
            return value;
        }

        /// Help with a usage of our own: the parser knows nothing of what the order of the options means.
        class HelpFormatter : public CLI::Formatter
        {
        public:
            std::string make_usage(const CLI::App*, std::string) const override { return Usage; }
        };

        CLI::Option* AddValue(CLI::App& app, const char* name, const char* form, const std::string& description)
        {
            return app.add_option(name, description)->type_name(form);
        }

        CLI::Option* AddRepeatable(CLI::App& app, const char* name, const char* form, const char* description)
        {
            return AddValue(app, name, form, description)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        }

        std::string ResultOf(const CLI::Option& option)
        {
            return option.empty() ? std::string() : option.results().back();
        }
    }

    CommandLine ParseCommandLine(int argc, const char* const* argv)
    {
        CommandLine line;
        CLI::App app(Description, "tiff2ppf");
        app.formatter(std::make_shared<HelpFormatter>());
        app.footer(Footer);
        app.set_help_flag("-h,--help", "Print this text and end");
        app.set_version_flag("--version", "tiff2ppf " TIFF2PPF_VERSION, "Print the version and end");

        const auto* const jobFile = AddValue(app, "JOB.json", "", "The job file, - for standard input");
        const auto* const output = AddValue(app, "-o", "OUT.ppf", "The file to write; missing folders are made");
        const auto* const jobName = AddValue(app, "--job", "NAME", "Name of a job on the command line");
        const auto* const sheet = AddRepeatable(app, "--sheet", "NAME", "Open a sheet; what follows belongs to it");
        const auto* const front = AddRepeatable(app, "--front", "INK=FILE", "A separation of the sheet's front");
        const auto* const back = AddRepeatable(app, "--back", "INK=FILE", "A separation of the sheet's back");
        const auto* const parameter =
            AddRepeatable(app, "--param", "KEY=VALUE", "An entry of the sheet's section; the value is PostScript text");
        const auto* const compression = AddValue(
            app, "--compression", "WORD",
            std::string("Compression of the previews: ") + CompressionWords + " (default: runlength)");
        const auto* const encoding = AddValue(
            app, "--encoding", "WORD",
            std::string("Encoding of the previews: ") + EncodingWords + " (default: ascii85)");
        app.add_flag("--mixed-sizes", line.mixedSizes, "Let separations of a sheet differ in size");
        app.add_flag("--verbose", line.verbose, "Say a line per sheet and surface on standard error");

        try
        {
            app.parse(ReversedArguments(argc, argv));
        }
        catch (const CLI::CallForHelp&)
        {
            line.answer = app.help();
            return line;
        }
        catch (const CLI::CallForVersion& version)
        {
            line.answer = std::string(version.what()) + '\n';
            return line;
        }
        catch (const CLI::ParseError& error)
        {
            throw UsageError(error.what());
        }

        line.output = ResultOf(*output);
        if (line.output.empty())
            throw UsageError("no output: name the file to write with -o");
        line.compression = ChoiceOf(*compression, &CompressionOfWord, CompressionWords);
        line.encoding = ChoiceOf(*encoding, &EncodingOfWord, EncodingWords);

        // The parser's list names an option once for each time it was given.
        JobBuilder builder(ResultOf(*jobName));
        std::map<const CLI::Option*, std::size_t> taken;
        bool isJobOnCommandLine = !jobName->empty();
        for (const CLI::Option* const option : app.parse_order())
        {
            const std::string& value = option->results().at(taken[option]++);
            const bool isOfJob = option == sheet || option == front || option == back || option == parameter;
            isJobOnCommandLine = isJobOnCommandLine || isOfJob;
            if (option == sheet)
                builder.OpenSheet(value);
            else if (option == front)
                builder.AddFront(value);
            else if (option == back)
                builder.AddBack(value);
            else if (option == parameter)
                builder.AddParameter(value);
        }

        if (jobFile->empty() && !isJobOnCommandLine)
            throw UsageError("no job: name a job file, or open a sheet with --sheet");
        if (!jobFile->empty() && isJobOnCommandLine)
            throw UsageError(
                "both a job file, " + Quoted(ResultOf(*jobFile)) +
                ", and a job on the command line: one of them is wanted");
        if (isJobOnCommandLine)
        {
            line.job = builder.Take();
            CheckJob(line.job);
        }
        else
        {
            line.jobFile = ResultOf(*jobFile);
            if (line.jobFile.empty())
                throw UsageError("the name of the job file is empty");
        }
        return line;
    }
}
