// What every program's main does alike: the first steps of a process, and failures that become one line and a status.
#pragma once

#include "host/Failure.h"

#include <string>
#include <string_view>

namespace Host
{
    /// Runs a program from its first step to its exit status. `name` is how it calls itself, `work` all that it does.
    /// What `work` throws becomes one line on standard error, `name: error: ...`: UsageError ends with ExitUsage,
    /// everything else with ExitFailed, exhausted memory too. Signals are handled as HandleSignals says.
    ExitStatus RunProgram(
        const char* name, int argc, const char* const* argv, ExitStatus (*work)(int, const char* const*)) noexcept;

    /// The name that RunProgram was given; valid for ever.
    const char* ProgramName() noexcept;

    /// Writes the line `name: error: text`, escaped and shortened, to standard error. Without memory the line says only
    /// that.
    void SayError(std::string_view text) noexcept;

    /// The same for a short text without anything to escape. Needs no memory and may be called by a signal's handler.
    void SayPlainly(const char* text) noexcept;

    /// Writes `text`, as --help asks for it, to standard output. Throws Failure if it does not take all of it.
    void Answer(const std::string& text);
}
