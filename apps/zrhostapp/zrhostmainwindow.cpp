#include "zrhostmainwindow.h"

#include "uicolorbookmng.h"
#include "zrarbitdict.h"
#include "zrcolorcombobox.h"
#include "zrcolorsamplepanel.h"
#include "zrcommandpanel.h"
#include "zrconfig.h"
#include "zrdbdatabase.h"
#include "zrdialogrun.h"
#include "zrdocument.h"
#include "zrdocumenttabbar.h"
#include "zrdrawingcontrol.h"
#include "zrdrawingview.h"
#include "zrhostappservices.h"
#include "zrhostcontrol.h"
#include "zrhostevents.h"
#include "zrhosticons.h"
#include "zrlayercombobox.h"
#include "zrlayerpanel.h"
#include "zrlinetypecombobox.h"
#include "zrlinewidthcombobox.h"
#include "zrpdfexport.h"
#include "zrplotsvr.h"
#include "zrreactor.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>

namespace {

const QString kAppTitle = QStringLiteral("ZrQtBaseUtils 参考主机");
const QString kOpenFilter = QStringLiteral("图纸 (*.json *.dxf);;JSON 图纸 (*.json);;DXF 图纸 (*.dxf);;所有文件 (*)");
const QString kSaveFilter = QStringLiteral("JSON 图纸 (*.json)");
const QString kExportFilter = QStringLiteral("DWF (*.dwf);;DWFX (*.dwfx);;PDF (*.pdf)");
const QString kPdfFilter = QStringLiteral("PDF (*.pdf)");
// The file dialog remembers the folder of drawings it opened here, for the next run.
const char kOpenSection[] = "CmdOpenFile";
const char kOpenLastPath[] = "CmdOpen-openLastPath";

QString lastDrawingFolder()
{
    const ZrJsonPtr section = zr_user_config(kOpenSection);
    return section && section->isObject() ? section->GetVarSW(kOpenLastPath).toQString() : QString();
}

// A file dialog of the module in the host's manner: the help tag of documents, so that the dialog
// remembers where drawings are.
ZrJsonPtr fileDialogParam(const QString& caption, bool open, const QString& filter, const QString& defaultFilter)
{
    ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    param->SetDataS("caption", ZrUtf8String(caption));
    param->SetDataB("Open", open);
    param->SetDataSW("filter", ZrString(filter));
    param->SetDataSW("defFilter", ZrString(defaultFilter));
    param->SetDataSW("dir", ZrString(lastDrawingFolder()));
    param->SetDataSW("helpDoc", ZrString(L"openDocument"));
    return param;
}

// The host's command behind 格式 → 线宽… and the lineweight box's settings item ("_LWEIGHT").
const wchar_t kHostCommandGroup[] = L"ZRHOST";
const wchar_t kLineWeightCommand[] = L"LWEIGHT";
ZrHostMainWindow* g_lineWeightWindow = nullptr;

// The view regenerated, as after an undo or a change of the drawing's settings: the property boxes,
// which refuse the variable events themselves, follow on this event.
void regenerateView()
{
    CZrGlobalUIReactorHelp regenerated;
    regenerated.kind = kZrUiEventView;
    regenerated.database = curDatabase();
    ZrHostControl::postUiEvent(regenerated);
}

ZrEdCommandStack* hostCommands()
{
    return ZrEdCommandStack::cast(zrrxSysRegistry() ? zrrxSysRegistry()->at(ACRX_COMMAND_DOCK) : nullptr);
}

// The module's colour box as the host's toolbar shows it: blank while the selected objects differ
// in colour, as the layer box is, where the module's box keeps its last display.
class ZrHostColorComboBox : public ZrColorComboBox
{
public:
    explicit ZrHostColorComboBox(QWidget* parent) : ZrColorComboBox(true, parent, true) {}

