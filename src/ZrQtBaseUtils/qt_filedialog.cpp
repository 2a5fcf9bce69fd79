#include "qt_filedialog.h"
#include "qt_filedialog_p.h"

#include "ZrQtUtilsFunc.h"
#include "qt_common_ui.h"
#include "qt_exportwidget.h"
#include "zrimagepreviewlabel.h"

#include "zrconfig.h"
#include "zrsecurity.h"
#include "zrsystem.h"
#include "zrui.h"
#include "zrutfile.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileIconProvider>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QTreeView>
#include <QUrl>
#include <algorithm>

namespace ZrFileRules {

bool holdsInvalidChar(const QString& name)
{
    static const QString invalid = QStringLiteral("<>/\\\";:?*,=`|");
    return std::any_of(name.begin(), name.end(), [](QChar c) { return invalid.contains(c); });
}

QString filterPatterns(const QString& filter, bool lastOpen)
{
    const int open = lastOpen ? filter.lastIndexOf(QLatin1Char('(')) : filter.indexOf(QLatin1Char('('));
    const int close = filter.lastIndexOf(QLatin1Char(')'));
    if (open < 0 || close == 1)
        return filter;
    const int length = close - open - 1;
    return filter.mid(open + 1, length < 0 ? -1 : length);
}

QString filterExtension(const QString& filter, const QString& currentName)
{
    if (filter.isEmpty())
        return QString();
    const QString patterns = filterPatterns(filter, true);
    if (!patterns.contains(QLatin1Char(' '))) {
        const int dot = patterns.lastIndexOf(QLatin1Char('.'));
        return dot < 0 ? patterns : patterns.mid(dot);
    }
    const int nameDot = currentName.lastIndexOf(QLatin1Char('.'));
    const QString current = nameDot < 0 ? QString() : currentName.mid(nameDot);
    QStringList extensions;
    for (const QString& pattern : patterns.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const int dot = pattern.indexOf(QLatin1Char('.'));
        if (dot < 0)
            continue;
        QString extension = pattern.mid(dot);
        const int semicolon = extension.lastIndexOf(QLatin1Char(';'));
        if (semicolon >= 0)
            extension.truncate(semicolon);
        extensions << extension;
    }
    if (!current.isEmpty() && extensions.contains(current))
        return current;
    return extensions.value(0);
}

QString saveExtension(const QString& extension, bool hasDefaultFilter, const QString& defaultFilter)
{
    if (!extension.contains(QLatin1String(".*")) || !hasDefaultFilter)
        return extension;
    const int dot = defaultFilter.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return QString();
    const bool bracket = defaultFilter.endsWith(QLatin1Char(')'));
    return defaultFilter.mid(dot, defaultFilter.size() - dot - (bracket ? 1 : 0));
}

QString nameWithExtension(const QString& name, const QString& extension)
{
    // "*" or "*.*" of a catch-all filter is no extension a file can be given.
    if (!extension.startsWith(QLatin1Char('.')) || extension.contains(QLatin1Char('*'))
        || extension.contains(QLatin1Char('?')))
        return name;
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot >= 0 && name.mid(dot).compare(extension, Qt::CaseInsensitive) == 0)
        return name;
    return name + extension;
}

QString shortNameForMessage(const QString& path)
{
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    return name.size() > 100 ? name.left(97) + QStringLiteral("...") : name;
}

QString nameForChosenFilter(QString filter, const QString& nextRow, bool hasDefaultFilter,
                            const QString& defaultFilter, const QString& name)
{
    if (!filter.contains(QLatin1Char('.')) && !nextRow.isEmpty())
        filter = nextRow;
    if (filter.contains(QLatin1String("*.*")) && hasDefaultFilter)
        filter = defaultFilter;
    if (filter.contains(QLatin1String("(*.jpg *.jpeg)")))
        return QString();
    const int filterDot = filter.lastIndexOf(QLatin1Char('.'));
    if (filterDot < 0)
        return QString();
    const int nameDot = name.lastIndexOf(QLatin1Char('.'));
    QString result = (nameDot < 0 ? name : name.left(nameDot)) + filter.mid(filterDot);
    if (filter.contains(QLatin1Char(')')))
        result.truncate(result.lastIndexOf(QLatin1Char(')')));
    return result;
}

QStringList mountPointsOfLsblk(const QString& output)
{
    QStringList mountPoints;
    const QStringList lines = output.split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        if (line.isEmpty() || line == QLatin1String("/") || line == QLatin1String("[SWAP]")
            || line.contains(QLatin1String("/boot/efi")))
            continue;
        mountPoints << line;
    }
    return mountPoints;
}

QString fillPercentS(const QString& text, const QStringList& args)
{
    QString result;
    int from = 0;
    int next = 0;
    for (int at = text.indexOf(QLatin1String("%s")); at >= 0; at = text.indexOf(QLatin1String("%s"), from)) {
        result += text.midRef(from, at - from);
        result += args.value(next++);
        from = at + 2;
    }
    return result + text.midRef(from);
}

} // namespace ZrFileRules

using namespace ZrFileRules;

