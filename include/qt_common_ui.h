#pragma once
// The module's entry points and its UI service, kept in slot 48 of the host's service dictionary.

#include "zrqtbaseutils_export.h"

#include "zrglobaluireactor.h"
#include "zruidialog.h"

#include <cstdint>

extern "C" {
ZRQTBASEUTILS_EXPORT int64_t zrrxEntryPoint(int message);
ZRQTBASEUTILS_EXPORT void initApp();
ZRQTBASEUTILS_EXPORT void uninitApp();
}

// The slot of the service, also the first argument of zruiShowModelDialogEx.
constexpr int kZrQtCommonUISvrSlot = 48;

class ZRQTBASEUTILS_EXPORT ZrQtCommonUISvr : public ZrUiService
{
    ZR_RX_DECLARE_MEMBERS(ZrQtCommonUISvr)
public:
    ZrQtCommonUISvr();
    ~ZrQtCommonUISvr() override;

    // A new dialog by name, compared without regard to case; null for a name it does not know.
    ZrSmartPtr<ZrUiDialogBase> createDialog(const ZrString& name, void* parent) override;

    void setUpdateDbHelpInfo(const SZrGlobalUIUpdateDbHelp& info);
    const SZrGlobalUIUpdateDbHelp& getUpdateDbHelpInfo() const;

private:
    SZrGlobalUIUpdateDbHelp m_updateDbHelp;
};
