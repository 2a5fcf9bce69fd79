#include "zrdocument.h"

#include "zrdbdatabase.h"
#include "zrdbinternal.h"
#include "zrhostdocuments.h"
#include "zrsystem.h"
#include "zruievents.h"

#include <algorithm>
#include <memory>
#include <vector>

ZrHostDocuments& zrHostDocuments()
{
    static ZrHostDocuments state;
    return state;
}

bool CXuDrawingSurface::isDefaultOperation() const { return !zrHostDocuments().drawingSurfaceActive; }

void CXuDrawingSurface::redraw(int, int)
{
    if (zrHostDocuments().redrawListener)
        zrHostDocuments().redrawListener();
}

struct CXuCommandObject::Data
{
    ZrString name;
    bool state = true;
};

CXuCommandObject::CXuCommandObject() : d(new Data) {}
CXuCommandObject::~CXuCommandObject() { delete d; }
ZrString CXuCommandObject::commandName() const { return d->name; }
void CXuCommandObject::setCommandName(const ZrString& name) { d->name = name; }
bool CXuCommandObject::commandState() const { return d->state; }

void CXuCommandObject::setCommandState(bool ok)
{
    d->state = ok;
    ++zrHostDocuments().commandStateCalls;
}

struct CXuDocContext::Data
{
    CXuCommandObject command;
    int activeCommands = 0;
    bool inputCenter = true;
    CXuGraphicsManager graphics;
    // The name of the pick-first selection set; 0 while nothing is selected.
    long selection = 0;
};

namespace {

// The drawing of the document whose context passes the test.
template <class Test>
ZrDbDatabase* databaseWhere(Test holds)
{
    const CXuDocManager* documents = zrDocManagerPtr();
    for (int i = 0; i < documents->documentCount(); ++i) {
        if (holds(documents->document(i)->context()))
            return documents->document(i)->database();
    }
    return nullptr;
}

ZrDbDatabase* databaseOf(const CXuDocContext* context)
{
    return databaseWhere([context](CXuDocContext* candidate) { return candidate == context; });
}

} // namespace

CXuGraphicsManager::CXuGraphicsManager() = default;
CXuGraphicsManager::~CXuGraphicsManager() = default;
CXuDrawingSurface* CXuGraphicsManager::drawingSurface() { return &m_surface; }

ZrRxObjectPtr CXuGraphicsManager::activeViewport() const
{
    return zrdbActiveViewport(
        databaseWhere([this](CXuDocContext* context) { return context->graphicsManager() == this; }));
}

CXuDocContext::CXuDocContext() : d(new Data) {}

CXuDocContext::~CXuDocContext()
{
    zrHostFreeSelection(d->selection);
    delete d;
}

CXuCommandObject* CXuDocContext::commandObject() { return &d->command; }
int CXuDocContext::activeCommandCount() const { return d->activeCommands; }
void CXuDocContext::setActiveCommandCount(int count) { d->activeCommands = std::max(0, count); }
bool CXuDocContext::inputCenter() const { return d->inputCenter; }
void CXuDocContext::setInputCenter(bool on) { d->inputCenter = on; }
CXuGraphicsManager* CXuDocContext::graphicsManager() { return &d->graphics; }

const std::vector<ZrDbObjectId>& CXuDocContext::pickFirst() const { return zrHostSelection(d->selection); }

void CXuDocContext::setPickFirst(std::vector<ZrDbObjectId> ids)
{
    if (ids.empty() && !d->selection)
        return;
    zrHostFreeSelection(std::exchange(d->selection, 0));
    if (!ids.empty())
        d->selection = zrHostNewSelection(std::move(ids));
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventSelection;
    event.database = databaseOf(this);
    event.selectionActive = d->selection != 0;
    zrHostPostUiEvent(event);
}

bool CXuDocContext::pickFirstSS(long name[2]) const
{
    name[0] = name[1] = 0;
    if (!d->selection)
        return false;
    zrHostSelectionName(d->selection, name);
    return true;
}

bool CXuDocContext::hasSelection() const { return d->selection != 0; }

struct CXuDocument::Data
{
    ZrString name;
    CXuDocContext context;
    ZrDbDatabasePtr database;
};

// A new document holds a new drawing, as the host's "new" does.
CXuDocument::CXuDocument(const ZrString& name) : d(new Data)
{
    d->name = name;
    ZrDbDatabase* database = new ZrRxObjectImpl<ZrDbDatabase>(true);
    setDatabase(database);
    zrrxRelease(database);
}

CXuDocument::~CXuDocument() { delete d; }

ZrString CXuDocument::name() const { return d->name; }
CXuDocContext* CXuDocument::context() { return &d->context; }
ZrDbDatabase* CXuDocument::database() const { return d->database.get(); }

void CXuDocument::setDatabase(ZrDbDatabase* database)
{
    if (database == d->database.get())
        return;
    // The selection names objects of the drawing it leaves.
    d->context.setPickFirst({});
    d->database = ZrDbDatabasePtr(database);
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventDocument;
    event.database = database;
    zrHostPostUiEvent(event);
}

struct CXuDocManager::Data
{
    std::vector<std::unique_ptr<CXuDocument>> documents;
    CXuDocument* current = nullptr;
};

CXuDocManager::CXuDocManager() : d(new Data) {}
CXuDocManager::~CXuDocManager() { delete d; }
CXuDocument* CXuDocManager::curDocument() const { return d->current; }
int CXuDocManager::documentCount() const { return static_cast<int>(d->documents.size()); }

CXuDocument* CXuDocManager::document(int i) const
{
    return (i >= 0 && i < documentCount()) ? d->documents[static_cast<size_t>(i)].get() : nullptr;
}

CXuDocument* CXuDocManager::addDocument(const ZrString& name)
{
    d->documents.push_back(std::make_unique<CXuDocument>(name));
    d->current = d->documents.back().get();
    return d->current;
}

void CXuDocManager::setCurDocument(CXuDocument* doc)
{
    if (doc == d->current)
        return;
    d->current = doc;
    // Another drawing in front: the controls and views read it anew.
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventDocument;
    event.database = doc ? doc->database() : nullptr;
    zrHostPostUiEvent(event);
}

void CXuDocManager::closeDocument(CXuDocument* doc)
{
    auto it = std::find_if(d->documents.begin(), d->documents.end(),
                           [doc](const std::unique_ptr<CXuDocument>& p) { return p.get() == doc; });
    if (it == d->documents.end())
        return;
    if (d->current == doc)
        d->current = nullptr;
    d->documents.erase(it);
    if (!d->current && !d->documents.empty())
        d->current = d->documents.back().get();
}

CXuDocManager* zrDocManagerPtr() { return CXuSystem::instance()->docManager(); }