    void onUpdateUI() override
    {
        ZrColorComboBox::onUpdateUI();
        if (getPickFirstInfo()->status != ZrGlobalUIReactorHelp::SPickFirstInfo::kVaries)
            return;
        ZrQtBlockSignalUtil blocker(this);
        QComboBox::setCurrentIndex(-1);
    }
};

// The module's line type box as the host's toolbar shows it: blank while the selected objects
// differ in line type, as the layer and colour boxes are, where the module's box keeps its item.
class ZrHostLineTypeComboBox : public ZrLineTypeComboBox
{
public:
    explicit ZrHostLineTypeComboBox(QWidget* parent) : ZrLineTypeComboBox(true, parent) {}

    void onUpdateUI() override
    {
        ZrLineTypeComboBox::onUpdateUI();
        if (getPickFirstInfo()->status != ZrGlobalUIReactorHelp::SPickFirstInfo::kVaries)
            return;
        ZrQtBlockSignalUtil blocker(this);
        QComboBox::setCurrentIndex(-1);
    }
};

QDockWidget* addDock(QMainWindow* window, const QString& title, const QString& name, QWidget* content,
                     Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName(name);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetClosable);
    dock->setWidget(content);
    window->addDockWidget(area, dock);
    return dock;
}

} // namespace

struct ZrHostMainWindow::Data
{
    ZrHostEvents* events = nullptr;
    ZrDrawingView* view = nullptr;
    ZrLayerComboBox* layerBox = nullptr;
    ZrColorComboBox* colorBox = nullptr;
    ZrLineTypeComboBox* lineTypeBox = nullptr;
    ZrLineWidthComboBox* lineWeightBox = nullptr;
    ZrCommandPanel* commandLine = nullptr;
    QAction* undo = nullptr;
    QAction* redo = nullptr;
    QLabel* selectionCount = nullptr;
    QLabel* cursorPosition = nullptr;
    ZrDocumentTabBar* documentTabs = nullptr;
    ZrLayoutTabBar* layoutTabs = nullptr;
    QStackedWidget* pages = nullptr;
    QWidget* startPage = nullptr;
    int drawingsMade = 0;
    // The file each drawing came from or went to last; none for the sample and new drawings.
    QHash<const CXuDocument*, QString> drawingFiles;
};

namespace {

// What the start tab shows: the two ways to a drawing.
QWidget* makeStartPage(ZrHostMainWindow* window)
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("startPage"));
    auto* layout = new QVBoxLayout(page);
    layout->addStretch();
    auto* title = new QLabel(QStringLiteral("开始"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);
    auto* make = new QPushButton(QStringLiteral("新建图纸"));
    make->setObjectName(QStringLiteral("startNewDrawing"));
    QObject::connect(make, &QPushButton::clicked, window, [window] { window->newDrawing(); });
    layout->addWidget(make, 0, Qt::AlignCenter);
    layout->addStretch();
    return page;
}

} // namespace

