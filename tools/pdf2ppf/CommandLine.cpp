#include "pdf2ppf/CommandLine.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace Pdf2Ppf
{
    namespace
    {
        constexpr char Description[] = "Turns the pages of a PDF, PostScript or EPS file into one CIP3 PPF file.";
        constexpr char Usage[] = "Usage: pdf2ppf [options] FILE.pdf -o OUT.ppf\n";
        constexpr char Footer[] =
            "Example:\n"
            "  pdf2ppf --duplex --pages 1-4 brochure.pdf -o brochure.ppf\n\n"
            "The pages are rendered by Ghostscript (gs), which has to be installed.\n\n"
            "Exit status: 0 the file is written and was checked, 1 the conversion failed, 2 the command line is wrong.";

        constexpr double LeastResolution = 1;   // pixels per inch
        constexpr double MostResolution = 2400; // pixels per inch
        constexpr double DefaultResolution = 50.8;
        constexpr int MostOversampling = 100;
        constexpr int DefaultOversampling = 8;

        /// Options that take a value, so that the next argument is no option whatever it looks like.
        constexpr std::array<const char*, 11> ValueOptions = {
            "--front-orientation", "--back-orientation", "-o",      "--job",         "--pages",   "--sheet-name",
            "--resolution",        "--oversampling",     "--param", "--compression", "--encoding"};

        bool TakesValue(const std::string& option)
        {
            return std::find(ValueOptions.begin(), ValueOptions.end(), option) != ValueOptions.end();
        }

        /// The arguments, the last one first, as the parser wants them. `--job=` becomes two arguments, as the parser would
        /// take the empty value for a missing one.
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

        class HelpFormatter : public CLI::Formatter
        {
        public:
            std::string make_usage(const CLI::App*, std::string) const override { return Usage; }
        };

        constexpr char OrientationWords[] = "rotate0, rotate90, rotate180, rotate270, flip0, flip90, flip180, flip270";

        std::optional<RasterFeedOrientation> OrientationOfWord(const std::string& word)
        {
            // In the order of the enumerators.
            constexpr std::array<const char*, 8> Words = {"rotate0", "rotate90", "rotate180", "rotate270",
                                                          "flip0",   "flip90",   "flip180",   "flip270"};
            const auto found = std::find(Words.begin(), Words.end(), word);
            return found == Words.end() ? std::nullopt
                                        : std::optional(static_cast<RasterFeedOrientation>(found - Words.begin()));
        }

        [[noreturn]] void Refuse(const std::string& why)
        {
            throw Host::UsageError(why + "; see pdf2ppf --help");
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

        /// The number that was given, which has to be from `least` to `most`.
        template <class Number>
        Number NumberOf(const CLI::Option* option, Number least, Number most, Number ifNotGiven)
        {
            if (option->empty())
            {
                return ifNotGiven;
            }
            const std::string text = ResultOf(option);
            Number number = 0;
            const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
            if (problem != std::errc() || end != text.data() + text.size() || !(number >= least && number <= most))
            {
                std::array<char, 64> range{};
                const auto middle = std::to_chars(range.data(), range.data() + range.size(), least).ptr;
                const auto last = std::to_chars(middle, range.data() + range.size(), most).ptr;
                throw Host::UsageError(
                    option->get_name() + ": " + Host::Quoted(text) + " is no number from " +
                    std::string(range.data(), middle) + " to " + std::string(middle, last));
            }
            return number;
        }

        /// The name of the file without folder and extension.
        std::string JobNameOf(const std::string& input)
        {
            const std::string name = Host::NameIn(input);
            const auto dot = name.rfind('.');
            return dot == 0 ? name : name.substr(0, dot);
        }

        /// The program's options, and what was given of them.
        class Options
        {
        public:
            Options()
                : app(Description, "pdf2ppf")
            {
                app.formatter(std::make_shared<HelpFormatter>());
                app.footer(Footer);
                app.set_help_flag("-h,--help", "Print this text and end");
                app.set_version_flag("--version", "pdf2ppf " PDF2PPF_VERSION, "Print the version and end");

                input = Add("FILE.pdf", "", "The PDF, PostScript or EPS file");
                output = Add("-o", "OUT.ppf", "The file to write, - for standard output; missing folders are made");
                jobName = Add("--job", "NAME", "The job's name (default: the input's without folder and extension)");
                pages = Add("--pages", "LIST", "The pages to convert, as 1-4,7 (default: all)");
                duplex = app.add_flag("--duplex", "Pages 1 and 2 are front and back of sheet 1, and so on");
                sheetName =
                    Add("--sheet-name", "PATTERN",
                        "The sheets' names, with %d for the number (default: Page %d, with --duplex Sheet %d)");
                resolution = Add("--resolution", "PPI", "Pixels per inch of the previews (default: 50.8)");
                oversampling = Add("--oversampling", "N", "Render at N times the resolution and reduce (default: 8)");
                keepBlank = app.add_flag("--keep-blank", "Keep inks of a page that has none of them on it");
                parameter =
                    Add("--param", "KEY=VALUE", "An entry of every sheet's section; the value is PostScript text")
                        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
                frontOrientation =
                    Add("--front-orientation", "WORD",
                        std::string("How pages are turned, with --duplex front pages: ") + OrientationWords +
                            " (default: rotate0)");
                backOrientation = Add("--back-orientation", "WORD", "The same for back pages");
                compression = Add(
                    "--compression", "WORD",
                    std::string("Compression of the previews: ") + Jobs::CompressionWords + " (default: runlength)");
                encoding =
                    Add("--encoding", "WORD",
                        std::string("Encoding of the previews: ") + Jobs::EncodingWords + " (default: ascii85)");
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
                line.input = ResultOf(input);
                if (line.input.empty())
                {
                    Refuse("no input: name the PDF, PostScript or EPS file");
                }
                line.output = ResultOf(output);
                if (line.output.empty())
                {
                    Refuse("no output: name the file to write with -o");
                }
                line.jobName = jobName->empty() ? JobNameOf(line.input) : ResultOf(jobName);
                if (!pages->empty())
                {
                    line.pages = PageList(ResultOf(pages));
                }
                line.duplex = !duplex->empty();
                line.sheetName = SheetNamePattern(line.duplex);
                line.resolution = NumberOf(resolution, LeastResolution, MostResolution, DefaultResolution);
                line.oversampling = NumberOf(oversampling, 1, MostOversampling, DefaultOversampling);
                line.keepBlank = !keepBlank->empty();
                line.parameters = Parameters();
                line.frontOrientation = ChoiceOf(frontOrientation, &OrientationOfWord, OrientationWords)
                                            .value_or(RasterFeedOrientation::Rotate0);
                line.backOrientation = ChoiceOf(backOrientation, &OrientationOfWord, OrientationWords)
                                           .value_or(RasterFeedOrientation::Rotate0);
                line.compression = ChoiceOf(compression, &Jobs::CompressionOfWord, Jobs::CompressionWords);
                line.encoding = ChoiceOf(encoding, &Jobs::EncodingOfWord, Jobs::EncodingWords);
                line.sync = noSync->empty();
                line.verbose = !verbose->empty();
                return line;
            }

        private:
            CLI::Option* Add(const char* name, const char* form, const std::string& description)
            {
                return app.add_option(name, description)->type_name(form);
            }

            std::string SheetNamePattern(bool isDuplex) const
            {
                if (sheetName->empty())
                {
                    return isDuplex ? "Sheet %d" : "Page %d";
                }
                std::string pattern = ResultOf(sheetName);
                if (pattern.find("%d") == std::string::npos)
                {
                    throw Host::UsageError(
                        "--sheet-name " + Host::Quoted(pattern) + ": a %d is needed where the sheet's number goes");
                }
                return pattern;
            }

            std::map<std::string, Jobs::ParameterValue> Parameters() const
            {
                std::map<std::string, Jobs::ParameterValue> parameters;
                for (const std::string& text : parameter->results())
                {
                    const auto sign = text.find('=');
                    if (sign == std::string::npos || sign == 0)
                    {
                        throw Host::UsageError("--param " + Host::Quoted(text) + ": the form is KEY=VALUE");
                    }
                    if (!parameters.emplace(text.substr(0, sign), text.substr(sign + 1)).second)
                    {
                        throw Host::UsageError("--param " + Host::Quoted(text.substr(0, sign)) + " is repeated");
                    }
                }
                return parameters;
            }

            CLI::App app;
            const CLI::Option* input;
            const CLI::Option* output;
            const CLI::Option* jobName;
            const CLI::Option* pages;
            const CLI::Option* duplex;
            const CLI::Option* sheetName;
            const CLI::Option* resolution;
            const CLI::Option* oversampling;
            const CLI::Option* keepBlank;
            const CLI::Option* parameter;
            const CLI::Option* frontOrientation;
            const CLI::Option* backOrientation;
            const CLI::Option* compression;
            const CLI::Option* encoding;
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
