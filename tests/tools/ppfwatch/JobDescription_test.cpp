#include "host/Failure.h"
#include "ppfwatch/JobDescription.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace PpfWatchTest
{
    namespace
    {
        using namespace PpfWatch;
        using ::testing::ElementsAre;
        using ::testing::HasSubstr;

        class JobDescriptionTest : public ::testing::Test
        {
        protected:
            JobDescription Of(JobKind kind, const std::vector<std::string>& names)
            {
                Order order{kind, "J", {}};
                for (const std::string& name : names)
                {
                    order.sources.push_back({name, {}});
                }
                return Describe(order, config);
            }

            Config config{"/in", "/out", "/done", "/failed", NamePattern("{job}_{sheet}_{side}_{ink}.tif"), {}};
        };

        TEST_F(JobDescriptionTest, SetBecomesAJobFileInOrder)
        {
            config.parameters = R"({"N":1500})";
            const JobDescription job =
                Of(JobKind::Set, {"J_10_f_Red.tif", "J_2_b_k.tif", "J_2_b_C.tif", "J_10_F_yellow.tif"});
            EXPECT_EQ(job.program, "tiff2ppf");
            EXPECT_THAT(job.arguments, ElementsAre("-"));
            EXPECT_EQ(
                job.input, R"({"jobName":"J","sheets":[)"
                           R"({"sheetName":"2","front":[],"back":[{"separation":"Cyan","file":"J_2_b_C.tif"},)"
                           R"({"separation":"Black","file":"J_2_b_k.tif"}],"parameters":{"N":1500}},)"
                           R"({"sheetName":"10","front":[{"separation":"Yellow","file":"J_10_F_yellow.tif"},)"
                           R"({"separation":"Red","file":"J_10_f_Red.tif"}],"back":[],"parameters":{"N":1500}}]})");
        }

        TEST_F(JobDescriptionTest, ResolutionIsSaidUnlessItIsTheDefault)
        {
            config.resolution = "keep";
            EXPECT_THAT(Of(JobKind::Set, {"J_S_f_C.tif"}).input, HasSubstr(R"("resolution":"keep",)"));
            config.resolution = "72.5";
            EXPECT_THAT(Of(JobKind::Set, {"J_S_f_C.tif"}).input, HasSubstr(R"("resolution":72.5,)"));
            EXPECT_THAT(
                Of(JobKind::Pdf, {"J.pdf"}).arguments, ElementsAre("/in/J.pdf", "--job", "J", "--resolution", "72.5"));
        }

        TEST_F(JobDescriptionTest, NamesThatAreNoUtf8GoAsArguments)
        {
            config.parameterText = {{"N", "1500"}};
            const JobDescription job = Of(JobKind::Set, {"J_S\xFF_f_C.tif"});
            EXPECT_THAT(
                job.arguments,
                ElementsAre("--job", "J", "--sheet", "S\xFF", "--front", "Cyan=J_S\xFF_f_C.tif", "--param", "N=1500"));
            EXPECT_EQ(job.input, "");
            EXPECT_THROW(Of(JobKind::Set, {"J_S\xFF_f_A=B.tif"}), Host::Failure);
        }

        TEST_F(JobDescriptionTest, SameInkTwiceIsRefused)
        {
            EXPECT_THAT(
                TestSupport::FailureOf<Host::Failure>(
                    [this] {
                        Of(JobKind::Set, {"J_S_f_C.tif", "J_S_front_cyan.tif"});
                    }),
                HasSubstr("J_S_f_C.tif and J_S_front_cyan.tif are both the ink \"Cyan\""));
        }

        TEST_F(JobDescriptionTest, JobFileAndPdfGoToTheirPrograms)
        {
            config.parameterText = {{"N", "1500"}};
            EXPECT_THAT(Of(JobKind::JobFile, {"J.json", "c.tif"}).arguments, ElementsAre("/in/J.json"));
            const JobDescription pdf = Of(JobKind::Pdf, {"J.pdf"});
            EXPECT_EQ(pdf.program, "pdf2ppf");
            EXPECT_THAT(pdf.arguments, ElementsAre("/in/J.pdf", "--job", "J", "--param", "N=1500"));
        }
    }
}