ZrHostMainWindow::ZrHostMainWindow(const QStringList& dialogs) : d(std::make_unique<Data>())
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(kAppTitle);
    d->events = new ZrHostEvents(this);
    d->view = new ZrDrawingView(d->events, this);
    // The documents above the drawing, the spaces of the drawing below it.
    auto* central = new QWidget(this);
    auto* centralLayout = new QVBoxLayout(central);
    centralLayout->setContentsMargins(0, 0, 0, 0);
    centralLayout->setSpacing(0);
    d->documentTabs = new ZrDocumentTabBar(central);
    d->pages = new QStackedWidget(central);
    d->startPage = makeStartPage(this);
    d->pages->addWidget(d->startPage);
    d->pages->addWidget(d->view);
    d->layoutTabs = new ZrLayoutTabBar(central);
    centralLayout->addWidget(d->documentTabs);
    centralLayout->addWidget(d->pages, 1);
    centralLayout->addWidget(d->layoutTabs);
    setCentralWidget(central);
    d->documentTabs->setPictureSource([this](CXuDocument* document) {
        return document == zrDocManagerPtr()->curDocument() ? d->view->grab() : QPixmap();
    });
    connect(d->documentTabs, &ZrTabBar::currentChanged, this, &ZrHostMainWindow::activateTab);
    connect(d->documentTabs, &ZrDocumentTabBar::newDrawingRequested, this, [this] { newDrawing(); });
    connect(d->documentTabs, &ZrDocumentTabBar::closeRequested, this, [this](int index) { closeDrawingTab(index); });
    connect(d->layoutTabs, &ZrLayoutTabBar::spaceChanged, this, [this] {
        CZrGlobalUIReactorHelp event;
        event.kind = kZrUiEventDocument;
        event.database = zrDocManagerPtr()->curDocument() ? zrDocManagerPtr()->curDocument()->database() : nullptr;
        ZrHostControl::postUiEvent(event);
        d->view->zoomExtents();
    });

    d->undo = new QAction(ZrHostIcons::undo(palette()), QStringLiteral("撤销"), this);
    d->undo->setObjectName(QStringLiteral("undoAction"));
    d->undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    connect(d->undo, &QAction::triggered, this, [this] {
        ZrHostControl::undo();
        regenerateView();
        refreshUndoActions();
    });
    d->redo = new QAction(ZrHostIcons::redo(palette()), QStringLiteral("重做"), this);
    d->redo->setObjectName(QStringLiteral("redoAction"));
    d->redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
    connect(d->redo, &QAction::triggered, this, [this] {
        ZrHostControl::redo();
        regenerateView();
        refreshUndoActions();
    });

    QToolBar* properties = addToolBar(QStringLiteral("特性"));
    properties->setObjectName(QStringLiteral("propertiesToolBar"));
    properties->addAction(d->undo);
    properties->addAction(d->redo);
    properties->addSeparator();
    auto* layerLabel = new QLabel(QStringLiteral(" 图层 "), properties);
    properties->addWidget(layerLabel);
    d->layerBox = new ZrLayerComboBox(true, 0, properties);
    if (d->layerBox->objectName().isEmpty())
        d->layerBox->setObjectName(QStringLiteral("layerComboBox"));
    d->layerBox->setMinimumWidth(220);
    d->layerBox->setToolTip(QStringLiteral("选中对象的图层；未选中时为当前图层"));
    layerLabel->setBuddy(d->layerBox);
    properties->addWidget(d->layerBox);
    auto* colorLabel = new QLabel(QStringLiteral(" 颜色 "), properties);
    properties->addWidget(colorLabel);
    d->colorBox = new ZrHostColorComboBox(properties);
    d->colorBox->setObjectName(QStringLiteral("colorComboBox"));
    d->colorBox->setMinimumWidth(150);
    d->colorBox->setToolTip(QStringLiteral("选中对象的颜色；未选中时为当前颜色 (CECOLOR)"));
    colorLabel->setBuddy(d->colorBox);
    properties->addWidget(d->colorBox);
    auto* lineTypeLabel = new QLabel(QStringLiteral(" 线型 "), properties);
    properties->addWidget(lineTypeLabel);
    d->lineTypeBox = new ZrHostLineTypeComboBox(properties);
    d->lineTypeBox->setObjectName(QStringLiteral("lineTypeComboBox"));
    d->lineTypeBox->setMinimumWidth(200);
    d->lineTypeBox->setToolTip(QStringLiteral("选中对象的线型；未选中时为当前线型 (CELTYPE)"));
    lineTypeLabel->setBuddy(d->lineTypeBox);
    properties->addWidget(d->lineTypeBox);
    auto* lineWeightLabel = new QLabel(QStringLiteral(" 线宽 "), properties);
    properties->addWidget(lineWeightLabel);
    d->lineWeightBox = new ZrLineWidthComboBox(true, 7, properties, true);
    d->lineWeightBox->setObjectName(QStringLiteral("lineWeightComboBox"));
    d->lineWeightBox->setMinimumWidth(160);
    d->lineWeightBox->setToolTip(QStringLiteral("选中对象的线宽；未选中时为当前线宽 (CELWEIGHT)"));
    lineWeightLabel->setBuddy(d->lineWeightBox);
    properties->addWidget(d->lineWeightBox);

    auto* layerDock = addDock(this, QStringLiteral("图层"), QStringLiteral("layerDock"),
                              new ZrLayerPanel(d->events), Qt::RightDockWidgetArea);
    d->commandLine = new ZrCommandPanel;
    auto* commandDock = addDock(this, QStringLiteral("命令行"), QStringLiteral("commandLineDock"), d->commandLine,
                                Qt::BottomDockWidgetArea);
    auto* colorSampleDock = addDock(this, QStringLiteral("颜色示例"), QStringLiteral("colorSampleDock"),
                                    new ZrColorSamplePanel, Qt::RightDockWidgetArea);
    resizeDocks({layerDock}, {340}, Qt::Horizontal);
    resizeDocks({commandDock}, {170}, Qt::Vertical);

    QMenu* fileMenu = menuBar()->addMenu(QStringLiteral("文件(&F)"));
    fileMenu->addAction(QStringLiteral("新建图纸(&N)"), this, [this] { newDrawing(); }, QKeySequence::New);
    fileMenu->addAction(QStringLiteral("打开图纸(&O)…"), this, &ZrHostMainWindow::openDrawingFile, QKeySequence::Open)
        ->setObjectName(QStringLiteral("openDrawingAction"));
    fileMenu->addAction(QStringLiteral("保存图纸(&S)…"), this, &ZrHostMainWindow::saveDrawingFile, QKeySequence::Save)
        ->setObjectName(QStringLiteral("saveDrawingAction"));
    fileMenu->addAction(QStringLiteral("输出 PDF(&P)…"), this, &ZrHostMainWindow::exportPdf)
        ->setObjectName(QStringLiteral("exportPdfAction"));
    fileMenu->addSeparator();
    fileMenu->addAction(QStringLiteral("配色系统位置(&B)…"), this, &ZrHostMainWindow::chooseColorBookFolder)
        ->setObjectName(QStringLiteral("colorBookFolderAction"));
    fileMenu->addSeparator();
    fileMenu->addAction(QStringLiteral("退出(&X)"), qApp, &QApplication::quit, QKeySequence::Quit);

    QMenu* editMenu = menuBar()->addMenu(QStringLiteral("编辑(&E)"));
    editMenu->addAction(d->undo);
    editMenu->addAction(d->redo);

    QMenu* formatMenu = menuBar()->addMenu(QStringLiteral("格式(&O)"));
    formatMenu->addAction(QStringLiteral("线宽(&W)…"), this, &ZrHostMainWindow::openLineWeightSettings)
        ->setObjectName(QStringLiteral("lineWeightAction"));
    g_lineWeightWindow = this;
    if (ZrEdCommandStack* commands = hostCommands())
        commands->addCommand(kHostCommandGroup, kLineWeightCommand, kLineWeightCommand, 0, [] {
            if (g_lineWeightWindow)
                g_lineWeightWindow->openLineWeightSettings();
        });

    QMenu* dialogMenu = menuBar()->addMenu(QStringLiteral("对话框(&D)"));
    for (const QString& name : dialogs)
        dialogMenu->addAction(name, this, [this, name] { runDialog(name); });
    if (dialogs.isEmpty())
        dialogMenu->addAction(QStringLiteral("（模块未提供对话框）"))->setEnabled(false);

    QMenu* viewMenu = menuBar()->addMenu(QStringLiteral("视图(&V)"));
    viewMenu->addAction(QStringLiteral("范围缩放(&E)"), d->view, &ZrDrawingView::zoomExtents);
    viewMenu->addSeparator();
    viewMenu->addAction(properties->toggleViewAction());
    viewMenu->addAction(layerDock->toggleViewAction());
    viewMenu->addAction(colorSampleDock->toggleViewAction());
    viewMenu->addAction(commandDock->toggleViewAction());

    d->selectionCount = new QLabel(this);
    // Wide enough for any count, so that the status bar does not shift as the selection changes.
    d->selectionCount->setMinimumWidth(d->selectionCount->fontMetrics().horizontalAdvance(QStringLiteral("已选择 000000 个对象")));
    d->cursorPosition = new QLabel(this);
    d->cursorPosition->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    d->cursorPosition->setMinimumWidth(d->cursorPosition->fontMetrics().horizontalAdvance(QString(34, QLatin1Char('0'))));
    statusBar()->addPermanentWidget(d->selectionCount);
    statusBar()->addPermanentWidget(d->cursorPosition);
    statusBar()->showMessage(QStringLiteral("就绪"));
    connect(d->view, &ZrDrawingView::cursorMoved, this, [this](const QPointF& at) {
        d->cursorPosition->setText(QStringLiteral("X %1  Y %2").arg(at.x(), 0, 'f', 2).arg(at.y(), 0, 'f', 2));
    });
    connect(d->events, &ZrHostEvents::changed, this, [this] {
        refreshUndoActions();
        refreshSelectionCount();
    });
    refreshUndoActions();
    refreshSelectionCount();
    resize(1280, 800);
    // The drawing open at start gets the first tab.
    if (CXuDocument* document = zrDocManagerPtr()->curDocument()) {
        const QString name = document->name().toQString();
        d->documentTabs->addDocument(document, name, name);
        ++d->drawingsMade;
    }

    ZrHostControl::setMainWindow(this);
    ZrHostControl::setTargetWindow(this);
    ZrHostControl::setViewWindow(d->view);
    // The property boxes show the drawing's current values from the start, not the first item of
    // their lists.
    regenerateView();
}

