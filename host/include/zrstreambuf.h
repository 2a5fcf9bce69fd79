#pragma once
// Byte streams of the host: files opened through the system services and blocks of memory.

#include "zrhost_export.h"
#include "zrrxobject.h"

#include <cstdint>

namespace ZrDb {
enum FilerSeekType : int {
    kSeekFromStart = 0,
    kSeekFromCurrent = 1,
    kSeekFromEnd = 2,
};
} // namespace ZrDb

// A stream of bytes with a position. Reads past the end give fewer bytes than asked for, never more.
class ZRHOST_EXPORT ZrStreamBuf : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrStreamBuf)
public:
    virtual uint64_t length() = 0;
    virtual uint64_t tell() = 0;
    // The new position; a position outside 0..length() is refused and the old one kept.
    virtual uint64_t seek(int64_t offset, ZrDb::FilerSeekType from) = 0;
    virtual bool isEof() = 0;
    // The bytes read, at most `count`.
    virtual uint64_t getBytes(void* buffer, uint64_t count) = 0;
    // The bytes written, which may be fewer than `count` when the stream cannot take them.
    virtual uint64_t putBytes(const void* buffer, uint64_t count) = 0;
};
using ZrStreamBufPtr = ZrSmartPtr<ZrStreamBuf>;

// A stream over memory that the caller owns and keeps alive; it neither grows nor frees it.
class ZRHOST_EXPORT ZrFlatMemStream : public ZrStreamBuf
{
    ZR_RX_DECLARE_MEMBERS(ZrFlatMemStream)
public:
    static ZrSmartPtr<ZrFlatMemStream> createNew(void* buffer, uint64_t size, uint64_t position = 0);

    uint64_t length() override { return m_size; }
    uint64_t tell() override { return m_position; }
    uint64_t seek(int64_t offset, ZrDb::FilerSeekType from) override;
    bool isEof() override { return m_position >= m_size; }
    uint64_t getBytes(void* buffer, uint64_t count) override;
    uint64_t putBytes(const void* buffer, uint64_t count) override;

protected:
    ZrFlatMemStream(void* buffer, uint64_t size, uint64_t position);

private:
    uint8_t* m_buffer;
    uint64_t m_size;
    uint64_t m_position;
};
