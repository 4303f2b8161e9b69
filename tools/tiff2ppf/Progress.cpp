#include "Progress.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <ostream>
#include <string>

namespace Tiff2Ppf
{
    namespace
    {
        constexpr std::chrono::milliseconds Period(200);

        /// Bytes that this process has read so far; 0 if the system does not say.
        std::uint64_t BytesRead()
        {
            std::ifstream counters("/proc/self/io");
            std::string name;
            std::uint64_t value = 0;
            while (counters >> name >> value)
                if (name == "rchar:")
                    return value;
            return 0;
        }

        /// A thread that is started from here takes no signals: those are for the thread that does the work.
        class SignalsBlocked
        {
        public:
            SignalsBlocked()
            {
                sigset_t all;
                sigfillset(&all);
                pthread_sigmask(SIG_SETMASK, &all, &m_before);
            }
            ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
            SignalsBlocked(const SignalsBlocked&) = delete;
            SignalsBlocked& operator=(const SignalsBlocked&) = delete;

        private:
            sigset_t m_before = {};
        };
    }

    Progress::Progress(std::ostream& terminal, std::uint64_t bytesToRead, std::chrono::milliseconds delay)
        : m_terminal(terminal)
        , m_bytesToRead(bytesToRead)
        , m_bytesBefore(BytesRead())
    {
        const SignalsBlocked blocked;
        m_thread = std::thread([this, delay] { Run(delay); });
    }

    Progress::~Progress()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isOver = true;
        }
        m_wake.notify_one();
        m_thread.join();
    }

    void Progress::Run(std::chrono::milliseconds delay)
    {
        const auto start = std::chrono::steady_clock::now();
        const auto isOver = [this] { return m_isOver; };
        bool isShown = false;
        std::unique_lock<std::mutex> lock(m_mutex);
        for (auto pause = delay; !m_wake.wait_for(lock, pause, isOver); pause = Period)
        {
            Show(std::chrono::steady_clock::now() - start);
            isShown = true;
        }
        if (isShown)
            m_terminal << "\r\x1b[K" << std::flush;
    }

    void Progress::Show(std::chrono::steady_clock::duration elapsed)
    {
        m_terminal << "\rtiff2ppf: " << std::chrono::duration_cast<std::chrono::seconds>(elapsed).count() << " s";
        if (m_bytesToRead > 0 && m_bytesBefore > 0)
        {
            const std::uint64_t done = std::min(BytesRead() - m_bytesBefore, m_bytesToRead);
            m_terminal << ", " << done * 100 / m_bytesToRead << " % of the separations read";
        }
        m_terminal << "\x1b[K" << std::flush;
    }
}