ZrHostMainWindow::~ZrHostMainWindow()
{
    if (ZrEdCommandStack* commands = hostCommands())
        commands->removeCmd(kHostCommandGroup, kLineWeightCommand);
    g_lineWeightWindow = nullptr;
    ZrHostControl::setMainWindow(nullptr);
    ZrHostControl::setTargetWindow(nullptr);
    ZrHostControl::setViewWindow(nullptr);
}

void ZrHostMainWindow::appendToCommandLine(const QString& line)
{
    d->commandLine->appendLine(line);
}

void ZrHostMainWindow::setDrawingName(const QString& name)
{
    setWindowTitle(QStringLiteral("%1 - %2").arg(name, kAppTitle));
    const int index = d->documentTabs->indexOf(zrDocManagerPtr()->curDocument());
    if (index >= 0) {
        d->documentTabs->setTabText(index, name);
        d->documentTabs->setTabToolTip(index, name);
    }
}

CXuDocument* ZrHostMainWindow::newDrawing()
{
    const QString name = QStringLiteral("Drawing%1.dwg").arg(++d->drawingsMade);
    CXuDocument* document = zrDocManagerPtr()->addDocument(ZrString(name));
    d->documentTabs->addDocument(document, name, name);
    appendToCommandLine(QStringLiteral("已新建图纸 %1").arg(name));
    return document;
}

