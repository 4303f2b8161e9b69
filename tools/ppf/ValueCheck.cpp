#include "ppf/ValueCheck.h"

#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/Scanner.h"

#include <algorithm>
#include <array>
#include <string>

namespace Ppf
{
    namespace
    {
        /// More than any list of the format has.
        constexpr std::size_t MostTokens = 100000;

        bool IsString(std::string_view value)
        {
            const std::vector<Token> tokens = TokensOf(value, 1);
            return tokens.size() == 1 && tokens[0].kind == TokenKind::String;
        }

        /// The tokens between the brackets of an array; none if it is not one.
        std::optional<std::vector<Token>> ElementsOf(std::string_view value)
        {
            std::vector<Token> tokens = TokensOf(value, MostTokens);
            if (tokens.size() < 2 || tokens.front().kind != TokenKind::Open || tokens.back().kind != TokenKind::Close)
            {
                return std::nullopt;
            }
            return std::vector<Token>(tokens.begin() + 1, tokens.end() - 1);
        }

        /// Two numbers above 0, each with a unit of length or, in points, without.
        bool IsExtent(std::string_view value)
        {
            constexpr std::array<std::string_view, 6> Units = {"inch", "mm", "cm", "m", "point", "pt"};
            const std::vector<Token> elements = ElementsOf(value).value_or(std::vector<Token>());
            int numbers = 0;
            for (std::size_t i = 0; i < elements.size(); ++i)
            {
                const bool isUnit = std::find(Units.begin(), Units.end(), elements[i].text) != Units.end();
                if (elements[i].kind == TokenKind::Number && *NumberOf(elements[i].text) > 0)
                {
                    ++numbers;
                }
                else if (!isUnit || i == 0 || elements[i - 1].kind != TokenKind::Number)
                {
                    return false;
                }
            }
            return numbers == 2;
        }

        /// Points of a curve, two at least: what is on the film or plate, from 0 to 1 and rising, and what becomes of it.
        bool IsCurve(std::string_view value)
        {
            const std::vector<Token> elements = ElementsOf(value).value_or(std::vector<Token>());
            double before = 0;
            for (std::size_t i = 0; i < elements.size(); ++i)
            {
                const double number = NumberOf(elements[i].text).value_or(-1);
                if (!(number >= 0 && number <= 1) || (i % 2 == 0 && number < before))
                {
                    return false;
                }
                before = i % 2 == 0 ? number : before;
            }
            return elements.size() >= 4 && elements.size() % 2 == 0;
        }

        /// What is not an array at all the reader says.
        bool AreNames(std::string_view value)
        {
            const std::vector<Token> elements = ElementsOf(value).value_or(std::vector<Token>());
            return std::all_of(
                elements.begin(), elements.end(), [](const Token& next) { return next.kind == TokenKind::String; });
        }

        struct Rule
        {
            std::string_view key;
            bool (*isKept)(std::string_view value);
            const char* wanted;
        };

        constexpr std::array<Rule, 6> Rules = {{
            {Key::JobName, &IsString, "a string"},
            {Key::SheetName, &IsString, "a string"},
            {Key::Extent, &IsExtent, "an array of two lengths"},
            {Key::FilmCurve, &IsCurve, "a curve: pairs of numbers from 0 to 1, the first ones rising"},
            {Key::PlateCurve, &IsCurve, "a curve: pairs of numbers from 0 to 1, the first ones rising"},
            {Key::SeparationNames, &AreNames, "an array of strings"},
        }};
    }

    std::vector<Finding> CheckValues(const Document& document)
    {
        std::vector<Finding> findings;
        const auto checkEntries = [&](const std::vector<Entry>& entries)
        {
            for (const Entry& entry : entries)
            {
                const auto rule =
                    std::find_if(Rules.begin(), Rules.end(), [&](const Rule& next) { return next.key == entry.key; });
                if (rule != Rules.end() && !rule->isKept(entry.value))
                {
                    const Finding* const leftOut = document.WhyLeftOut(entry.value);
                    const Finding unfit = {
                        document.OffsetOf(entry.value),
                        "value of /" + std::string(entry.key) + " is not " + rule->wanted};
                    findings.push_back(leftOut != nullptr ? *leftOut : unfit);
                }
            }
        };
        if (!document.damage && !NumberOf(document.version))
        {
            findings.push_back({0, "header's version is not a number"});
        }
        for (const Sheet& sheet : document.sheets)
        {
            checkEntries(sheet.entries);
            for (const Surface& surface : sheet.surfaces)
            {
                checkEntries(surface.entries);
            }
        }
        return findings;
    }
}
