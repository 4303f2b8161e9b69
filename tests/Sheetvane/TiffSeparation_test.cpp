// Separations through a fake reader: what the reader is told, what becomes of its numbers and lines, and that it is
// ended whatever happens.
#include "frontend/TiffReader.h"
#include "frontend/TiffSeparation.h"
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/FakeReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace SheetvaneTest
{
    using Trouble = FakeSeparation::Trouble;

    namespace
    {
        class TiffSeparation : public FakeReaderTest
        {
        protected:
            std::string ReadGeometry(const std::string& path)
            {
                return FailureOf([&] { Sheetvane::ReadTiffGeometry(path, view, width, height, resolution); });
            }

            RasterFeedSelection view;
            std::uint32_t width = 0;
            std::uint32_t height = 0;
            double resolution = 0;
        };
    }

    TEST_F(TiffSeparation, ResolutionIsThatOfTheWidth)
    {
        fake.separations["a.tif"] = {1000, 8000, 3600, 2400};
        EXPECT_EQ(ReadGeometry("a.tif"), "[nothing]");
        EXPECT_EQ(width, 2400u);
        EXPECT_EQ(height, 3600u);
        EXPECT_EQ(resolution, 300.0);
        EXPECT_EQ(fake.log, "init\nalloc 0 STR,SEQ\nopen a.tif .tif 0\nclose\nfree\n");
    }

    TEST_F(TiffSeparation, ViewThatIsAskedForReachesTheReaderOnce)
    {
        fake.separations["a.tif"] = {1000, 8000, 3600, 2400};
        view = {50.8, 300, 1200, RasterFeedOrientation::Flip90};
        EXPECT_EQ(ReadGeometry("a.tif"), "[nothing]");
        EXPECT_EQ(fake.log, "init\nalloc 0 STR,SEQ\nopen a.tif .tif 0\nselect 50.8 300 1200 5\nclose\nfree\n");
        fake.selectionFails = true;
        EXPECT_EQ(ReadGeometry("a.tif"), "Problems reading TIFF input header");
    }

    TEST_F(TiffSeparation, SizesAreUnsignedAndUnitsAreSigned)
    {
        const double infinity = std::numeric_limits<double>::infinity();
        fake.separations["huge"] = {1, 1, 4294967295u, 4294967295u};
        EXPECT_EQ(ReadGeometry("huge"), "[nothing]");
        EXPECT_EQ(resolution, 4294967295.0);
        fake.separations["no width"] = {1000, 0, 1, 2400};
        EXPECT_EQ(ReadGeometry("no width"), "[nothing]");
        EXPECT_EQ(resolution, infinity);
        fake.separations["negative"] = {1000, -8000, 1, 2400};
        EXPECT_EQ(ReadGeometry("negative"), "[nothing]");
        EXPECT_EQ(resolution, -300.0);
    }

    TEST_F(TiffSeparation, PathOf1023BytesFitsAndALongerOneIsRefused)
    {
        const std::string path(1023, 'p');
        fake.separations[path] = {1, 1, 1, 1};
        EXPECT_EQ(ReadGeometry(path), "[nothing]");
        fake.log.clear();
        EXPECT_EQ(ReadGeometry(path + "q"), "Problems opening TIFF input file");
        EXPECT_EQ(fake.log, ""); // the reader is not asked
    }

    TEST_F(TiffSeparation, EachTroubleHasItsTextAndEndsTheReader)
    {
        const std::pair<Trouble, const char*> troubles[] = {
            {Trouble::NullReader, "Problems opening TIFF input file"},
            {Trouble::HeaderFails, "Problems reading TIFF input header"},
            {Trouble::HeaderCallsFailure, "Could not read intermediate tiff file"},
        };
        for (const auto& [trouble, text] : troubles)
        {
            fake.separations["a.tif"].trouble = trouble;
            EXPECT_EQ(ReadGeometry("a.tif"), text);
            EXPECT_EQ(fake.openReaders, 0) << text;
        }
        fake.separations["a.tif"].trouble = Trouble::None;
        fake.blocksRunOut = true;
        EXPECT_EQ(ReadGeometry("a.tif"), "Could not allocate file handle");
    }
}
