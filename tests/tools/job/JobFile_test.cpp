#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Paths.h"
#include "job/JobFile.h"
#include "tests/support/Failures.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::HasSubstr;

    Job Read(const std::string& text)
    {
        return ReadJob(text, "/jobs");
    }

    /// The text of the Host::UsageError that reading `text` throws.
    std::string RefusalOf(const std::string& text)
    {
        return TestSupport::FailureOf<Host::UsageError>([&] { Read(text); });
    }

    /// A job of one sheet with `members` beside its front.
    std::string SheetWith(const std::string& members)
    {
        return R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}],)" + members + "}]}";
    }

    ParameterValue ParameterOf(const std::string& json)
    {
        return Read(SheetWith(R"("parameters":{"A":)" + json + "}")).sheets.at(0).parameters.at("A");
    }

    Number NumberOf(const std::string& json)
    {
        return std::get<Number>(ParameterOf(json));
    }

    TEST(JobFile, WholeJobIsRead)
    {
        const Job job = Read(R"json({
            "jobName": "Spring", "compression": "none", "encoding": "asciihex",
            "sheets": [
              { "sheetName": "S1",
                "front": [ { "separation": "Cyan", "file": "c.tif" }, { "file": "/abs/k.tif", "separation": "Black" } ],
                "back":  [ { "separation": "Black", "file": "../b.tif", "channel": 2 }, { "inks": "cmyk.tif" } ],
                "parameters": { "CIP3AdmMake": "(Press 4)", "Copies": 1500 } },
              { "jobName": "Summer", "back": [ { "separation": "", "file": "x" } ] } ] })json");

        ASSERT_EQ(job.sheets.size(), 2U);
        EXPECT_EQ(job.compression, Compression::CIP3CompressionNone);
        EXPECT_EQ(job.encoding, Encoding::CIP3EncodingASCIIHex);
        const Sheet& first = job.sheets[0];
        EXPECT_EQ(first.jobName, "Spring");
        EXPECT_EQ(first.sheetName, "S1");
        ASSERT_EQ(first.front.size(), 2U);
        EXPECT_EQ(first.front[0].name, "Cyan");
        EXPECT_EQ(first.front[0].file, "/jobs/c.tif");
        EXPECT_EQ(first.front[1].file, "/abs/k.tif");
        EXPECT_EQ(first.back.at(0).file, "/jobs/../b.tif");
        EXPECT_EQ(first.back.at(0).page, 0U);
        EXPECT_EQ(first.back.at(0).channel, 2U);
        EXPECT_TRUE(first.back.at(1).isEveryInk);
        EXPECT_EQ(first.back.at(1).file, "/jobs/cmyk.tif");
        EXPECT_EQ(first.parameters.size(), 2U);
        const Sheet& second = job.sheets[1];
        EXPECT_EQ(second.jobName, "Summer");
        EXPECT_EQ(second.sheetName, "");
        EXPECT_TRUE(second.front.empty());
        EXPECT_EQ(second.back.at(0).name, "");
    }

    TEST(JobFile, ParameterTakesItsClassFromTheJson)
    {
        EXPECT_EQ(std::get<std::string>(ParameterOf(R"json("(caf\u00e9)")json")), "(caf\xC3\xA9)");
        EXPECT_EQ(NumberOf("0"), Number(std::int32_t{0}));
        EXPECT_EQ(NumberOf("-0"), Number(std::int32_t{0}));
        EXPECT_EQ(NumberOf("2147483647"), Number(std::int32_t{2147483647}));
        EXPECT_EQ(NumberOf("2147483648"), Number(std::uint32_t{2147483648U}));
        EXPECT_EQ(NumberOf("4294967295"), Number(std::uint32_t{4294967295U}));
        EXPECT_EQ(NumberOf("-2147483648"), Number(std::int32_t{-2147483647 - 1}));
        EXPECT_EQ(NumberOf("2.0"), Number(2.0));
        EXPECT_EQ(NumberOf("1e2"), Number(100.0));
        EXPECT_EQ(NumberOf("1E20"), Number(1e20));
        EXPECT_EQ(NumberOf("-0.0"), Number(-0.0));

        const auto measure = std::get<Measure>(ParameterOf(R"({"units":"g","value":135})"));
        EXPECT_EQ(measure.value, Number(std::int32_t{135}));
        EXPECT_EQ(measure.units, "g");
    }

    struct Case
    {
        std::string text;
        const char* said;
    };

    TEST(JobFile, WhatIsNoJobIsRefusedWithItsPlace)
    {
        const Case cases[] = {
            // Not JSON.
            {"", "line 1, column 1: syntax error while parsing value"},
            {"{\n  \"jobName\": \"J\",,\n}", "line 2, column 18: syntax error"},
            {R"({"sheets":[]} x)", "column 15: syntax error"},
            {"{\"jobName\":\"caf\xE9\"}", "a JSON text is UTF-8"},
            {std::string(100000, '['), "is nested deeper than any job"},
            // Not a job.
            {"[]", "an object is needed, not an array"},
            {R"({"jobname":"J"})", "jobname: there is no such member here; known are jobName"},
            {R"({"jobName":"J","sheets":[],"jobName":"J"})", "jobName: this member is repeated"},
            {R"({"jobName":null})", "jobName: a string is needed, not null"},
            {R"({"jobName":"a\u0000b"})", "jobName: a string may not hold the character \\u0000"},
            {R"({"sheets":{}})", "sheets: an array is needed, not an object"},
            {R"({"compression":"zip"})", R"(compression: "zip" is none of: none, runlength)"},
            {R"({"encoding":2})", "encoding: a string is needed, not a number"},
            {"{\"" + std::string(1000000, 'k') + "\":1}", "there is no such member here; known are jobName"},
            // Inside a sheet.
            {R"({"sheets":["S"]})", "sheets[0]: an object is needed, not a string"},
            {R"({"a\u0000b":1})", R"(["a\x00b"]: there is no such member here)"},
            {SheetWith(R"("a b":1)"), R"(sheets[0]["a b"]: there is no such member here; known are jobName)"},
            {SheetWith(R"("back":[{"separation":"K"}])"), R"(sheets[0].back[0]: the member "file" is missing)"},
            {SheetWith(R"("back":[{"separation":"K","file":""}])"), "sheets[0].back[0].file: the file name is empty"},
            {SheetWith(R"("back":[{"separation":"K","file":"a"},{"file":"b","file":"c"}])"),
             "sheets[0].back[1].file: this member is repeated"},
            {SheetWith(R"("back":[{"set":"k*.tif"}])"),
             "sheets[0].back[0].set: the folder /jobs cannot be read: No such file or directory"},
            {SheetWith(R"("back":[{"set":"k.tif"}])"), "sheets[0].back[0].set: \"k.tif\" is not a set"},
            {SheetWith(R"("back":[{"set":"k*.tif","file":"k.tif"}])"),
             "sheets[0].back[0].file: there is no such member here; known are set"},
            {SheetWith(R"("back":[{"inks":"k.tif","channel":1}])"),
             "sheets[0].back[0].channel: there is no such member here; known are inks"},
            {SheetWith(R"("back":[{"inks":""}])"), "sheets[0].back[0].inks: the file name is empty"},
            {SheetWith(R"("back":[{"separation":"K","file":"k","page":0}])"),
             "sheets[0].back[0].page: a whole number is needed, counted from 1"},
            {SheetWith(R"("back":[{"separation":"K","file":"k","channel":4294967296}])"),
             "sheets[0].back[0].channel: a whole number is needed, counted from 1"},
            // Parameters.
            {SheetWith(R"("parameters":{"":"x"})"), R"(sheets[0].parameters[""]: a parameter's name is not empty)"},
            {SheetWith(R"("parameters":{"A":1,"A":1})"), "sheets[0].parameters.A: this member is repeated"},
            {SheetWith(R"("parameters":{"A":true})"), "sheets[0].parameters.A: a string, a number, or an object"},
            {SheetWith(R"("parameters":{"A":[1]})"), "sheets[0].parameters.A: a string, a number, or an object"},
            {SheetWith(R"("parameters":{"A":4294967296})"),
             "sheets[0].parameters.A: the integer 4294967296 is outside"},
            {SheetWith(R"("parameters":{"A":-2147483649})"), "the integer -2147483649 is outside"},
            {SheetWith(R"("parameters":{"A":99999999999999999999})"),
             "sheets[0].parameters.A: the integer 99999999999999999999 is too large"},
            {SheetWith(R"("parameters":{"A":1e999})"), "sheets[0].parameters.A: the number 1e999 is too large"},
            {SheetWith(R"("parameters":{"A":{"value":1}})"), "sheets[0].parameters.A: an object here has exactly"},
            {SheetWith(R"("parameters":{"A":{"value":1,"units":"g","x":0}})"), "A: an object here has exactly"},
            {SheetWith(R"("parameters":{"A":{"value":"1","units":"g"}})"),
             "sheets[0].parameters.A.value: a number is needed, not a string"},
            {SheetWith(R"("parameters":{"A":{"value":1,"units":2}})"),
             "sheets[0].parameters.A.units: a string is needed, not a number"},
            {SheetWith(R"("parameters":{"A":{"value":4294967296,"units":"g"}})"), "A.value: the integer 4294967296"},
        };
        for (const Case& c : cases)
        {
            EXPECT_THAT(RefusalOf(c.text), HasSubstr(c.said)) << c.text.substr(0, 200);
        }
    }

    std::string RefusalOfFile(const std::string& name)
    {
        return TestSupport::FailureOf<Host::UsageError>([&] { LoadJobFile(name); });
    }

    TEST(JobFile, RelativeNamesStandInItsFolderAndOfADescriptorInTheCurrentOne)
    {
        const auto fileOf = [](const std::string& name)
        { return Host::FolderOf(LoadJobFile(name).sheets[0].front[0].file); };
        const std::string text = R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}]}]})";
        const TestSupport::Folder folder;
        EXPECT_EQ(fileOf(folder.Write("job.json", text)), folder.Path());
        const Host::Descriptor file(open((folder / "job.json").c_str(), O_RDONLY));
        EXPECT_EQ(fileOf("/dev/fd/" + std::to_string(file.Number())), Host::CurrentFolder());

        const std::string inMemory = "/dev/shm/JobFile_test-" + std::to_string(getpid()) + ".json";
        std::filesystem::copy_file(folder / "job.json", inMemory);
        EXPECT_EQ(fileOf(inMemory), "/dev/shm");
        std::filesystem::remove(inMemory);
    }

    TEST(JobFile, FileThatIsNoneIsNamed)
    {
        EXPECT_EQ(
            RefusalOfFile("/no/such/job.json"),
            "/no/such/job.json: the job file cannot be read: No such file or directory");
        EXPECT_EQ(RefusalOfFile("/"), "/: the job file cannot be read: Is a directory");
        EXPECT_EQ(RefusalOfFile("/dev/zero"), "/dev/zero: this has more than 134217728 bytes, and no job has");
        const TestSupport::Folder folder;
        const std::string tiff = folder.Write("tiff", std::string("II*\0\x08\0\0\0", 8));
        EXPECT_EQ(
            RefusalOfFile(tiff), tiff + ": this is a TIFF, not a job file; a separation is given as --front INK=FILE");
        const std::string job = folder.Write("job.json", R"({"jobName":"J","sheets":[{"sheetName":"S1"}]})");
        EXPECT_EQ(RefusalOfFile(job), job + ": sheet 1 \"S1\": neither front nor back has a file");
        const TestSupport::SystemFault fault("read", EIO, 2);
        EXPECT_EQ(RefusalOfFile(job), job + ": the job file cannot be read: Input/output error");
    }

    TEST(JobFile, PreviewsAndOrientationsAreRead)
    {
        const Job job = Read(R"({"jobName":"J","resolution":72.5,"inputResolution":2400,"frontOrientation":"rotate90",
            "sheets":[{},{"frontOrientation":"flip0","backOrientation":"flip270"}]})");
        EXPECT_EQ(job.reduction.resolution, 72.5);
        EXPECT_EQ(job.reduction.onlyAbove, 0);
        EXPECT_EQ(job.inputResolution, 2400);
        EXPECT_EQ(job.sheets[0].frontOrientation, Orientation::Rotate90);
        EXPECT_EQ(job.sheets[0].backOrientation, Orientation::Rotate0);
        EXPECT_EQ(job.sheets[1].frontOrientation, Orientation::Flip0);
        EXPECT_EQ(job.sheets[1].backOrientation, Orientation::Flip270);
        EXPECT_EQ(Read(R"({"resolution":"keep"})").reduction.resolution, 0);
        for (const char* const text : {R"({"resolution":"auto"})", "{}"})
        {
            EXPECT_EQ(Read(text).reduction.resolution, 50.8) << text;
            EXPECT_EQ(Read(text).reduction.onlyAbove, 300) << text;
        }
        for (const char* const value : {"0.5", "2401", "-1", R"("600")", R"("Auto")", "null"})
        {
            EXPECT_THAT(RefusalOf(std::string(R"({"resolution":)") + value + "}"), HasSubstr("resolution: ")) << value;
        }
        for (const char* const value : {"0", "-1", R"("600")", R"("auto")"})
        {
            EXPECT_THAT(RefusalOf(std::string(R"({"inputResolution":)") + value + "}"), HasSubstr("inputResolution: "))
                << value;
        }
        EXPECT_THAT(RefusalOf(R"({"frontOrientation":"rotate45"})"), HasSubstr("frontOrientation: \"rotate45\""));
    }
}
