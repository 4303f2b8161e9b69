// The job of one run: what the job file or the command line says, checked and ready for the library, but still in this
// program's own plain values.
#pragma once

#include <Sheetvane/SheetvaneConverter.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace Jobs
{
    using Compression = Sheetvane::SheetvaneConverter::CIP3Compression;
    using Encoding = Sheetvane::SheetvaneConverter::CIP3Encoding;
    using Orientation = Sheetvane::SheetvaneConverter::Orientation;

    /// A number of one of the classes that the library knows how to write.
    using Number = std::variant<std::int32_t, std::uint32_t, double>;

    /// A number with its unit, as 135 g.
    struct Measure
    {
        Number value;
        std::string units;
    };

    /// Value of a sheet's parameter; a string is PostScript text.
    using ParameterValue = std::variant<std::string, Number, Measure>;

    /// One ink of a surface and where it is.
    struct Separation
    {
        std::string name;          ///< plain text
        std::string file;          ///< the TIFF: absolute path, bytes
        std::uint32_t page = 0;    ///< the file's directory that holds it, from 1
        std::uint32_t channel = 0; ///< its sample, from 1; both 0: the page with the one sample that the reader finds

        /// Not one ink, but all that the file holds, in its order: see WithInksOfFiles. There is no name, page and channel.
        bool isEveryInk = false;
    };

    /// Which separations are reduced to previews: those that have more pixels per inch, both across and down, than either of
    /// these. The others are kept as they are.
    struct Reduction
    {
        double resolution; ///< of what is reduced, pixels per inch; 0: nothing is
        double onlyAbove;  ///< pixels per inch
    };

    /// The trade's custom, two pixels to the millimetre; what is not above 300 is a preview already.
    constexpr Reduction AutoReduction = {50.8, 300};
    constexpr Reduction KeepAll = {0, 0};

    /// One sheet of paper. At least one surface has separations.
    struct Sheet
    {
        std::string jobName;   ///< plain text, never empty
        std::string sheetName; ///< plain text, may be empty in a job of one sheet
        std::vector<Separation> front;
        std::vector<Separation> back;
        std::map<std::string, ParameterValue> parameters;
        Orientation frontOrientation = Orientation::Rotate0;
        Orientation backOrientation = Orientation::Rotate0;
    };

    /// A whole job. What is not said stays at the library's default.
    struct Job
    {
        std::vector<Sheet> sheets;
        std::optional<Compression> compression;
        std::optional<Encoding> encoding;
        Reduction reduction = AutoReduction;
        double inputResolution = 0; ///< stands in place of what the TIFFs say, pixels per inch; 0: what they say
    };

    /// The value that a word of the job file or the command line stands for; none if there is no such word.
    std::optional<Compression> CompressionOfWord(const std::string& word);
    std::optional<Encoding> EncodingOfWord(const std::string& word);
    std::optional<Orientation> OrientationOfWord(const std::string& word);
    std::optional<Reduction> ReductionOfWord(const std::string& word);
    std::optional<double> InputResolutionOfWord(const std::string& word);

    /// The same for a number; none if it is out of range.
    std::optional<Reduction> ReductionOf(double resolution);
    std::optional<double> InputResolutionOf(double resolution);

    extern const char* const CompressionWords;     ///< the words, for a message
    extern const char* const EncodingWords;        ///< the words, for a message
    extern const char* const OrientationWords;     ///< the words, for a message
    extern const char* const ReductionWords;       ///< the words, for a message
    extern const char* const InputResolutionWords; ///< the words, for a message

    /// The parts of `text` before and after its first "=", as the command line's `option` takes them; `form` is INK=FILE or the
    /// like. Throws Host::UsageError if there is none.
    std::pair<std::string, std::string>
    SplitAtSign(const std::string& option, const std::string& text, const char* form);

    /// A parameter's key and PostScript text from KEY=VALUE, as --param takes it. Throws Host::UsageError, also for an empty
    /// key.
    std::pair<std::string, std::string> ParameterOf(const std::string& keyAndValue);

    /// `sheet 2 "Inside"`: the sheet at `index` (from 0) for a person, without the quotes if it has no name.
    std::string SheetForPerson(const Job& job, std::size_t index);

    /// Throws Host::UsageError for a job that could not be converted whatever its TIFFs hold: no sheet, an empty job name, a
    /// sheet without any file, an empty sheet name among several sheets, or one that is too long.
    void CheckJob(const Job& job);
}
