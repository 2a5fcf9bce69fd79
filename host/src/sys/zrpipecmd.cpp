#include "zrutfile.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace {

// Output beyond this is no answer a caller can use; the rest is left unread.
constexpr size_t kMaxOutput = size_t(64) << 20;

} // namespace

int zrutPipeCmd(const ZrUtf8String& command, ZrUtf8String& output)
{
    output = ZrUtf8String();
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return -1;
    std::string text;
    char buffer[4096];
    size_t got = 0;
    while (text.size() < kMaxOutput && (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        text.append(buffer, std::min(got, kMaxOutput - text.size()));
    const int status = ::pclose(pipe);
    output = ZrUtf8String(std::move(text));
    if (status == -1)
        return -1;
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1;
}
