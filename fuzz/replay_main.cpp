// Runs a fuzz target, without libFuzzer, on every file of the directories (and on the files)
// named on the command line, so that the corpora and the inputs that once failed are replayed
// by the ordinary test builds. A finding ends the run as it would under libFuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz_support.h"

namespace {

std::vector<uint8_t> contents(const std::filesystem::path &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace

int main(int argc, char **argv) {
    std::vector<std::filesystem::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path arg = argv[i];
        if (std::filesystem::is_directory(arg)) {
            for (const auto &entry : std::filesystem::directory_iterator(arg))
                if (entry.is_regular_file())
                    inputs.push_back(entry.path());
        } else if (std::filesystem::is_regular_file(arg)) {
            inputs.push_back(arg);
        } else {
            std::fprintf(stderr, "%s: no such file or directory\n", argv[i]);
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (const auto &path : inputs) {
        const std::vector<uint8_t> data = contents(path);
        std::fprintf(stderr, "running %s (%zu bytes)\n", path.string().c_str(), data.size());
        static const uint8_t vacio = 0; // an empty input still gets a valid address
        LLVMFuzzerTestOneInput(data.empty() ? &vacio : data.data(), data.size());
    }
    std::printf("%zu inputs ran\n", inputs.size());
    return 0;
}
