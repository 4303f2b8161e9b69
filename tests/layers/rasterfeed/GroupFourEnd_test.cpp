// Group 4 data that lacks its last line must be refused: libtiff alone would deliver white.

#include "Delivery.h"
#include "TiffEditor.h"
#include "TiffMaker.h"
#include "rasterfeed/GroupFourEnd.h"

#include <gtest/gtest.h>
#include <vector>

namespace
{
    /// An image of `height` rows whose data holds `encoded` of them.
    std::string GroupFour(std::uint32_t height, std::uint32_t encoded, TiffForm form)
    {
        form.bits = 1;
        form.compression = COMPRESSION_CCITTFAX4;
        form.height = encoded;
        form.rowsPerStrip = encoded;
        TiffEditor editor(MakeTiff(form, MixedSamples(1)));
        editor.Set(TIFFTAG_IMAGELENGTH, TIFF_LONG, {height});
        if (form.tileWidth == 0)
            editor.Set(TIFFTAG_ROWSPERSTRIP, TIFF_LONG, {height});
        return editor.Bytes();
    }
}

TEST(GroupFourEnd, LinesThatAreMissingAreNotDeliveredAsWhite)
{
    for (const std::uint16_t orientation : std::vector<std::uint16_t>{ORIENTATION_TOPLEFT, ORIENTATION_BOTLEFT})
    {
        for (const std::uint16_t fillOrder : std::vector<std::uint16_t>{FILLORDER_MSB2LSB, FILLORDER_LSB2MSB})
        {
            for (const std::uint32_t missing : {1u, 2u, 9u})
            {
                TiffForm form;
                form.orientation = orientation;
                form.fillOrder = fillOrder;
                EXPECT_TRUE(Deliver(GroupFour(20, 20, form)).IsComplete());
                EXPECT_EQ(Deliver(GroupFour(20 + missing, 20, form)).end, Delivery::End::LineFailed)
                    << missing << " lines, orientation " << orientation << ", fill order " << fillOrder;
            }
        }
    }
}

TEST(GroupFourEnd, MarkIsFoundAtEveryBitAndBehindPadding)
{
    for (std::size_t shift = 0; shift < 8; ++shift)
    {
        for (const std::size_t padding : {0u, 1u, 7u})
        {
            // Ones up to the mark 000000000001 000000000001, zeros behind it.
            std::vector<unsigned char> tail(5 + padding);
            for (std::size_t bit = 0; bit < 40; ++bit)
            {
                if (bit < shift || bit == shift + 11 || bit == shift + 23)
                    tail[bit / 8] = static_cast<unsigned char>(tail[bit / 8] | 0x80u >> bit % 8);
            }
            const auto spoiled = SpoilGroupFourEnd(tail.data(), tail.size(), false);
            ASSERT_TRUE(spoiled) << "shift " << shift << ", padding " << padding;
            const std::size_t bit = shift + 6; // 0000001
            EXPECT_EQ(spoiled->index, bit / 8);
            EXPECT_EQ(spoiled->value ^ tail[bit / 8], 0x80 >> bit % 8);
        }
    }
}

TEST(GroupFourEnd, DataWithoutAMarkIsLeftAlone)
{
    const unsigned char zeros[8] = {};
    const unsigned char code[] = {0x26, 0xA0, 0x01}; // ten zeros before the last one
    EXPECT_FALSE(SpoilGroupFourEnd(zeros, sizeof zeros, false));
    EXPECT_FALSE(SpoilGroupFourEnd(zeros, 0, false));
    EXPECT_FALSE(SpoilGroupFourEnd(code, 2, false));
}
