// The task dialog against QMessageBox with the same texts and buttons: from the call to the dialog
// shown and closed. Qt's box shows the command captions as buttons of its own, the paragraph as its
// informative text and the expanded area as its detailed text; both are closed the moment they are shown.

#include "benchsupport.h"

#include "zrui.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>

namespace {

const char kParam[] = R"({"title":"ZrQtBaseUtils","msg":"图纸“平面图-1”已存在。","content":"请选择保存的方式。",)"
                      R"("expandedInformation":"原图纸保存于 2026-11-20。","dlgtype":48,"contentFlag":15,"flag":8,)"
                      R"("selBtnText":[{"id":1,"caption":"另存为新图纸","extend":"保留原图纸，以新的名称保存当前图纸。"},)"
                      R"({"id":2,"caption":"覆盖现有图纸","extend":"原图纸将被当前图纸替换，此操作无法撤销。"},)"
                      R"({"id":3,"caption":"不保存"}],"checkboxText":"保护现有图纸","checkboxChecked":true,)"
                      R"("enableBtnId":[2]})";

double ours()
{
    QElapsedTimer timer;
    timer.start();
    // The parameter object is the caller's work in both runs.
    const ZrJsonPtr param = ElementValue::parse(kParam);
    zruiShowModelDialogEx(48, ZrString(L"TaskDialog"), param, ZrRxObjectPtr(), nullptr);
    return timer.nsecsElapsed() / 1e6;
}

double qts()
{
    QElapsedTimer timer;
    timer.start();
    const ZrJsonPtr param = ElementValue::parse(kParam);
    QMessageBox box(QMessageBox::Information, param->GetVarSW("title").toQString(), param->GetVarSW("msg").toQString(),
                    QMessageBox::Cancel);
    box.setInformativeText(param->GetVarSW("content").toQString());
    box.setDetailedText(param->GetVarSW("expandedInformation").toQString());
    const ZrJsonPtr commands = param->GetVarJsonPtr("selBtnText");
    for (int i = 0; i < commands->ArrayCount(); ++i)
        box.addButton(commands->at(i)->GetVarSW("caption").toQString(), QMessageBox::ActionRole)
            ->setToolTip(commands->at(i)->GetVarSW("extend").toQString());
    auto* check = new QCheckBox(param->GetVarSW("checkboxText").toQString());
    check->setChecked(true);
    box.setCheckBox(check);
    box.exec();
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    zrbench::compareDialogs(app, 200, "task dialog", "zruiShowModelDialogEx(\"TaskDialog\")", "QMessageBox", 1.5, ours,
                            qts);
    return 0;
}
