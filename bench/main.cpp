// usage: brimlet_bench [OPTION...] DIRECTORY     creates the stores in a subdirectory of DIRECTORY
//   --out=FILE          the file for the results, as JSON; standard output if not given
//   --only=TEXT         only the workloads whose name contains TEXT
//   --repetitions=N     the number of repetitions of each workload in each implementation
//   --seconds=S         the minimum time of a repetition
//   --scaling           the workloads of the scaling run instead of those of the table
//   --events=N          the largest journal of the scaling run, a power of ten
//   --profile=NAME      runs one implementation repeatedly for --seconds, for a profiler
#include "Memory.h"
#include "Runner.h"

#include <QtGlobal>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace bench;

class TemporaryDirectory
{
public:
    explicit TemporaryDirectory(const fs::path &path) : directory(path) { fs::create_directories(directory); }
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory()
    {
        std::error_code ignored;
        fs::current_path("/", ignored); // the working directory of the library is inside it
        fs::remove_all(directory, ignored);
    }

private:
    const fs::path &directory;
};

struct Options
{
    fs::path directory;
    std::string out;
    std::string only;
    std::string profiled;
    bool isScaling = false;
    Limits limits;
    Effort effort;
};

// The text after "--name=".
std::optional<std::string> valueOf(const std::string &argument, const std::string &name)
{
    const std::string start = "--" + name + "=";
    if (argument.compare(0, start.size(), start) != 0)
        return std::nullopt;
    return argument.substr(start.size());
}

Options read(const std::vector<std::string> &arguments)
{
    Options options;
    for (const std::string &argument : arguments) {
        if (argument == "--scaling") {
            options.isScaling = true;
            options.effort.isPeakTaken = false;
        } else if (const auto file = valueOf(argument, "out"))
            options.out = fs::absolute(*file); // the library changes the working directory
        else if (const auto text = valueOf(argument, "only"))
            options.only = *text;
        else if (const auto name = valueOf(argument, "profile"))
            options.profiled = *name;
        else if (const auto count = valueOf(argument, "repetitions"))
            options.effort.repetitions = std::stoi(*count);
        else if (const auto seconds = valueOf(argument, "seconds"))
            options.effort.seconds = std::stod(*seconds);
        else if (const auto events = valueOf(argument, "events"))
            options.limits.events = static_cast<uint32_t>(std::stoul(*events));
        else if (options.directory.empty() && argument.compare(0, 1, "-") != 0)
            options.directory = fs::absolute(argument);
        else
            throw std::runtime_error("unknown option " + argument);
    }
    if (options.directory.empty())
        throw std::runtime_error("no DIRECTORY given");
    options.directory /= "brimlet-bench-" + std::to_string(getpid());
    return options;
}

std::vector<Workload> workloadsFor(const Options &options)
{
    std::vector<Workload> workloads = options.isScaling ? scaledWorkloads(options.limits) : comparedWorkloads();
    const auto isLeftOut = [&](const Workload &workload) {
        return workload.name.find(options.only) == std::string::npos;
    };
    workloads.erase(std::remove_if(workloads.begin(), workloads.end(), isLeftOut), workloads.end());
    return workloads;
}

void profile(const Workload &workload, const Options &options)
{
    for (const auto &store : makeStores(options.directory / "stage")) {
        if (store->name() != options.profiled)
            continue;
        store->restore(filledFile(options.directory, workload.filling));
        const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(options.effort.seconds);
        do {
            workload.before(*store);
            workload.run(*store);
        } while (std::chrono::steady_clock::now() < end);
    }
}

void measureAll(const Options &options)
{
    std::vector<Result> results;
    for (const Workload &workload : workloadsFor(options)) {
        std::cerr << "   " << workload.name;
        if (options.isScaling)
            std::cerr << " at " << workload.size;
        std::cerr << std::endl;
        results.push_back(measure(workload, options.directory, options.effort));
    }
    if (options.out.empty())
        return write(std::cout, results);
    std::ofstream file(options.out);
    write(file, results);
}

void run(const Options &options)
{
    const TemporaryDirectory removed(options.directory);
    if (options.profiled.empty())
        measureAll(options);
    else
        for (const Workload &workload : workloadsFor(options))
            profile(workload, options);
}

// Prints the peak of one workload in one implementation, for the calling process.
void tellPeak(const std::string &name, const std::string &implementation, const fs::path &directory)
{
    for (const Workload &workload : comparedWorkloads())
        if (workload.name == name)
            std::cout << peakOf(workload, implementation, directory) << std::endl;
}

void startGoogleBenchmark(char *program)
{
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char *arguments[] = {program, interleaving, nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);
}

} // namespace

int main(int count, char **values)
{
    const std::vector<std::string> arguments(values + 1, values + count);
    // At every launch after the first Qt warns that its application was not created in the main thread.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    try {
        if (arguments.size() == 4 && arguments[0] == peakOption) {
            tellPeak(arguments[1], arguments[2], arguments[3]);
        } else {
            startGoogleBenchmark(values[0]);
            run(read(arguments));
        }
    } catch (const std::exception &error) {
        std::cerr << "brimlet_bench: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
