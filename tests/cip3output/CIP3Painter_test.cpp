// A document's life: header, directory, closing, the file on disk.
#include "tests/TwoSheetExample.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PpfScribe.h"

#include <gmock/gmock.h>

#include <csignal>

#include <sys/resource.h>

namespace CIP3OutputTest
{
    using namespace RasterOutput;
    using testing::EndsWith;
    using testing::HasSubstr;
    using testing::StartsWith;
    using TwoSheetExample::Header;
    using TwoSheetExample::Trailer;

    TEST(CIP3Painter, SheetCountDecidesOnTheDirectory)
    {
        PpfScribe none(0, RunLength, ASCII85);
        none.Start();
        EXPECT_EQ(none.Finish(), Header + Trailer);

        PpfScribe one(1, RunLength, ASCII85);
        one.Start();
        one.Sheet("S1", {"line"});
        const std::string file = one.Finish();
        EXPECT_THAT(file, StartsWith(Header + "CIP3BeginSheet\n"));
        EXPECT_THAT(file, EndsWith("CIP3EndSheet\n\n" + Trailer));
    }

    TEST(CIP3Painter, DirectoryDescribesSheetsThatFollowEachOtherWithoutAGap)
    {
        constexpr std::size_t Sheets = 300;
        PpfScribe scribe(Sheets, None, Binary);
        scribe.Start();
        for (std::size_t i = 0; i < Sheets; ++i)
        {
            scribe.Sheet(std::string(1 + i % 214, 'n'), {std::string(i * 7, 'x')});
        }
        const std::string file = scribe.Finish();
        std::size_t expected = 89 + 256 * Sheets;
        for (std::size_t i = 0; i < Sheets; ++i)
        {
            const std::string line = file.substr(68 + 256 * i, 256);
            ASSERT_EQ(std::stoul(line.substr(0, 10)), expected) << "sheet " << i;
            ASSERT_EQ(file.substr(expected, 15), "CIP3BeginSheet\n") << "sheet " << i;
            expected += std::stoul(line.substr(11, 10));
        }
        EXPECT_EQ(file.substr(expected), Trailer);
    }

    TEST(CIP3Painter, LongestSheetNameFillsItsDirectoryField)
    {
        const std::string name(214, 'n');
        PpfScribe scribe(2, None, Binary);
        scribe.Start();
        scribe.Sheet(name, {});
        scribe.Sheet("S2", {});
        const std::string file = scribe.Finish();
        EXPECT_EQ(file[68 + 237], ')');
        EXPECT_EQ(file.substr(68 + 238, 18), " CIP3PPFDirEntry \n");
        EXPECT_THAT(file, HasSubstr("/CIP3AdmSheetName (" + name + ") def\n"));
    }

    TEST(CIP3Painter, FileStaysEmptyUntilItIsComplete)
    {
        PpfScribe scribe(1, RunLength, ASCII85);
        EXPECT_FALSE(scribe.FileExists());
        scribe.Start();
        scribe.Sheet("S1", std::vector<std::string>(100, Literal(100000)));
        EXPECT_TRUE(scribe.FileExists());
        EXPECT_EQ(scribe.File(), "");
        EXPECT_GT(scribe.Finish().size(), 10000000U);
    }

    TEST(CIP3Painter, SecondDocumentIsTheExampleAsTheFirstIs)
    {
        PpfScribe scribe(2, RunLength, ASCIIHex);
        const std::vector<std::string> lines = {Hex("00 00 00 00"), Hex("FF FF 00 80")};
        for (int document = 0; document < 2; ++document)
        {
            scribe.Start();
            for (const std::int32_t side : {0, 1})
            {
                scribe.BeginSheet(side == 0 ? "S1" : "S2");
                scribe.BeginSurface(side);
                scribe.Separation(lines);
                scribe.EndSurface();
                scribe.EndSheet();
            }
            EXPECT_EQ(scribe.Finish(), TwoSheetExample::File()) << document;
        }
    }

    TEST(CIP3Painter, FullDiskIsNotReportedAndThePainterMayBeginAgain)
    {
        PpfScribe scribe(1, None, Binary);
        const auto write = [&scribe]
        {
            scribe.Start();
            scribe.Sheet("S1", std::vector<std::string>(50, Literal(100000)));
            scribe.painter.Finalize();
        };
        write();
        const std::string whole = scribe.File();
        rlimit unlimited = {};
        getrlimit(RLIMIT_FSIZE, &unlimited);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        for (const std::size_t size : {std::size_t{0}, std::size_t{46}, DocumentBuffer::BlockSize + 1})
        {
            const rlimit limit = {size, unlimited.rlim_max};
            setrlimit(RLIMIT_FSIZE, &limit);
            EXPECT_NO_THROW(write()) << size;
            setrlimit(RLIMIT_FSIZE, &unlimited);
            EXPECT_TRUE(scribe.File() == whole.substr(0, size)) << size;
            write();
            EXPECT_TRUE(scribe.File() == whole) << size;
        }
        std::signal(SIGXFSZ, handler);
    }
}
