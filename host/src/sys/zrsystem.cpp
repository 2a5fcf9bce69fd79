#include "zrsystem.h"

#include "zrdocument.h"
#include "zrhostui.h"

#include <map>

ZR_RX_DEFINE_MEMBERS(ZrUiLanguageSvr, ZrRxObject)

struct CXuServiceManager::Data
{
    std::map<std::wstring, ZrRxObjectPtr> services;
};

CXuServiceManager::CXuServiceManager() : d(new Data) {}
CXuServiceManager::~CXuServiceManager() { delete d; }

ZrRxObjectPtr CXuServiceManager::getService(const ZrString& name) const
{
    auto it = d->services.find(name.std());
    return it == d->services.end() ? ZrRxObjectPtr() : it->second;
}

void CXuServiceManager::registerService(const ZrString& name, ZrRxObjectPtr service)
{
    d->services[name.std()] = std::move(service);
}

void CXuServiceManager::removeService(const ZrString& name)
{
    auto it = d->services.find(name.std());
    if (it == d->services.end())
        return;
    ZrRxObjectPtr gone = std::move(it->second);
    d->services.erase(it);
}

struct CXuSystem::Data
{
    CXuServiceManager services;
    CXuDocManager documents;
    CXuPathService paths;
};

CXuSystem::CXuSystem() : d(new Data) {}
CXuSystem::~CXuSystem() { delete d; }

CXuSystem* CXuSystem::instance()
{
    static CXuSystem system;
    return &system;
}

CXuServiceManager* CXuSystem::serviceManager() { return &d->services; }
CXuDocManager* CXuSystem::docManager() { return &d->documents; }
CXuDocument* CXuSystem::curDocument() { return d->documents.curDocument(); }

CXuDocContext* CXuSystem::docContext()
{
    CXuDocument* doc = curDocument();
    return doc ? doc->context() : nullptr;
}

QWidget* CXuSystem::mainWindow() const { return zrHostUi().mainWindow; }
QWidget* CXuSystem::mainFrame() const { return zrHostUi().mainWindow; }
CXuPathService* CXuSystem::pathService() { return &d->paths; }

bool CXuSystem::isActiveViewReady() const
{
    return d->documents.curDocument() && zrHostUi().viewWindow;
}