namespace {

const char kInvalidNameKey[] = "IDS_ZRAPP_ZRAPP_PROMPT3";
const QString kInvalidNameText = QStringLiteral("\"%s\"\n文件名无效。");

template <class T>
T* namedChild(const QObject* parent, const char* name)
{
    return parent->findChild<T*>(QLatin1String(name));
}

QString computerText() { return zrUiText("IDS_QTUTILS_FILEDIALOG_6", QStringLiteral("我的电脑")); }
QString dataPartitionText() { return zrUiText("IDS_QTUTILS_FILEDIALOG_7", QStringLiteral("数据盘")); }

// The text of a mount point in the side bar.
QString sideBarText(const QString& mountPoint)
{
    if (mountPoint == QLatin1String("/backup"))
        return zrUiText("IDS_QTUTILS_FILEDIALOG_21", QStringLiteral("备份分区"));
    if (mountPoint == QLatin1String("/boot"))
        return zrUiText("IDS_QTUTILS_FILEDIALOG_22", QStringLiteral("引导分区"));
    if (mountPoint == QLatin1String("/data"))
        return dataPartitionText();
    if (mountPoint.contains(QLatin1String("/media")))
        return mountPoint.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
    return mountPoint;
}

void addSideBarItem(QListWidget* list, const QString& text, const QIcon& icon, const QString& path)
{
    auto* item = new QListWidgetItem(icon, text, list);
    item->setData(Qt::UserRole, path);
}

QStringList linuxPartitions()
{
    std::vector<std::string> mountPoints;
    zr_linux_partitions(mountPoints);
    QStringList result;
    for (const std::string& mountPoint : mountPoints)
        result << QString::fromStdString(mountPoint);
    return result;
}

ZrUtf8String localPath(const QString& path) { return ZrUtf8String(QFile::encodeName(path).toStdString()); }

// The answers of an accepted run into `result`; false when the save folder is no usable path, and
// then nothing is written.
bool writeAnswers(ZrQtFileDialogImpl* dlg, const ZrJsonPtr& param, const ZrJsonPtr& result)
{
    const SHelpInitInfo& info = dlg->initInfo();
    if (info.selectDirectory) {
        const QList<QUrl> urls = dlg->selectedUrls();
        result->SetDataSW("path", ZrString(urls.value(0).toLocalFile()));
        return true;
    }
    const bool fromProperties = dlg->answersInProperties();
    if (info.open) {
        const QStringList files = fromProperties ? dlg->property("selectedFiles").toStringList() : dlg->selectedFiles();
        const QString filter =
            fromProperties ? dlg->property("selectedNameFilter").toString() : dlg->selectedNameFilter();
        ZrJsonPtr chosen = ElementValue::createObject(kZrJsonArray);
        for (const QString& file : files) {
            const QFileInfo fileInfo(file);
            if (fileInfo.isDir())
                continue;
            ZrJsonPtr entry = ElementValue::createObject(kZrJsonObject);
            entry->SetDataSW("name", ZrString(fileInfo.fileName()));
            entry->SetDataSW("path", ZrString(file));
            chosen->append(entry);
        }
        result->SetDataSW("useFilter", ZrString(filter));
        result->SetDataJ("filePaths", chosen);
        return true;
    }
    auto* combo = namedChild<QComboBox>(dlg, "fileTypeCombo");
    QString folder;
    int index = -1;
    QString filter;
    QString name;
    if (fromProperties) {
        folder = dlg->property("directory").toString();
        index = dlg->property("curFilterIdx").toInt();
        filter = dlg->property("selectedNameFilter").toString();
        name = dlg->property("fileName").toString();
    } else {
        folder = dlg->directory().path().replace(QLatin1Char('\\'), QLatin1Char('/'));
        index = combo ? combo->currentIndex() : -1;
        filter = dlg->selectedNameFilter();
        auto* edit = namedChild<QLineEdit>(dlg, "fileNameEdit");
        name = edit ? edit->text() : QString();
    }
    if (filter.contains(QLatin1String("*.*")) && param && param->hasProperty("defFilter")) {
        filter = param->GetVarSW("defFilter").toQString();
        index = combo ? combo->findText(filter, Qt::MatchExactly | Qt::MatchCaseSensitive) : -1;
    }
    if (!zrutIsValidFilePathName(localPath(folder)))
        return false;
    const QString path = folder + (folder.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) + name;
    result->SetDataI("useFilterIdx", index);
    result->SetDataSW("useFilter", ZrString(filter));
    result->SetDataSW("fileName", ZrString(QFileInfo(path).fileName()));
    result->SetDataSW("filePath", ZrString(path));
    return true;
}

} // namespace

ZrQtFileDialog::ZrQtFileDialog() = default;

ZrQtFileDialog::~ZrQtFileDialog()
{
    setWidget(nullptr);
    delete m_dlg.data();
}

ZrSmartPtr<ZrUiDialogBase> ZrQtFileDialog::createObject(QWidget* parent, Qt::WindowFlags flags, const char* name)
{
    ZrSmartPtr<ZrQtFileDialog> frame(new ZrQtRxObjectImpl<ZrQtFileDialog>(), kZrAttach);
    frame->onCreate(parent, flags, name);
    return ZrSmartPtr<ZrUiDialogBase>(frame.get());
}

