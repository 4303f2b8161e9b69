// Print production files written by hand, for the tests of the reader: one complete file, byte for byte, and the
// parts to make others of.
#pragma once

#include "ppf/Document.h"

#include <functional>
#include <string>

namespace PpfTest
{
    /// A complete file of 2039 bytes: a job of two sheets, S1 with a front and S2 with a back, each with one separation
    /// of 4 x 2 pixels whose rows are FF FF FF FF and 00 00 FF 7F.
    std::string TwoSheets();

    /// What stands before the first section, and after the last.
    std::string Header();
    std::string Closing();

    /// A file of one sheet, whose front holds what is given.
    std::string Front(const std::string& content);

    /// A separation of 8-bit pixels with the data given, which follows the word and a line end at once. `entries`
    /// stand after the others and so replace them.
    std::string Separation(
        int width, int height, const std::string& compression, const std::string& encoding, const std::string& data,
        const std::string& entries = "");

    /// The same, uncompressed in hexadecimal digits.
    std::string HexPixels(int width, int height, const std::string& digits, const std::string& entries = "");

    /// `times` times the text.
    std::string Repeated(const std::string& text, int times);

    /// Run-length data in runs and literals of every length, and the bytes that it stands for, without its end mark.
    struct RandomRuns
    {
        explicit RandomRuns(std::size_t size);

        std::string tokens;
        std::string bytes;
    };

    /// A file of one sheet whose front has the list of names and one preview image section with these separations.
    std::string FrontOf(const std::string& names, const std::string& separations);

    /// A file that is expected to be sound, and what is read of it, which refers to its bytes.
    struct SoundFile
    {
        explicit SoundFile(std::string theBytes);
        SoundFile(const SoundFile&) = delete;
        SoundFile& operator=(const SoundFile&) = delete;

        /// A separation of the first side.
        const Ppf::Preview& Preview(std::size_t index = 0) const;

        const std::string bytes;
        const Ppf::Document document;
    };

    /// The samples of all rows as they are stored, in hexadecimal and with "/" between rows.
    std::string Rows(const Ppf::Document& document, const Ppf::Preview& preview);

    /// "offset: text" of the failure of `action`, or "none".
    std::string FailureOf(const std::function<void()>& action);

    /// The damage or finding as "offset: text", or an empty string.
    std::string Text(const std::optional<Ppf::Finding>& finding);
}
