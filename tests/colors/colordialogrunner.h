#pragma once
// Runs "ColorDialog" as a host module opens it, for the colour suites, and finds its widgets.

#include "zrtesthost.h"

#include "zrcolordialog.h"

#include "zrui.h"

#include <QTest>
#include <functional>

namespace ColorTest {

struct DialogOutcome
{
    int result = -99;
    ZrJsonPtr param;
    // The user's actions ended with the dialog still open; the runner then cancelled it.
    bool leftOpen = false;
};

// Lets `user` act on the dialog once it is up. A dialog the user leaves open is cancelled, so that a
// failed check inside `user` cannot hang the suite.
inline DialogOutcome runColorDialog(const QString& json, std::function<void(ZrColorDialog*)> user)
{
    DialogOutcome out;
    out.param = ElementValue::parse(ZrUtf8String(json));
    ZrTest::whenModalShown([&out, user](QWidget* modal) {
        auto* dialog = qobject_cast<ZrColorDialog*>(modal);
        QVERIFY(dialog);
        user(dialog);
        if (dialog->isVisible()) {
            out.leftOpen = true;
            dialog->reject();
        }
    });
    ZrJsonPtr result = zruiShowModelDialogEx(48, ZrString(L"ColorDialog"), out.param, ZrRxObjectPtr(), nullptr);
    out.result = result ? result->GetVarI("result", -99) : -99;
    return out;
}

// A missing widget ends the run at once, naming it, rather than failing later on a null pointer.
template <class T = QWidget>
T* dialogChild(QWidget* dialog, const char* name)
{
    T* found = dialog->findChild<T*>(QLatin1String(name));
    if (!found)
        qFatal("the dialog has no %s", name);
    return found;
}

} // namespace ColorTest
