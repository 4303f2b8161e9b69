#include "tiff2ppf/CommandLine.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"
#include "job/Conversion.h"
#include "tiff2ppf/JobBuilder.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <memory>
#include <string_view>
#include <system_error>
#include <thread>
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
            "KEY=VALUE | --front-orientation WORD | --back-orientation WORD)...)... -o OUT.ppf\n";
        constexpr char Footer[] =
            "Example:\n"
            "  tiff2ppf --job Brochure --sheet Cover --front Cyan=c.tif --front Black=k.tif --back Black=b.tif -o "
            "cover.ppf\n\n"
            "Exit status: 0 the file is written and was checked, 1 the conversion failed, 2 the command line or the\n"
            "job file is wrong.";

        /// Options that take a value, so that the next argument is no option whatever it looks like.
        constexpr std::array<const char*, 13> ValueOptions = {
            "-o",
            "--job",
            "--sheet",
            "--front",
            "--back",
            "--front-orientation",
            "--back-orientation",
            "--param",
            "--compression",
            "--encoding",
            "--resolution",
            "--input-resolution",
            "--threads"};

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
        Value ChoiceOf(
            const CLI::Option* option, const std::string& word, std::optional<Value> (*valueOfWord)(const std::string&),
            const char* words)
        {
            const std::optional<Value> value = valueOfWord(word);
            if (!value)
            {
                throw Host::UsageError(option->get_name() + ": " + Host::Quoted(word) + " is none of: " + words);
            }
            return *value;
        }

        /// The same for what the option was given, if it was.
        template <class Value>
        std::optional<Value>
        ChoiceOf(const CLI::Option* option, std::optional<Value> (*valueOfWord)(const std::string&), const char* words)
        {
            return option->empty() ? std::nullopt
                                   : std::optional(ChoiceOf(option, ResultOf(option), valueOfWord, words));
        }

        std::optional<unsigned int> ThreadsOfWord(const std::string& word)
        {
            unsigned int number = 0;
            const char* const end = word.data() + word.size();
            const auto [stop, problem] = std::from_chars(word.data(), end, number);
            const bool fits = problem == std::errc() && stop == end && number >= 1 && number <= Jobs::MaxThreads;
            return fits ? std::optional(number) : std::nullopt;
        }

        unsigned int ThreadsOfMachine()
        {
            return std::clamp(std::thread::hardware_concurrency(), 1U, Jobs::MaxThreads);
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
                reduction =
                    Add("--resolution", "WORD",
                        "Pixels per inch of the previews: auto reduces what has more than 300 to 50.8 (default), keep "
                        "nothing, a number from 1 to 2400 what has more than that to it");
                inputResolution = Add(
                    "--input-resolution", "PPI", "Pixels per inch of the separations, in place of what the files say");
                frontOrientation = AddRepeatable(
                    "--front-orientation", "WORD",
                    std::string("How the fronts are turned, of the sheet or, before the first, of all: ") +
                        Jobs::OrientationWords + " (default: rotate0)");
                backOrientation = AddRepeatable("--back-orientation", "WORD", "The same for the backs");
                threads =
                    Add("--threads", "N",
                        "Separations that are reduced side by side (default: as many as the machine has cores)");
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
                line.reduction = ChoiceOf(reduction, &Jobs::ReductionOfWord, Jobs::ReductionWords);
                line.inputResolution =
                    ChoiceOf(inputResolution, &Jobs::InputResolutionOfWord, Jobs::InputResolutionWords);
                line.threads =
                    ChoiceOf(threads, &ThreadsOfWord, "whole numbers from 1 to 256").value_or(ThreadsOfMachine());
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
                else
                {
                    line.frontOrientation = OnlyOrientation(frontOrientation);
                    line.backOrientation = OnlyOrientation(backOrientation);
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

            /// With a job file the option stands for all of its sheets, so once.
            static std::optional<Jobs::Orientation> OnlyOrientation(const CLI::Option* option)
            {
                if (option->count() > 1)
                {
                    throw Host::UsageError(option->get_name() + " is repeated");
                }
                return ChoiceOf(option, &Jobs::OrientationOfWord, Jobs::OrientationWords);
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
                    else if (option == frontOrientation || option == backOrientation)
                    {
                        builder.SetOrientation(
                            option->get_name(),
                            ChoiceOf(option, value, &Jobs::OrientationOfWord, Jobs::OrientationWords));
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
            const CLI::Option* reduction;
            const CLI::Option* inputResolution;
            const CLI::Option* frontOrientation;
            const CLI::Option* backOrientation;
            const CLI::Option* threads;
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
