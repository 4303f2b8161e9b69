#include "pdf2ppf/Messages.h"

#include "host/Text.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <system_error>
#include <utility>

namespace Pdf2Ppf
{
    namespace
    {
        // `%%SeparationColor: "Signal Orange" 100% ink = 0 16380 32760 0 CMYK`: the name stands between the quotes as it is,
        // whatever it holds, and may go over several lines.
        constexpr std::string_view ColourBegin = "%%SeparationColor: \"";
        constexpr std::string_view ColourNameEnd = "\" 100% ink = ";
        constexpr std::string_view ColourEnd = "CMYK";
        constexpr int ColourNumbers = 4;

        constexpr std::size_t MaxPending = 65536;    ///< bytes; the longest name that PostScript allows has 65535
        constexpr std::size_t MaxSpotNames = 100000; ///< that no page has taken; one has 60 at most
        constexpr std::size_t MaxDetails = 4;        ///< more would not help a person
        constexpr std::size_t MaxDetailBytes = 300;

        bool StartsWith(std::string_view text, std::string_view start)
        {
            return text.substr(0, start.size()) == start;
        }

        /// Whether one text is the start of the other: with more bytes it could become it.
        bool MayStartWith(std::string_view text, std::string_view start)
        {
            return text.substr(0, start.size()) == start.substr(0, text.size());
        }

        /// Where the numbers and the word after a colour's name end, and their line with them; npos if they are not at `at`.
        std::size_t EndOfColourNumbers(std::string_view text, std::size_t at)
        {
            for (int i = 0; i < ColourNumbers; ++i)
            {
                int number = 0;
                const auto [end, problem] = std::from_chars(text.data() + at, text.data() + text.size(), number);
                at = static_cast<std::size_t>(end - text.data());
                if (problem != std::errc() || at >= text.size() || text[at] != ' ')
                {
                    return std::string_view::npos;
                }
                ++at;
            }
            const bool isEnd = StartsWith(text.substr(at), ColourEnd) && text.substr(at + ColourEnd.size(), 1) == "\n";
            return isEnd ? at + ColourEnd.size() + 1 : std::string_view::npos;
        }

        /// Takes the colour that `text` begins with off its start and gives its name. False if the text does not hold all of
        /// it.
        bool TakeColour(std::string_view& text, std::string_view& name)
        {
            for (auto at = text.find(ColourNameEnd, ColourBegin.size()); at != std::string_view::npos;
                 at = text.find(ColourNameEnd, at + 1))
            {
                const std::size_t end = EndOfColourNumbers(text, at + ColourNameEnd.size());
                if (end != std::string_view::npos)
                {
                    name = text.substr(ColourBegin.size(), at - ColourBegin.size());
                    text.remove_prefix(end);
                    return true;
                }
            }
            return false;
        }

        /// Takes `start` off the start of `text`, if it is there.
        bool TakeStart(std::string_view& text, std::string_view start)
        {
            const bool isThere = StartsWith(text, start);
            text.remove_prefix(isThere ? start.size() : 0);
            return isThere;
        }

        std::string_view WithoutBlanks(std::string_view text)
        {
            constexpr std::string_view Blanks = " \t\r";
            const auto begin = text.find_first_not_of(Blanks);
            return begin == std::string_view::npos ? std::string_view()
                                                   : text.substr(begin, text.find_last_not_of(Blanks) + 1 - begin);
        }

        /// Where the stars are that stand before errors and warnings, at the start of a line or after the program's name; npos
        /// if there are none. In the line of an operand stack they say nothing.
        std::size_t FindStars(std::string_view line)
        {
            const auto stars = line.find("**** ");
            const std::string_view before = WithoutBlanks(line.substr(0, stars));
            const bool isOne = stars != std::string_view::npos && (before.empty() || before.back() == ':');
            return isOne ? stars : std::string_view::npos;
        }

        std::string Join(const std::vector<std::string>& parts)
        {
            std::string text;
            for (const std::string& part : parts)
            {
                text += (text.empty() ? "" : "; ") + part;
            }
            return text;
        }

        /// What a file that could not be opened because of its name's length says about the colour that it is named after.
        std::string DetailOfLongName(std::string_view path)
        {
            const std::string_view name = path.substr(path.rfind('/') + 1);
            return "the name of a spot colour is too long: it takes a file name of " + std::to_string(name.size()) +
                   " bytes, and the limit is " + std::to_string(NAME_MAX);
        }
    }

