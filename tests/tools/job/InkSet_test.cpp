#include "host/Failure.h"
#include "job/InkSet.h"
#include "tests/support/Folder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::ElementsAre;

    class InkSet : public ::testing::Test
    {
    protected:
        /// "INK=NAME" of each separation in the set; or what it is refused with, the folder's name as "F".
        std::vector<std::string> SetOf(const std::string& pattern) const
        {
            std::vector<std::string> found;
            try
            {
                for (const Separation& separation : SeparationsOfSet(pattern, folder.Path()))
                {
                    found.push_back(separation.name + '=' + separation.file);
                }
            }
            catch (const Host::UsageError& refusal)
            {
                found.emplace_back(refusal.what());
            }
            for (std::string& text : found)
            {
                for (auto at = text.find(folder.Path()); at != std::string::npos; at = text.find(folder.Path()))
                {
                    text.replace(at, folder.Path().size(), "F");
                }
            }
            return found;
        }

        TestSupport::Folder folder;
    };

    TEST_F(InkSet, InksComeInTheirOrderAndAllElseStandsForItself)
    {
        for (const char* const name :
             {"p(k).tif", "p(Magenta).tif", "p(c).tif", "p(YELLOW).tif", "p(cy).tif", "p(Varnish).tif", "p(a)b).tif",
              "p(\xFF*?[x]).tif", "p().tif", "p(C).tiff", "xp(C).tif", "p(C.tif", "P(C).tif"})
        {
            folder.Write(name, "");
        }
        std::filesystem::create_directory(folder / "p(Folder).tif");
        EXPECT_THAT(
            SetOf("p(*).tif"),
            ElementsAre(
                "Cyan=F/p(c).tif", "Magenta=F/p(Magenta).tif", "Yellow=F/p(YELLOW).tif", "Black=F/p(k).tif",
                "Varnish=F/p(Varnish).tif", "a)b=F/p(a)b).tif", "cy=F/p(cy).tif", "\xFF*?[x]=F/p(\xFF*?[x]).tif"));
        EXPECT_THAT(SetOf("x*.tif"), ElementsAre("p(C)=F/xp(C).tif"));
    }

    TEST_F(InkSet, FolderIsSpeltAsAPersonLikes)
    {
        std::filesystem::create_directory(folder / "a*b");
        folder.Write("a*b/C1", "");
        EXPECT_EQ(SeparationsOfSet("C*", folder / "a*b").at(0).file, folder / "a*b/C1");
        EXPECT_EQ(SeparationsOfSet(".//C*", folder / "a*b").at(0).file, folder / "a*b/.//C1");
    }

    TEST_F(InkSet, WhatIsNoSetIsRefused)
    {
        folder.Write("p(C).tif", "");
        folder.Write("p(cyan).tif", "");
        EXPECT_THAT(
            SetOf("p(*).tif"),
            ElementsAre("F/p(C).tif and F/p(cyan).tif are both the ink \"Cyan\"; one of them is wanted"));
        EXPECT_THAT(SetOf("q*"), ElementsAre("no file fits \"F/q*\""));
        EXPECT_THAT(SetOf("q/*"), ElementsAre("the folder F/q cannot be read: No such file or directory"));
        for (const std::string pattern : {"", "p", "p**", "*/p*", "*/p"})
        {
            EXPECT_THAT(
                SetOf(pattern),
                ElementsAre(
                    '"' + pattern +
                    "\" is not a set: exactly one * is needed, in the file's name, where the ink's stands"));
        }
    }
}
