#include "ppfinfo/InkColours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace PpfInfo
{
    namespace
    {
        constexpr double FullCircle = 360;

        std::string LowerCase(std::string text)
        {
            for (char& c : text)
            {
                c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            }
            return text;
        }

        struct ProcessInk
        {
            Colour colour;
            /// Degrees on the circle of hues, which spot inks keep away from; below 0 for black.
            double hue;
        };

        /// The usual values of the process inks on coated paper, as screens show them.
        std::optional<ProcessInk> ProcessInkOf(std::string name)
        {
            constexpr ProcessInk Cyan = {{0, 174, 239}, 196};
            constexpr ProcessInk Magenta = {{236, 0, 140}, 324};
            constexpr ProcessInk Yellow = {{255, 242, 0}, 57};
            constexpr ProcessInk Black = {{35, 31, 32}, -1};
            constexpr std::array<std::pair<std::string_view, ProcessInk>, 9> Inks = {{
                {"cyan", Cyan},
                {"c", Cyan},
                {"magenta", Magenta},
                {"m", Magenta},
                {"yellow", Yellow},
                {"y", Yellow},
                {"black", Black},
                {"k", Black},
                {"key", Black},
            }};
            constexpr std::string_view Prefix = "process ";
            if (name.compare(0, Prefix.size(), Prefix) == 0)
            {
                name.erase(0, Prefix.size());
            }
            for (const auto& [ink, values] : Inks)
            {
                if (name == ink)
                {
                    return values;
                }
            }
            return std::nullopt;
        }

        /// Degrees on the circle of hues.
        double HueOf(const std::string& name)
        {
            constexpr std::array<std::pair<std::string_view, double>, 9> Words = {{
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
            for (const auto& [word, hue] : Words)
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
            return std::fmod(static_cast<double>(hash), FullCircle);
        }

        double Distance(double left, double right)
        {
            const double apart = std::abs(left - right);
            return std::min(apart, FullCircle - apart);
        }

        /// A strong colour of middle lightness.
        Colour ColourOf(double hue)
        {
            constexpr double Lightness = 0.46;
            constexpr double Chroma = 0.39;
            const auto channel = [&](double offset)
            {
                const double place = std::fmod(offset + hue / 30, 12);
                const double value = Lightness - Chroma * std::max(-1.0, std::min({place - 3, 9 - place, 1.0}));
                return static_cast<unsigned char>(std::lround(value * 255));
            };
            return {channel(0), channel(8), channel(4)};
        }

        unsigned char Multiplied(unsigned char paper, unsigned char ink, unsigned char sample)
        {
            const unsigned filtered = 255u * 255u - sample * (255u - ink);
            constexpr unsigned Full = 255u * 255u;
            return static_cast<unsigned char>((paper * filtered + Full / 2) / Full);
        }
    }

    std::vector<Colour> InkColours(const std::vector<std::string>& names)
    {
        constexpr double Closest = 20;
        // The golden angle never comes back to a hue that it left.
        constexpr double Step = 137.5;
        constexpr int MostSteps = 12;
        std::vector<std::optional<ProcessInk>> process;
        std::vector<double> hues;
        for (const std::string& name : names)
        {
            process.push_back(ProcessInkOf(LowerCase(name)));
            if (process.back() && process.back()->hue >= 0)
            {
                hues.push_back(process.back()->hue);
            }
        }
        std::vector<Colour> colours;
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            if (process[i])
            {
                colours.push_back(process[i]->colour);
                continue;
            }
            double hue = HueOf(LowerCase(names[i]));
            const auto isTaken = [&] {
                return std::any_of(
                    hues.begin(), hues.end(), [&](double other) { return Distance(hue, other) < Closest; });
            };
            for (int steps = 0; steps < MostSteps && isTaken(); ++steps)
            {
                hue = std::fmod(hue + Step, FullCircle);
            }
            hues.push_back(hue);
            colours.push_back(ColourOf(hue));
        }
        return colours;
    }

    std::string HexOf(const Colour& colour)
    {
        constexpr char Digits[] = "0123456789abcdef";
        std::string text = "#";
        for (const unsigned char channel : {colour.red, colour.green, colour.blue})
        {
            text += Digits[channel >> 4];
            text += Digits[channel & 15];
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