    void Messages::Take(Source source, std::string_view bytes)
    {
        std::string& pending = streams[static_cast<std::size_t>(source)].pending;
        while (!bytes.empty())
        {
            const std::string_view part = bytes.substr(0, MaxPending);
            pending += part;
            bytes.remove_prefix(part.size());
            TakeWhole(source);
            if (pending.size() >= MaxPending)
            {
                pending.clear(); // nothing that is looked for is as long
            }
        }
    }

    void Messages::TakeWhole(Source source)
    {
        std::string& pending = streams[static_cast<std::size_t>(source)].pending;
        std::string_view rest = pending;
        for (;;)
        {
            if (MayStartWith(rest, ColourBegin) && rest.size() < MaxPending)
            {
                std::string_view name;
                if (!TakeColour(rest, name))
                {
                    break;
                }
                if (spotNames.size() < MaxSpotNames)
                {
                    spotNames.emplace_back(name);
                }
                continue;
            }
            const auto lineEnd = rest.find('\n');
            if (lineEnd == std::string_view::npos)
            {
                break;
            }
            TakeLine(source, rest.substr(0, lineEnd));
            rest.remove_prefix(lineEnd + 1);
        }
        pending.erase(0, pending.size() - rest.size());
    }

    void Messages::End()
    {
        for (const Source source : {Source::Output, Source::Error})
        {
            std::string& pending = streams[static_cast<std::size_t>(source)].pending;
            TakeLine(source, pending);
            pending.clear();
        }
    }

    void Messages::TakeLine(Source source, std::string_view line)
    {
        const bool isIndented = StartsWith(line, "\t");
        const std::size_t stars = FindStars(line);
        std::string_view text = WithoutBlanks(stars == std::string_view::npos ? line : line.substr(stars + 5));
        if (text.empty())
        {
            return;
        }
        if (TakeStart(text, "Processing pages 1 through "))
        {
            std::from_chars(text.data(), text.data() + text.size(), pagesInFile);
        }
        else if (stars != std::string_view::npos)
        {
            if (StartsWith(text, "This file had errors that were repaired or ignored"))
            {
                isFaulty = true;
            }
            else if (StartsWith(text, "Max spot colorants reached"))
            {
                areSpotColoursLost = true;
            }
            else if (TakeStart(text, "Error: "))
            {
                isFaulty = true;
                AddDetail(source, text);
            }
            else if (TakeStart(text, "Could not open the file ") && text.size() > NAME_MAX)
            {
                AddDetail(source, DetailOfLongName(text));
            }
            else if (
                !StartsWith(text, "The file was produced by") && !StartsWith(text, ">>>> ") &&
                !StartsWith(text, "Please notify the author") && !StartsWith(text, "file that it does not conform") &&
                !StartsWith(text, "specification.") && !StartsWith(text, "Some colorants will be converted") &&
                !StartsWith(text, "If this is a Postscript file"))
            {
                TakeStart(text, "Warning: ");
                AddDetail(source, text);
            }
        }
        else if (isIndented || TakeStart(text, "Error: ") || TakeStart(text, "Additional information: "))
        {
            AddDetail(source, text);
        }
        else if (text == "Last OS error: No space left on device" || text == "Last OS error: File too large")
        {
            AddDetail(source, text.substr(text.find(": ") + 2));
        }
        else if (text.find("Unrecoverable error, exit code") == std::string_view::npos)
        {
            streams[static_cast<std::size_t>(source)].lastLine = Host::Shortened(text, MaxDetailBytes);
        }
    }

    void Messages::AddDetail(Source source, std::string_view text)
    {
        std::vector<std::string>& details = streams[static_cast<std::size_t>(source)].details;
        std::string detail = Host::Shortened(text, MaxDetailBytes);
        if (details.size() < MaxDetails && std::find(details.begin(), details.end(), detail) == details.end())
        {
            details.push_back(std::move(detail));
        }
    }

    std::vector<std::string> Messages::TakeSpotNames(std::size_t count)
    {
        const auto end = spotNames.begin() + static_cast<std::ptrdiff_t>(std::min(count, spotNames.size()));
        std::vector<std::string> names(spotNames.begin(), end);
        spotNames.erase(spotNames.begin(), end);
        return names;
    }

    std::string Messages::Reason() const
    {
        // What is printed as an error is closer to the cause than what is printed beside the pages' numbers.
        const Stream& output = streams[static_cast<std::size_t>(Source::Output)];
        const Stream& error = streams[static_cast<std::size_t>(Source::Error)];
        for (const std::vector<std::string>* const details : {&error.details, &output.details})
        {
            if (!details->empty())
            {
                return Join(*details);
            }
        }
        return error.lastLine;
    }
}
