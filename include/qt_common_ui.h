#pragma once
// The module's entry points and its UI service, kept in slot 48 of the host's service dictionary.

#include "zrqtbaseutils_export.h"

#include "zruidialog.h"

#include <cstdint>
#include <memory>

struct SZrGlobalUIUpdateDbHelp;

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

    // The one pending order of GLOBAL_UI_UPDATEDB; a new one replaces it whole.
    void setUpdateDbHelpInfo(const SZrGlobalUIUpdateDbHelp& info);
    const SZrGlobalUIUpdateDbHelp& getUpdateDbHelpInfo() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
