// The line on a terminal that says how far a run is: written over and over in one place, and gone at the end.
#pragma once

#include <string_view>

namespace Host
{
    class ProgressLine
    {
    public:
        /// On the open descriptor `theTerminal`, which stays the caller's. Nothing is shown yet.
        explicit ProgressLine(int theTerminal)
            : terminal(theTerminal)
        {
        }

        /// Takes the line away.
        ~ProgressLine();
        ProgressLine(const ProgressLine&) = delete;
        ProgressLine& operator=(const ProgressLine&) = delete;

        /// Shows the program's name and `text`, cut where it is longer than a line. Takes no memory.
        void Show(std::string_view text) noexcept;

    private:
        int terminal;
        bool isShown = false;
    };
}
