// Times two commands in turn, A B A B ..., so that a machine whose speed drifts treats both alike:
//     in_turn LABEL RUNS COMMAND_A [ARG...] --vs COMMAND_B [ARG...]
// A row of a table: the median wall time of each in milliseconds, the median of the ratios A/B pair by pair with the smallest and
// the largest, the same of the processor time, which other work on the machine changes less, and the peak resident memory of
// each in MiB. A command that fails ends it all.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
    struct Cost
    {
        double milliseconds; ///< wall time
        double processor;    ///< its own time and the system's, seconds
        double mebibytes;
    };

    double SecondsOf(const timeval& time)
    {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    }

    Cost Run(char* const* command)
    {
        const auto start = std::chrono::steady_clock::now();
        const pid_t child = fork();
        if (child == 0)
        {
            const int null = open("/dev/null", O_RDWR);
            dup2(null, STDIN_FILENO);
            dup2(null, STDOUT_FILENO);
            execvp(command[0], command);
            std::perror(command[0]);
            _exit(127);
        }
        int status = 0;
        rusage usage{};
        if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0)
        {
            std::fprintf(stderr, "in_turn: %s failed\n", command[0]);
            std::exit(1);
        }
        const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
        return {
            wall.count(), SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024.0};
    }

    double Median(std::vector<double> values)
    {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }
}

int main(int argc, char** argv)
{
    int split = 3;
    while (split < argc && std::strcmp(argv[split], "--vs") != 0)
    {
        ++split;
    }
    const int runs = argc > 2 ? std::atoi(argv[2]) : 0;
    if (runs < 1 || split == 3 || split + 1 >= argc)
    {
        std::fprintf(stderr, "usage: in_turn LABEL RUNS COMMAND_A [ARG...] --vs COMMAND_B [ARG...]\n");
        return 2;
    }
    argv[split] = nullptr;
    char* const* a = argv + 3;
    char* const* b = argv + split + 1;

    Run(a);
    Run(b);
    std::vector<double> timesA, timesB, ratios, processorRatios;
    double peakA = 0, peakB = 0;
    for (int i = 0; i < runs; ++i)
    {
        const Cost costA = Run(a);
        const Cost costB = Run(b);
        timesA.push_back(costA.milliseconds);
        timesB.push_back(costB.milliseconds);
        ratios.push_back(costA.milliseconds / costB.milliseconds);
        processorRatios.push_back(costA.processor / costB.processor);
        peakA = std::max(peakA, costA.mebibytes);
        peakB = std::max(peakB, costB.mebibytes);
    }
    std::printf(
        "| %-42s | %7.1f | %7.1f | %.3f (%.3f to %.3f) | %.3f | %6.1f | %6.1f |\n", argv[1], Median(timesA),
        Median(timesB), Median(ratios), *std::min_element(ratios.begin(), ratios.end()),
        *std::max_element(ratios.begin(), ratios.end()), Median(processorRatios), peakA, peakB);
    return 0;
}
