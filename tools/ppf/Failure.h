// What the reader says about a file that is not as it should be: a text and the byte that it is about. Findings are
// collected where reading can go on; a FormatError ends the part of the work that cannot.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Ppf
{
    /// One thing wrong with a file.
    struct Finding
    {
        /// Position in the file, in bytes from its first, at which it shows.
        std::uint64_t offset;
        /// What is wrong, in one line without a full stop.
        std::string text;
    };

    /// The beginning of a text from the file, as much of it as a message repeats.
    inline std::string Shown(std::string_view text)
    {
        constexpr std::size_t LongestShown = 100;
        return std::string(text.substr(0, LongestShown));
    }

    /// Ends the reading of a damaged document or preview.
    class FormatError : public std::runtime_error
    {
    public:
        FormatError(std::uint64_t theOffset, const std::string& text)
            : std::runtime_error(text)
            , offset(theOffset)
        {
        }

        Finding AsFinding() const { return {offset, what()}; }

    private:
        std::uint64_t offset;
    };
}
