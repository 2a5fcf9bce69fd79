#pragma once
// The colour dialog as the UI service hands it out by the name "ColorDialog".

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include "zrcmcolor.h"

#include <QPointer>
#include <optional>

class ZrColorDialog;

class ZRQTBASEUTILS_EXPORT ZrQtColorDialog : public ZrQtUIModalDialogBase
{
public:
    ZrQtColorDialog();
    ~ZrQtColorDialog() override;

    // The counted frame with its dialog; without a parent the dialog goes on the host's main window.
    static ZrSmartPtr<ZrUiDialogBase> createObject(QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags(),
                                                   const char* name = nullptr);
    // Runs "ColorDialog" through the UI service on `start` and gives the colour the user took with OK,
    // nothing when the dialog was cancelled. `tabs` is the dialog's "tabs" bit set (ZrColorDialog::TabBit),
    // all three by default. Unless `byLayerByBlock`, the dialog is told that ByLayer and ByBlock are not
    // to be had.
    static std::optional<ZrCmColor> chooseColor(const ZrCmColor& start, QWidget* parent, bool byLayerByBlock = false,
                                                int tabs = 7);
    // Builds the dialog once.
    bool onCreate(QWidget* parent, Qt::WindowFlags flags, const char* name);

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    void* getDlg() override;
    void onFinalDeconstruct() override;

private:
    QPointer<ZrColorDialog> m_dlg;
};