// The dialog keeps no settings under a name of its own.
int ZrQtFileDialog::onCreate(QWidget* parent, Qt::WindowFlags flags, const char*)
{
    if (m_dlg)
        return 1;
    if (!parent)
        parent = CXuSystem::instance()->mainWindow();
    m_dlg = new ZrQtFileDialogImpl(parent, flags);
    m_dlg->setParentWidget(this);
    setWidget(m_dlg);
    return 1;
}

bool ZrQtFileDialog::onInit(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    if (!ZrQtUIModalDialogBase::onInit(param, helper))
        return false;
    return m_dlg && m_dlg->onInit(param, helper) != 0;
}

int ZrQtFileDialog::doModal()
{
    const ZrJsonPtr result = getResult();
    int ran = ZrQtUIModalDialogBase::doModal();
    while (ran == kZrDlgOk && m_dlg && !writeAnswers(m_dlg, getParam(), result))
        ran = ZrQtUIModalDialogBase::doModal();
    const int value = (m_dlg && m_dlg->forcedAccept()) ? kZrDlgOk : ran;
    result->SetDataI("result", value);
    return value;
}

void* ZrQtFileDialog::getDlg() { return m_dlg.data(); }

ZrQtFileDialogImpl::ZrQtFileDialogImpl(QWidget* parent, Qt::WindowFlags flags) : QFileDialog(parent, flags)
{
    connect(this, &QFileDialog::currentChanged, this, &ZrQtFileDialogImpl::onCurrentChanged);
}

ZrQtFileDialogImpl::~ZrQtFileDialogImpl() = default;

int ZrQtFileDialogImpl::onInit(ZrJsonPtr params, ZrRxObjectPtr context)
{
    m_params = params ? params : ElementValue::createObject(kZrJsonObject);
    m_helpTag = m_params->GetVarSW("helpDoc");
    m_hideOverwriteBox = m_params->GetVarB("BoxHide");
    SHelpInitInfo info;
    info.caption = m_params->GetVarS("caption").toQString();
    info.directory = m_params->GetVarSW("dir").toQString().replace(QLatin1Char('\\'), QLatin1Char('/'));
    info.filter = m_params->GetVarSW("filter").toQString();
    info.lookIn = m_params->GetVarSW("strLookIn").toQString();
    info.open = m_params->GetVarB("Open", false);
    info.multipleFiles = m_params->GetVarB("MutiFile", false);
    info.fileName = m_params->GetVarSW("fileName").toQString();
    info.defaultFilter = m_params->GetVarSW("defFilter").toQString();
    info.preview = m_params->GetVarB("bPreview", true);
    info.findFile = m_params->GetVarB("bFindFile", true);
    info.exportPanel = m_params->GetVarB("bExport", false);
    info.selectDirectory = m_selectDirectory = m_params->GetVarB("bSelectDir", false);
    info.showDefaultDirs = m_params->GetVarB("bShowDefaultDirs", true);
    // The modes, for what runs while the steps build; the whole record once they are done.
    m_initInfo = info;

    setOption(QFileDialog::DontUseNativeDialog);
    if (!onSubInit1(m_params, context, info))
        return 0;
    setMinimumSize(1080, 510);
    setWindowTitle(info.caption);
    const int built = onSubInit2(m_params, context, info) && onSubInit3(m_params, context, info)
        && onSubInit4(m_params, context, info) && onSubInit5(m_params, context, info)
        && onSubInit8(m_params, context, info);
    m_initInfo = info;
    return built;
}

int ZrQtFileDialogImpl::onSubInit1(ZrJsonPtr params, ZrRxObjectPtr, SHelpInitInfo& info)
{
    if (info.selectDirectory) {
        // Qt's DirectoryOnly, spelled as Qt 5.15 wants it.
        setFileMode(QFileDialog::Directory);
        setOption(QFileDialog::ShowDirsOnly);
        info.preview = false;
        info.findFile = false;
        return 1;
    }
    setViewMode(QFileDialog::Detail);
    setNameFilter(info.filter);
    selectFile(info.fileName);
    selectNameFilter(info.defaultFilter);
    if (info.open) {
        setAcceptMode(QFileDialog::AcceptOpen);
        if (info.multipleFiles)
            setFileMode(QFileDialog::ExistingFiles);
    } else {
        setAcceptMode(QFileDialog::AcceptSave);
        setDefaultSuffix(info.defaultFilter);
    }
    const QString proposedName = zrutGetFileNoExtName(params->GetVarSW("saveDefName")).toQString();
    const QString extension = filterExtName();
    if (!proposedName.isEmpty() && !extension.isEmpty()) {
        if (!info.directory.isEmpty() && QFileInfo(info.directory).isDir())
            setDirectory(info.directory);
        selectFile(directory().filePath(proposedName + extension));
    }
    if (auto* edit = namedChild<QLineEdit>(this, "fileNameEdit"); edit && !edit->text().isEmpty())
        edit->selectAll();
    return 1;
}

