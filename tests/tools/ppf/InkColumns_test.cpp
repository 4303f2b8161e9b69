#include "ppf/Failure.h"
#include "ppf/InkColumns.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::DoubleNear;
        using testing::ElementsAre;
        using testing::SizeIs;

        constexpr double Exact = 1e-12;

        Measurement MeasureOf(const std::string& separation)
        {
            const SoundFile file(FrontOf("(K)", separation));
            return Measure(file.document, file.Preview());
        }

        TEST(InkColumns, ColumnThatAnEdgeCutsCountsByItsParts)
        {
            // Full ink in the second of three columns, which two zones share in halves.
            const InkColumns ink = {{0, 510, 0}, 2};
            EXPECT_THAT(
                ink.Zones(EdgesOfEqualZones(3, 2)),
                ElementsAre(DoubleNear(100.0 / 3, Exact), DoubleNear(100.0 / 3, Exact)));
            // More zones than columns: thirds of a column.
            EXPECT_THAT(
                ink.Zones(EdgesOfEqualZones(3, 9)),
                ElementsAre(0, 0, 0, DoubleNear(100, Exact), DoubleNear(100, Exact), DoubleNear(100, Exact), 0, 0, 0));
        }

        TEST(InkColumns, LastZoneOfAWidthMayBeNarrower)
        {
            EXPECT_THAT(EdgesOfZones(5, 2), ElementsAre(0, 2, 4, 5));
            EXPECT_THAT(EdgesOfZones(5, 8), ElementsAre(0, 5));
            // Ten zones of a tenth: rounding makes no eleventh.
            EXPECT_THAT(EdgesOfZones(630, 63.000000000000014 - 3e-14), SizeIs(11));
        }

        TEST(InkColumns, ManyRowsDoNotOverflow)
        {
            const std::string tokens = Repeated(std::string("\x01\xFF\x01", 3), 70000);
            const Measurement measurement =
                MeasureOf(Separation(2, 70000, "RunLengthDecode", "Binary", tokens + "\x80"));
            EXPECT_THAT(measurement.inks[0].sums, ElementsAre(255u * 70000, 70000u));
        }

        TEST(InkColumns, PictureWiderThanAnySheetIsRefused)
        {
            const auto wide = [](int width)
            {
                const std::string runs = Repeated("81ff", (width + 127) / 128);
                return Separation(width, 1, "RunLengthDecode", "ASCIIHexDecode", runs + "80>");
            };
            EXPECT_DOUBLE_EQ(MeasureOf(wide(5 << 20)).inks.at(0).Coverage(), 100);
            EXPECT_THROW(MeasureOf(wide((5 << 20) + 128)), FormatError);
        }
    }
}
