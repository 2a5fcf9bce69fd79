#pragma once
// The frame of every dialog: a counted host object that owns a Qt widget, the parameter and
// result objects, the modal loop with its temporary exits, and the count of open modal dialogs.

#include "zrqtbaseutils_export.h"

#include "zrjson.h"
#include "zrrxobject.h"
#include "zruidialog.h"

#include <QDialog>
#include <QPointer>
#include <functional>
#include <type_traits>

class QWidget;
class ZrQtUIModalDialogBaseImpl;
class ZrQtUIModelessDialogBaseImpl;

// The result codes of "result".
enum ZrUiDialogResult : int {
    kZrDlgNotEnded = -1,
    kZrDlgOk = 1,
    kZrDlgCancel = 2,
    kZrDlgAbort = 3,
    kZrDlgRetry = 4,
    kZrDlgIgnore = 5,
    kZrDlgYes = 6,
    kZrDlgNo = 7,
    kZrDlgTempExit = 11,
};

class ZRQTBASEUTILS_EXPORT ZrQtUIModalDialogBase : public ZrUiModalDialogBase
{
public:
    ZrQtUIModalDialogBase();
    ~ZrQtUIModalDialogBase() override;
    ZrQtUIModalDialogBase(const ZrQtUIModalDialogBase&) = delete;
    ZrQtUIModalDialogBase& operator=(const ZrQtUIModalDialogBase&) = delete;

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    bool freshAndActive(ZrJsonPtr param) override;
    void* getDlg() override;
    ZrJsonPtr getResult() override;
    int doModal() override;
    void endDialog(int result) override;
    void beginEditorCommand() override;
    void cancelEditorCommand() override;
    void completeEditorCommand(bool backToDialog) override;
    bool exchangeData(bool save) override;
    int flags() const override;
    void onFinalDeconstruct() override;
    void hide() override;
    void show() override;
    void onCancel() override;
    void onOk() override;

    void setWidget(QWidget* widget);
    QWidget* getWidget() const;
    void setParam(ZrJsonPtr param);
    ZrJsonPtr getParam() const;
    // ORs `flags` into the flag word and answers the old word; no bit can be cleared this way.
    int setFlags(int flags);
    // A function that runs once, after the dialog's loop has ended, with a pointer to a copy of `arg`.
    void setBeginEditorCommandFunc(std::function<void(void*)> func, void* arg);
    void setTempExitFlag(bool tempExit);
    bool getTempExitFlag() const;

    static int getModalDlgCount();
    // QMessageBox::StandardButton values to result codes; -1 for anything else.
    static int qt_2_zrui(int button);

private:
    int subDoModalGeneral();
    void doModalAfter(int ret);

    ZrQtUIModalDialogBaseImpl* m_pImpl;
};

class ZRQTBASEUTILS_EXPORT ZrQtUIModelessDialogBase : public ZrUiModelessDialogBase
{
public:
    ZrQtUIModelessDialogBase();
    ~ZrQtUIModelessDialogBase() override;
    ZrQtUIModelessDialogBase(const ZrQtUIModelessDialogBase&) = delete;
    ZrQtUIModelessDialogBase& operator=(const ZrQtUIModelessDialogBase&) = delete;

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    bool freshAndActive(ZrJsonPtr param) override;
    void* getDlg() override;
    ZrJsonPtr getResult() override;
    bool show(ZrJsonPtr param, ZrRxObjectPtr helper) override;
    void onFinalDeconstruct() override;
    void endDialog(int result) override;

    void setWidget(QWidget* widget);
    QWidget* getWidget() const;
    void setParam(ZrJsonPtr param);
    ZrJsonPtr getParam() const;

private:
    ZrQtUIModelessDialogBaseImpl* m_pImpl;
};

// The counted form of a dialog frame.
template <class X, class Base = X>
class ZrQtRxObjectImpl : public ZrRxObjectImpl<X, Base>
{
public:
    using ZrRxObjectImpl<X, Base>::ZrRxObjectImpl;
};

// The widget side of a dialog. T derives from it and builds its content in onInitDialog.
template <class T, class Base = QDialog>
class ZrQtModalDialogImpl : public Base
{
public:
    // What a client's companion gets to call back into the running dialog.
    class ZrInvoker : public ZrUiDialogInvoker
    {
    public:
        explicit ZrInvoker(ZrQtModalDialogImpl* owner) : m_owner(owner) {}

