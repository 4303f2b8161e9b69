// What a file's name says about it, by the pattern of the configuration: "{job}_{sheet}_{side}_{ink}.tif".
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PpfWatch
{
    /// What the name of one separation says. All of it is bytes as they stand in the name, but the side.
    struct SeparationName
    {
        std::string job;
        std::string sheet; ///< empty if the pattern has none
        bool isBack = false;
        std::string ink; ///< as it stands there: "c", "Cyan"
    };

    class NamePattern
    {
    public:
        /// A pattern has {job} and {ink}, and {sheet} and {side} if it likes, each once; all else stands for itself. Throws
        /// UsageError that says what is wrong with it.
        explicit NamePattern(const std::string& pattern);

        /// The fields of `name`; none if it does not fit. {job} takes as much as it can; no other field holds a character that
        /// follows a field in the pattern; each has one byte at least. {side} is front, back, f or b in any case.
        std::optional<SeparationName> Match(const std::string& name) const;

    private:
        enum class Field
        {
            Job,
            Sheet,
            Side,
            Ink
        };
        static constexpr std::size_t Fields = 4;

        /// A literal if `field` is none.
        struct Part
        {
            std::optional<Field> field;
            std::string literal;
        };

        using Found = std::array<std::string_view, Fields>;

        void AddField(const std::string& name);
        bool MatchFrom(std::size_t part, std::string_view rest, Found& found) const;
        std::vector<std::size_t> LengthsOf(Field field, std::string_view rest) const;

        std::vector<Part> parts;
        std::string ends; ///< what a field other than {job} may not hold
    };

    /// Whether files of this name are never looked at: hidden ones, and those that are still being made. `error.txt` is one,
    /// too, as it stands beside the sources of a job that failed.
    bool IsLeftAlone(std::string_view name);

    /// Whether a job may be called so: its name is that of a file and a folder which everybody is to see.
    bool IsJobName(std::string_view name);
}
