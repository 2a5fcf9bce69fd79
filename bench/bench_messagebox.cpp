// The module's message box against QMessageBox with the same text and buttons: from the call to
// the dialog shown and closed. Both are closed by the same event filter the moment they are shown.

#include "benchsupport.h"

#include "zrui.h"

#include <QElapsedTimer>
#include <QMessageBox>

namespace {

const wchar_t kTitle[] = L"ZrQtBaseUtils";
const wchar_t kText[] = L"图层“墙体”已锁定，选中的 12 个对象中有 3 个未被修改。是否解锁该图层并重新应用？";

double ours()
{
    QElapsedTimer timer;
    timer.start();
    zruiMessageBoxEx(ZrString(kTitle), ZrString(kText), ZrJsonPtr(), 3, 1, 32, nullptr);
    return timer.nsecsElapsed() / 1e6;
}

double qts()
{
    QElapsedTimer timer;
    timer.start();
    QMessageBox box(QMessageBox::Question, QString::fromWCharArray(kTitle), QString::fromWCharArray(kText),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    box.exec();
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    zrbench::compareDialogs(app, 200, "message box", "zruiShowModelDialogEx(\"MessageBox\")", "QMessageBox", 1.2, ours,
                            qts);
    return 0;
}
