// Feeds each file named on the command line, and each file of each folder named there, to the fuzz
// target once: a stand-in for libFuzzer's driver where the compiler has none. As libFuzzer's,
// -timeout=N ends the run when one input takes more than N seconds, naming it.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fs = std::filesystem;

// The input being replayed, for the message of a timeout.
static std::string g_current;

extern "C" void onTimeout(int)
{
    static const char kPrefix[] = "timeout: the input took too long: ";
    ssize_t ignored = write(STDERR_FILENO, kPrefix, sizeof kPrefix - 1);
    ignored = write(STDERR_FILENO, g_current.data(), g_current.size());
    ignored = write(STDERR_FILENO, "\n", 1);
    (void)ignored;
    _exit(70);
}

static bool replayFile(const fs::path& path, unsigned timeout)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    g_current = path.string();
    alarm(timeout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    alarm(0);
    return true;
}

int main(int argc, char** argv)
{
    static const char kTimeout[] = "-timeout=";
    unsigned timeout = 0;
    int first = 1;
    if (argc > 1 && std::strncmp(argv[1], kTimeout, sizeof kTimeout - 1) == 0) {
        timeout = static_cast<unsigned>(std::strtoul(argv[1] + sizeof kTimeout - 1, nullptr, 10));
        first = 2;
    }
    if (argc <= first) {
        std::fprintf(stderr, "usage: %s [-timeout=SECONDS] FILE_OR_FOLDER...\n", argv[0]);
        return 2;
    }
    std::signal(SIGALRM, onTimeout);
    std::vector<fs::path> inputs;
    for (int i = first; i < argc; ++i) {
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
        allRead = replayFile(input, timeout) && allRead;
    std::printf("replayed %zu inputs\n", inputs.size());
    return allRead ? 0 : 1;
}
