// Group 4 data that lacks its last line must be refused: libtiff alone would deliver white.

#include "Delivery.h"
#include "TiffEditor.h"
#include "TiffMaker.h"
#include "rasterfeed/GroupFourEnd.h"

#include <algorithm>
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

TEST(GroupFourEnd, ZerosInPlaceOfDataAreNotDeliveredAsWhite)
{
    // What a copy leaves that stopped half-way into a file of its full size; and zeros behind whole data, which do no harm.
    TiffForm form;
    form.bits = 1;
    form.compression = COMPRESSION_CCITTFAX4;
    form.height = 500;
    form.rowsPerStrip = 500;
    const std::string sound = MakeTiff(form, MixedSamples(1));
    TiffEditor editor(sound);
    const std::uint64_t offset = editor.Get(TIFFTAG_STRIPOFFSETS);
    const std::uint64_t bytes = editor.Get(TIFFTAG_STRIPBYTECOUNTS);
    for (std::uint64_t kept = bytes / 2; kept < bytes - 4; ++kept)
    {
        std::string zeroed = sound;
        std::fill(
            zeroed.begin() + static_cast<long>(offset + kept), zeroed.begin() + static_cast<long>(offset + bytes),
            '\0');
        ASSERT_EQ(Deliver(zeroed).end, Delivery::End::LineFailed) << kept << " of " << bytes << " bytes";
    }
    for (const std::size_t zeros : {1u, 2u, 3u, 700u})
    {
        TiffEditor padded(sound + sound.substr(offset, bytes) + std::string(zeros, '\0'));
        padded.Set(TIFFTAG_STRIPOFFSETS, TIFF_LONG, {sound.size()});
        padded.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, {bytes + zeros});
        EXPECT_EQ(Deliver(padded.Bytes()).lines, Deliver(sound).lines) << zeros << " zeros";
    }
}

TEST(GroupFourEnd, MarkIsFoundAtEveryBitAndBehindPadding)
{
    for (std::size_t shift = 0; shift < 8; ++shift)
    {
        for (const std::size_t padding : {0u, 1u, 2u})
        {
            // Ones up to the mark 000000000001 000000000001, zeros behind it.
            std::vector<unsigned char> tail(4 + padding);
            for (std::size_t bit = 0; bit < 32; ++bit)
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

TEST(GroupFourEnd, DataWithoutAMarkIsSpoiledBehindItOnly)
{
    const unsigned char full[] = {0x26, 0xA4, 0x01};  // no zero behind it
    const unsigned char seven[] = {0x26, 0xA4, 0x80}; // as many as end a byte
    const unsigned char eight[] = {0x26, 0xA1, 0x00}; // the last one of them
    const unsigned char more[] = {0x26, 0xA1, 0x00, 0x00};
    EXPECT_FALSE(SpoilGroupFourEnd(full, 0, false));
    EXPECT_FALSE(SpoilGroupFourEnd(full, 3, false));
    EXPECT_FALSE(SpoilGroupFourEnd(seven, 3, false));
    EXPECT_EQ(SpoilGroupFourEnd(eight, 3, false)->value, 0x01);
    EXPECT_EQ(SpoilGroupFourEnd(eight, 3, true)->value, 0x80);
    EXPECT_EQ(SpoilGroupFourEnd(more, 4, false)->index, 3u);
    EXPECT_EQ(SpoilGroupFourEnd(more, 4, false)->value, 0x20);
}