int ZrQtFileDialogImpl::onSubInit2(ZrJsonPtr, ZrRxObjectPtr, SHelpInitInfo& info)
{
    if (auto* label = namedChild<QLabel>(this, "lookInLabel"); label && !info.lookIn.isEmpty()) {
        label->setText(info.lookIn);
        label->setBuddy(namedChild<QComboBox>(this, "lookInCombo"));
    }
    if (auto* label = namedChild<QLabel>(this, "fileTypeLabel")) {
        label->setText(zrUiText("IDS_QTUTILS_FILEDIALOG_5", QStringLiteral("文件类型(&T)：")));
        label->setBuddy(namedChild<QComboBox>(this, "fileTypeCombo"));
    }
    if (auto* box = namedChild<QDialogButtonBox>(this, "buttonBox")) {
        if (QPushButton* cancel = box->button(QDialogButtonBox::Cancel))
            cancel->setText(zrUiText("IDS_STRING181", QStringLiteral("取消")));
        for (QAbstractButton* button : box->buttons())
            button->setIcon(QIcon());
    }
    setSidebarUrls({QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation)),
                    QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)),
                    QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation))});
    if (auto* view = findChild<QTreeView*>()) {
        view->header()->setMinimumSectionSize(50);
        view->header()->setSectionResizeMode(QHeaderView::Interactive);
        view->header()->setStretchLastSection(true);
        view->setDragEnabled(false);
    }
    return 1;
}

int ZrQtFileDialogImpl::onSubInit3(ZrJsonPtr params, ZrRxObjectPtr, SHelpInitInfo& info)
{
    auto* splitter = namedChild<QSplitter>(this, "splitter");
    if (!splitter || !(info.preview || info.exportPanel || info.selectDirectory || info.showDefaultDirs))
        return 1;
    if (auto* stack = namedChild<QWidget>(this, "stackedWidget"))
        stack->setMinimumSize(389, 377);
    if (auto* qtSideBar = namedChild<QWidget>(this, "sidebar")) {
        qtSideBar->setMinimumSize(149, 377);
        qtSideBar->hide();
    }

    auto* list = new QListWidget(this);
    list->setObjectName(QStringLiteral("sideBarList"));
    if (!info.selectDirectory)
        list->setFixedWidth(200);
    const QString computer = computerText();
    addSideBarItem(list, computer, QIcon(zrutGetImageFullPath(QStringLiteral("qtutils/computer.png"))), computer);
    const QIcon folderIcon = style()->standardIcon(QStyle::SP_DirIcon);
    for (const QString& mountPoint : linuxPartitions())
        addSideBarItem(list, sideBarText(mountPoint), folderIcon, mountPoint);
    const QString home = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    if (!home.isEmpty() && QDir(home).exists())
        setSysDirInfo(list, QStandardPaths::HomeLocation, QFileInfo(home).fileName());
    setSysDirInfo(list, QStandardPaths::MoviesLocation, zrUiText("IDS_QTUTILS_FILEDIALOG_12", QStringLiteral("视频")));
    setSysDirInfo(list, QStandardPaths::MusicLocation, zrUiText("IDS_QTUTILS_FILEDIALOG_20", QStringLiteral("音乐")));
    setSysDirInfo(list, QStandardPaths::DesktopLocation, zrUiText("IDS_QTUTILS_FILEDIALOG_10", QStringLiteral("桌面")));
    setSysDirInfo(list, QStandardPaths::DocumentsLocation,
                  zrUiText("IDS_QTUTILS_FILEDIALOG_16", QStringLiteral("文档")));
    setSysDirInfo(list, QStandardPaths::DownloadLocation,
                  zrUiText("IDS_QTUTILS_FILEDIALOG_18", QStringLiteral("下载")));
    setSysDirInfo(list, QStandardPaths::PicturesLocation,
                  zrUiText("IDS_QTUTILS_FILEDIALOG_14", QStringLiteral("图片")));
    splitter->insertWidget(0, list);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 2);
    connect(list, &QListWidget::itemPressed, this, &ZrQtFileDialogImpl::onCustomSideBarItemClicked);
    connect(list, &QListWidget::currentItemChanged, this, &ZrQtFileDialogImpl::onCustomSideBarcurrentItemChanged);
    if (info.selectDirectory)
        return 1;

    auto* panel = new QWidget(splitter);
    panel->setObjectName(QStringLiteral("rightPanel"));
    panel->setMinimumSize(250, 377);
    splitter->addWidget(panel);
    auto* grid = new QGridLayout(panel);
    if (info.preview) {
        m_previewGroup = new QGroupBox(zrUiText("IDS_QTUTILS_FILEDIALOG_23", QStringLiteral("预览")), panel);
        auto* groupGrid = new QGridLayout(m_previewGroup);
        m_previewHost = new QWidget(m_previewGroup);
        m_previewHost->resize(212, 146);
        m_previewHost->setMinimumSize(212, 146);
        groupGrid->addWidget(m_previewHost);
        m_previewLabel = new ZrImagePreviewLabel(m_previewHost);
        m_previewLabel->setObjectName(QStringLiteral("previewLabel"));
        grid->addWidget(m_previewGroup, 0, 0, 5, 4);
        // The first preview is drawn once the window is up and the host has its size.
        const QString saveName = params->GetVarSW("saveDefName").toQString();
        if (QFile::exists(saveName))
            QTimer::singleShot(30, this, [this, saveName] { onCurrentChanged(saveName); });
        int nextRow = 5;
        if (info.findFile) {
            auto* buttons = new QWidget(panel);
            auto* buttonGrid = new QGridLayout(buttons);
            makeExtraButtons(buttons, info.open);
            buttonGrid->addWidget(new QLabel(buttons), 0, 0, 1, 2);
            buttonGrid->addWidget(m_firstButton, 0, 2, 1, 2);
            buttonGrid->addWidget(new QLabel(buttons), 1, 0, 1, 2);
            buttonGrid->addWidget(m_secondButton, 1, 2, 1, 2);
            grid->addWidget(buttons, 5, 0, 2, 4);
            nextRow = 7;
        }
        m_extensionArea = new QWidget(panel);
        m_extensionLayout = new QGridLayout(m_extensionArea);
        grid->addWidget(m_extensionArea, nextRow, 0, 5, 4);
    } else if (info.exportPanel) {
        m_exportWidget = new ZrQtExportWidget(filterExtName(), panel);
        grid->addWidget(m_exportWidget, 0, 0);
    }
    return 1;
}

