#pragma once
// The root of the host: services by name, documents, the main window.

#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

class QWidget;
class CXuDocManager;
class CXuDocument;
class CXuDocContext;

// The texts of the user interface in the user's language.
class ZRHOST_EXPORT ZrUiLanguageSvr : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiLanguageSvr)
public:
    // The text of `key`, or `def` when the language has none.
    virtual ZrString getText(const ZrString& key, const ZrString& def) const = 0;
};

class ZRHOST_EXPORT CXuServiceManager
{
public:
    CXuServiceManager();
    ~CXuServiceManager();
    CXuServiceManager(const CXuServiceManager&) = delete;
    CXuServiceManager& operator=(const CXuServiceManager&) = delete;

    // Null when no service of that name is registered.
    ZrRxObjectPtr getService(const ZrString& name) const;
    void registerService(const ZrString& name, ZrRxObjectPtr service);
    void removeService(const ZrString& name);

private:
    struct Data;
    Data* d;
};

class ZRHOST_EXPORT CXuSystem
{
public:
    static CXuSystem* instance();

    CXuServiceManager* serviceManager();
    CXuDocManager* docManager();
    // Shortcuts through the document manager; null when no drawing is open.
    CXuDocument* curDocument();
    CXuDocContext* docContext();
    QWidget* mainWindow() const;
    QWidget* mainFrame() const;

private:
    CXuSystem();
    ~CXuSystem();
    struct Data;
    Data* d;
};
