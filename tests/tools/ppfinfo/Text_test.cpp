#include "ppfinfo/InkColours.h"
#include "ppfinfo/Text.h"
#include "ppfinfo/ZoneChart.h"
#include "ppfinfo/Zones.h"

#include <gmock/gmock.h>

#include <cmath>

namespace PpfInfoTest
{
    using namespace PpfInfo;

    namespace
    {
        TEST(Text, Utf8StaysAndEveryOtherByteIsLatin1)
        {
            const std::pair<std::string, std::string> cases[] = {
                {"plain", "plain"},
                {"Gr\xC3\xBC\xE2\x82\xAC\xF0\x9F\x8E\xA8", "Gr\xC3\xBC\xE2\x82\xAC\xF0\x9F\x8E\xA8"},
                {"Gr\xFCn", "Gr\xC3\xBCn"},
                // A stray byte leaves the characters around it.
                {"\xC3\xA9 \xE9", "\xC3\xA9 \xC3\xA9"},
                {"\xE9\xC3\xA9", "\xC3\xA9\xC3\xA9"},
                // Cut off, too long a form, a surrogate, and above the last character.
                {"\xE2\x82", "\xC3\xA2\xC2\x82"},
                {"\xC0\x80", "\xC3\x80\xC2\x80"},
                {"\xE0\x80\x80", "\xC3\xA0\xC2\x80\xC2\x80"},
                {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
                {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},
            };
            for (const auto& [bytes, text] : cases)
            {
                EXPECT_EQ(ToUtf8(bytes), text) << testing::PrintToString(bytes);
            }
        }

        TEST(Zones, LengthsNeedAUnitThatThePressroomKnows)
        {
            EXPECT_DOUBLE_EQ(ParseLength("25.4mm").value(), 1);
            EXPECT_DOUBLE_EQ(ParseLength("2.54 cm").value(), 1);
            EXPECT_DOUBLE_EQ(ParseLength("1.5inch").value(), 1.5);
            EXPECT_DOUBLE_EQ(ParseLength("36point").value(), 0.5);
            EXPECT_DOUBLE_EQ(ParseLength("-25.4mm").value(), -1);
            for (const char* const text :
                 {"", "5", "mm", "1 m m", "1km", "nanmm", "infmm", "1e99mm", "1e999mm", "5mmx"})
            {
                EXPECT_FALSE(ParseLength(text)) << text;
            }
        }

        double Apart(const Colour& left, const Colour& right)
        {
            return std::hypot(left.red - right.red, left.green - right.green, left.blue - right.blue);
        }

        TEST(InkColours, ProcessInksAreKnownAndSpotInksAreDistinctAndSteady)
        {
            std::vector<std::string> names = {"CYAN",  "Process Magenta", "y",
                                              "Black", "PANTONE 485 C",   "PANTONE 485 C 2"};
            for (int i = 0; i < 4; ++i)
            {
                names.push_back("HKS " + std::to_string(i));
            }
            const std::vector<Colour> colours = InkColours(names);
            EXPECT_EQ(HexOf(colours[0]), "#00aeef");
            EXPECT_EQ(HexOf(colours[1]), "#ec008c");
            EXPECT_EQ(HexOf(colours[2]), "#fff200");
            EXPECT_EQ(HexOf(colours[3]), "#231f20");
            for (std::size_t i = 0; i < colours.size(); ++i)
            {
                for (std::size_t j = 0; j < i; ++j)
                {
                    EXPECT_GT(Apart(colours[i], colours[j]), 30) << names[i] << " and " << names[j];
                }
            }
            EXPECT_EQ(HexOf(InkColours({"PANTONE Orange 021 C"})[0]), HexOf(InkColours({"orange"})[0]));
        }

        TEST(InkColours, InksMultiply)
        {
            constexpr Colour White = {255, 255, 255};
            const Colour cyan = {0, 174, 239};
            EXPECT_EQ(HexOf(Printed(White, cyan, 0)), "#ffffff");
            EXPECT_EQ(HexOf(Printed(White, cyan, 255)), "#00aeef");
            EXPECT_EQ(HexOf(Printed(Printed(White, cyan, 255), {255, 242, 0}, 255)), "#00a500");
        }

        TEST(ZoneChart, TopIsTheNextRoundPerCent)
        {
            const auto topOf = [](double greatest) { return TopOf({"", {}, {}, 1, {0.1, greatest}}); };
            EXPECT_EQ(topOf(0.2), 5);
            EXPECT_EQ(topOf(20), 20);
            EXPECT_EQ(topOf(20.1), 40);
            EXPECT_EQ(topOf(99), 100);
        }
    }
}
