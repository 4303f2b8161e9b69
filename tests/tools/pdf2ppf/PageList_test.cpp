#include "host/Failure.h"
#include "pdf2ppf/PageList.h"

#include <gtest/gtest.h>

namespace Pdf2PpfTest
{
    using Pdf2Ppf::PageList;

    TEST(PageListTest, RangesAreOrderedAndJoined)
    {
        const struct
        {
            const char* text;
            const char* ordered;
            std::uint64_t size;
        } lists[] = {
            {"7", "7", 1},         {"1-4,7", "1-4,7", 5},
            {"7,1-4", "1-4,7", 5}, // in any order
            {"1-4,3-6", "1-6", 6}, {"1-9,3-6", "1-9", 9},
            {"1,2", "1-2", 2},                                                   // touching and overlapping
            {"3-3,3", "3", 1},     {"1-2147483647", "1-2147483647", 2147483647}, // costs no more than its text
        };
        for (const auto& list : lists)
        {
            const PageList pages(list.text);
            EXPECT_EQ(pages.Text(), list.ordered) << list.text;
            EXPECT_EQ(pages.Size(), list.size) << list.text;
        }
    }

    TEST(PageListTest, PagesAreFoundByPlaceAndByNumber)
    {
        const PageList pages("2-3,7");
        EXPECT_EQ(pages.At(0), 2U);
        EXPECT_EQ(pages.At(1), 3U);
        EXPECT_EQ(pages.At(2), 7U);
        EXPECT_EQ(pages.At(3), 0U);
        EXPECT_TRUE(pages.Has(3) && pages.Has(7));
        EXPECT_FALSE(pages.Has(1) || pages.Has(4) || pages.Has(8));
    }

    TEST(PageListTest, WhatIsNoListIsRefused)
    {
        for (const char* const text :
             {"", ",", "1,", ",1", "0", "0-3", "-3", "3-", "4-1", "1-2-3", "a", "1 ", "+1", "2147483648",
              "99999999999999999999999"})
        {
            EXPECT_THROW(PageList{text}, Host::UsageError) << text;
        }
    }
}
