#include "qt_colordialog.h"

#include "qt_common_ui.h"
#include "zrcolordialog.h"

#include "zrjson.h"
#include "zrui.h"

namespace {

const QSize kDialogSize(390, 395);

} // namespace

ZrQtColorDialog::ZrQtColorDialog() = default;

ZrQtColorDialog::~ZrQtColorDialog()
{
    setWidget(nullptr);
    delete m_dlg.data();
}

ZrSmartPtr<ZrUiDialogBase> ZrQtColorDialog::createObject(QWidget* parent, Qt::WindowFlags flags, const char* name)
{
    ZrSmartPtr<ZrQtColorDialog> frame(new ZrQtRxObjectImpl<ZrQtColorDialog>(), kZrAttach);
    if (!frame->onCreate(parent, flags, name))
        return nullptr;
    return ZrSmartPtr<ZrUiDialogBase>(frame.get());
}

std::optional<ZrCmColor> ZrQtColorDialog::chooseColor(const ZrCmColor& start, QWidget* parent, bool byLayerByBlock,
                                                       int tabs)
{
    const ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    ZrCmColorToJson(start, param);
    if (!byLayerByBlock) {
        param->SetDataB("isByLayerEnable", false);
        param->SetDataB("isByBLockEnable", false);
    }
    param->SetDataI("tabs", tabs);
    const ZrJsonPtr answer = zruiShowModelDialogEx(kZrQtCommonUISvrSlot, ZrString(L"ColorDialog"), param,
                                                   ZrRxObjectPtr(), parent);
    int result = 0;
    if (!answer || !answer->GetDataI("result", result) || result != 1)
        return std::nullopt;
    return JsonToZrCmColor(param);
}

// The dialog keeps no settings of its own, so the name is not kept either.
bool ZrQtColorDialog::onCreate(QWidget* parent, Qt::WindowFlags flags, const char*)
{
    if (m_dlg)
        return true;
    if (!parent)
        parent = static_cast<QWidget*>(zruiMainWindow());
    m_dlg = new ZrColorDialog(parent, flags);
    setWidget(m_dlg);
    m_dlg->setModal(true);
    m_dlg->setFixedSize(kDialogSize);
    return true;
}

bool ZrQtColorDialog::onInit(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    if (m_dlg)
        m_dlg->initializeData(param, helper);
    return ZrQtUIModalDialogBase::onInit(param, helper);
}

void* ZrQtColorDialog::getDlg() { return m_dlg.data(); }

void ZrQtColorDialog::onFinalDeconstruct()
{
    setWidget(nullptr);
    delete m_dlg.data();
}
