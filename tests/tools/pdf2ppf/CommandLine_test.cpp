#include "host/Failure.h"
#include "pdf2ppf/CommandLine.h"
#include "pdf2ppf/PageJob.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace Pdf2PpfTest
{
    using namespace Pdf2Ppf;
    using ::testing::HasSubstr;

    CommandLine Parse(std::vector<const char*> arguments)
    {
        arguments.insert(arguments.begin(), "pdf2ppf");
        return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    }

    std::string Refusal(const std::vector<const char*>& arguments)
    {
        return TestSupport::FailureOf<Host::UsageError>([&] { CheckNames(Parse(arguments)); });
    }

    TEST(CommandLineTest, JobIsNamedAfterTheInput)
    {
        EXPECT_EQ(Parse({"dir.x/My.Job.pdf", "-o", "o"}).jobName, "My.Job");
        EXPECT_EQ(Parse({"plain", "-o", "o"}).jobName, "plain");
        EXPECT_EQ(Parse({"a/.pdf", "-o", "o"}).jobName, ".pdf");
        EXPECT_EQ(Parse({"a.pdf", "--job", "J", "-o", "o"}).jobName, "J");
    }

    TEST(CommandLineTest, WrongOrdersAreRefused)
    {
        const struct
        {
            std::vector<const char*> arguments;
            const char* text;
        } orders[] = {
            {{"-o", "o"}, "no input"},
            {{"a.pdf"}, "no output"},
            {{"a.pdf", "b.pdf", "-o", "o"}, "b.pdf"},
            {{"a.pdf", "-o", "o", "--turbo"}, "--turbo"},
            {{"a.pdf", "-o", "o", "--job="}, "job name"},
            {{"a.pdf", "-o", "o", "--pages", "4-1"}, "--pages"},
            {{"a.pdf", "-o", "o", "--pages="}, "--pages"},
            {{"a.pdf", "-o", "o", "--sheet-name", "Cover"}, "%d"},
            {{"a.pdf", "-o", "o", "--resolution", "0.5"}, "is not a number from 1 to 2400"},
            {{"a.pdf", "-o", "o", "--resolution", "2400.5"}, "--resolution"},
            {{"a.pdf", "-o", "o", "--resolution", "nan"}, "--resolution"},
            {{"a.pdf", "-o", "o", "--resolution", "50,8"}, "--resolution"},
            {{"a.pdf", "-o", "o", "--oversampling", "0"}, "is not a number from 1 to 100"},
            {{"a.pdf", "-o", "o", "--oversampling", "1.5"}, "--oversampling"},
            {{"a.pdf", "-o", "o", "--param", "K"}, "KEY=VALUE"},
            {{"a.pdf", "-o", "o", "--param", "=V"}, "the key is empty"},
            {{"a.pdf", "-o", "o", "--param", "K=1", "--param", "K=2"}, "repeated"},
            {{"a.pdf", "-o", "o", "--back-orientation", "rotate45"}, "\"rotate45\" is none of"},
            {{"a.pdf", "-o", "o", "--compression", "zip"}, "\"zip\" is none of"},
            {{"a.pdf", "-o", "o", "--encoding", "hex"}, "\"hex\" is none of"},
        };
        for (const auto& order : orders)
        {
            EXPECT_THAT(Refusal(order.arguments), HasSubstr(order.text));
        }
        EXPECT_THAT(
            Refusal({"a.pdf", "-o", "o", "--sheet-name", (std::string(214, 'x') + "%d").c_str()}), HasSubstr("214"));
    }

    TEST(PageJobTest, DuplexPageWithoutItsOtherSideIsASideAlone)
    {
        std::vector<Page> pages;
        for (const std::uint64_t number : {1U, 2U, 3U, 6U})
        {
            pages.push_back({number, {{"Black", "/" + std::to_string(number)}}, {}, {}});
        }
        const Jobs::Job job = JobOf(Parse({"a.pdf", "--duplex", "-o", "o"}), pages);
        ASSERT_EQ(job.sheets.size(), 3U);
        EXPECT_EQ(job.sheets[0].front[0].file + job.sheets[0].back[0].file, "/1/2");
        EXPECT_EQ(job.sheets[1].sheetName, "Sheet 2");
        EXPECT_TRUE(job.sheets[1].back.empty());
        EXPECT_TRUE(job.sheets[2].front.empty());
        EXPECT_EQ(job.sheets[2].back[0].file, "/6");
    }
}