int ZrQtFileDialogImpl::onSubInit4(ZrJsonPtr, ZrRxObjectPtr, SHelpInitInfo& info)
{
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (info.preview || info.exportPanel || !info.findFile || !grid)
        return 1;
    auto* row = new QWidget(this);
    row->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    row->setMinimumHeight(23);
    makeExtraButtons(row, info.open);
    m_firstButton->setGeometry(0, 0, 75, 23);
    m_secondButton->setGeometry(90, 0, m_secondButton->sizeHint().width(), 23);
    grid->addWidget(row, 4, 0, 1, 3);
    return 1;
}

int ZrQtFileDialogImpl::onSubInit5(ZrJsonPtr params, ZrRxObjectPtr, SHelpInitInfo& info)
{
    if (m_firstButton) {
        connect(m_firstButton, &QPushButton::clicked, this, &ZrQtFileDialogImpl::onBtnLocationClicked);
        if (info.open) {
            connect(m_secondButton, &QPushButton::clicked, this, &ZrQtFileDialogImpl::onBtnFindClicked);
        } else {
            connect(m_secondButton, &QPushButton::clicked, this, &ZrQtFileDialogImpl::onBtnShowSafeWindow);
            m_firstButton->hide();
        }
    }
    if (!info.directory.isEmpty()) {
        if (QFileInfo(info.directory).isDir())
            setDirectory(info.directory);
        else
            selectFile(info.directory);
    }
    if (auto* combo = namedChild<QComboBox>(this, "fileTypeCombo")) {
        const int index = info.open
            ? std::max(0, combo->findText(info.defaultFilter, Qt::MatchExactly | Qt::MatchCaseSensitive))
            : params->GetVarI("useFilterIdx", 0);
        // Through the filter, so that the list shows what the chosen row says.
        if (index >= 0 && index < combo->count())
            selectNameFilter(combo->itemText(index));
        connect(combo, &QComboBox::textActivated, this,
                &ZrQtFileDialogImpl::onFilterChanged);
    }
    return 1;
}

int ZrQtFileDialogImpl::onSubInit8(ZrJsonPtr, ZrRxObjectPtr, SHelpInitInfo& info)
{
    if (info.open || info.selectDirectory)
        return 1;
    if (auto* view = findChild<QTreeView*>())
        view->viewport()->installEventFilter(this);
    return 1;
}

