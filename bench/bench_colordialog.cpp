// The module's colour dialog against QColorDialog starting on the same colour: from the call to the
// dialog shown and closed. Both are closed by the same event filter the moment they are painted.

#include "benchsupport.h"

#include "zrcmcolor.h"
#include "zrui.h"

#include <QColorDialog>
#include <QElapsedTimer>

namespace {

double ours()
{
    ZrCmColor red;
    red.setColorMethod(ZrCmEntityColor::kByACI);
    red.setColorIndex(1);
    const ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    ZrCmColorToJson(red, param);
    QElapsedTimer timer;
    timer.start();
    zruiShowModelDialogEx(48, ZrString(L"ColorDialog"), param, ZrRxObjectPtr(), nullptr);
    return timer.nsecsElapsed() / 1e6;
}

double qts()
{
    QElapsedTimer timer;
    timer.start();
    QColorDialog dialog(QColor(255, 0, 0));
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.exec();
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    zrbench::compareDialogs(app, 100, "colour dialog", "zruiShowModelDialogEx(\"ColorDialog\")", "QColorDialog", 1.2,
                            ours, qts);
    return 0;
}
