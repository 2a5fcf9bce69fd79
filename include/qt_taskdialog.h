#pragma once
// The task dialog: an icon beside a message and its paragraphs, a column of large command buttons,
// an optional check box and a row of standard buttons chosen by a bit set; built from the keys of
// its parameter object.

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include <QPushButton>
#include <QString>
#include <QVector>

class QButtonGroup;
class QCheckBox;
class QLabel;
class QScrollArea;
class QVBoxLayout;

// A large command button: an arrow, a caption and a detail line under it. It answers a press of
// the left button, Return or Enter, or the mnemonic of its caption, with taskBtnClick.
class ZRQTBASEUTILS_EXPORT ZrQtTaskButton : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrQtTaskButton(QWidget* parent = nullptr);
    ~ZrQtTaskButton() override;

    // Nothing is set without a title.
    void setText(const QString& title, const QString& detail);
    // Fits the button's height to its texts at its present width.
    void resetButtonContentDisplay();
    void setCommondId(int id);
    int getCommandId() const;

Q_SIGNALS:
    void taskBtnClick(int commandId);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    int m_commandId = -1;
    QLabel* m_pTitleLabel = nullptr;
    QLabel* m_pDetailLabel = nullptr;
    int m_iconSize = 24;
    int m_margin = 3;
};

class ZRQTBASEUTILS_EXPORT ZrQtTaskDialog : public ZrQtModalDialogImpl<ZrQtTaskDialog, QDialog>
{
    Q_OBJECT
public:
    ZrQtTaskDialog(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags);
    ~ZrQtTaskDialog() override;

    bool onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    void reject() override;
    bool eventFilter(QObject* object, QEvent* event) override;

    // The given size: the fixed height never below the size hint.
    void setDlgSize();
    // A colour for style sheets a client may apply, as the message box gives it.
    QString getTextColor() const;
    // Disables `button` while `check` is checked.
    void setCtlBtnState(QCheckBox* check, QPushButton* button);
    // Non-zero disables the command buttons listed in "enableBtnId", zero enables them.
    void setBtnState(int disable);
    bool hasCancel() const;

protected:
    void showEvent(QShowEvent* event) override;

    void createTitle();
    void createBody();
    void createMainInfo();
    // The places of content no caller uses so far.
    void createRadioBtns() {}
    void createFooterInfo() {}
    void createCommandBtns();
    void createBottom();
    void createCheckBoxesAndYesNoBtns();

private:
    // The command column shows all its buttons, scrolling only where the screen is too small.
    void fitCommandColumn();

    QButtonGroup* m_pGroupBtns = nullptr;
    QVBoxLayout* m_pMainLayout = nullptr;
    QVBoxLayout* m_pBodyLayout = nullptr;
    QVBoxLayout* m_pBottomLayout = nullptr;
    QString m_title;
    QString m_msg;
    QString m_content;
    QString m_expandedInformation;
    QString m_mainIcon;
    int m_dlgType = -1;
    int m_contentFlag = -1;
    int m_flag = -1;
    int m_focusFlagBtnId = -1;
    int m_options = -1;
    int m_dlgWidth = -1;
    int m_dlgHeight = -1;
    QVector<int> m_enableBtnIds;
    QVector<ZrQtTaskButton*> m_taskBtns;
    QScrollArea* m_commandArea = nullptr;
    QCheckBox* m_checkBox = nullptr;
};
