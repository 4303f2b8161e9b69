#include "tests/faults/Scenario.h"

#include "tests/TwoSheetExample.h"
#include "tests/support/TiffMaker.h"

#include <filesystem>

namespace FaultTest
{
    namespace
    {
        std::string Tiff(std::uint16_t compression, std::uint16_t bits = 8)
        {
            TestSupport::TiffForm form;
            form.compression = compression;
            form.bits = bits;
            form.resolution = 50.8;
            return TestSupport::MakeTiff(form, TestSupport::MixedSamples(bits));
        }

        /// One ink in each of the compressions that have memory of their own to ask for, on two sheets.
        Files Separations()
        {
            return {
                {"deflate.tif", Tiff(COMPRESSION_ADOBE_DEFLATE)},
                {"lzw.tif", Tiff(COMPRESSION_LZW)},
                {"packbits.tif", Tiff(COMPRESSION_PACKBITS)},
                {"g4.tif", Tiff(COMPRESSION_CCITTFAX4, 1)},
                {"plain.tif", Tiff(COMPRESSION_NONE)},
                {"damaged.tif", Tiff(COMPRESSION_LZW).substr(0, 200)},
            };
        }

        Files With(Files files, const Files& more)
        {
            files.insert(more.begin(), more.end());
            return files;
        }

        constexpr char JobText[] = R"json({"jobName": "Spring brochure", "sheets": [
            {"sheetName": "Sheet 1",
             "front": [{"separation": "Cyan", "file": "deflate.tif"}, {"separation": "Magenta", "file": "lzw.tif"}],
             "back": [{"separation": "Black", "file": "g4.tif"}],
             "parameters": {"CIP3AdmMake": "(Press 4)", "CIP3AdmPaperGrammage": {"value": 135, "units": "g"},
                            "Copies": 1500, "Scale": 0.5}},
            {"sheetName": "Sheet 2", "front": [{"separation": "Signal Orange", "file": "packbits.tif"}]}]})json";

        const std::vector<std::string> OneSheet = {
            "--job", "J", "--sheet", "S", "--front", "Black=plain.tif", "--param", "CIP3AdmMake=(Press 4)"};

        std::vector<std::string> And(std::vector<std::string> arguments, const std::vector<std::string>& more)
        {
            arguments.insert(arguments.end(), more.begin(), more.end());
            return arguments;
        }
    }

    std::vector<Scenario> Scenarios()
    {
        const Files older = With(Separations(), {{"out.ppf", "older"}});
        const Files jobs = With(Separations(), {{"job.json", JobText}});
        const std::string ppf = TwoSheetExample::File();
        return {
            {"CommandLine", 0, "tiff2ppf", And(OneSheet, {"-o", "out.ppf"}), older},
            {"JobFile", 0, "tiff2ppf", {"job.json", "-o", "made/out.ppf", "--verbose"}, jobs},
            {"JobOnStandardInput", 0, "tiff2ppf", {"-", "-o", "-"}, Separations(), JobText},
            {"MissingSeparation", 1, "tiff2ppf", And(OneSheet, {"--back", "Cyan=none.tif", "-o", "out.ppf"}), older},
            {"DamagedSeparation", 1, "tiff2ppf", And(OneSheet, {"--back", "Cyan=damaged.tif", "-o", "out.ppf"}), older},
            {"WrongCommandLine", 2, "tiff2ppf", And(OneSheet, {"--turbo", "-o", "out.ppf"}), older},
            {"WrongJobFile",
             2,
             "tiff2ppf",
             {"job.json", "-o", "out.ppf"},
             {{"job.json", R"({"jobName": "J", "sheet": []})"}}},
            {"Help", 0, "tiff2ppf", {"--help"}, {}},

            {"Text", 0, "ppfinfo", {"job.ppf"}, {{"job.ppf", ppf}}},
            {"Json", 0, "ppfinfo", {"--json", "--zones", "4", "job.ppf"}, {{"job.ppf", ppf}}},
            {"Check", 0, "ppfinfo", {"--check", "job.ppf"}, {{"job.ppf", ppf}}},
            {"CheckWithFindings", 1, "ppfinfo", {"--check", "job.ppf"}, {{"job.ppf", ppf.substr(0, ppf.size() - 600)}}},
            {"Extract", 0, "ppfinfo", {"--extract", "pictures", "job.ppf"}, {{"job.ppf", ppf}}},
            {"ZoneWidth", 0, "ppfinfo", {"--zone-width", "0.5inch", "job.ppf"}, {{"job.ppf", ppf}}},
            {"Report", 0, "ppfinfo", {"--report", "out.html", "job.ppf"}, {{"job.ppf", ppf}, {"out.html", "older"}}},
            {"MissingFile", 1, "ppfinfo", {"none.ppf"}, {}},
            {"WrongOption", 2, "ppfinfo", {"--turbo", "job.ppf"}, {{"job.ppf", ppf}}},
        };
    }

    std::ostream& operator<<(std::ostream& out, const Scenario& scenario)
    {
        out << scenario.program;
        for (const std::string& argument : scenario.arguments)
        {
            out << ' ' << argument;
        }
        return out;
    }

    Files FilesIn(const std::string& folder)
    {
        Files files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        {
            const std::string name = entry.path().lexically_relative(folder);
            if (entry.is_directory())
            {
                files.insert({name + '/', ""});
            }
            else
            {
                files.insert({name, TestSupport::Folder::BytesOf(entry.path())});
            }
        }
        return files;
    }
}
