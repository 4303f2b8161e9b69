// From the resolution that a file states to the one that a host computes from the header.

#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <type_traits>

namespace RasterFeedTest
{
    using TestSupport::MakeTiff;
    using TestSupport::MixedSamples;
    using TestSupport::TiffEditor;
    using TestSupport::TiffForm;
    namespace
    {
        template <class Number>
        std::uint64_t BitsOf(Number value)
        {
            std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint64_t> bits;
            std::memcpy(&bits, &value, sizeof bits);
            return bits;
        }

        constexpr std::uint16_t NoUnitTag = 0;

        /// The resolution of a file of 2551 pixels across, in every way of writing numbers that TIFF has.
        void ExpectResolution(
            double expected, std::uint16_t type, const std::vector<std::uint64_t>& values, std::uint16_t unit)
        {
            for (const bool bigEndian : {false, true})
            {
                for (const bool bigTiff : {false, true})
                {
                    TiffForm form;
                    form.width = 2551;
                    form.height = 1;
                    form.bigEndian = bigEndian;
                    form.bigTiff = bigTiff;
                    TiffEditor editor(MakeTiff(form, MixedSamples(8)));
                    editor.Set(TIFFTAG_XRESOLUTION, type, values);
                    if (unit != NoUnitTag)
                    {
                        editor.Set(TIFFTAG_RESOLUTIONUNIT, TIFF_SHORT, {unit});
                    }
                    const Delivery delivery = Deliver(editor.Bytes());
                    ASSERT_TRUE(delivery.IsComplete());
                    EXPECT_DOUBLE_EQ(delivery.resolution, expected)
                        << "type " << type << ", value " << values[0] << ", unit " << unit;
                }
            }
        }
    }

    TEST(Resolution, RatiosAreTakenExactly)
    {
        ExpectResolution(300, TIFF_RATIONAL, {300, 1}, RESUNIT_INCH);
        ExpectResolution(300, TIFF_RATIONAL, {3000000, 10000}, NoUnitTag);
        ExpectResolution(72, TIFF_RATIONAL, {72, 1}, RESUNIT_INCH);
        ExpectResolution(50.8, TIFF_RATIONAL, {508, 10}, RESUNIT_INCH);
        ExpectResolution(1200.5, TIFF_RATIONAL, {2401, 2}, RESUNIT_INCH);
        ExpectResolution(118.11, TIFF_RATIONAL, {11811, 100}, RESUNIT_INCH);
        ExpectResolution(299.9994, TIFF_RATIONAL, {11811, 100}, RESUNIT_CENTIMETER);
        ExpectResolution(254, TIFF_RATIONAL, {100, 1}, RESUNIT_CENTIMETER);
        ExpectResolution(2540, TIFF_SRATIONAL, {1000, 1}, RESUNIT_CENTIMETER);
    }

    TEST(Resolution, OtherTypesOfNumberAreRead)
    {
        ExpectResolution(1200.5, TIFF_FLOAT, {BitsOf(1200.5f)}, RESUNIT_INCH);
        ExpectResolution(1200.3, TIFF_DOUBLE, {BitsOf(1200.3)}, RESUNIT_INCH);
        ExpectResolution(300, TIFF_SHORT, {300}, RESUNIT_INCH);
        ExpectResolution(70000, TIFF_LONG, {70000}, RESUNIT_INCH);
        ExpectResolution(72, TIFF_ASCII, {'3', '0', '0', 0}, RESUNIT_INCH);
    }

    TEST(Resolution, NoneThatMakesSenseIsSeventyTwo)
    {
        ExpectResolution(72, TIFF_RATIONAL, {300, 1}, RESUNIT_NONE);
        ExpectResolution(72, TIFF_RATIONAL, {300, 1}, 9); // a unit that TIFF does not have
        ExpectResolution(72, TIFF_RATIONAL, {0, 1}, RESUNIT_INCH);
        ExpectResolution(72, TIFF_RATIONAL, {1, 0}, RESUNIT_INCH);
        ExpectResolution(72, TIFF_RATIONAL, {0, 0}, RESUNIT_CENTIMETER);
        ExpectResolution(72, TIFF_SRATIONAL, {0xfffffed4, 1}, RESUNIT_INCH); // -300
        ExpectResolution(72, TIFF_FLOAT, {BitsOf(-300.0f)}, RESUNIT_INCH);
        ExpectResolution(72, TIFF_FLOAT, {BitsOf(std::numeric_limits<float>::quiet_NaN())}, RESUNIT_INCH);
        ExpectResolution(72, TIFF_DOUBLE, {BitsOf(std::numeric_limits<double>::infinity())}, RESUNIT_CENTIMETER);

        TiffForm form;
        EXPECT_EQ(Deliver(MakeTiff(form, MixedSamples(8))).resolution, 72); // no tag
        TiffEditor editor(MakeTiff(form, MixedSamples(8)));
        editor.SetRaw(TIFFTAG_XRESOLUTION, TIFF_RATIONAL, 1, 0xfffffff0); // outside the file
        EXPECT_EQ(Deliver(editor.Bytes()).resolution, 72);
    }
}
