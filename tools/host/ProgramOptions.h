// The options of a program: one way for all of them to take values whatever these look like, to answer --help and --version,
// and to refuse what is wrong.
#pragma once

#include "host/Failure.h"
#include "host/Text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <optional>
#include <string>
#include <vector>

namespace Host
{
    /// Calls: ProgramOptions (Add | AddRepeatable | AddFlag)* Parse, and then what was given can be asked for. Options that
    /// are added live as long as this.
    class ProgramOptions
    {
    public:
        /// `usage` is the help's first lines, `footer` its last.
        ProgramOptions(
            const std::string& theName, const std::string& version, const std::string& description,
            const std::string& usage, const std::string& footer);

        /// An option with a value, which `form` stands for in the help. One without a "-" before it is what stands without an
        /// option.
        CLI::Option* Add(const std::string& option, const std::string& form, const std::string& description);
        CLI::Option* AddRepeatable(const std::string& option, const std::string& form, const std::string& description);
        CLI::Option* AddFlag(const std::string& option, const std::string& description);

        /// Gives the text that --help or --version asks for, if one of them is there. Throws UsageError.
        std::string Parse(int argc, const char* const* argv);

        /// What was given, in its order; an option stands here as often as it was given.
        const std::vector<CLI::Option*>& InOrder() const { return app.parse_order(); }

        /// Throws UsageError with `why` and where to read more.
        [[noreturn]] void Refuse(const std::string& why) const;

    private:
        std::vector<std::string> ReversedArguments(int argc, const char* const* argv) const;
        bool TakesValue(const std::string& argument) const;

        std::string name;
        CLI::App app;
        std::vector<std::string> valueOptions; ///< the argument after one of these is its value, whatever it looks like
    };

    /// What the option was given; empty if it was not.
    std::string TextOf(const CLI::Option* option);

    /// The value that the word `word`, given to `option`, stands for. Throws UsageError that names `words`.
    template <class Value>
    Value ChoiceOf(
        const CLI::Option* option, const std::string& word, std::optional<Value> (*valueOfWord)(const std::string&),
        const char* words)
    {
        const std::optional<Value> value = valueOfWord(word);
        if (!value)
        {
            throw UsageError(option->get_name() + ": " + Quoted(word) + " is none of: " + words);
        }
        return *value;
    }

    /// The same for what the option was given, if it was.
    template <class Value>
    std::optional<Value>
    ChoiceOf(const CLI::Option* option, std::optional<Value> (*valueOfWord)(const std::string&), const char* words)
    {
        return option->empty() ? std::nullopt : std::optional(ChoiceOf(option, TextOf(option), valueOfWord, words));
    }
}
