// Feeds files to a fuzzer's entry point, for compilers without libFuzzer: the corpus is part of the
// ordinary tests, and a crash is replayed under any debugger.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

int played = 0;

void play(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    // Named before it runs, so that the last line tells which input a crash belongs to.
    std::fprintf(stderr, "%s (%zu bytes)\n", file.c_str(), bytes.size());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++played;
}

}  // namespace

int main(int argc, char** argv) try {
    for (int i = 1; i < argc; ++i) {
        const fs::path given = argv[i];
        if (!fs::is_directory(given)) {
            play(given);
            continue;
        }
        for (const auto& entry : fs::recursive_directory_iterator(given)) {
            if (entry.is_regular_file()) play(entry.path());
        }
    }
    if (played == 0) {
        std::fprintf(stderr, "usage: %s FILE-OR-FOLDER...\n", argv[0]);
        return 2;
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
