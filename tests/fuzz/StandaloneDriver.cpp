// Runs a fuzzer over files, for compilers without libFuzzer and for the ordinary test run.
// usage: NAME_fuzzer FILE_OR_FOLDER...
#include "Fuzzer.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace files = std::filesystem;

std::vector<files::path> inputsOf(const files::path &given)
{
    if (!files::is_directory(given))
        return {files::absolute(given)};
    std::vector<files::path> inputs;
    for (const auto &entry : files::directory_iterator(given))
        if (entry.is_regular_file())
            inputs.push_back(files::absolute(entry.path()));
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

void run(const files::path &input)
{
    std::ifstream file(input, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // Exactly the bytes, so that a read beyond them is detected.
    const auto data = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), data.get());
    std::printf("%s\n", input.filename().c_str());
    std::fflush(stdout); // a finding ends the process, and this names its input
    LLVMFuzzerTestOneInput(data.get(), bytes.size());
}

} // namespace

int main(int count, char **arguments)
{
    std::vector<files::path> inputs;
    for (int i = 1; i < count; ++i)
        for (const files::path &input : inputsOf(arguments[i]))
            inputs.push_back(input);
    if (inputs.empty()) {
        std::fprintf(stderr, "no inputs\n");
        return 1;
    }
    LLVMFuzzerInitialize(&count, &arguments);
    for (const files::path &input : inputs)
        run(input);
    std::printf("%zu inputs run\n", inputs.size());
    return 0;
}
