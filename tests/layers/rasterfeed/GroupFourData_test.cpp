// Group 4 is where data that ends early is easiest to miss: libtiff reports success and delivers white lines.

#include "Delivery.h"
#include "TiffEditor.h"
#include "TiffMaker.h"

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

TEST(GroupFourData, LinesThatAreMissingAreNotDeliveredAsWhite)
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

TEST(GroupFourData, ZerosInPlaceOfDataAreNotDeliveredAsWhite)
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
