#include "pdf2ppf/SpotFiles.h"

#include <gmock/gmock.h>

namespace Pdf2PpfTest
{
    using Pdf2Ppf::PartsOfSpots;
    using ::testing::ElementsAre;
    using ::testing::Optional;

    TEST(SpotFilesTest, FilesAreFoundByTheNamesThatWerePrinted)
    {
        EXPECT_THAT(
            PartsOfSpots({"Orange", "a/b%d", "gr\xFCn"}, {"gr%FCn", "Orange", "a%2Fb%25d"}),
            Optional(ElementsAre("Orange", "a%2Fb%25d", "gr%FCn")));
        // What looks like an escape and is not one.
        EXPECT_THAT(PartsOfSpots({"50%", "%zz"}, {"%zz", "50%"}), Optional(ElementsAre("50%", "%zz")));
    }

    TEST(SpotFilesTest, ColourLikeAProcessInkHasItsNumber)
    {
        EXPECT_THAT(PartsOfSpots({"YELLOW", "cyan"}, {"cyan1", "YELLOW0"}), Optional(ElementsAre("YELLOW0", "cyan1")));
        EXPECT_THAT(PartsOfSpots({"A1", "A"}, {"A", "A1"}), Optional(ElementsAre("A1", "A")));
    }

    TEST(SpotFilesTest, WhatDoesNotFitOneToOneIsNoAnswer)
    {
        EXPECT_EQ(PartsOfSpots({"A"}, {}), std::nullopt);
        EXPECT_EQ(PartsOfSpots({}, {"A"}), std::nullopt);
        EXPECT_EQ(PartsOfSpots({"A"}, {"B"}), std::nullopt);
        EXPECT_EQ(PartsOfSpots({"A", "A"}, {"A", "B"}), std::nullopt);
    }
}
