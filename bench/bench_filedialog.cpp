// "FileDialogBox" in open mode on a folder of 10 000 drawings against QFileDialog without the native
// dialog on the same folder and filter: from the call until the list holds every file and is shown.
// One watcher closes both the moment that is so.

#include "benchsupport.h"

#include "zrui.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QTimer>
#include <QTreeView>
#include <cstdio>

namespace {

constexpr int kFiles = 10000;
const QString kFilter = QStringLiteral("图纸 (*.dwg)");

// Rejects the modal file dialog once it is visible and its list shows all the files.
class RejectWhenListed
{
public:
    RejectWhenListed()
    {
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            const auto* view = dialog->findChild<QTreeView*>();
            if (view && view->isVisible() && view->model()->rowCount(view->rootIndex()) == kFiles)
                dialog->reject();
        });
        m_timer.start();
    }

private:
    QTimer m_timer;
};

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    QTemporaryDir folder;
    for (int i = 0; i < kFiles; ++i) {
        QFile file(folder.filePath(QStringLiteral("plan-%1.dwg").arg(i, 5, 10, QLatin1Char('0'))));
        if (!file.open(QIODevice::WriteOnly)) {
            std::fprintf(stderr, "bench_filedialog: cannot write %s\n", qPrintable(file.fileName()));
            return 1;
        }
    }
    const ZrUtf8String json(QStringLiteral(R"x({"Open":true,"dir":"%1","filter":"%2","defFilter":"%2"})x")
                                .arg(folder.path(), kFilter));

    const auto ours = [&] {
        const ZrJsonPtr param = ElementValue::parse(json);
        QElapsedTimer timer;
        timer.start();
        zruiShowModelDialogEx(48, ZrString(L"FileDialogBox"), param, ZrRxObjectPtr(), nullptr);
        return timer.nsecsElapsed() / 1e6;
    };
    const auto qts = [&] {
        QElapsedTimer timer;
        timer.start();
        QFileDialog dialog(nullptr, QString(), folder.path(), kFilter);
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setViewMode(QFileDialog::Detail);
        dialog.exec();
        return timer.nsecsElapsed() / 1e6;
    };

    RejectWhenListed closer;
    const int rounds = app.intArgument(1, 20, 1);
    const zrbench::Medians m = zrbench::timeInterleaved(rounds, ours, qts);
    std::printf("file dialog on %d files, listed and shown, median of %d rounds\n", kFiles, rounds);
    zrbench::printMedians(m, "zruiShowModelDialogEx(\"FileDialogBox\")", "QFileDialog", 1.2);
    return 0;
}
