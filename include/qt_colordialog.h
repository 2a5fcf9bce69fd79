#pragma once
// The colour dialog as the UI service hands it out by the name "ColorDialog".

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include <QPointer>

class ZrColorDialog;

class ZRQTBASEUTILS_EXPORT ZrQtColorDialog : public ZrQtUIModalDialogBase
{
public:
    ZrQtColorDialog();
    ~ZrQtColorDialog() override;

    // The counted frame with its dialog; without a parent the dialog goes on the host's main window.
    static ZrSmartPtr<ZrUiDialogBase> createObject(QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags(),
                                                   const char* name = nullptr);
    // Builds the dialog once.
    bool onCreate(QWidget* parent, Qt::WindowFlags flags, const char* name);

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    void* getDlg() override;
    void onFinalDeconstruct() override;

private:
    QPointer<ZrColorDialog> m_dlg;
};
