#include "pdf2ppf/Ghostscript.h"

#include "host/Failure.h"
#include "host/Signals.h"
#include "host/Text.h"
#include "pdf2ppf/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Pdf2Ppf
{
    namespace
    {
        constexpr char Program[] = "gs";

        /// Our environment, but with temporary files in `folder`, and without what would add to the arguments.
        std::vector<std::string> Environment(const std::string& folder)
        {
            std::vector<std::string> environment;
            for (char** entry = environ; *entry != nullptr; ++entry)
            {
                const std::string_view text = *entry;
                const std::string_view name = text.substr(0, text.find('='));
                if (name != "GS_OPTIONS" && name != "GS_DEVICE" && name != "TMPDIR" && name != "TEMP")
                {
                    environment.emplace_back(text);
                }
            }
            environment.push_back("TMPDIR=" + folder);
            return environment;
        }

        std::vector<char*> Pointers(std::vector<std::string>& texts)
        {
            std::vector<char*> pointers;
            pointers.reserve(texts.size() + 1);
            for (std::string& text : texts)
            {
                pointers.push_back(text.data());
            }
            pointers.push_back(nullptr);
            return pointers;
        }

        void Check(int problem)
        {
            if (problem == ENOENT)
            {
                throw Host::Failure("Ghostscript is needed and not installed: there is no gs on the PATH; install the "
                                    "package ghostscript");
            }
            if (problem != 0)
            {
                throw Host::Failure("Ghostscript (gs) cannot be started: " + Host::SystemText(problem));
            }
        }

        /// What a new process starts with; the scoped owner of the system's two records.
        class SpawnRecords
        {
        public:
            SpawnRecords()
            {
                Check(posix_spawn_file_actions_init(&actions));
                const int problem = posix_spawnattr_init(&attributes);
                if (problem != 0)
                {
                    posix_spawn_file_actions_destroy(&actions);
                    Check(problem);
                }
            }
            ~SpawnRecords()
            {
                posix_spawnattr_destroy(&attributes);
                posix_spawn_file_actions_destroy(&actions);
            }
            SpawnRecords(const SpawnRecords&) = delete;
            SpawnRecords& operator=(const SpawnRecords&) = delete;

            posix_spawn_file_actions_t actions = {};
            posix_spawnattr_t attributes = {};
        };

        struct Pipe
        {
            Pipe()
            {
                int ends[2] = {-1, -1};
                if (pipe2(ends, O_CLOEXEC) != 0)
                {
                    Check(errno);
                }
                out = Host::Descriptor(ends[0]);
                in = Host::Descriptor(ends[1]);
            }

            Host::Descriptor out; ///< for reading
            Host::Descriptor in;  ///< for writing
        };
    }

    Ghostscript::Ghostscript(const std::vector<std::string>& arguments, const std::string& folder)
    {
        Pipe output;
        Pipe error;
        SpawnRecords records;
        Check(posix_spawn_file_actions_addopen(&records.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        Check(posix_spawn_file_actions_adddup2(&records.actions, output.in.Number(), STDOUT_FILENO));
        Check(posix_spawn_file_actions_adddup2(&records.actions, error.in.Number(), STDERR_FILENO));
        Check(posix_spawn_file_actions_addchdir_np(&records.actions, folder.c_str()));

        // Where a program was started with this one ignored, it would never learn how its processes end.
        std::signal(SIGCHLD, SIG_DFL);
        const Host::SignalsBlocked untilKnown;
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGPIPE);
        Check(posix_spawnattr_setsigdefault(&records.attributes, &defaults));
        Check(posix_spawnattr_setsigmask(&records.attributes, &untilKnown.Before()));
        Check(posix_spawnattr_setpgroup(&records.attributes, 0));
        Check(posix_spawnattr_setflags(
            &records.attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP));

        std::vector<std::string> command = {Program};
        command.insert(command.end(), arguments.begin(), arguments.end());
        std::vector<std::string> environment = Environment(folder);
        Check(posix_spawnp(
            &process, Program, &records.actions, &records.attributes, Pointers(command).data(),
            Pointers(environment).data()));
        EndOnSignal(process);

        outlets[static_cast<std::size_t>(Source::Output)] = std::move(output.out);
        outlets[static_cast<std::size_t>(Source::Error)] = std::move(error.out);
        for (const Host::Descriptor& outlet : outlets)
        {
            fcntl(outlet.Number(), F_SETFL, O_NONBLOCK);
        }
    }

    Ghostscript::~Ghostscript()
    {
        Reap();
    }

    bool Ghostscript::HasEnded() const
    {
        siginfo_t found = {};
        const auto look = [&]
        { return waitid(P_PID, static_cast<id_t>(process), &found, WEXITED | WNOHANG | WNOWAIT); };
        return process == 0 || Host::Uninterrupted(look) != 0 || found.si_pid == process;
    }

    void Ghostscript::Reap() noexcept
    {
        if (process == 0)
        {
            return;
        }
        const Host::SignalsBlocked untilForgotten;
        // Also what it has started itself. As long as it is not reaped, nobody else's group has its number.
        kill(-process, SIGKILL);
        Host::Uninterrupted([this] { return waitpid(process, &status, 0); });
        EndOnSignal(0);
        process = 0;
    }

    bool Ghostscript::Listen(Messages& messages, std::chrono::milliseconds patience)
    {
        constexpr std::chrono::milliseconds EndIsNear(5); // there is nothing to be waited for once it prints no more
        const bool hasEnded = HasEnded();
        if (!outlets[0].IsOpen() && !outlets[1].IsOpen())
        {
            patience = std::min(patience, EndIsNear);
        }
        std::array<pollfd, 2> waits{};
        std::transform(
            outlets.begin(), outlets.end(), waits.begin(),
            [](const Host::Descriptor& outlet)
            {
                return pollfd{outlet.Number(), POLLIN, 0}; // a closed one is passed over
            });
        if (poll(waits.data(), waits.size(), hasEnded ? 0 : static_cast<int>(patience.count())) < 0 && errno != EINTR)
        {
            throw Host::Failure("Ghostscript's output cannot be waited for: " + Host::SystemText(errno));
        }
        ReadWhatIsThere(messages, Source::Output);
        ReadWhatIsThere(messages, Source::Error);
        if (hasEnded)
        {
            Reap();
            messages.End();
        }
        return !hasEnded;
    }

    void Ghostscript::ReadWhatIsThere(Messages& messages, Source source)
    {
        // A process that prints without an end is listened to in parts, so that it does not keep us from all else.
        constexpr int MostBlocks = 16;
        Host::Descriptor& outlet = outlets[static_cast<std::size_t>(source)];
        std::array<char, 65536> block{};
        for (int i = 0; i < MostBlocks && outlet.IsOpen(); ++i)
        {
            const ssize_t size = Host::Uninterrupted([&] { return read(outlet.Number(), block.data(), block.size()); });
            if (size > 0)
            {
                messages.Take(source, {block.data(), static_cast<std::size_t>(size)});
            }
            else if (size == 0)
            {
                outlet.Close();
            }
            else if (errno == EAGAIN)
            {
                return;
            }
            else
            {
                throw Host::Failure("Ghostscript's output cannot be read: " + Host::SystemText(errno));
            }
        }
    }

    std::string Ghostscript::ExitFault() const
    {
        if (WIFSIGNALED(status))
        {
            const int signal = WTERMSIG(status);
            return "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ')';
        }
        const int code = WEXITSTATUS(status);
        return code == 0 ? std::string() : "ended with status " + std::to_string(code);
    }
}
