#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>

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

private:
    std::map<std::string, Run> m_runs;
};
