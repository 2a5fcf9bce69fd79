#include "zrfindfile.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <map>

namespace {

struct Listing
{
    QFileInfoList entries;
    int next = 0;
};

// Open walks by handle; a walk may be left open by a careless caller, so handles are never reused.
struct Walks
{
    QMutex mutex;
    std::map<intptr_t, Listing> open;
    intptr_t lastHandle = 0;
};

Walks& walks()
{
    static Walks state;
    return state;
}

void fill(const QFileInfo& entry, ZrFindDataUtf8* data)
{
    if (!data)
        return;
    data->name = ZrUtf8String(entry.fileName());
    data->isDir = entry.isDir();
}

} // namespace

intptr_t findfirstUtf8(const ZrUtf8String& pattern, ZrFindDataUtf8* data)
{
    const QString text = pattern.toQString();
    if (text.isEmpty())
        return -1;
    const int cut = text.lastIndexOf(QLatin1Char('/'));
    const QString folder = cut < 0 ? QStringLiteral(".") : text.left(cut + 1);
    const QString filter = text.mid(cut + 1);
    QDir dir(folder);
    if (!dir.exists())
        return -1;
    if (!filter.isEmpty())
        dir.setNameFilters({filter});
    // Sorted by name, so that every walk of a folder meets its entries in one order.
    Listing listing{dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                                      QDir::Name),
                    1};
    if (listing.entries.isEmpty())
        return -1;
    fill(listing.entries.front(), data);
    Walks& state = walks();
    QMutexLocker lock(&state.mutex);
    const intptr_t handle = ++state.lastHandle;
    state.open.emplace(handle, std::move(listing));
    return handle;
}

int findnextUtf8(intptr_t handle, ZrFindDataUtf8* data)
{
    Walks& state = walks();
    QMutexLocker lock(&state.mutex);
    auto it = state.open.find(handle);
    if (it == state.open.end() || it->second.next >= it->second.entries.size())
        return -1;
    fill(it->second.entries.at(it->second.next++), data);
    return 0;
}

int findcloseUtf8(intptr_t handle)
{
    Walks& state = walks();
    QMutexLocker lock(&state.mutex);
    return state.open.erase(handle) ? 0 : -1;
}

bool isDir(const ZrUtf8String& path) { return QFileInfo(path.toQString()).isDir(); }
