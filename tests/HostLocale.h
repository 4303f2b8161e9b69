// A host may set any locale, at any time, and nothing in a document may depend on it.
#pragma once

#include <clocale>
#include <codecvt>
#include <locale>
#include <string>

/// Makes a locale of strange habits the global one for a while, in C++ and, where the system has one, in C.
class HostLocale
{
public:
    HostLocale()
        : former(std::locale::global(std::locale(std::locale(std::locale::classic(), new Punctuation), new Conversion)))
        , formerC(std::setlocale(LC_ALL, nullptr))
    {
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    ~HostLocale()
    {
        std::locale::global(former);
        std::setlocale(LC_ALL, formerC.c_str());
    }

private:
    struct Punctuation : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    struct Conversion : std::codecvt<char, char, std::mbstate_t>
    {
        bool do_always_noconv() const noexcept override { return false; }
        result do_out(
            std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext, char* to, char* toEnd,
            char*& toNext) const override
        {
            for (; from != fromEnd && to != toEnd; ++from, ++to)
            {
                *to = '?';
            }
            fromNext = from;
            toNext = to;
            return ok;
        }
    };

    std::locale former;
    std::string formerC;
};
