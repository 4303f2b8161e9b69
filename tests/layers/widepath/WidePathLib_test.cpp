// Paths there and back, those that are not UTF-8 above all.
#include <WidePathLib.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace WidePathTest
{
    namespace
    {
        struct Pair
        {
            const char* remark;
            std::string bytes;
            std::wstring wide;
        };

        const Pair Pairs[] = {
            {"empty", "", L""},
            {"ASCII, zero byte and DEL", std::string("a\0/\x7f", 4), std::wstring(L"a\0/\x7f", 4)},
            {"two, three and four bytes", "\xC3\xA4/\xE2\x82\xAC/\xF0\x9F\x96\xA8", L"\xE4/\x20AC/\x1F5A8"},
            {"last code point", "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
            {"after the last code point", "\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"},
            {"ISO 8859-1", "Entw\xFCrfe", L"Entw\xDCFCrfe"},
            {"lead byte at the end", "a\xC3", L"a\xDCC3"},
            {"three bytes cut short", "\xE2\x82x", L"\xDCE2\xDC82x"},
            {"overlong slash", "\xC0\xAF", L"\xDCC0\xDCAF"},
            {"surrogate", "\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},
            {"bad byte between good ones", "\xC3\xA4\xFF\xC3\xA4", L"\xE4\xDCFF\xE4"},
        };
    }

    TEST(WidePath, ConvertsBothWaysWithoutLoss)
    {
        for (const Pair& pair : Pairs)
        {
            EXPECT_EQ(Utf8ToWide(pair.bytes), pair.wide) << pair.remark;
            EXPECT_EQ(WideToUtf8(pair.wide), pair.bytes) << pair.remark;
        }
    }

    TEST(WidePath, EveryPairOfBytesComesBack)
    {
        for (int first = 0; first < 256; ++first)
        {
            for (int second = 0; second < 256; ++second)
            {
                const std::string name = {static_cast<char>(first), static_cast<char>(second)};
                ASSERT_EQ(WideToUtf8(Utf8ToWide(name)), name) << first << ' ' << second;
            }
        }
    }

    TEST(WidePath, UnitForNoByteAndNoCharacterIsRefused)
    {
        for (const wchar_t unit : {L'\xD800', L'\xDC7F', L'\xDD00', L'\x110000', static_cast<wchar_t>(-1)})
        {
            EXPECT_THROW(WideToUtf8(std::wstring(1, unit)), std::range_error) << static_cast<long>(unit);
        }
    }
}
