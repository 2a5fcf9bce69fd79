#pragma once
// The root of the host: services by name, documents, the main window.

#include "zrarray.h"
#include "zrjson.h"
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

// The help service of slot 1 of the numbered services.
class ZRHOST_EXPORT CXuSysHelpSvr : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(CXuSysHelpSvr)
public:
    // Opens the help at `topic`.
    virtual void help(const ZrString& topic);
    // The scale of the help window on a screen; 1.0 everywhere.
    virtual double displayScale(int screen);
};

// Where the host looks for its files.
class ZRHOST_EXPORT CXuPathService
{
public:
    // The folders searched for colour books, in order: "ColorBookPaths" of the user configuration,
    // the entries of $ZR_COLORBOOK_PATH (':'-separated), then the books installed with the host.
    ZrArray<ZrString> colorBookFolders() const;

private:
    friend class CXuSystem;
    CXuPathService() = default;
    CXuPathService(const CXuPathService&) = delete;
    CXuPathService& operator=(const CXuPathService&) = delete;
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
    CXuPathService* pathService();
    // True when a drawing is current and its view window exists.
    bool isActiveViewReady() const;
    // A value of the host's profile, by section and key: the user configuration's "Profile" object
    // first, else the host's default (section "General", key "ZRAPP": the support folders, a ";" list).
    // A null handle for a value that has neither.
    ZrJsonPtr getProfileValue(const ZrUtf8String& section, const ZrUtf8String& key) const;

private:
    CXuSystem();
    ~CXuSystem();
    struct Data;
    Data* d;
};
