#include "zrui.h"

#include "zrarbitdict.h"
#include "zrhostui.h"
#include "zruidialog.h"

#include <QWidget>

ZrJsonPtr zruiShowModelDialogEx(int slot, const ZrString& name, ZrJsonPtr param, ZrRxObjectPtr helper,
                                void* parent)
{
    ZrRxObjectPtr serviceObject = zrUISvr(slot);
    ZrUiService* service = ZrUiService::cast(serviceObject.get());
    if (!service)
        return ZrJsonPtr();
    ZrSmartPtr<ZrUiDialogBase> dialog = service->createDialog(name, parent);
    if (!dialog)
        return ZrJsonPtr();
    if (dialog->onInit(param, helper)) {
        if (ZrUiModalDialogBase* modal = ZrUiModalDialogBase::cast(dialog.get()))
            modal->doModal();
    }
    return dialog->getResult();
}

ZrJsonPtr zruiMessageBoxEx(const ZrString& caption, const ZrString& text, ZrJsonPtr param, int flag,
                           int contentFlag, int dlgtype, void* parent)
{
    if (param.isNull())
        param = ElementValue::createObject(kZrJsonObject);
    param->SetDataSW("title", caption);
    param->SetDataSW("msg", text);
    param->SetDataI("flag", flag);
    param->SetDataI("contentFlag", contentFlag);
    param->SetDataI("dlgtype", dlgtype);
    ZrJsonPtr result = zruiShowModelDialogEx(48, ZrString(L"MessageBox"), param, ZrRxObjectPtr(), parent);
    param->SetDataI("result", result ? result->safePropertyi32("result", -1) : -1);
    return param;
}

ZrHostUi& zrHostUi()
{
    static ZrHostUi ui;
    return ui;
}

namespace {

// The module's icon codes by the classic style's icon bits.
int iconCodeOfStyle(int flags)
{
    switch (flags & 0xF0) {
    case 16: return 80;
    case 32: return 32;
    case 48: return 64;
    case 64: return 48;
    default: return 0;
    }
}

} // namespace

int ZrUiMessageBox(const ZrString& caption, const ZrString& text, int flags, void* parent)
{
    ZrHostUi& host = zrHostUi();
    host.messageLog.push_back({caption.toQString(), text.toQString(), flags});
    if (!host.messageAnswers.isEmpty())
        return host.messageAnswers.dequeue();

    // Button sets 0, 1, 3 and 4 of the classic style are the module's sets of the same number,
    // whose button ids are the classic answers.
    int buttons = flags & 0x0F;
    if (buttons != 1 && buttons != 3 && buttons != 4)
        buttons = 0;
    ZrJsonPtr answer = zruiMessageBoxEx(caption, text, ZrJsonPtr(), buttons, 1, iconCodeOfStyle(flags), parent);
    if (buttons == 0)
        return 1;
    return answer->GetVarI("ControlBtn", 2);
}

void* zruiCurTargetWindow()
{
    ZrHostUi& host = zrHostUi();
    return host.targetWindow ? host.targetWindow.data() : host.mainWindow.data();
}

void* zruiMainWindow() { return zrHostUi().mainWindow.data(); }
void* zruiViewWindow() { return zrHostUi().viewWindow.data(); }

void zruiSetCursor(void* window, int cursor)
{
    auto* widget = static_cast<QWidget*>(window);
    zrHostUi().cursorCalls.push_back({widget, cursor});
    if (widget && cursor == 0)
        widget->unsetCursor();
}

void zruiSetFocus(void* window)
{
    auto* widget = static_cast<QWidget*>(window);
    zrHostUi().focusCalls.push_back({widget, 0});
    if (widget)
        widget->setFocus(Qt::OtherFocusReason);
}

int zredGetCurrentTheme() { return zrHostUi().theme; }

void zredFunHelp(const ZrString& topic)
{
    ZrHostUi& ui = zrHostUi();
    ui.helpTopics << topic.toQString();
    if (ui.helpListener)
        ui.helpListener(ui.helpTopics.last());
}