bool ZrHostMainWindow::openDrawingInNewTab(const QString& file, QString* error, QString* notice)
{
    CXuDocManager* documents = zrDocManagerPtr();
    CXuDocument* before = documents->curDocument();
    const QString name = QFileInfo(file).fileName();
    CXuDocument* document = documents->addDocument(ZrString(name));
    if (!ZrHostControl::openDrawing(file, error, notice)) {
        documents->closeDocument(document);
        documents->setCurDocument(before);
        return false;
    }
    d->drawingFiles.insert(document, QFileInfo(file).absoluteFilePath());
    d->documentTabs->addDocument(document, name, QFileInfo(file).absoluteFilePath());
    return true;
}

bool ZrHostMainWindow::closeDrawingTab(int index)
{
    CXuDocument* document = d->documentTabs->documentAt(index);
    if (!document)
        return false;
    CXuDocManager* documents = zrDocManagerPtr();
    documents->setCurDocument(document);
    const QString name = d->documentTabs->tabToolTip(index);
    if (ZrHostControl::canUndo()) {
        const int answer = ZrUiMessageBox(L"关闭图纸", ZrString(QStringLiteral("图纸 %1 已修改。\n放弃修改并关闭吗？").arg(name)),
                                          4 | 0x30, this);
        if (answer != 6) {
            activateTab(d->documentTabs->currentIndex());
            return false;
        }
    }
    {
        const QSignalBlocker quiet(d->documentTabs);
        d->documentTabs->removeTab(index);
    }
    d->drawingFiles.remove(document);
    documents->closeDocument(document);
    appendToCommandLine(QStringLiteral("已关闭图纸 %1").arg(name));
    activateTab(d->documentTabs->currentIndex());
    return true;
}

