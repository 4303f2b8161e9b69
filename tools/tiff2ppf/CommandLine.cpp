#include "tiff2ppf/CommandLine.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"
#include "tiff2ppf/JobBuilder.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace Tiff2Ppf
{
    using Jobs::Job;

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

        /// The arguments, the last one first, as the parser wants them. `--sheet=` becomes two arguments, as the parser
        /// would take the empty value for a missing one.
        std::vector<std::string> ReversedArguments(int argc, const char* const* argv)
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

        /// Help with a usage of our own: the parser knows nothing of what the order of the options means.
        class HelpFormatter : public CLI::Formatter
        {
        public:
            std::string make_usage(const CLI::App*, std::string) const override { return Usage; }
        };

        [[noreturn]] void Refuse(const std::string& why)
        {
            throw Host::UsageError(why + "; see tiff2ppf --help");
        }

        bool IsJobFileName(const std::string& name)
        {
            constexpr std::string_view Ending = ".json";
            return name.size() > Ending.size() && name.compare(name.size() - Ending.size(), Ending.size(), Ending) == 0;
        }

        std::string ResultOf(const CLI::Option* option)
        {
            return option->empty() ? std::string() : option->results().back();
        }

        template <class Value>
        std::optional<Value>
        ChoiceOf(const CLI::Option* option, std::optional<Value> (*valueOfWord)(const std::string&), const char* words)
        {
            if (option->empty())
            {
                return std::nullopt;
            }
            const std::optional<Value> value = valueOfWord(ResultOf(option));
            if (!value)
            {
                throw Host::UsageError(
                    option->get_name() + ": " + Host::Quoted(ResultOf(option)) + " is none of: " + words);
            }
            return value;
        }

        /// The program's options, and what was given of them.
        class Options
        {
        public:
            Options()
                : app(Description, "tiff2ppf")
            {
                app.formatter(std::make_shared<HelpFormatter>());
                app.footer(Footer);
                app.set_help_flag("-h,--help", "Print this text and end");
                app.set_version_flag("--version", "tiff2ppf " TIFF2PPF_VERSION, "Print the version and end");

                jobFile = Add("JOB.json", "", "The job file, - for standard input");
                output = Add("-o", "OUT.ppf", "The file to write, - for standard output; missing folders are made");
                jobName = Add("--job", "NAME", "Name of a job on the command line");
                sheet = AddRepeatable("--sheet", "NAME", "Open a sheet; what follows belongs to it");
                front = AddRepeatable("--front", "INK=FILE", "A separation of the sheet's front");
                back = AddRepeatable("--back", "INK=FILE", "A separation of the sheet's back");
                parameter = AddRepeatable(
                    "--param", "KEY=VALUE", "An entry of the sheet's section; the value is PostScript text");
                compression = Add(
                    "--compression", "WORD",
                    std::string("Compression of the previews: ") + Jobs::CompressionWords + " (default: runlength)");
                encoding =
                    Add("--encoding", "WORD",
                        std::string("Encoding of the previews: ") + Jobs::EncodingWords + " (default: ascii85)");
                mixedSizes = app.add_flag("--mixed-sizes", "Let separations of a sheet differ in size");
                noSync = app.add_flag("--no-sync", "Do not wait until the file is on the disk, for scratch");
                verbose = app.add_flag("--verbose", "Say a line per sheet and surface on standard error");
            }

            /// Gives the text that --help or --version asks for, if one of them is there.
            std::string Parse(int argc, const char* const* argv)
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

            CommandLine Result() const
            {
                CommandLine line;
                line.output = ResultOf(output);
                if (line.output.empty())
                {
                    Refuse("no output: name the file to write with -o");
                }
                line.compression = ChoiceOf(compression, &Jobs::CompressionOfWord, Jobs::CompressionWords);
                line.encoding = ChoiceOf(encoding, &Jobs::EncodingOfWord, Jobs::EncodingWords);
                line.mixedSizes = !mixedSizes->empty();
                line.verbose = !verbose->empty();
                line.sync = noSync->empty();

                const bool hasJob =
                    !(jobName->empty() && sheet->empty() && front->empty() && back->empty() && parameter->empty());
                line.jobFile = ResultOf(jobFile);
                if (hasJob && !jobFile->empty())
                {
                    Refuse(
                        "both a job file, " + Host::Quoted(line.jobFile) +
                        ", and a job on the command line: one of them is wanted");
                }
                if (!hasJob && line.jobFile.empty())
                {
                    Refuse("no job: name a job file, or open a sheet with --sheet");
                }
                if (hasJob)
                {
                    line.job = JobInOrder();
                }
                return line;
            }

        private:
            CLI::Option* Add(const char* name, const char* form, const std::string& description)
            {
                return app.add_option(name, description)->type_name(form);
            }

            CLI::Option* AddRepeatable(const char* name, const char* form, const std::string& description)
            {
                return Add(name, form, description)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
            }

            /// The job that the options make in their order on the command line.
            Job JobInOrder() const
            {
                if (sheet->empty() && IsJobFileName(ResultOf(jobName)))
                {
                    Refuse("--job gives the job's name; a job file stands without it: tiff2ppf " + ResultOf(jobName));
                }
                JobBuilder builder(ResultOf(jobName), Host::CurrentFolder());
                std::map<const CLI::Option*, std::size_t> taken;
                for (const CLI::Option* const option : app.parse_order())
                {
                    // An option stands here as often as it was given.
                    const std::string& value = option->results().at(taken[option]++);
                    if (option == sheet)
                    {
                        builder.OpenSheet(value);
                    }
                    else if (option == front)
                    {
                        builder.AddFront(value);
                    }
                    else if (option == back)
                    {
                        builder.AddBack(value);
                    }
                    else if (option == parameter)
                    {
                        builder.AddParameter(value);
                    }
                }
                Job job = builder.Take();
                Jobs::CheckJob(job);
                return job;
            }

            CLI::App app;
            const CLI::Option* jobFile;
            const CLI::Option* output;
            const CLI::Option* jobName;
            const CLI::Option* sheet;
            const CLI::Option* front;
            const CLI::Option* back;
            const CLI::Option* parameter;
            const CLI::Option* compression;
            const CLI::Option* encoding;
            const CLI::Option* mixedSizes;
            const CLI::Option* noSync;
            const CLI::Option* verbose;
        };
    }

    CommandLine ParseCommandLine(int argc, const char* const* argv)
    {
        Options options;
        std::string answer = options.Parse(argc, argv);
        if (answer.empty())
        {
            return options.Result();
        }
        CommandLine line;
        line.answer = std::move(answer);
        return line;
    }
}