bool ZrQtFileDialogImpl::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        if (auto* view = qobject_cast<QAbstractItemView*>(watched->parent())) {
            const QPoint at = static_cast<QMouseEvent*>(event)->localPos().toPoint();
            if (!view->indexAt(at).isValid())
                view->clearSelection();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ZrQtFileDialogImpl::makeExtraButtons(QWidget* parent, bool open)
{
    m_firstButton = new QPushButton(open ? zrUiText("ZRUI_IDD_GETFILEDIALOG_1", QStringLiteral("定位(&L)"))
                                         : zrUiText("ZRUI_IDD_GETFILEDIALOG_3", QStringLiteral("选项(&O)...")),
                                    parent);
    m_firstButton->setObjectName(QStringLiteral("btnLocation"));
    m_secondButton = new QPushButton(open ? zrUiText("ZRUI_IDD_GETFILEDIALOG_2", QStringLiteral("查找文件(&F)..."))
                                          : zrUiText("ZRUI_IDD_GETFILEDIALOG_4", QStringLiteral("安全选项(&E)...")),
                                     parent);
    m_secondButton->setObjectName(QStringLiteral("btnFindFile"));
    // Return belongs to the file name, not to these.
    m_firstButton->setAutoDefault(false);
    m_secondButton->setAutoDefault(false);
}

void ZrQtFileDialogImpl::setSysDirInfo(QListWidget* list, QStandardPaths::StandardLocation location,
                                       const QString& text)
{
    const QString path = QStandardPaths::writableLocation(location);
    if (path.isEmpty() || !QDir(path).exists())
        return;
    addSideBarItem(list, text, QFileIconProvider().icon(QFileInfo(path)), path);
}

int ZrQtFileDialogImpl::showMessage(const QString& title, const QString& text, int flag, int contentFlag,
                                    int dlgtype, ZrJsonPtr param)
{
    const ZrJsonPtr answer = zruiMessageBoxEx(ZrString(title), ZrString(text), param, flag, contentFlag, dlgtype, this);
    return answer ? answer->GetVarI("ControlBtn", 0) : 0;
}

void ZrQtFileDialogImpl::accept()
{
    if (acceptMode() == QFileDialog::AcceptOpen)
        subAcceptOpenMode();
    else
        subAcceptSaveMode();
}

void ZrQtFileDialogImpl::subAcceptSaveMode()
{
    auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    QString text = edit ? edit->text() : QString();
    text.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const int slash = text.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0) {
        const QString folder = text.left(slash);
        const QDir typedFolder(directory().absoluteFilePath(folder));
        if (!folder.isEmpty() && typedFolder.exists()) {
            setDirectory(typedFolder.absolutePath());
            text = QFileInfo(text).fileName();
            selectFile(text);
        }
    }
    if (text.isEmpty())
        return;
    ZrString trimmed(text);
    if (trimmed.trim().isEmpty())
        return;
    const QString name = trimmed.toQString();
    const QString title = windowTitle();
    if (!isValidFileName(trimmed)) {
        const QString caption = m_params->GetVarB("InhCaption") ? m_params->GetVarS("caption").toQString() : QString();
        showMessage(caption, fillPercentS(zrUiText(kInvalidNameKey, kInvalidNameText), {name}), 0, 1, 64);
        return;
    }
    // The window title is what is measured, whatever the message says.
    if (title.length() >= 255) {
        showMessage(fillPercentS(QStringLiteral("%s - %s"),
                                 {zrUiText("CMDSRES_IDD_DIALOG_TABLE_DATALINK_4", QStringLiteral("文件名:")),
                                  zrUiText("IDS_STDAFX_PROMPT4", QStringLiteral("文字长度"))}),
                    zrUiText("IDS_ZRAP_DOCOPEN_PROMPT36", QStringLiteral("文件全名 不能多于 255个字符。")), 0, 1, 64);
        return;
    }
    const QString extension = saveExtension(filterExtName(), m_params->hasProperty("defFilter"),
                                            m_params->GetVarSW("defFilter").toQString());
    const QString finalName = nameWithExtension(name, extension);
    const QString fullPath = directory().filePath(finalName);
    if (!isValidSavePath(ZrString(directory().absolutePath()))) {
        const QString question = fillPercentS(
            zrUiText("IDS_QTUTILS_FILEDIALOG_2",
                     QStringLiteral(" %s \n您没有权限在此位置中保存文件。 \n请与管理员联系以获得相应权限。\n\n"
                                    "您想改为保存到 %s 的文档文件夹中吗?")),
            {fullPath, zrutGetUserName().toQString()});
        if (showMessage(title, question, 4, 1, 64) == kZrDlgYes) {
            const QString typed = edit ? edit->text() : QString();
            setDirectory(zrutGetHomeDir().toQString());
            if (edit)
                edit->setText(typed);
        }
        return;
    }
    if (zrutIsExistFile(localPath(fullPath)) && !m_hideOverwriteBox) {
        const QString shortName = fullPath.mid(fullPath.lastIndexOf(QLatin1Char('/')) + 1);
        const QString question = shortName + QLatin1Char(' ')
            + zrUiText("IDS_QTUTILS_FILEDIALOG_1", QStringLiteral(" 已存在。\n要替换它吗？"));
        if (showMessage(zrUiText("IDS_QTUTILS_FILEDIALOG_0", QStringLiteral("确认另存为")), question, 4, 1, 64)
            != kZrDlgYes)
            return;
    }
    if (edit)
        edit->setText(finalName);
    // Not QFileDialog::accept: its own overwrite question must not come up a second time.
    QFileDialog::done(QDialog::Accepted);
}

void ZrQtFileDialogImpl::subAcceptOpenMode()
{
    QStringList files = selectedFiles();
    if (files.size() == 1 && !m_selectDirectory) {
        QString& file = files.first();
        if (!file.contains(QLatin1Char('.'))) {
            QString completed = file;
            if (getEffectiveSuffix(completed) && !QFileInfo(completed).suffix().isEmpty()) {
                file = completed;
                if (auto* edit = namedChild<QLineEdit>(this, "fileNameEdit"))
                    edit->setText(QFileInfo(completed).fileName());
            } else {
                if (QFileInfo(completed).isDir()) {
                    setDirectory(completed);
                    Q_EMIT directoryEntered(completed);
                } else if (!getEffectiveSuffix(completed)) {
                    fileNotExistMessageTip(ZrString(completed));
                }
                return;
            }
        }
        if (!fileNotExistMessageTip(ZrString(file)))
            return;
    }
    bool holdsFiles = false;
    bool holdsFolders = false;
    for (const QString& file : qAsConst(files)) {
        const QFileInfo info(file);
        holdsFiles = holdsFiles || info.isFile();
        holdsFolders = holdsFolders || info.isDir();
    }
    if (holdsFiles && holdsFolders)
        done(QDialog::Accepted);
    else
        QFileDialog::accept();
}

