// Feeds each file named on the command line, and each file of each folder named there, to the fuzz
// target once: a stand-in for libFuzzer's driver where the compiler has none.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fs = std::filesystem;

static bool replayFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return true;
}

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE_OR_FOLDER...\n", argv[0]);
        return 2;
    }
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (fs::is_directory(argv[i], error)) {
            std::vector<fs::path> files;
            for (const auto& entry : fs::directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
            // A fixed order makes a failing run repeatable.
            std::sort(files.begin(), files.end());
            inputs.insert(inputs.end(), files.begin(), files.end());
        } else {
            inputs.emplace_back(argv[i]);
        }
    }
    bool allRead = true;
    for (const fs::path& input : inputs)
        allRead = replayFile(input) && allRead;
    std::printf("replayed %zu inputs\n", inputs.size());
    return allRead ? 0 : 1;
}