void ZrHostMainWindow::activateTab(int index)
{
    CXuDocument* document = d->documentTabs->documentAt(index);
    if (!document) {
        d->pages->setCurrentWidget(d->startPage);
        d->layoutTabs->hide();
        return;
    }
    CXuDocManager* documents = zrDocManagerPtr();
    if (documents->curDocument() != document)
        documents->setCurDocument(document);
    d->pages->setCurrentWidget(d->view);
    d->layoutTabs->showDrawing(document->database());
    d->layoutTabs->show();
    setWindowTitle(QStringLiteral("%1 - %2").arg(d->documentTabs->tabText(index), kAppTitle));
    refreshUndoActions();
    refreshSelectionCount();
    d->view->zoomExtents();
}

ZrDocumentTabBar* ZrHostMainWindow::documentTabs() const
{
    return d->documentTabs;
}

ZrLayoutTabBar* ZrHostMainWindow::layoutTabs() const
{
    return d->layoutTabs;
}

void ZrHostMainWindow::setDrawingFile(const QString& file)
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    if (file.isEmpty())
        d->drawingFiles.remove(document);
    else
        d->drawingFiles.insert(document, QFileInfo(file).absoluteFilePath());
    setDrawingName(file.isEmpty() ? QStringLiteral("示例图纸") : QFileInfo(file).fileName());
}

QString ZrHostMainWindow::drawingFile() const
{
    return d->drawingFiles.value(zrDocManagerPtr()->curDocument());
}

QString ZrHostMainWindow::drawingName() const
{
    // The tab's text may be elided; its tip holds the whole name or path.
    const int index = d->documentTabs->indexOf(zrDocManagerPtr()->curDocument());
    return index >= 0 ? QFileInfo(d->documentTabs->tabToolTip(index)).fileName() : QStringLiteral("图纸");
}

ZrDrawingView* ZrHostMainWindow::drawingView() const
{
    return d->view;
}

ZrLayerComboBox* ZrHostMainWindow::layerBox() const
{
    return d->layerBox;
}

ZrColorComboBox* ZrHostMainWindow::colorBox() const
{
    return d->colorBox;
}

ZrLineTypeComboBox* ZrHostMainWindow::lineTypeBox() const
{
    return d->lineTypeBox;
}

ZrLineWidthComboBox* ZrHostMainWindow::lineWeightBox() const
{
    return d->lineWeightBox;
}

void ZrHostMainWindow::openLineWeightSettings()
{
    const ZrRxObjectPtr settings(new ZrRxObjectImpl<CXuHostAppServices>(), kZrAttach);
    const ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    // The five settings the dialog writes at OK are one step of the history.
    ZrHostControl::beginUndoStep(ZrString(L"线宽"));
    const ZrJsonPtr answer = zruiShowModelDialogEx(ZrApp::kUiServiceSlot, ZrString(L"LineWeightDialog"), param,
                                                   settings, this);
    ZrHostControl::endUndoStep();
    appendToCommandLine(QString::fromUtf8(ZrApp::answerLine(param, answer)));
    if (answer && answer->GetVarI("result", -1) == 1)
        regenerateView();
}

void ZrHostMainWindow::runDialog(const QString& name)
{
    const ZrJsonPtr param = ZrApp::sampleParam(name);
    // Whatever a dialog changes in the drawing (the lineweight settings, say) is one step of the history.
    ZrHostControl::beginUndoStep(ZrString(name));
    const ZrJsonPtr answer = ZrApp::runDialog(name, param, this);
    ZrHostControl::endUndoStep();
    appendToCommandLine(QString::fromUtf8(ZrApp::answerLine(param, answer)));
}

