#include "ppfinfo/InkColours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace ppfinfo
{
    namespace
    {
        constexpr double fullCircle = 360;

        std::string LowerCase(std::string text)
        {
            for (char& c : text)
            {
                c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            }
            return text;
        }

        /// The usual values of the process inks on coated paper, as screens show them.
        std::optional<Colour> ProcessColour(std::string name)
        {
            constexpr Colour cyan = {0, 174, 239};
            constexpr Colour magenta = {236, 0, 140};
            constexpr Colour yellow = {255, 242, 0};
            constexpr Colour black = {35, 31, 32};
            constexpr std::array<std::pair<std::string_view, Colour>, 9> inks = {{
                {"cyan", cyan},
                {"c", cyan},
                {"magenta", magenta},
                {"m", magenta},
                {"yellow", yellow},
                {"y", yellow},
                {"black", black},
                {"k", black},
                {"key", black},
            }};
            constexpr std::string_view prefix = "process ";
            if (name.compare(0, prefix.size(), prefix) == 0)
            {
                name.erase(0, prefix.size());
            }
            for (const auto& [ink, colour] : inks)
            {
                if (name == ink)
                {
                    return colour;
                }
            }
            return std::nullopt;
        }

        /// Degrees on the circle of hues.
        double HueOf(const std::string& name)
        {
            constexpr std::array<std::pair<std::string_view, double>, 9> words = {{
                {"orange", 28},
                {"green", 140},
                {"violet", 275},
                {"purple", 285},
                {"reflex", 230},
                {"blue", 215},
                {"red", 4},
                {"gold", 45},
                {"rhodamine", 318},
            }};
            for (const auto& [word, hue] : words)
            {
                if (name.find(word) != std::string::npos)
                {
                    return hue;
                }
            }
            // FNV-1a: spreads names that differ in one digit.
            std::uint32_t hash = 2166136261u;
            for (const char c : name)
            {
                hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
            }
            return std::fmod(static_cast<double>(hash), fullCircle);
        }

        double Distance(double left, double right)
        {
            const double apart = std::abs(left - right);
            return std::min(apart, fullCircle - apart);
        }

        /// A strong colour of middle lightness.
        Colour ColourOf(double hue)
        {
            constexpr double lightness = 0.46;
            constexpr double chroma = 0.39;
            const auto channel = [&](double offset)
            {
                const double place = std::fmod(offset + hue / 30, 12);
                const double value = lightness - chroma * std::max(-1.0, std::min({place - 3, 9 - place, 1.0}));
                return static_cast<unsigned char>(std::lround(value * 255));
            };
            return {channel(0), channel(8), channel(4)};
        }

        unsigned char Multiplied(unsigned char paper, unsigned char ink, unsigned char sample)
        {
            const unsigned filtered = 255u * 255u - sample * (255u - ink);
            constexpr unsigned full = 255u * 255u;
            return static_cast<unsigned char>((paper * filtered + full / 2) / full);
        }
    }

    std::vector<Colour> InkColours(const std::vector<std::string>& names)
    {
        constexpr double closest = 24;
        // The golden angle never comes back to a hue that it left.
        constexpr double step = 137.5;
        constexpr int mostSteps = 12;
        std::vector<Colour> colours;
        std::vector<double> hues;
        for (const std::string& name : names)
        {
            const std::string lower = LowerCase(name);
            if (const std::optional<Colour> process = ProcessColour(lower))
            {
                colours.push_back(*process);
                continue;
            }
            double hue = HueOf(lower);
            const auto isTaken = [&] {
                return std::any_of(
                    hues.begin(), hues.end(), [&](double other) { return Distance(hue, other) < closest; });
            };
            for (int i = 0; i < mostSteps && isTaken(); ++i)
            {
                hue = std::fmod(hue + step, fullCircle);
            }
            hues.push_back(hue);
            colours.push_back(ColourOf(hue));
        }
        return colours;
    }

    std::string HexOf(const Colour& colour)
    {
        constexpr char digits[] = "0123456789abcdef";
        std::string text = "#";
        for (const unsigned char channel : {colour.red, colour.green, colour.blue})
        {
            text += digits[channel >> 4];
            text += digits[channel & 15];
        }
        return text;
    }

    Colour Printed(const Colour& paper, const Colour& ink, unsigned char sample)
    {
        return {
            Multiplied(paper.red, ink.red, sample), Multiplied(paper.green, ink.green, sample),
            Multiplied(paper.blue, ink.blue, sample)};
    }
}
