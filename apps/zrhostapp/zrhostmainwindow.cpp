#include "zrhostmainwindow.h"

#include "zrcommandpanel.h"
#include "zrdialogrun.h"
#include "zrdrawingview.h"
#include "zrhostcontrol.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QStatusBar>

namespace {

// What each dialog is shown with from the menu; a dialog not listed gets an empty object.
ZrJsonPtr sampleParam(const QString& name)
{
    if (name == QLatin1String("MessageBox"))
        return ElementValue::parse(
            R"({"title":"ZrQtBaseUtils","msg":"这是一个消息框示例。","flag":3,"contentFlag":1,"dlgtype":32})");
    return ElementValue::createObject(kZrJsonObject);
}

} // namespace

struct ZrHostMainWindow::Data
{
    ZrCommandPanel* commandLine = nullptr;
};

ZrHostMainWindow::ZrHostMainWindow(const QStringList& dialogs) : d(std::make_unique<Data>())
{
    setWindowTitle(QStringLiteral("ZrQtBaseUtils 参考主机"));
    setObjectName(QStringLiteral("mainWindow"));
    auto* view = new ZrDrawingView(this);
    setCentralWidget(view);

    d->commandLine = new ZrCommandPanel;
    auto* dock = new QDockWidget(QStringLiteral("命令行"), this);
    dock->setObjectName(QStringLiteral("commandLineDock"));
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetClosable);
    dock->setWidget(d->commandLine);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    resizeDocks({dock}, {170}, Qt::Vertical);

    QMenu* fileMenu = menuBar()->addMenu(QStringLiteral("文件(&F)"));
    fileMenu->addAction(QStringLiteral("退出(&X)"), qApp, &QApplication::quit, QKeySequence::Quit);

    QMenu* dialogMenu = menuBar()->addMenu(QStringLiteral("对话框(&D)"));
    for (const QString& name : dialogs)
        dialogMenu->addAction(name, this, [this, name] { runDialog(name); });
    if (dialogs.isEmpty())
        dialogMenu->addAction(QStringLiteral("（模块未提供对话框）"))->setEnabled(false);

    QMenu* viewMenu = menuBar()->addMenu(QStringLiteral("视图(&V)"));
    viewMenu->addAction(dock->toggleViewAction());

    statusBar()->showMessage(QStringLiteral("就绪"));
    resize(1200, 780);

    ZrHostControl::setMainWindow(this);
    ZrHostControl::setTargetWindow(this);
    ZrHostControl::setViewWindow(view);
}

ZrHostMainWindow::~ZrHostMainWindow()
{
    ZrHostControl::setMainWindow(nullptr);
    ZrHostControl::setTargetWindow(nullptr);
    ZrHostControl::setViewWindow(nullptr);
}

void ZrHostMainWindow::runDialog(const QString& name)
{
    const ZrJsonPtr param = sampleParam(name);
    const ZrJsonPtr answer = ZrApp::runDialog(name, param, this);
    appendToCommandLine(QString::fromUtf8(ZrApp::answerLine(param, answer)));
}

void ZrHostMainWindow::appendToCommandLine(const QString& line)
{
    d->commandLine->appendLine(line);
}
