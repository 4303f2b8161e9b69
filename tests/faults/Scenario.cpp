#include "tests/faults/Scenario.h"

#include "tests/TwoSheetExample.h"
#include "tests/support/TiffMaker.h"

#include <filesystem>
#include <fstream>

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

        std::string Composite()
        {
            TestSupport::TiffForm form;
            form.samples = 4;
            form.photometric = PHOTOMETRIC_SEPARATED;
            form.resolution = 50.8;
            return TestSupport::MakePages({form}, TestSupport::MixedInks(8));
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

        /// A page as Ghostscript leaves it.
        Files Rendered()
        {
            Files files = {{"a.pdf", "%PDF-1.4\n"}};
            for (const char* const name : {"1", "1(Cyan)", "1(Magenta)", "1(Yellow)", "1(Black)", "1(Gold)"})
            {
                files.insert({std::string(name) + ".tif", Tiff(COMPRESSION_PACKBITS)});
            }
            return files;
        }

        Files Watched()
        {
            return {
                {"c.json", R"({"names": "{job}_{ink}.tif", "settleSeconds": 0})"},
                {"in/J_C.tif", Tiff(COMPRESSION_NONE)},
                {"in/J_K.tif", Tiff(COMPRESSION_NONE)}};
        }

        std::vector<std::string> And(std::vector<std::string> arguments, const std::vector<std::string>& more)
        {
            arguments.insert(arguments.end(), more.begin(), more.end());
            return arguments;
        }
    }

    std::vector<Program> Programs()
    {
        const Files older = With(Separations(), {{"out.ppf", "older"}});
        const Files jobs = With(Separations(), {{"job.json", JobText}});
        const std::string ppf = TwoSheetExample::File();
        const Files file = {{"job.ppf", ppf}, {"out", "older"}};
        const Program tiff2ppf = {
            "tiff2ppf",
            {
                {"command line", 0, And(OneSheet, {"-o", "out.ppf"}), older},
                {"composite and set", 0,
                 And(OneSheet, {"--front-inks", "composite.tif", "--back-set", "d*e.tif", "-o", "out.ppf"}),
                 With(older, {{"composite.tif", Composite()}})},
                {"job file", 0, {"job.json", "-o", "made/out.ppf", "--verbose"}, jobs},
                {"job on standard input", 0, {"-", "-o", "-"}, Separations(), JobText},
                {"missing separation", 1, And(OneSheet, {"--back", "Cyan=none.tif", "-o", "out.ppf"}), older},
                {"damaged separation", 1, And(OneSheet, {"--back", "Cyan=damaged.tif", "-o", "out.ppf"}), older},
                {"wrong command line", 2, And(OneSheet, {"--turbo", "-o", "out.ppf"}), older},
                {"wrong job file",
                 2,
                 {"job.json", "-o", "out.ppf"},
                 {{"job.json", R"({"jobName": "J", "sheet": []})"}}},
                {"help", 0, {"--help"}, {}},
            }};
        const Program ppfinfo = {
            "ppfinfo",
            {
                {"text", 0, {"job.ppf"}, file},
                {"text of standard input", 0, {"--zone-width", "0.5inch", "-"}, {}, ppf},
                {"JSON", 0, {"--json", "--zones", "4", "job.ppf"}, file},
                {"CSV", 0, {"--csv", "--zones", "4", "--zone-width", "32.5mm", "job.ppf"}, file},
                {"check", 0, {"--check", "job.ppf"}, file},
                {"check with findings", 1, {"--check", "job.ppf"}, {{"job.ppf", ppf.substr(0, ppf.size() - 600)}}},
                {"pictures", 0, {"--extract", "pictures", "job.ppf"}, file},
                {"report", 0, {"--report", "out", "--zones", "4", "job.ppf"}, file},
                {"JDF", 0, {"--jdf", "out", "--zones", "4", "job.ppf"}, file},
                {"XJDF", 0, {"--xjdf", "made/out", "--zones", "4", "job.ppf"}, file},
                {"missing file", 1, {"none.ppf"}, {}},
                {"wrong option", 2, {"--turbo", "job.ppf"}, file},
            }};
        const Program pdf2ppf = {
            "pdf2ppf",
            {
                {"spot colour", 0, {"a.pdf", "--verbose", "-o", "out.ppf"}, With(Rendered(), {{"out.ppf", "older"}})},
                {"renderer that fails", 1, {"a.pdf", "-o", "-"}, {{"a.pdf", "%PDF-1.4\n"}, {"fail", ""}}},
                {"missing file", 1, {"none.pdf", "-o", "out.ppf"}, {}},
            },
            {{"gs", "#!/bin/sh\n[ -e ../fail ] && echo 'Error: /undefined' && exit 1\n"
                    "cp ../*.tif . && echo '%%SeparationColor: \"Gold\" 100% ink = 0 16380 32760 0 CMYK'\n"}}};
        const Program ppfwatch = {
            "ppfwatch",
            {
                {"job", 0, {"--once", "c.json"}, Watched()},
                {"job that fails", 1, {"--once", "c.json"}, With(Watched(), {{"fail", ""}})},
                {"wrong configuration", 2, {"--once", "c.json"}, {{"c.json", R"({"workers": 0})"}}},
            },
            {{"tiff2ppf", "#!/bin/sh\n[ -e ../fail ] && echo 'tiff2ppf: error: it fails' >&2 && exit 1\n"
                          "for out; do :; done; echo whole >\"$out\"\n"}},
            true};
        return {tiff2ppf, ppfinfo, pdf2ppf, ppfwatch};
    }

    std::ostream& operator<<(std::ostream& out, const Program& program)
    {
        return out << program.name;
    }

    void Fill(const std::string& folder, const Files& files)
    {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
        {
            std::filesystem::remove_all(entry);
        }
        for (const auto& [name, bytes] : files)
        {
            const std::filesystem::path path = folder + '/' + name;
            std::filesystem::create_directories(path.parent_path());
            if (path.has_filename())
            {
                std::ofstream(path, std::ios::binary) << bytes;
            }
        }
    }
}
