#include "qt_utils.h"

#include "zrdocument.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QWidget>

class ZrQtUIModalDialogBaseImpl
{
public:
    ZrJsonPtr m_param;
    ZrRxObjectPtr m_helper;
    ZrJsonPtr m_result = ElementValue::createObject(kZrJsonObject);
    // Guarded: a parent that goes (the document closed during a pick) takes the widget with it.
    QPointer<QWidget> m_widget;
    int m_flags = 0;
    std::function<void(void*)> m_beginFunc;
    void* m_beginFuncArg = nullptr;
    bool m_tempExit = false;
    bool m_reenter = false;

    static int m_iModalDlgCount;

    // Runs the one-shot function, if any. It is taken out first, so a function that sets
    // another one for the next round does not lose it.
    void runBeginFunc()
    {
        if (!m_beginFunc)
            return;
        std::function<void(void*)> func = std::move(m_beginFunc);
        void* arg = m_beginFuncArg;
        m_beginFunc = nullptr;
        m_beginFuncArg = nullptr;
        func(&arg);
    }
};

int ZrQtUIModalDialogBaseImpl::m_iModalDlgCount = 0;

namespace {

// A dialog always shows the arrow, whatever the host's command showed before.
void setArrowCursor()
{
    QGuiApplication::restoreOverrideCursor();
    QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
}

} // namespace

ZrQtUIModalDialogBase::ZrQtUIModalDialogBase() : m_pImpl(new ZrQtUIModalDialogBaseImpl) {}

ZrQtUIModalDialogBase::~ZrQtUIModalDialogBase()
{
    delete m_pImpl->m_widget;
    m_pImpl->m_widget = nullptr;
    m_pImpl->m_beginFunc = nullptr;
    m_pImpl->m_result = ZrJsonPtr();
    m_pImpl->m_helper = ZrRxObjectPtr();
    m_pImpl->m_param = ZrJsonPtr();
    delete m_pImpl;
}

bool ZrQtUIModalDialogBase::onInit(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    m_pImpl->m_param = param;
    m_pImpl->m_helper = helper;
    return true;
}

bool ZrQtUIModalDialogBase::freshAndActive(ZrJsonPtr) { return true; }
void* ZrQtUIModalDialogBase::getDlg() { return nullptr; }
ZrJsonPtr ZrQtUIModalDialogBase::getResult() { return m_pImpl->m_result; }

int ZrQtUIModalDialogBase::doModal()
{
    if (qobject_cast<QDialog*>(m_pImpl->m_widget))
        doModalAfter(subDoModalGeneral());
    return m_pImpl->m_result->safePropertyi32("result", kZrDlgNotEnded);
}

int ZrQtUIModalDialogBase::subDoModalGeneral()
{
    const QPointer<QDialog> dialog(static_cast<QDialog*>(m_pImpl->m_widget.data()));
    ++ZrQtUIModalDialogBaseImpl::m_iModalDlgCount;
    setArrowCursor();
    m_pImpl->m_result->SetDataI("result", kZrDlgNotEnded);

    int ret = dialog->exec();
    if (ret == QDialog::Rejected && m_pImpl->m_tempExit)
        ret = kZrDlgTempExit;
    m_pImpl->runBeginFunc();
    // A return to the dialog after a pick in the drawing runs the loop again; its temporary
    // exits are not told apart from a cancel. A dialog that went meanwhile, with the document
    // that held it, ends the run as a cancel.
    while (m_pImpl->m_reenter && dialog) {
        m_pImpl->m_reenter = false;
        setArrowCursor();
        ret = dialog->exec();
        m_pImpl->runBeginFunc();
        QGuiApplication::restoreOverrideCursor();
    }
    if (dialog)
        return ret;
    m_pImpl->m_reenter = false;
    return QDialog::Rejected;
}

void ZrQtUIModalDialogBase::doModalAfter(int ret)
{
    if (m_pImpl->m_result->safePropertyi32("result", kZrDlgNotEnded) == kZrDlgNotEnded) {
        // Closed without endDialog: translate how the loop ended.
        if (ret == QDialog::Accepted)
            m_pImpl->m_result->SetDataI("result", kZrDlgOk);
        else if (ret == kZrDlgTempExit)
            m_pImpl->m_result->SetDataI("result", kZrDlgTempExit);
        else if (ret == QDialog::Rejected)
            m_pImpl->m_result->SetDataI("result", kZrDlgCancel);
    }
    QGuiApplication::restoreOverrideCursor();
    --ZrQtUIModalDialogBaseImpl::m_iModalDlgCount;

    // The outermost dialog of a command that did not end with OK tells the command so.
    if (m_pImpl->m_result->safePropertyi32("result", kZrDlgNotEnded) == kZrDlgOk
        || ZrQtUIModalDialogBaseImpl::m_iModalDlgCount != 0)
        return;
    CXuDocManager* documents = CXuSystem::instance()->docManager();
    CXuDocument* document = documents ? documents->curDocument() : nullptr;
    CXuDocContext* context = document ? document->context() : nullptr;
    CXuCommandObject* command = context ? context->commandObject() : nullptr;
    if (command)
        command->setCommandState(false);
}

void ZrQtUIModalDialogBase::endDialog(int result)
{
    m_pImpl->m_result->SetDataI("result", result);
    if (m_pImpl->m_widget)
        m_pImpl->m_widget->close();
}

