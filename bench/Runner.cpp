#include "Runner.h"

#include "Memory.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <stdexcept>

namespace bench {

namespace fs = std::filesystem;

namespace {

// Each implementation uses a part of the directory, so the process that measures peaks needs another.
fs::path stageOf(const fs::path &directory)
{
    return directory / "stage";
}

fs::path peakStageOf(const fs::path &directory)
{
    return directory / "peak";
}

void check(const Workload &workload, Stores &stores)
{
    Store &library = *stores.front();
    for (size_t i = 1; i < stores.size(); ++i) {
        Store &other = *stores[i];
        library.restore(library.original);
        workload.before(library);
        workload.before(other);
        if (!workload.agree(library, other) || !sameFiles(library.file(), other.file()))
            throw std::runtime_error(workload.name + ": " + library.name() + " and " + other.name() + " differ");
    }
}

// Records what Google Benchmark measures.
class Collector : public benchmark::BenchmarkReporter
{
public:
    explicit Collector(Result &target) : result(target) {}

    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            if (run.error_occurred)
                throw std::runtime_error(run.error_message);
            const auto iterations = static_cast<double>(run.iterations);
            Measured &measured = result.byName[run.run_name.function_name];
            measured.wall.push_back(run.real_accumulated_time / iterations);
            measured.cpu.push_back(run.cpu_accumulated_time / iterations);
        }
    }

private:
    Result &result;
};

void runAll(benchmark::State &state, const Workload &workload, Store &store)
{
    for (auto _ : state) {
        state.PauseTiming();
        workload.before(store);
        state.ResumeTiming();
        workload.run(store);
    }
}

void time(const Workload &workload, Stores &stores, const Effort &effort, Result &result)
{
    benchmark::ClearRegisteredBenchmarks();
    for (const auto &each : stores) {
        Store &store = *each;
        benchmark::RegisterBenchmark(store.name(), [&](benchmark::State &state) { runAll(state, workload, store); })
            ->MeasureProcessCPUTime() // a launch runs on a thread of its own
            ->UseRealTime()
            ->MinTime(effort.seconds)
            ->Repetitions(effort.repetitions);
    }
    Collector collector(result);
    benchmark::RunSpecifiedBenchmarks(&collector);
}

// One word for the shell; none of our names or paths contains a quote.
std::string quoted(const std::string &word)
{
    return "'" + word + "'";
}

int64_t askForPeak(const Workload &workload, const std::string &implementation, const fs::path &directory)
{
    const std::string command = quoted(fs::read_symlink("/proc/self/exe").string()) + " " + peakOption + " "
                              + quoted(workload.name) + " " + implementation + " " + quoted(directory.string());
    FILE *answer = popen(command.c_str(), "r");
    long long peak = 0;
    const bool isRead = answer && std::fscanf(answer, "%lld", &peak) == 1;
    if (!answer || pclose(answer) != 0 || !isRead)
        throw std::runtime_error("no output from " + command);
    return peak;
}

} // namespace

Result measure(const Workload &workload, const fs::path &directory, const Effort &effort)
{
    Result result = {workload.name, workload.size, {}};
    const fs::path original = filledFile(directory, workload.filling);
    Stores stores = makeStores(stageOf(directory));
    for (const auto &store : stores)
        store->restore(original);
    check(workload, stores);
    for (const auto &store : stores)
        store->restore(original);
    time(workload, stores, effort, result);
    for (const auto &store : stores)
        store->removeFile();
    if (effort.isPeakTaken)
        for (const auto &store : stores)
            result.byName[store->name()].peak = askForPeak(workload, store->name(), directory);
    return result;
}

int64_t peakOf(const Workload &workload, const std::string &implementation, const fs::path &directory)
{
    for (const auto &store : makeStores(peakStageOf(directory))) {
        if (store->name() != implementation)
            continue;
        store->restore(filledFile(directory, workload.filling));
        workload.before(*store);
        startPeak();
        workload.run(*store);
        return peakGrowth();
    }
    throw std::runtime_error("there is no implementation " + implementation);
}

} // namespace bench
