#pragma once
// The file dialog the UI service hands out by the names "FileDialogBox" and "FileNavDialogBox":
// Qt's own file dialog with the machine's side bar, a preview or export panel and the system's
// rules for accepting a typed name.

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include <QFileDialog>
#include <QPointer>
#include <QStandardPaths>
#include <string>
#include <vector>

class QGridLayout;
class QGroupBox;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class ZrImagePreviewLabel;
class ZrQtExportWidget;
class ZrQtFileDialogImpl;

// The parameters of one dialog as the set-up steps pass them along; each step may change them.
struct SHelpInitInfo
{
    QString caption;
    QString directory;
    QString filter;
    QString lookIn;
    bool open = false;
    bool multipleFiles = false;
    QString fileName;
    QString defaultFilter;
    bool preview = true;
    bool findFile = true;
    bool exportPanel = false;
    bool selectDirectory = false;
    bool showDefaultDirs = true;
};

class ZRQTBASEUTILS_EXPORT ZrQtFileDialog : public ZrQtUIModalDialogBase
{
public:
    ZrQtFileDialog();
    ~ZrQtFileDialog() override;

    // The counted frame with its window; without a parent the window goes on the host's main window.
    static ZrSmartPtr<ZrUiDialogBase> createObject(QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags(),
                                                   const char* name = nullptr);
    // Builds the window once; answers 1.
    int onCreate(QWidget* parent, Qt::WindowFlags flags, const char* name);

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    // Runs the window until its answer can be written; a save folder that is no usable path brings
    // the window up again.
    int doModal() override;
    void* getDlg() override;

private:
    QPointer<ZrQtFileDialogImpl> m_dlg;
};

class ZRQTBASEUTILS_EXPORT ZrQtFileDialogImpl : public QFileDialog
{
    Q_OBJECT
public:
    ZrQtFileDialogImpl(QWidget* parent, Qt::WindowFlags flags);
    ~ZrQtFileDialogImpl() override;

    // Reads the parameters and builds the window; zero when a step failed.
    int onInit(ZrJsonPtr params, ZrRxObjectPtr context);
    int onSubInit1(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);
    int onSubInit2(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);
    int onSubInit3(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);
    int onSubInit4(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);
    int onSubInit5(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);
    int onSubInit8(ZrJsonPtr params, ZrRxObjectPtr context, SHelpInitInfo& info);

    void accept() override;
    void subAcceptOpenMode();
    void subAcceptSaveMode();
    // Non-zero when `name` exists; otherwise says it was not found. Remembers the name's folder first.
    int fileNotExistMessageTip(ZrString name);
    // True when the name holds none of < > / \ " ; : ? * , = ` |
    bool isValidFileName(const ZrString& name) const;
    bool isValidSavePath(const ZrString& path) const;
    // Non-zero when `path` has an extension or was given the one of a like-named file the chosen
    // filter shows in its folder.
    int getEffectiveSuffix(QString& path);
    // The extension of the chosen filter, with its dot.
    QString filterExtName() const;
    // The last folder of the open and new commands, kept in the user configuration.
    void SaveLastOpenFilePath(const QString& path);

    ZrQtFileDialog* getParentWidget() const;
    void setParentWidget(ZrQtFileDialog* owner);
    const SHelpInitInfo& initInfo() const;

    // Hooks for whoever holds the window: answers taken from the window's dynamic properties, and a
    // result of 1 whatever the run returned when both halves are set.
    bool answersInProperties() const;
    void setAnswersInProperties(bool on);
    bool forcedAccept() const;
    void setForcedAccept(bool firstHalf, bool secondHalf);
    // The empty area at the foot of the right panel, for a caller's own controls; null without it.
    QWidget* extensionArea() const;
    QGridLayout* extensionLayout() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    void onCurrentChanged(const QString& path);
    void onFilterChanged(QString filter);
    void onBtnLocationClicked(bool checked = false);
    void onBtnFindClicked(bool checked = false);
    void onBtnShowSafeWindow(bool checked = false);
    void onCustomSideBarItemClicked(QListWidgetItem* item);
    void onCustomSideBarcurrentItemChanged(QListWidgetItem* current, QListWidgetItem* previous);

private:
    void setSysDirInfo(QListWidget* list, QStandardPaths::StandardLocation location, const QString& text);
    void makeExtraButtons(QWidget* parent, bool open);
    int showMessage(const QString& title, const QString& text, int flag, int contentFlag, int dlgtype,
                    ZrJsonPtr param = ZrJsonPtr());

    QPushButton* m_firstButton = nullptr;
    QPushButton* m_secondButton = nullptr;
    QWidget* m_extensionArea = nullptr;
    QGridLayout* m_extensionLayout = nullptr;
    QGroupBox* m_previewGroup = nullptr;
    QWidget* m_previewHost = nullptr;
    ZrImagePreviewLabel* m_previewLabel = nullptr;
    ZrJsonPtr m_params;
    bool m_hideOverwriteBox = false;
    bool m_selectDirectory = false;
    ZrString m_helpTag;
    ZrQtExportWidget* m_exportWidget = nullptr;
    ZrQtFileDialog* m_owner = nullptr;
    bool m_sideBarGuard = false;
    bool m_answersInProperties = false;
    SHelpInitInfo m_initInfo;
    bool m_forcedAcceptFirst = false;
    bool m_forcedAcceptSecond = false;
};

// The mount points "lsblk" lists, but for "/", swap, the EFI partition and empty lines, in its order.
ZRQTBASEUTILS_EXPORT void zr_linux_partitions(std::vector<std::string>& mountPoints);
// The home folder of the real user's entry in the password database.
ZRQTBASEUTILS_EXPORT QString zr_current_user_dir();
