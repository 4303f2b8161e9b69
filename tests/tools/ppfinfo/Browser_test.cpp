// What a browser makes of the report: the switches of the inks change the picture. Only where there is one, Chromium, as
// scripts/lint installs it: no other test needs it.

#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>
#include <png.h>

#include <array>
#include <cstdlib>

namespace PpfInfoTest
{
    namespace
    {
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;

        /// Pages of this size stand side by side in one screenshot, as a browser takes seconds to start.
        constexpr unsigned PageWidth = 640;
        constexpr unsigned PageHeight = 1000;

        /// The page with the box of that number, from 0, switched off.
        std::string Without(std::string page, int box)
        {
            const std::string on = "<input type=\"checkbox\" checked>";
            std::size_t at = page.find(on);
            for (; box > 0; --box)
            {
                at = page.find(on, at + 1);
            }
            return page.replace(at, on.size(), "<input type=\"checkbox\">");
        }

        /// The colour of the composite, which fills the middle of the page's upper part, as 0xRRGGBB.
        unsigned ColourOf(const std::vector<unsigned char>& samples, std::size_t stride, unsigned page)
        {
            const unsigned char* const pixel =
                &samples[(PageHeight / 2) * stride + (page * PageWidth + PageWidth / 2) * 3];
            return static_cast<unsigned>(pixel[0]) << 16 | static_cast<unsigned>(pixel[1]) << 8 | pixel[2];
        }

        TEST(Browser, SwitchesTakeInksOutOfThePicture)
        {
            if (std::system("command -v chromium >/dev/null") != 0)
            {
                GTEST_SKIP() << "no Chromium here";
            }
            const Folder folder;
            const std::string full = HexPixels(1, 1, "ff>");
            const std::string page = ReportOf(FrontOf("(Cyan) (Yellow)", full + full));
            const std::array<std::string, 4> pages = {
                page, Without(page, 0), Without(page, 1), Without(Without(page, 1), 0)};
            std::string frames = "<body style=\"margin:0;display:flex\">";
            for (std::size_t i = 0; i < pages.size(); ++i)
            {
                const std::string name = std::to_string(i) + ".html";
                folder.Write(name, pages[i]);
                frames += "<iframe style=\"border:0\" width=" + std::to_string(PageWidth) +
                          " height=" + std::to_string(PageHeight) + " src=" + name + "></iframe>";
            }
            folder.Write("frames.html", frames);
            setenv("place", folder.Path().c_str(), 1);
            const std::string command =
                "cd \"$place\" && TMPDIR=. timeout 120 " // its sockets have short names
                "chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage --hide-scrollbars "
                "--window-size=" +
                std::to_string(PageWidth * pages.size()) + ',' + std::to_string(PageHeight) +
                " --user-data-dir=\"$PWD/profile\" --screenshot=\"$PWD/shot.png\" frames.html >log 2>&1";
            ASSERT_EQ(std::system(command.c_str()), 0) << folder.Read("log");

            const std::vector<unsigned char> samples = SamplesOf(folder.Read("shot.png"), PNG_FORMAT_RGB);
            std::vector<unsigned> colours;
            for (unsigned i = 0; i < pages.size(); ++i)
            {
                colours.push_back(ColourOf(samples, PageWidth * pages.size() * 3, i));
            }
            // Cyan times yellow is their green.
            EXPECT_THAT(colours, testing::ElementsAre(0x00A500, 0xFFF200, 0x00AEEF, 0xFFFFFF));
        }
    }
}
