#pragma once
// The module's message box: a fixed-size modal dialog built from the keys of its parameter object.

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include <QPointer>

class QButtonGroup;
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

class ZRQTBASEUTILS_EXPORT ZrQtMessageBox : public ZrQtModalDialogImpl<ZrQtMessageBox, QDialog>
{
    Q_OBJECT
public:
    ZrQtMessageBox(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags);
    ~ZrQtMessageBox() override;

    bool onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    void reject() override;

    // Colours for style sheets a client may apply.
    QString getTextColor() const;
    QString getButtonTextColor() const;

protected:
    // 1 when the content was built, 0 without a parameter object.
    int onCreateInner();

private:
    // One builder per part of the content.
    void buildMessageRow(QHBoxLayout* row, const QString& msg, int dlgtype);
    void buildSelectors(QVBoxLayout* column);
    void buildChecks(QVBoxLayout* column);
    void buildControlButtons(QHBoxLayout* row, int flag);
    QPushButton* addControlButton(QHBoxLayout* row, const QString& text, QChar shortcut, int id);

    QPointer<QButtonGroup> m_pGroupBtns;
    uint8_t m_checkMask = 0;
    bool m_noMaximize = false;
};
