// What Ghostscript prints: the names of spot colours, how many pages there are, and why it did not do what it was asked
// for. It is read as it comes, in bounded memory, as a document can make Ghostscript print anything.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace Pdf2Ppf
{
    /// The two places that Ghostscript prints to.
    enum class Source
    {
        Output,
        Error
    };

    /// Calls: (Take | TakeSpotNames)* End (TakeSpotNames | Reason)*
    class Messages
    {
    public:
        /// Takes the next bytes from `source`, which may end anywhere.
        void Take(Source source, std::string_view bytes);

        /// No more bytes come.
        void End();

        /// Takes the names of the next `count` spot colours in the order in which they were printed, which is page by page;
        /// fewer if no more are known. They are the document's bytes.
        std::vector<std::string> TakeSpotNames(std::size_t count);

        /// Pages of a PDF; 0 if not known.
        std::uint64_t PagesInFile() const { return pagesInFile; }

        /// Whether the file broke the rules of its format, and Ghostscript has made the best of it.
        bool SaysFileIsFaulty() const { return isFaulty; }

        /// Whether there were more spot colours than Ghostscript keeps apart, so that some went into the process inks.
        bool SaysSpotColoursAreLost() const { return areSpotColoursLost; }

        /// Why Ghostscript did not do it, in its own words and on one line; empty if it did not say.
        std::string Reason() const;

    private:
        void TakeWhole(Source source);
        void TakeLine(Source source, std::string_view line);
        void AddDetail(Source source, std::string_view text);

        struct Stream
        {
            std::string pending;              ///< bytes that are not yet a whole line or a whole name
            std::vector<std::string> details; ///< what Ghostscript calls an error or a warning
            std::string lastLine;             ///< of what it did not call anything
        };

        std::array<Stream, 2> streams; ///< by Source
        std::deque<std::string> spotNames;
        std::uint64_t pagesInFile = 0;
        bool isFaulty = false;
        bool areSpotColoursLost = false;
    };
}
