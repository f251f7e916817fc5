// Runs a fuzz target once over every file of the given directories, for compilers and machines
// without a fuzzer.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv) {
    int inputs = 0;
    for (int i = 1; i < argc; i++) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            fprintf(stderr, "%s\n", entry.path().c_str());
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
            inputs++;
        }
    }
    fprintf(stderr, "%d inputs\n", inputs);
    return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
