#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <map>
#include <string>
#include <vector>

template <class Work> inline double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs both in turn, each several times, and keeps the medians: a single run that something else on the
/// machine delayed does not count, and what slows the machine down for longer meets both. `before` runs
/// before each of them.
template <class Own, class Other, class Before>
void compare(benchmark::State &state, Own own, Other other, Before before)
{
    std::vector<double> ownTimes;
    std::vector<double> otherTimes;
    for (auto _ : state) {
        before();
        otherTimes.push_back(secondsOf(other));
        before();
        ownTimes.push_back(secondsOf(own));
        state.SetIterationTime(ownTimes.back());
    }
    state.counters["median_s"] = median(ownTimes);
    state.counters["other_median_s"] = median(otherTimes);
}

template <class Own, class Other> void compare(benchmark::State &state, Own own, Other other)
{
    compare(state, own, other, [] {});
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

    /// Of the two in compare().
    double ownSeconds(const std::string &name) const { return counter(name, "median_s"); }
    double otherSeconds(const std::string &name) const { return counter(name, "other_median_s"); }

private:
    std::map<std::string, Run> m_runs;
};
