#include "zrutfile.h"

#include <QString>
#include <QTextCodec>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kMaxPathBytes = 4095;
constexpr size_t kMaxNameBytes = 255;

bool isValidUtf8(const std::string& text)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForMib(106)->toUnicode(text.data(), static_cast<int>(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace

bool zrutAccessFile(const ZrString& path, int mode)
{
    if (path.isEmpty())
        return false;
    int how = F_OK;
    if (mode & 2)
        how |= W_OK;
    if (mode & 4)
        how |= R_OK;
    return ::access(path.toUtf8().c_str(), how) == 0;
}

bool zrutIsExistFile(const ZrUtf8String& path)
{
    struct stat info;
    return !path.isEmpty() && ::stat(path.c_str(), &info) == 0;
}

bool zrutIsValidFilePathName(const ZrUtf8String& path)
{
    const std::string& text = path.std();
    if (text.empty() || text.size() > kMaxPathBytes || text.find('\0') != std::string::npos || !isValidUtf8(text))
        return false;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t slash = std::min(text.find('/', start), text.size());
        if (slash - start > kMaxNameBytes)
            return false;
        start = slash + 1;
    }
    return true;
}

ZrString zrutGetFileNoExtName(const ZrString& path)
{
    const std::wstring& text = path.std();
    const size_t slash = text.find_last_of(L"/\\");
    std::wstring name = slash == std::wstring::npos ? text : text.substr(slash + 1);
    const size_t dot = name.rfind(L'.');
    if (dot != std::wstring::npos)
        name.erase(dot);
    return ZrString(std::move(name));
}
