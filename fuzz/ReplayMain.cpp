// Runs a fuzz target over the files named on the command line, or in the folders named there, once
// each: what fuzzing found stays tested where no fuzzer is installed.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

void run(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::filesystem::is_directory(argv[i])) {
            for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
                if (entry.is_regular_file()) {
                    run(entry.path());
                    ++count;
                }
            }
        } else if (std::filesystem::is_regular_file(argv[i])) {
            run(argv[i]);
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
