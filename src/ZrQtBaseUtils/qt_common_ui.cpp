#include "qt_common_ui.h"
#include "qt_common_ui_p.h"

#include "qt_colordialog.h"
#include "qt_filedialog.h"
#include "qt_lweightdialog.h"
#include "qt_messagebox.h"
#include "qt_taskdialog.h"
#include "zrglobaluireactor.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QApplication>
#include <QWidget>

namespace {

const wchar_t kCommandGroup[] = L"ZRAPP";
const wchar_t kCommandName[] = L"GLOBAL_UI_UPDATEDB";
const int32_t kCommandFlags = 12648470;

// The host always registers its command stack before it loads a module; there is no recovery
// when it has not, so a missing or foreign object fails here on the spot.
ZrEdCommandStack* commandStack()
{
    return static_cast<ZrEdCommandStack*>(zrrxSysRegistry()->at(ACRX_COMMAND_DOCK)->queryX(ZrEdCommandStack::desc()));
}

// Removing the command goes first, so that nothing can reach the service while it goes.
void unloadModule()
{
    commandStack()->removeCmd(kCommandGroup, kCommandName);
    zr_arbitDict_clearservice(kZrQtCommonUISvrSlot);
}

const ZrQtDialogEntry kDialogs[] = {
    {L"MessageBox", &createModalDialog<ZrQtMessageBox>, ZrQtDialogParent::OverModal},
    {L"FileDialogBox", [](QWidget* parent) { return ZrQtFileDialog::createObject(parent); },
     ZrQtDialogParent::TargetWindow},
    {L"FileNavDialogBox", [](QWidget* parent) { return ZrQtFileDialog::createObject(parent); },
     ZrQtDialogParent::TargetWindow},
    {L"TaskDialog", &createModalDialog<ZrQtTaskDialog>, ZrQtDialogParent::TargetWindow},
    {L"ColorDialog", [](QWidget* parent) { return ZrQtColorDialog::createObject(parent); },
     ZrQtDialogParent::TargetWindow},
    {L"LineWeightDialog", &createModalDialog<ZrQtLweightDlgImpl>, ZrQtDialogParent::TargetWindow},
};

// A message box stacks on whatever modal dialog is open; other dialogs go on the host's target window.
QWidget* overModalParent()
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    return static_cast<QWidget*>(zruiCurTargetWindow());
}

} // namespace

extern "C" {

int64_t zrrxEntryPoint(int message)
{
    if (message == 1)
        initApp();
    else if (message == 2)
        unloadModule();
    return 0;
}

void initApp()
{
    ZrSmartPtr<ZrQtCommonUISvr> service(new ZrRxObjectImpl<ZrQtCommonUISvr>(), kZrAttach);
    zr_arbitDict_regservice(kZrQtCommonUISvrSlot, ZrRxObjectPtr(service.get()));
    service.release();
    commandStack()->addCommand(kCommandGroup, kCommandName, kCommandName, kCommandFlags,
                               &zrqthelper::zrmdGlobalUIUpdateDb, nullptr, -1, ZrRxResourceInstance(nullptr), nullptr);
}

void uninitApp() { unloadModule(); }

} // extern "C"

const ZrQtDialogEntry* findDialogEntry(const ZrString& name)
{
    for (const ZrQtDialogEntry& entry : kDialogs) {
        if (name.compareNoCase(ZrString(entry.name)) == 0)
            return &entry;
    }
    return nullptr;
}

ZR_RX_DEFINE_MEMBERS(ZrQtCommonUISvr, ZrUiService)

struct ZrQtCommonUISvr::Private
{
    SZrGlobalUIUpdateDbHelp updateDbHelp;
};

ZrQtCommonUISvr::ZrQtCommonUISvr() : d(new Private) {}
ZrQtCommonUISvr::~ZrQtCommonUISvr() = default;

ZrSmartPtr<ZrUiDialogBase> ZrQtCommonUISvr::createDialog(const ZrString& name, void* parent)
{
    const ZrQtDialogEntry* entry = findDialogEntry(name);
    auto* parentWidget = static_cast<QWidget*>(parent);
    if (!parentWidget) {
        parentWidget = static_cast<QWidget*>(zruiCurTargetWindow());
        if (entry && entry->parent == ZrQtDialogParent::OverModal)
            parentWidget = overModalParent();
    }
    return entry ? entry->create(parentWidget) : nullptr;
}

void ZrQtCommonUISvr::setUpdateDbHelpInfo(const SZrGlobalUIUpdateDbHelp& info) { d->updateDbHelp = info; }
const SZrGlobalUIUpdateDbHelp& ZrQtCommonUISvr::getUpdateDbHelpInfo() const { return d->updateDbHelp; }