void ZrQtUIModalDialogBase::beginEditorCommand()
{
    m_pImpl->m_flags |= 1;
    m_pImpl->m_reenter = false;
    exchangeData(true);
    hide();
    zruiSetCursor(zruiViewWindow(), 0);
}

void ZrQtUIModalDialogBase::cancelEditorCommand()
{
    m_pImpl->m_flags &= ~1;
    m_pImpl->m_reenter = false;
    onCancel();
}

void ZrQtUIModalDialogBase::completeEditorCommand(bool backToDialog)
{
    m_pImpl->m_flags &= ~1;
    if (backToDialog) {
        show();
        exchangeData(false);
        m_pImpl->m_reenter = true;
    } else {
        onOk();
        m_pImpl->m_reenter = false;
    }
}

bool ZrQtUIModalDialogBase::exchangeData(bool) { return true; }
int ZrQtUIModalDialogBase::flags() const { return m_pImpl->m_flags; }
void ZrQtUIModalDialogBase::onFinalDeconstruct() {}

void ZrQtUIModalDialogBase::hide()
{
    if (m_pImpl->m_widget && m_pImpl->m_widget->isVisible())
        m_pImpl->m_widget->hide();
}

void ZrQtUIModalDialogBase::show()
{
    if (m_pImpl->m_widget && !m_pImpl->m_widget->isVisible())
        m_pImpl->m_widget->show();
}

void ZrQtUIModalDialogBase::onCancel() { endDialog(kZrDlgCancel); }
void ZrQtUIModalDialogBase::onOk() { endDialog(kZrDlgOk); }

void ZrQtUIModalDialogBase::setWidget(QWidget* widget) { m_pImpl->m_widget = widget; }
QWidget* ZrQtUIModalDialogBase::getWidget() const { return m_pImpl->m_widget; }
void ZrQtUIModalDialogBase::setParam(ZrJsonPtr param) { m_pImpl->m_param = param; }
ZrJsonPtr ZrQtUIModalDialogBase::getParam() const { return m_pImpl->m_param; }

int ZrQtUIModalDialogBase::setFlags(int flags)
{
    const int old = m_pImpl->m_flags;
    m_pImpl->m_flags |= flags;
    return old;
}

void ZrQtUIModalDialogBase::setBeginEditorCommandFunc(std::function<void(void*)> func, void* arg)
{
    m_pImpl->m_beginFunc = std::move(func);
    m_pImpl->m_beginFuncArg = arg;
}

void ZrQtUIModalDialogBase::setTempExitFlag(bool tempExit) { m_pImpl->m_tempExit = tempExit; }
bool ZrQtUIModalDialogBase::getTempExitFlag() const { return m_pImpl->m_tempExit; }
int ZrQtUIModalDialogBase::getModalDlgCount() { return ZrQtUIModalDialogBaseImpl::m_iModalDlgCount; }

int ZrQtUIModalDialogBase::qt_2_zrui(int button)
{
    switch (button) {
    case QMessageBox::Ok: return kZrDlgOk;
    case QMessageBox::Cancel: return kZrDlgCancel;
    case QMessageBox::Abort: return kZrDlgAbort;
    case QMessageBox::Retry: return kZrDlgRetry;
    case QMessageBox::Ignore: return kZrDlgIgnore;
    case QMessageBox::Yes: return kZrDlgYes;
    case QMessageBox::No: return kZrDlgNo;
    default: return kZrDlgNotEnded;
    }
}

class ZrQtUIModelessDialogBaseImpl
{
public:
    ZrJsonPtr m_param;
    ZrRxObjectPtr m_helper;
    ZrJsonPtr m_result = ElementValue::createObject(kZrJsonObject);
    QWidget* m_widget = nullptr;
};

ZrQtUIModelessDialogBase::ZrQtUIModelessDialogBase() : m_pImpl(new ZrQtUIModelessDialogBaseImpl) {}

ZrQtUIModelessDialogBase::~ZrQtUIModelessDialogBase()
{
    delete m_pImpl->m_widget;
    delete m_pImpl;
}

bool ZrQtUIModelessDialogBase::onInit(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    m_pImpl->m_param = param;
    m_pImpl->m_helper = helper;
    m_pImpl->m_result = ElementValue::createObject(kZrJsonObject);
    return true;
}

bool ZrQtUIModelessDialogBase::freshAndActive(ZrJsonPtr) { return true; }
void* ZrQtUIModelessDialogBase::getDlg() { return m_pImpl->m_widget; }
ZrJsonPtr ZrQtUIModelessDialogBase::getResult() { return m_pImpl->m_result; }

bool ZrQtUIModelessDialogBase::show(ZrJsonPtr, ZrRxObjectPtr)
{
    if (!m_pImpl->m_widget || !m_pImpl->m_widget->isWidgetType())
        return false;
    m_pImpl->m_widget->show();
    return true;
}

void ZrQtUIModelessDialogBase::onFinalDeconstruct() {}

void ZrQtUIModelessDialogBase::endDialog(int result)
{
    m_pImpl->m_result->SetDataI("result", result);
    if (m_pImpl->m_widget)
        m_pImpl->m_widget->close();
}

void ZrQtUIModelessDialogBase::setWidget(QWidget* widget) { m_pImpl->m_widget = widget; }
QWidget* ZrQtUIModelessDialogBase::getWidget() const { return m_pImpl->m_widget; }
void ZrQtUIModelessDialogBase::setParam(ZrJsonPtr param) { m_pImpl->m_param = param; }
ZrJsonPtr ZrQtUIModelessDialogBase::getParam() const { return m_pImpl->m_param; }