ZrJsonPtr ZrHostMainWindow::runFileDialog(const ZrJsonPtr& param)
{
    const ZrJsonPtr answer = ZrApp::runDialog(QStringLiteral("FileDialogBox"), param, this);
    if (!answer) {
        const QString title = param->GetVarS("caption").toQString();
        appendToCommandLine(QStringLiteral("%1: 界面模块没有文件对话框 (FileDialogBox)").arg(title));
        ZrUiMessageBox(ZrString(title), ZrString(QStringLiteral("界面模块没有提供文件对话框 (FileDialogBox)，无法选择文件。")), 48,
                       this);
        return ZrJsonPtr();
    }
    return answer->GetVarI("result", -1) == 1 ? answer : ZrJsonPtr();
}

void ZrHostMainWindow::openDrawingFile()
{
    const ZrJsonPtr answer = runFileDialog(fileDialogParam(QStringLiteral("打开图纸"), true, kOpenFilter, QString()));
    const ZrJsonPtr files = answer ? answer->GetVarJsonPtr("filePaths") : ZrJsonPtr();
    if (!files || files->ArrayCount() < 1)
        return;
    openDrawingPath(files->at(0)->GetVarSW("path").toQString());
}

void ZrHostMainWindow::openDrawingPath(const QString& file)
{
    QString error, notice;
    if (!openDrawingInNewTab(file, &error, &notice)) {
        appendToCommandLine(QStringLiteral("无法打开图纸: %1").arg(error));
        ZrUiMessageBox(L"打开图纸", ZrString(QStringLiteral("无法打开图纸。\n%1").arg(error)), 16, this);
        return;
    }
    appendToCommandLine(QStringLiteral("已打开图纸 %1").arg(file));
    if (!notice.isEmpty()) {
        appendToCommandLine(QStringLiteral("未能如实读入的对象: %1").arg(notice));
        ZrUiMessageBox(L"打开图纸",
                       ZrString(QStringLiteral("图纸已打开，但本主机未能如实读入其中一些对象。\n%1").arg(notice)), 64, this);
    }
}

void ZrHostMainWindow::saveDrawingFile()
{
    ZrJsonPtr param = fileDialogParam(QStringLiteral("保存图纸"), false, kSaveFilter, kSaveFilter);
    if (!drawingFile().isEmpty())
        param->SetDataSW("fileName", ZrString(QFileInfo(drawingFile()).completeBaseName() + QStringLiteral(".json")));
    const ZrJsonPtr answer = runFileDialog(param);
    if (!answer)
        return;
    const QString file = answer->GetVarSW("filePath").toQString();
    QString error;
    // The drawing is written as JSON only: a name that says DXF would mislead the next reader.
    if (QFileInfo(file).suffix().compare(QLatin1String("dxf"), Qt::CaseInsensitive) == 0)
        error = QStringLiteral("%1: 本主机只保存 JSON 图纸，不写 DXF").arg(file);
    else if (!ZrHostControl::saveDrawing(file, &error) && error.isEmpty())
        error = file;
    if (!error.isEmpty()) {
        appendToCommandLine(QStringLiteral("无法保存图纸: %1").arg(error));
        ZrUiMessageBox(L"保存图纸", ZrString(QStringLiteral("无法保存图纸。\n%1").arg(error)), 16, this);
        return;
    }
    setDrawingFile(file);
    appendToCommandLine(QStringLiteral("已保存图纸 %1").arg(file));
    // The next open starts where the drawing went.
    const ZrJsonPtr section = zr_user_config(kOpenSection);
    if (section && section->isObject()) {
        section->SetDataSW(kOpenLastPath, ZrString(QFileInfo(file).absolutePath()));
        zr_save_user_config("");
    }
}

