#include "zrutfile.h"

#include <QtGlobal>
#include <pwd.h>
#include <unistd.h>

ZrString zrutGetUserName()
{
    if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_name && *entry->pw_name)
        return ZrString::fromUtf8(entry->pw_name);
    return ZrString(qEnvironmentVariable("USER"));
}

ZrString zrutGetHomeDir()
{
    if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_dir && *entry->pw_dir)
        return ZrString::fromUtf8(entry->pw_dir);
    return ZrString(qEnvironmentVariable("HOME"));
}
