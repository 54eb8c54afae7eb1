#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Replaces libFuzzer in a usual build: gives a target every file of a folder once.
//   PROGRAM FOLDER

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize != nullptr && LLVMFuzzerInitialize(&argc, &argv) != 0)
        return EXIT_FAILURE;
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : "."))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end()); // a target may treat its first input specially
    for (const auto& path : paths) {
        std::fprintf(stderr, "%s\n", path.c_str()); // after a failure the last one is the cause
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        (void)LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return !paths.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
