#include "zrsystemservices.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

ZR_RX_DEFINE_MEMBERS(ZrRxSystemServices, ZrRxObject)

namespace {

// A file opened for reading; its length is taken once, when it is opened.
class FileStream : public ZrStreamBuf
{
public:
    explicit FileStream(const QString& path) : m_file(path) {}
    bool open()
    {
        if (!m_file.open(QIODevice::ReadOnly))
            return false;
        m_length = uint64_t(std::max<qint64>(0, m_file.size()));
        return true;
    }

    uint64_t length() override { return m_length; }
    uint64_t tell() override { return uint64_t(m_file.pos()); }
    uint64_t seek(int64_t offset, ZrDb::FilerSeekType from) override
    {
        const uint64_t base = from == ZrDb::kSeekFromStart ? 0 : from == ZrDb::kSeekFromCurrent ? tell() : m_length;
        if (offset < 0 ? uint64_t(0) - uint64_t(offset) <= base : uint64_t(offset) <= m_length - base)
            m_file.seek(qint64(base + uint64_t(offset)));
        return tell();
    }
    bool isEof() override { return tell() >= m_length; }
    uint64_t getBytes(void* buffer, uint64_t count) override
    {
        const qint64 n = m_file.read(static_cast<char*>(buffer), qint64(std::min<uint64_t>(count, m_length - std::min(m_length, tell()))));
        return n > 0 ? uint64_t(n) : 0;
    }
    uint64_t putBytes(const void*, uint64_t) override { return 0; }

private:
    QFile m_file;
    uint64_t m_length = 0;
};

} // namespace

ZrStreamBufPtr ZrRxSystemServices::createFile(const ZrString& path, uint32_t access, uint32_t,
                                              uint32_t creationDisposition)
{
    if (access != Zr::kFileRead || creationDisposition != Zr::kOpenExisting)
        return nullptr;
    const QString name = path.toQString();
    // A folder opens as a file on Linux and reads as nothing: refuse it here.
    if (!QFileInfo(name).isFile())
        return nullptr;
    auto* stream = new ZrRxObjectImpl<FileStream>(name);
    ZrStreamBufPtr result(stream, kZrAttach);
    return stream->open() ? result : nullptr;
}

bool ZrRxSystemServices::accessFile(const ZrString& path, uint32_t access)
{
    const QFileInfo info(path.toQString());
    if (!info.exists())
        return false;
    if ((access & Zr::kFileRead) && !info.isReadable())
        return false;
    return !(access & Zr::kFileWrite) || info.isWritable();
}

ZrRxSystemServices* zrrxSystemServices()
{
    static ZrRxObjectImpl<ZrRxSystemServices> services;
    return &services;
}
