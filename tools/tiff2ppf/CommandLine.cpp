#include "tiff2ppf/CommandLine.h"

#include "host/Failure.h"
#include "host/Number.h"
#include "host/Paths.h"
#include "host/ProgramOptions.h"
#include "host/Text.h"
#include "job/Conversion.h"
#include "tiff2ppf/JobBuilder.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <thread>
#include <utility>

namespace Tiff2Ppf
{
    using Host::ChoiceOf;
    using Host::TextOf;
    using Jobs::Job;

    namespace
    {
        constexpr char Description[] = "Turns a job's ink separations in TIFF into one CIP3 PPF file.";
        constexpr char Usage[] =
            "Usage: tiff2ppf [options] JOB.json -o OUT.ppf\n"
            "       tiff2ppf [options] --job NAME (--sheet NAME (SEPARATIONS | --param KEY=VALUE | --front-orientation "
            "WORD "
            "|\n"
            "                --back-orientation WORD)...)... -o OUT.ppf\n"
            "SEPARATIONS: --front INK=FILE | --front-inks FILE | --front-set PATTERN | the same with --back\n";
        constexpr char Footer[] =
            "Example:\n"
            "  tiff2ppf --job Brochure --sheet Cover --front Cyan=c.tif --front Black=k.tif --back Black=b.tif -o "
            "cover.ppf\n\n"
            "Exit status: 0 the file is written and was checked, 1 the conversion failed, 2 the command line or the\n"
            "job file is wrong.";

        bool IsJobFileName(const std::string& name)
        {
            constexpr std::string_view Ending = ".json";
            return name.size() > Ending.size() && name.compare(name.size() - Ending.size(), Ending.size(), Ending) == 0;
        }

        std::optional<unsigned int> ThreadsOfWord(const std::string& word)
        {
            const auto number = Host::NumberOf<unsigned int>(word);
            return number && *number >= 1 && *number <= Jobs::MaxThreads ? number : std::nullopt;
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
                : options("tiff2ppf", TIFF2PPF_VERSION, Description, Usage, Footer)
            {
                jobFile = options.Add("JOB.json", "", "The job file, - for standard input");
                output =
                    options.Add("-o", "OUT.ppf", "The file to write, - for standard output; missing folders are made");
                jobName = options.Add("--job", "NAME", "Name of a job on the command line");
                sheet = options.AddRepeatable("--sheet", "NAME", "Open a sheet; what follows belongs to it");
                front = options.AddRepeatable("--front", "INK=FILE", "A separation of the sheet's front");
                back = options.AddRepeatable("--back", "INK=FILE", "A separation of the sheet's back");
                frontInks = options.AddRepeatable(
                    "--front-inks", "FILE", "Separations of the front: every ink that a TIFF holds, as CMYK");
                backInks = options.AddRepeatable("--back-inks", "FILE", "The same for the back");
                frontSet = options.AddRepeatable(
                    "--front-set", "PATTERN",
                    "Separations of the front: the files that fit a pattern as 'plates/page1(*).tif', whose * stands "
                    "for the ink's name");
                backSet = options.AddRepeatable("--back-set", "PATTERN", "The same for the back");
                parameter = options.AddRepeatable(
                    "--param", "KEY=VALUE", "An entry of the sheet's section; the value is PostScript text");
                compression = options.Add(
                    "--compression", "WORD",
                    std::string("Compression of the previews: ") + Jobs::CompressionWords + " (default: runlength)");
                encoding = options.Add(
                    "--encoding", "WORD",
                    std::string("Encoding of the previews: ") + Jobs::EncodingWords + " (default: ascii85)");
                reduction = options.Add(
                    "--resolution", "WORD",
                    "Pixels per inch of the previews: auto reduces what has more than 300 to 50.8 (default), keep "
                    "nothing, a number from 1 to 2400 what has more than that to it");
                inputResolution = options.Add(
                    "--input-resolution", "PPI", "Pixels per inch of the separations, in place of what the files say");
                frontOrientation = options.AddRepeatable(
                    "--front-orientation", "WORD",
                    std::string("How the fronts are turned, of the sheet or, before the first, of all: ") +
                        Jobs::OrientationWords + " (default: rotate0)");
                backOrientation = options.AddRepeatable("--back-orientation", "WORD", "The same for the backs");
                threads = options.Add(
                    "--threads", "N",
                    "Separations that are reduced side by side (default: as many as the machine has cores)");
                mixedSizes = options.AddFlag("--mixed-sizes", "Let separations of a sheet differ in size");
                noSync = options.AddFlag("--no-sync", "Do not wait until the file is on the disk, for scratch");
                verbose = options.AddFlag("--verbose", "Say a line per sheet and surface on standard error");
            }

            /// Gives the text that --help or --version asks for, if one of them is there.
            std::string Parse(int argc, const char* const* argv) { return options.Parse(argc, argv); }

            CommandLine Result() const
            {
                CommandLine line;
                line.output = TextOf(output);
                if (line.output.empty())
                {
                    options.Refuse("no output: name the file to write with -o");
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

                const auto belongToJob = {jobName,  sheet,    front,   back,     frontInks,
                                          backInks, frontSet, backSet, parameter};
                const bool hasJob = std::any_of(
                    belongToJob.begin(), belongToJob.end(), [](const CLI::Option* option) { return !option->empty(); });
                line.jobFile = TextOf(jobFile);
                if (hasJob && !jobFile->empty())
                {
                    options.Refuse(
                        "both a job file, " + Host::Quoted(line.jobFile) +
                        ", and a job on the command line: one of them is wanted");
                }
                if (!hasJob && line.jobFile.empty())
                {
                    options.Refuse("no job: name a job file, or open a sheet with --sheet");
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
                if (sheet->empty() && IsJobFileName(TextOf(jobName)))
                {
                    options.Refuse(
                        "--job gives the job's name; a job file stands without it: tiff2ppf " + TextOf(jobName));
                }
                JobBuilder builder(TextOf(jobName), Host::CurrentFolder());
                std::map<const CLI::Option*, std::size_t> taken;
                for (const CLI::Option* const option : options.InOrder())
                {
                    // An option stands here as often as it was given.
                    const std::string& value = option->results().at(taken[option]++);
                    if (option == sheet)
                    {
                        builder.OpenSheet(value);
                    }
                    else if (option == front || option == back)
                    {
                        builder.AddFile(option->get_name(), value);
                    }
                    else if (option == frontInks || option == backInks)
                    {
                        builder.AddInks(option->get_name(), value);
                    }
                    else if (option == frontSet || option == backSet)
                    {
                        builder.AddSet(option->get_name(), value);
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

            Host::ProgramOptions options;
            const CLI::Option* jobFile;
            const CLI::Option* output;
            const CLI::Option* jobName;
            const CLI::Option* sheet;
            const CLI::Option* front;
            const CLI::Option* back;
            const CLI::Option* frontInks;
            const CLI::Option* backInks;
            const CLI::Option* frontSet;
            const CLI::Option* backSet;
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