void ZrHostMainWindow::exportPdf()
{
    ZrJsonPtr param = fileDialogParam(QStringLiteral("输出 PDF"), false, kExportFilter, kPdfFilter);
    param->SetDataB("bExport", true);
    param->SetDataB("bPreview", false);
    // The save dialog starts on the type of this index, not on "defFilter": PDF, after DWF and DWFX.
    param->SetDataI("useFilterIdx", kExportFilter.split(QStringLiteral(";;")).indexOf(kPdfFilter));
    const QString name = QFileInfo(drawingName()).completeBaseName();
    param->SetDataSW("fileName", ZrString(name + QStringLiteral(".pdf")));
    const ZrJsonPtr answer = runFileDialog(param);
    if (!answer)
        return;
    const QString file = answer->GetVarSW("filePath").toQString();
    const QString suffix = QFileInfo(file).suffix().toUpper();
    const QString filter = answer->GetVarSW("useFilter").toQString();
    if (suffix == QLatin1String("DWF") || suffix == QLatin1String("DWFX") || filter.startsWith(QLatin1String("DWF"))) {
        const QString kind = suffix.startsWith(QLatin1String("DWF")) ? suffix : filter.section(QLatin1Char(' '), 0, 0);
        appendToCommandLine(QStringLiteral("无法输出 %1: 本主机不能写 %2 文件").arg(file, kind));
        ZrUiMessageBox(L"输出", ZrString(QStringLiteral("本主机不能写 %1 文件，只能输出 PDF。\n%2 没有写出。").arg(kind, file)), 48,
                       this);
        return;
    }
    const QRectF shown = d->view->drawingToWindow().inverted().mapRect(QRectF(d->view->rect()));
    QString error;
    if (!zrWriteLayoutPdf(file, zrPdfPageOfPlotService(shown, drawingName()), &error)) {
        appendToCommandLine(QStringLiteral("无法输出 PDF: %1").arg(error));
        ZrUiMessageBox(L"输出 PDF", ZrString(QStringLiteral("无法输出 PDF。\n%1").arg(error)), 16, this);
        return;
    }
    appendToCommandLine(QStringLiteral("已输出 PDF %1").arg(file));
    // The export panel keeps "open when done" in the plot service.
    const ZrRxObjectPtr service = CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuPlotSvr"));
    const CXuPlotSvr* plot = CXuPlotSvr::cast(service.get());
    if (plot && plot->openInViewer())
        QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

void ZrHostMainWindow::chooseColorBookFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("配色系统位置"), lastDrawingFolder());
    if (folder.isEmpty())
        return;
    const ZrJsonPtr settings = zr_user_config("");
    const ZrJsonPtr before = zr_user_config("ColorBookPaths");
    settings->SetDataSW("ColorBookPaths", ZrString(folder));
    if (!zr_save_user_config("ColorBookPaths")) {
        // The setting stays as the file has it.
        if (before)
            settings->SetDataJ("ColorBookPaths", before);
        else
            settings->SetDataNull("ColorBookPaths");
        const QString file = ZrHostControl::userConfigFile();
        appendToCommandLine(QStringLiteral("无法保存用户配置: %1").arg(file));
        ZrUiMessageBox(L"配色系统位置", ZrString(QStringLiteral("无法保存用户配置 %1。").arg(file)), 16, this);
        return;
    }
    // The book list is read once and kept; the setting changed, so the next colour dialog reads it anew.
    CEdColorBookManager::getInstance()->loadData();
    appendToCommandLine(QStringLiteral("配色系统位置: %1").arg(folder));
}

void ZrHostMainWindow::refreshUndoActions()
{
    const auto follow = [](QAction* action, const QString& verb, bool can, const ZrString& step) {
        action->setEnabled(can);
        // Edits made outside a command leave steps without a name.
        action->setText(can && !step.isEmpty() ? QStringLiteral("%1 %2").arg(verb, step.toQString()) : verb);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString(QKeySequence::NativeText)));
    };
    follow(d->undo, QStringLiteral("撤销"), ZrHostControl::canUndo(), ZrHostControl::undoStepName());
    follow(d->redo, QStringLiteral("重做"), ZrHostControl::canRedo(), ZrHostControl::redoStepName());
}

void ZrHostMainWindow::refreshSelectionCount()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    const size_t count = document ? document->context()->pickFirst().size() : 0;
    d->selectionCount->setText(count ? QStringLiteral("已选择 %1 个对象").arg(count) : QString());
}
