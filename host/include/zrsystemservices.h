#pragma once
// The system services of the host: files opened as streams.

#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstreambuf.h"
#include "zrstring.h"

#include <cstdint>

namespace Zr {
enum FileAccessMode : uint32_t {
    kFileRead = 0x80000000u,
    kFileWrite = 0x40000000u,
};
enum FileShareMode : uint32_t {
    kShareDenyReadWrite = 0x10,
    kShareDenyWrite = 0x20,
    kShareDenyRead = 0x30,
    kShareDenyNo = 0x40,
};
enum FileCreationDisposition : uint32_t {
    kCreateNew = 1,
    kCreateAlways = 2,
    kOpenExisting = 3,
    kOpenAlways = 4,
    kTruncateExisting = 5,
};
} // namespace Zr

class ZRHOST_EXPORT ZrRxSystemServices : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrRxSystemServices)
public:
    // A stream on the file; null when it cannot be opened as asked. Files are opened for reading
    // only: the host writes its files whole through its own save, never through a stream.
    virtual ZrStreamBufPtr createFile(const ZrString& path, uint32_t access = Zr::kFileRead,
                                      uint32_t shareMode = Zr::kShareDenyNo,
                                      uint32_t creationDisposition = Zr::kOpenExisting);
    virtual bool accessFile(const ZrString& path, uint32_t access);
};

// The host's system services, there for the whole run.
ZRHOST_EXPORT ZrRxSystemServices* zrrxSystemServices();
