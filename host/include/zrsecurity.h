#pragma once
// The host's security options, which a host that has them registers with its service manager under
// the name "CXuSecurity".

#include "zrhost_export.h"
#include "zrrxobject.h"

class ZRHOST_EXPORT CXuSecurity : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(CXuSecurity)
public:
    // Shows the security options; `from` 1 is a file dialog's save.
    virtual void show(int from) = 0;
};