int ZrQtFileDialogImpl::fileNotExistMessageTip(ZrString name)
{
    const QString path = name.toQString();
    // Remembered before the test: the folder of a name that does not exist is still where the user was.
    SaveLastOpenFilePath(path);
    if (zrutIsExistFile(localPath(path)))
        return 1;
    ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
    param->SetDataSW("btnText/0", ZrString(zrUiText("IDS_FINDDLG35", QStringLiteral("关闭(&C)"))));
    const QString text = shortNameForMessage(path)
        + zrUiText("IDS_QTUTILS_FILEDIALOG_3", QStringLiteral("\n找不到文件。"))
        + zrUiText("IDS_QTUTILS_FILEDIALOG_4", QStringLiteral("\n请检查文件名是否正确，然后重试。"));
    showMessage(windowTitle(), text, 6, 1, 0, param);
    return 0;
}

bool ZrQtFileDialogImpl::isValidFileName(const ZrString& name) const { return !holdsInvalidChar(name.toQString()); }

bool ZrQtFileDialogImpl::isValidSavePath(const ZrString& path) const { return zrutAccessFile(path, 2); }

int ZrQtFileDialogImpl::getEffectiveSuffix(QString& path)
{
    const QFileInfo info(path);
    if (!info.suffix().isEmpty())
        return 1;
    const QString patterns = filterPatterns(selectedNameFilter(), false);
    if (patterns.isEmpty())
        return 0;
    const QDir folder(info.absolutePath());
    const QFileInfoList entries =
        folder.entryInfoList(patterns.split(QLatin1Char(' '), Qt::SkipEmptyParts),
                             QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Unsorted);
    const QString baseName = info.baseName();
    for (const QFileInfo& entry : entries) {
        if (entry.baseName() == baseName) {
            path += QLatin1Char('.') + entry.suffix();
            return 1;
        }
    }
    return 0;
}

QString ZrQtFileDialogImpl::filterExtName() const
{
    const auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    return filterExtension(selectedNameFilter(), edit ? edit->text() : QString());
}

void ZrQtFileDialogImpl::SaveLastOpenFilePath(const QString& path)
{
    if (path.isEmpty())
        return;
    const ZrJsonPtr section = zr_user_config("CmdOpenFile", 2);
    if (!section.isNullOrNoDef() && section->isObject()) {
        if (m_helpTag == ZrString(L"openDocument"))
            section->SetDataSW("CmdOpen-openLastPath", ZrString(QFileInfo(path).absolutePath()));
        else if (m_helpTag == ZrString(L"newDocument"))
            section->SetDataSW("CmdOpen-newLastPath", ZrString(path));
    }
    zr_save_user_config("");
}

ZrQtFileDialog* ZrQtFileDialogImpl::getParentWidget() const { return m_owner; }
void ZrQtFileDialogImpl::setParentWidget(ZrQtFileDialog* owner) { m_owner = owner; }
const SHelpInitInfo& ZrQtFileDialogImpl::initInfo() const { return m_initInfo; }
bool ZrQtFileDialogImpl::answersInProperties() const { return m_answersInProperties; }
void ZrQtFileDialogImpl::setAnswersInProperties(bool on) { m_answersInProperties = on; }
bool ZrQtFileDialogImpl::forcedAccept() const { return m_forcedAcceptFirst && m_forcedAcceptSecond; }

void ZrQtFileDialogImpl::setForcedAccept(bool firstHalf, bool secondHalf)
{
    m_forcedAcceptFirst = firstHalf;
    m_forcedAcceptSecond = secondHalf;
}

QWidget* ZrQtFileDialogImpl::extensionArea() const { return m_extensionArea; }
QGridLayout* ZrQtFileDialogImpl::extensionLayout() const { return m_extensionLayout; }

void ZrQtFileDialogImpl::onCurrentChanged(const QString& path)
{
    if (m_previewLabel) {
        m_previewLabel->setFilePath(path);
        m_previewLabel->showPreview();
    }
    if (m_initInfo.open || m_selectDirectory)
        return;
    // Qt names the button after what is selected; the system keeps its own wording.
    auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    auto* box = namedChild<QDialogButtonBox>(this, "buttonBox");
    if (!edit || !box || !path.contains(edit->text()))
        return;
    QPushButton* save = box->button(QDialogButtonBox::Save);
    if (!save)
        save = box->button(QDialogButtonBox::Open);
    const QString saveText = zrUiText("IDS_EATTEXT_115", QStringLiteral("保存(&S)"));
    if (save && save->text() != saveText)
        save->setText(saveText);
}

