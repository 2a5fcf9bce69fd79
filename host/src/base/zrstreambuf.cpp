#include "zrstreambuf.h"

#include <algorithm>
#include <cstring>

ZR_RX_DEFINE_MEMBERS(ZrStreamBuf, ZrRxObject)
ZR_RX_DEFINE_MEMBERS(ZrFlatMemStream, ZrStreamBuf)

ZrFlatMemStream::ZrFlatMemStream(void* buffer, uint64_t size, uint64_t position)
    : m_buffer(static_cast<uint8_t*>(buffer)), m_size(buffer ? size : 0), m_position(std::min(position, m_size))
{
}

ZrSmartPtr<ZrFlatMemStream> ZrFlatMemStream::createNew(void* buffer, uint64_t size, uint64_t position)
{
    return ZrSmartPtr<ZrFlatMemStream>(new ZrRxObjectImpl<ZrFlatMemStream>(buffer, size, position), kZrAttach);
}

uint64_t ZrFlatMemStream::seek(int64_t offset, ZrDb::FilerSeekType from)
{
    const uint64_t base = from == ZrDb::kSeekFromStart ? 0 : from == ZrDb::kSeekFromCurrent ? m_position : m_size;
    // Compared without forming base + offset, which could overflow.
    if (offset < 0 ? uint64_t(0) - uint64_t(offset) <= base : uint64_t(offset) <= m_size - base)
        m_position = base + uint64_t(offset);
    return m_position;
}

uint64_t ZrFlatMemStream::getBytes(void* buffer, uint64_t count)
{
    const uint64_t n = std::min(count, m_size - m_position);
    if (n)
        std::memcpy(buffer, m_buffer + m_position, n);
    m_position += n;
    return n;
}

uint64_t ZrFlatMemStream::putBytes(const void* buffer, uint64_t count)
{
    const uint64_t n = std::min(count, m_size - m_position);
    if (n)
        std::memcpy(m_buffer + m_position, buffer, n);
    m_position += n;
    return n;
}