        void endDialog(int result) override { if (m_owner) m_owner->endDialog(result); }
        void beginEditorCommand() override { if (m_owner) m_owner->beginEditorCommand(); }
        void cancelEditorCommand() override { if (m_owner) m_owner->cancelEditorCommand(); }
        void completeEditorCommand(bool back) override { if (m_owner) m_owner->completeEditorCommand(back); }
        int flags() const override { return (m_owner && m_owner->m_base) ? m_owner->m_base->flags() : 0; }
        bool exchangeData(bool save) override
        {
            if (!overridesExchangeData() || !m_owner)
                return true;
            return m_owner->exchangeData(save);
        }
        ZrJsonPtr invokerMethod(int method, ZrJsonPtr param) override
        {
            return m_owner ? m_owner->invokerMethod(method, param) : ZrJsonPtr();
        }
        void setHelperFunc(std::function<void(void*)> func) override { m_func = std::move(func); }
        std::function<void(void*)> getHelperFunc() override { return m_func; }
        ZrUiModalDialogBase* getModalDialogBase() override { return m_owner ? m_owner->m_base : nullptr; }

    private:
        friend class ZrQtModalDialogImpl;
        static constexpr bool overridesExchangeData()
        {
            return !std::is_same<decltype(&T::exchangeData), decltype(&ZrQtModalDialogImpl::exchangeData)>::value;
        }

        ZrQtModalDialogImpl* m_owner;
        std::function<void(void*)> m_func;
    };

    ZrQtModalDialogImpl(ZrQtUIModalDialogBase* base, QWidget* parent, Qt::WindowFlags flags)
        : Base(parent, flags), m_base(base)
    {
    }

    ~ZrQtModalDialogImpl() override
    {
        // A client may still hold the invoker; it must not reach a dead dialog.
        if (m_invoker)
            static_cast<ZrInvoker*>(m_invoker.get())->m_owner = nullptr;
    }

    virtual ZrUtf8String getUserConfigName() { return m_configName; }
    virtual void saveStat(ZrJsonPtr) {}
    virtual void loadStat(ZrJsonPtr) {}
    virtual ZrUtf8String getResource(const char* a, const char* b) { return ZrUtf8String(a ? a : b); }
    virtual ZrUiHelper* helper() { return ZrUiHelper::cast(m_helper.get()); }
    virtual void endDialog(int result)
    {
        if (m_base)
            m_base->endDialog(result);
    }
    virtual bool onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper)
    {
        m_param = param;
        m_helper = helper;
        loadStat(m_stat);
        return true;
    }
    virtual bool onCreate() { return true; }
    virtual void beginEditorCommand()
    {
        if (m_base)
            m_base->beginEditorCommand();
    }
    virtual void cancelEditorCommand()
    {
        if (m_base)
            m_base->cancelEditorCommand();
    }
    virtual void completeEditorCommand(bool backToDialog)
    {
        if (m_base)
            m_base->completeEditorCommand(backToDialog);
    }
    virtual bool exchangeData(bool) { return true; }
    virtual ZrJsonPtr invokerMethod(int, ZrJsonPtr) { return ZrJsonPtr(); }

    ZrSmartPtr<ZrUiDialogInvoker> getInvoker()
    {
        if (!m_invoker) {
            ZrSmartPtr<ZrUiDialogInvoker> made(new ZrRxObjectImpl<ZrInvoker>(this), kZrAttach);
            made->queryX(ZrRxObject::desc());
            m_invoker = made;
        }
        return m_invoker;
    }

    ZrQtUIModalDialogBase* m_base;
    ZrUtf8String m_configName;
    ZrJsonPtr m_stat;
    ZrSmartPtr<ZrUiDialogInvoker> m_invoker;
    ZrRxObjectPtr m_helper;
    ZrJsonPtr m_param;
};

// The frame of a dialog whose widget is T.
template <class T>
class ZrQtModalDialog : public ZrQtUIModalDialogBase
{
public:
    ~ZrQtModalDialog() override
    {
        setWidget(nullptr);
        delete m_dlg.data();
    }

    bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) override
    {
        if (!ZrQtUIModalDialogBase::onInit(param, helper))
            return false;
        return m_dlg && m_dlg->onInitDialog(param, helper);
    }

    void* getDlg() override { return m_dlg.data(); }

    bool exchangeData(bool save) override
    {
        if (m_dlg)
            m_dlg->exchangeData(save);
        return true;
    }

    void onFinalDeconstruct() override
    {
        delete m_dlg.data();
        m_dlg = nullptr;
        setWidget(nullptr);
    }

    // Builds the widget once; a second call leaves the dialog, its name and its modality alone.
    virtual bool onCreate(QWidget* parent, Qt::WindowFlags flags, const char* name)
    {
        if (m_dlg)
            return true;
        m_dlg = new T(this, parent, flags);
        setWidget(m_dlg);
        if (name)
            m_dlg->m_configName = ZrUtf8String(name);
        m_dlg->setModal(true);
        return m_dlg->onCreate();
    }

    QPointer<T> m_dlg;
};
