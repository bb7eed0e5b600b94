#pragma once

#include <benchmark/benchmark.h>
#include <chrono>
#include <map>
#include <string>

template <class Work> inline double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Runs both in turn, each several times; counts how often the time of the other one it takes.
template <class Own, class Other> void compare(benchmark::State &state, Own own, Other other)
{
    double ownTime = 0;
    double otherTime = 0;
    for (auto _ : state) {
        otherTime += secondsOf(other);
        const double taken = secondsOf(own);
        ownTime += taken;
        state.SetIterationTime(taken);
    }
    state.counters["ratio"] = ownTime / otherTime;
}

/// Shows the runs of all benchmarks as they end, and keeps them to be set against each other.
class MeasuredRuns : public benchmark::ConsoleReporter
{
public:
    MeasuredRuns() : benchmark::ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        benchmark::ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            m_runs.emplace(run.run_name.function_name, run);
        }
    }

    /// Of one iteration: of the processor, where a benchmark does not wait for anything, or by the clock. 0
    /// for one that gave up or did not run.
    double seconds(const std::string &name) const
    {
        const auto found = m_runs.find(name);
        if (found == m_runs.end() || found->second.iterations == 0) {
            return 0;
        }
        const Run &run = found->second;
        const double time =
            run.run_name.time_type.empty() ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
        return time / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }

    /// 0 when there is none.
    double counter(const std::string &name, const std::string &counter) const
    {
        const auto run = m_runs.find(name);
        if (run == m_runs.end()) {
            return 0;
        }
        const auto found = run->second.counters.find(counter);
        return found == run->second.counters.end() ? 0 : double(found->second);
    }

    /// Of the other one in compare().
    double otherSeconds(const std::string &name) const
    {
        const double ratio = counter(name, "ratio");
        return ratio > 0 ? seconds(name) / ratio : 0;
    }

private:
    std::map<std::string, Run> m_runs;
};
