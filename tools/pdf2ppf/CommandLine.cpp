#include "pdf2ppf/CommandLine.h"

#include "host/Failure.h"
#include "host/Number.h"
#include "host/Paths.h"
#include "host/ProgramOptions.h"
#include "host/Text.h"

#include <utility>

namespace Pdf2Ppf
{
    using Host::ChoiceOf;
    using Host::TextOf;

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

        /// The number that was given, which has to be from `least` to `most`.
        template <class Number>
        Number NumberOf(const CLI::Option* option, Number least, Number most, Number ifNotGiven)
        {
            if (option->empty())
            {
                return ifNotGiven;
            }
            const auto number = Host::NumberOf<Number>(TextOf(option));
            if (!number || !(*number >= least && *number <= most))
            {
                throw Host::UsageError(
                    option->get_name() + ": " + Host::Quoted(TextOf(option)) + " is not a number from " +
                    Host::ShortText(least) + " to " + Host::ShortText(most));
            }
            return *number;
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
                : options("pdf2ppf", PDF2PPF_VERSION, Description, Usage, Footer)
            {
                input = options.Add("FILE.pdf", "", "The PDF, PostScript or EPS file");
                output =
                    options.Add("-o", "OUT.ppf", "The file to write, - for standard output; missing folders are made");
                jobName =
                    options.Add("--job", "NAME", "The job's name (default: the input's without folder and extension)");
                pages = options.Add("--pages", "LIST", "The pages to convert, as 1-4,7 (default: all)");
                duplex = options.AddFlag("--duplex", "Pages 1 and 2 are front and back of sheet 1, and so on");
                sheetName = options.Add(
                    "--sheet-name", "PATTERN",
                    "The sheets' names, with %d for the number (default: Page %d, with --duplex Sheet %d)");
                resolution = options.Add("--resolution", "PPI", "Pixels per inch of the previews (default: 50.8)");
                oversampling =
                    options.Add("--oversampling", "N", "Render at N times the resolution and reduce (default: 8)");
                keepBlank = options.AddFlag("--keep-blank", "Keep inks of a page that has none of them on it");
                parameter = options.AddRepeatable(
                    "--param", "KEY=VALUE", "An entry of every sheet's section; the value is PostScript text");
                frontOrientation = options.Add(
                    "--front-orientation", "WORD",
                    std::string("How pages are turned, with --duplex front pages: ") + Jobs::OrientationWords +
                        " (default: rotate0)");
                backOrientation = options.Add("--back-orientation", "WORD", "The same for back pages");
                compression = options.Add(
                    "--compression", "WORD",
                    std::string("Compression of the previews: ") + Jobs::CompressionWords + " (default: runlength)");
                encoding = options.Add(
                    "--encoding", "WORD",
                    std::string("Encoding of the previews: ") + Jobs::EncodingWords + " (default: ascii85)");
                noSync = options.AddFlag("--no-sync", "Do not wait until the file is on the disk, for scratch");
                verbose = options.AddFlag("--verbose", "Say a line per sheet and surface on standard error");
            }

            /// Gives the text that --help or --version asks for, if one of them is there.
            std::string Parse(int argc, const char* const* argv) { return options.Parse(argc, argv); }

            CommandLine Result() const
            {
                CommandLine line;
                line.input = TextOf(input);
                if (line.input.empty())
                {
                    options.Refuse("no input: name the PDF, PostScript or EPS file");
                }
                line.output = TextOf(output);
                if (line.output.empty())
                {
                    options.Refuse("no output: name the file to write with -o");
                }
                line.jobName = jobName->empty() ? JobNameOf(line.input) : TextOf(jobName);
                if (!pages->empty())
                {
                    line.pages = PageList(TextOf(pages));
                }
                line.duplex = !duplex->empty();
                line.sheetName = SheetNamePattern(line.duplex);
                line.resolution = NumberOf(resolution, LeastResolution, MostResolution, DefaultResolution);
                line.oversampling = NumberOf(oversampling, 1, MostOversampling, DefaultOversampling);
                line.keepBlank = !keepBlank->empty();
                line.parameters = Parameters();
                line.frontOrientation = ChoiceOf(frontOrientation, &Jobs::OrientationOfWord, Jobs::OrientationWords)
                                            .value_or(Jobs::Orientation::Rotate0);
                line.backOrientation = ChoiceOf(backOrientation, &Jobs::OrientationOfWord, Jobs::OrientationWords)
                                           .value_or(Jobs::Orientation::Rotate0);
                line.compression = ChoiceOf(compression, &Jobs::CompressionOfWord, Jobs::CompressionWords);
                line.encoding = ChoiceOf(encoding, &Jobs::EncodingOfWord, Jobs::EncodingWords);
                line.sync = noSync->empty();
                line.verbose = !verbose->empty();
                return line;
            }

        private:
            std::string SheetNamePattern(bool isDuplex) const
            {
                if (sheetName->empty())
                {
                    return isDuplex ? "Sheet %d" : "Page %d";
                }
                std::string pattern = TextOf(sheetName);
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
                    const auto [key, value] = Jobs::ParameterOf(text);
                    if (!parameters.emplace(key, value).second)
                    {
                        throw Host::UsageError("--param " + Host::Quoted(key) + " is repeated");
                    }
                }
                return parameters;
            }

            Host::ProgramOptions options;
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
