// What the watcher tells whoever looks after it: a line per event on standard error. Apart because its form depends on who
// reads it: a person sees the time, the journal of systemd has one of its own and wants a priority instead.
#pragma once

#include <string>
#include <string_view>

namespace PpfWatch
{
    /// How much an event matters; the numbers are the journal's priorities.
    enum class Level
    {
        Error = 3,   ///< a job has failed, or nothing can be done until somebody helps
        Warning = 4, ///< something stays where it is
        Info = 6     ///< as it should be
    };

    class Log
    {
    public:
        enum class Form
        {
            Timed,  ///< 2026-03-01T09:30:00+0100 the event
            Journal ///< <6>the event
        };

        /// Journal if the environment says that systemd reads standard error.
        static Form FormOfEnvironment();

        /// Lines go to the open descriptor `theFile`, which stays the caller's.
        Log(int theFile, Form theForm);

        /// Writes one line, whatever `event` holds. What cannot be written is lost: a watcher does not stop for that.
        void Say(Level level, std::string_view event) const;

    private:
        int file;
        Form form;
    };
}
