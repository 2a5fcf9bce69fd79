// The module's message box against QMessageBox with the same text and buttons: from the call to
// the dialog shown and closed. Both are closed by the same event filter the moment they are shown.

#include "benchsupport.h"

#include "zrui.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Rejects every dialog once it has been painted, as a user's Esc would.
class Closer : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            auto* dialog = qobject_cast<QDialog*>(watched);
            if (dialog && !dialog->property("zrClosing").toBool()) {
                dialog->setProperty("zrClosing", true);
                QTimer::singleShot(0, dialog, [dialog] { dialog->reject(); });
            }
        }
        return false;
    }
};

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

    Closer closer;
    qApp->installEventFilter(&closer);

    const int rounds = app.intArgument(1, 200, 10);
    for (int i = 0; i < 10; ++i) {
        ours();
        qts();
    }
    std::vector<double> oursMs;
    std::vector<double> qtMs;
    // Interleaved, so that drift of the machine weighs on both alike.
    for (int i = 0; i < rounds; ++i) {
        oursMs.push_back(ours());
        qtMs.push_back(qts());
    }
    const double a = zrbench::median(oursMs);
    const double b = zrbench::median(qtMs);
    std::printf("message box shown and closed, median of %d rounds\n", rounds);
    std::printf("  zruiShowModelDialogEx(\"MessageBox\")  %8.3f ms\n", a);
    std::printf("  QMessageBox                           %8.3f ms\n", b);
    std::printf("  ratio ours / Qt                       %8.2f  (goal: at most 1.20)\n", a / b);

    qApp->removeEventFilter(&closer);
    return 0;
}