void ZrQtFileDialogImpl::onFilterChanged(QString filter)
{
    const bool open = m_params->GetVarB("Open");
    const bool multipleFiles = m_params->GetVarB("MutiFile");
    if (filter.contains(QLatin1String("*.dwt"))) {
        ZrArray<ZrUtf8String> templateFolders;
        zrutEnumPaths(zr_runtime_config("paths/templatePaths"), templateFolders);
        if (!templateFolders.isEmpty()) {
            QString folder = templateFolders.first().toQString();
            if (!folder.endsWith(QLatin1Char('/')))
                folder += QLatin1Char('/');
            if (QDir(folder).exists())
                setDirectory(folder);
        }
    }
    auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    if (open || multipleFiles || !edit || edit->text().isEmpty())
        return;
    auto* combo = namedChild<QComboBox>(this, "fileTypeCombo");
    const QString nextRow = combo ? combo->itemText(combo->currentIndex() + 1) : QString();
    const QString name = nameForChosenFilter(filter, nextRow, m_params->hasProperty("defFilter"),
                                             m_params->GetVarSW("defFilter").toQString(), edit->text());
    if (!name.isNull())
        edit->setText(name);
}

void ZrQtFileDialogImpl::onBtnLocationClicked(bool)
{
    auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    const QString name = edit ? edit->text().trimmed() : QString();
    if (name.isEmpty() || name == QLatin1String(".")) {
        showMessage(QString(), fillPercentS(zrUiText(kInvalidNameKey, kInvalidNameText), {name}), 0, 1, 64);
        return;
    }
    const QString line = QStringLiteral("\"%s\"\n");
    QString text = fillPercentS(line, {name});
    ZrArray<ZrUtf8String> folders;
    zrutEnumPaths(CXuSystem::instance()->getProfileValue("General", "ZRAPP"), folders);
    for (const ZrUtf8String& folder : folders) {
        if (QFileInfo(folder.toQString()).isDir())
            text += fillPercentS(line, {folder.toQString()});
    }
    showMessage(QString(), text, 0, 1, 0);
}

void ZrQtFileDialogImpl::onBtnFindClicked(bool)
{
    ZrJsonPtr order = ElementValue::createObject(kZrJsonObject);
    for (const char* key : {"dir", "filter", "defFilter", "helpDoc"})
        order->SetDataSW(key, m_params->GetVarSW(key));
    const ZrJsonPtr result =
        zruiShowModelDialogEx(kZrQtCommonUISvrSlot, ZrString(L"fileFindDialog"), order, ZrRxObjectPtr(), this);
    if (!result || result->GetVarI("result", -1) != kZrDlgOk)
        return;
    const QString filter = order->GetVarSW("defFilter").toQString();
    if (!filter.isEmpty())
        selectNameFilter(filter);
    const QString found = order->GetVarSW("findFile").toQString();
    if (!found.isEmpty()) {
        selectFile(found);
        if (auto* box = namedChild<QDialogButtonBox>(this, "buttonBox")) {
            if (QPushButton* openButton = box->button(QDialogButtonBox::Open))
                openButton->setEnabled(true);
        }
    }
}

void ZrQtFileDialogImpl::onBtnShowSafeWindow(bool)
{
    const ZrRxObjectPtr object = CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuSecurity"));
    if (auto* security = CXuSecurity::cast(object.get()))
        security->show(1);
}

void ZrQtFileDialogImpl::onCustomSideBarItemClicked(QListWidgetItem* item)
{
    if (m_sideBarGuard) {
        m_sideBarGuard = false;
        return;
    }
    if (!item)
        return;
    auto* edit = namedChild<QLineEdit>(this, "fileNameEdit");
    const QString typed = edit ? edit->text() : QString();
    const QString path = item->data(Qt::UserRole).toString();
    const QString text = item->text();
    if (text == computerText()) {
        selectUrl(QUrl::fromLocalFile(QStringLiteral("/")));
    } else if (text == dataPartitionText()) {
        selectUrl(QUrl::fromLocalFile(QStringLiteral("/data/")));
    } else if (text == zrUiText("IDS_QTUTILS_FILEDIALOG_BROWSE_1", QStringLiteral("浏览"))) {
        return;
    } else if (!path.isEmpty()) {
        if (QDir(path).exists())
            selectUrl(QUrl::fromLocalFile(QString(path).replace(QLatin1Char('\\'), QLatin1Char('/')) + QLatin1Char('/')));
        else if (linuxPartitions().contains(path))
            selectUrl(QUrl::fromLocalFile(path + QLatin1Char('/')));
    }
    // Navigation empties the name; what the user typed is kept, but a folder is chosen anew.
    if (!edit)
        return;
    if (m_params->GetVarB("bSelectDir"))
        edit->clear();
    else
        edit->setText(typed);
}

void ZrQtFileDialogImpl::onCustomSideBarcurrentItemChanged(QListWidgetItem* current, QListWidgetItem*)
{
    onCustomSideBarItemClicked(current);
    // The press that changed the current item comes next; it has been answered here.
    m_sideBarGuard = true;
}

void zr_linux_partitions(std::vector<std::string>& mountPoints)
{
    ZrUtf8String output;
    // A failing lsblk may have printed half a list; none is better than a wrong one.
    if (zrutPipeCmd("lsblk -l -o MOUNTPOINT", output) != 0)
        return;
    for (const QString& mountPoint : mountPointsOfLsblk(output.toQString()))
        mountPoints.push_back(mountPoint.toStdString());
}

QString zr_current_user_dir() { return zrutGetHomeDir().toQString(); }
