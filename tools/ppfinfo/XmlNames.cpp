#include "ppfinfo/XmlNames.h"

#include "host/Text.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace PpfInfo
{
    namespace
    {
        constexpr std::string_view Replacement = "_";

        /// Characters of a JDF document's names: of jobs, and of sheets and separations. Tokens have no bound, but one that is
        /// made for a longer name has one.
        constexpr std::size_t LongestJobName = 63;
        constexpr std::size_t LongestText = 1023;

        /// Characters that all versions of XML take in a token, beside letters and digits of ASCII and "._:-": the letters of
        /// the scripts that jobs are named in.
        bool IsLetterOfXml(char32_t c)
        {
            constexpr std::array<std::pair<char32_t, char32_t>, 20> Ranges = {{
                {0x00C0, 0x00D6}, {0x00D8, 0x00F6}, {0x00F8, 0x0131}, {0x0134, 0x013E}, {0x0141, 0x0148},
                {0x014A, 0x017E}, {0x0388, 0x038A}, {0x038C, 0x038C}, {0x038E, 0x03A1}, {0x03A3, 0x03CE},
                {0x0401, 0x040C}, {0x040E, 0x044F}, {0x0451, 0x045C}, {0x05D0, 0x05EA}, {0x0621, 0x063A},
                {0x0641, 0x064A}, {0x3041, 0x3094}, {0x30A1, 0x30FA}, {0x4E00, 0x9FA5}, {0xAC00, 0xD7A3},
            }};
            return std::any_of(
                Ranges.begin(), Ranges.end(), [&](const auto& range) { return c >= range.first && c <= range.second; });
        }

        bool IsTokenCharacter(char32_t c)
        {
            const bool isAsciiLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
            const bool isSign = c == '.' || c == '_' || c == ':' || c == '-';
            return isAsciiLetter || (c >= '0' && c <= '9') || isSign || IsLetterOfXml(c);
        }

        /// U+FFFE and U+FFFF are the characters above the controls that XML does not have.
        bool IsXmlCharacter(char32_t c)
        {
            return c != 0xFFFE && c != 0xFFFF;
        }

        /// The name in the form, which differs from it only where it has to. UTF-8.
        std::string Formed(const std::string& name, NameForm form, std::size_t longest)
        {
            std::string formed;
            std::size_t length = 0;
            for (std::string_view rest = name; !rest.empty() && (form == NameForm::Token || length < longest); ++length)
            {
                const Host::Character c = Host::FirstCharacter(rest);
                const std::string_view bytes = rest.substr(0, c.bytes);
                const bool fits = form == NameForm::Token ? IsTokenCharacter(c.value)
                                                          : IsXmlCharacter(c.value) && Host::OneLine(bytes) == bytes;
                formed += fits ? bytes : Replacement;
                rest.remove_prefix(c.bytes);
            }
            return formed.empty() ? std::string(Replacement) : formed;
        }

        /// With a suffix, and without so many characters before it that it has space within the longest name.
        std::string WithSuffix(std::string name, const std::string& suffix, std::size_t longest)
        {
            constexpr std::size_t LongestCharacter = 4;
            name.resize(std::min(name.size(), longest * LongestCharacter));
            while (WidthOf(name) + suffix.size() > longest || !Host::IsUtf8(name))
            {
                name.pop_back();
            }
            return name + suffix;
        }
    }

    std::string XmlText(std::string_view bytes)
    {
        std::string text;
        const std::string printable = ToPrintable(bytes);
        for (std::string_view rest = printable; !rest.empty();)
        {
            const Host::Character c = Host::FirstCharacter(rest);
            text += IsXmlCharacter(c.value) ? rest.substr(0, c.bytes) : Replacement;
            rest.remove_prefix(c.bytes);
        }
        return text;
    }

    std::vector<std::string> DistinctNames(const std::vector<std::string>& names, NameForm form)
    {
        std::vector<std::string> distinct(names.size());
        std::unordered_set<std::string> taken;
        // Those that fit keep their names, whatever others would become.
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            const std::string name = ToUtf8(names[i]);
            if (Formed(name, form, LongestText) == name && taken.insert(name).second)
            {
                distinct[i] = name;
            }
        }
        // The last number that each was given, as thousands of sheets may have one name.
        std::unordered_map<std::string, std::size_t> numbers;
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            const std::string formed = distinct[i].empty() ? Formed(ToUtf8(names[i]), form, LongestText) : "";
            while (distinct[i].empty())
            {
                const std::size_t number = ++numbers[formed];
                const std::string name =
                    number == 1 ? formed : WithSuffix(formed, "_" + std::to_string(number), LongestText);
                distinct[i] = taken.insert(name).second ? name : "";
            }
        }
        return distinct;
    }

    std::string JobIdOf(const std::string& name, NameForm form)
    {
        std::string text = ToUtf8(name);
        const std::string formed = Formed(text, form, LongestJobName);
        if (formed == text)
        {
            return text;
        }
        // FNV-1a
        std::uint64_t hash = 14695981039346656037u;
        for (const char c : name)
        {
            hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
        }
        std::array<char, 24> suffix = {};
        std::snprintf(suffix.data(), suffix.size(), "_%016llx", static_cast<unsigned long long>(hash));
        return WithSuffix(formed, suffix.data(), LongestJobName);
    }
}
