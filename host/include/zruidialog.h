#pragma once
// The host's dialog interfaces, the UI service base and the companion object of a dialog.

#include "zrhost_export.h"
#include "zrjson.h"
#include "zrrxobject.h"
#include "zrstring.h"

#include <QVariant>
#include <functional>

class ZRHOST_EXPORT ZrUiDialogBase : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiDialogBase)
public:
    virtual bool onInit(ZrJsonPtr param, ZrRxObjectPtr helper) = 0;
    virtual bool freshAndActive(ZrJsonPtr param) = 0;
    virtual void* getDlg() = 0;
    virtual ZrJsonPtr getResult() = 0;
};

class ZRHOST_EXPORT ZrUiModalDialogBase : public ZrUiDialogBase
{
    ZR_RX_DECLARE_MEMBERS(ZrUiModalDialogBase)
public:
    virtual int doModal() = 0;
    virtual void endDialog(int result) = 0;
    virtual void beginEditorCommand() = 0;
    virtual void cancelEditorCommand() = 0;
    virtual void completeEditorCommand(bool backToDialog) = 0;
    virtual bool exchangeData(bool save) = 0;
    virtual int flags() const = 0;
    virtual void onFinalDeconstruct() = 0;
    virtual void hide() = 0;
    virtual void show() = 0;
    virtual void onCancel() = 0;
    virtual void onOk() = 0;
};

class ZRHOST_EXPORT ZrUiModelessDialogBase : public ZrUiDialogBase
{
    ZR_RX_DECLARE_MEMBERS(ZrUiModelessDialogBase)
public:
    virtual bool show(ZrJsonPtr param, ZrRxObjectPtr helper) = 0;
    virtual void onFinalDeconstruct() = 0;
    virtual void endDialog(int result) = 0;
};

// What a client's companion object gets in order to call back into a running dialog.
class ZRHOST_EXPORT ZrUiDialogInvoker : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiDialogInvoker)
public:
    virtual void endDialog(int result) = 0;
    virtual void beginEditorCommand() = 0;
    virtual void cancelEditorCommand() = 0;
    virtual void completeEditorCommand(bool backToDialog) = 0;
    virtual int flags() const = 0;
    virtual bool exchangeData(bool save) = 0;
    virtual ZrJsonPtr invokerMethod(int method, ZrJsonPtr param) = 0;
    virtual void setHelperFunc(std::function<void(void*)> func) = 0;
    virtual std::function<void(void*)> getHelperFunc() = 0;
    virtual ZrUiModalDialogBase* getModalDialogBase() = 0;
};

// Named values a dialog and its caller share.
class ZRHOST_EXPORT CXuDictionary
{
public:
    CXuDictionary();
    ~CXuDictionary();
    CXuDictionary(const CXuDictionary&) = delete;
    CXuDictionary& operator=(const CXuDictionary&) = delete;

    bool has(const char* name) const;
    // Readers answer false and leave the target alone when the name is missing or of another type.
    bool getInt(const char* name, int& value) const;
    bool getBool(const char* name, bool& value) const;
    bool getDouble(const char* name, double& value) const;
    bool getString(const char* name, ZrString& value) const;
    bool getPtr(const char* name, void*& value) const;
    void setInt(const char* name, int value);
    void setBool(const char* name, bool value);
    void setDouble(const char* name, double value);
    void setString(const char* name, const ZrString& value);
    void setPtr(const char* name, void* value);
    bool remove(const char* name);

private:
    struct Data;
    Data* d;
};

// The companion object a client hands to a dialog.
class ZRHOST_EXPORT ZrUiHelper : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiHelper)
public:
    ZrUiHelper();
    ~ZrUiHelper() override;
    CXuDictionary* getDictionary() const;
    std::function<bool(ZrJsonPtr)> getFunc() const;
    void setFunc(std::function<bool(ZrJsonPtr)> func);
    // Called by a dialog that has something to tell its caller at once.
    virtual bool onNotify(ZrJsonPtr param);

private:
    struct Data;
    Data* d;
};

class ZRHOST_EXPORT ZrUiService : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiService)
public:
    virtual ZrSmartPtr<ZrUiDialogBase> createDialog(const ZrString& name, void* parent) = 0;
};
