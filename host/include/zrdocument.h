#pragma once
// Documents and the state of the command that runs in them.

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

#include <vector>

class CXuDocContext;
class ZrDbDatabase;

// The drawing surface of a document's view.
class ZRHOST_EXPORT CXuDrawingSurface
{
public:
    CXuDrawingSurface() = default;
    CXuDrawingSurface(const CXuDrawingSurface&) = delete;
    CXuDrawingSurface& operator=(const CXuDrawingSurface&) = delete;

    // True while no view draws on this surface: a redraw would have nothing to do.
    bool isDefaultOperation() const;
    void redraw(int from, int full);
};

class ZRHOST_EXPORT CXuGraphicsManager
{
public:
    CXuGraphicsManager();
    ~CXuGraphicsManager();
    CXuGraphicsManager(const CXuGraphicsManager&) = delete;
    CXuGraphicsManager& operator=(const CXuGraphicsManager&) = delete;

    CXuDrawingSurface* drawingSurface();
    // The viewport the view works in: the model tile, or in paper space the paper viewport or a
    // model viewport entered into. It answers ZrDbAbstractViewportData. Null without a drawing.
    ZrRxObjectPtr activeViewport() const;

private:
    CXuDrawingSurface m_surface;
};

// The command running in a document.
class ZRHOST_EXPORT CXuCommandObject
{
public:
    CXuCommandObject();
    ~CXuCommandObject();
    CXuCommandObject(const CXuCommandObject&) = delete;
    CXuCommandObject& operator=(const CXuCommandObject&) = delete;

    ZrString commandName() const;
    void setCommandName(const ZrString& name);
    // Told false when the outermost dialog of a command ends without OK.
    void setCommandState(bool ok);
    bool commandState() const;

private:
    struct Data;
    Data* d;
};

class ZRHOST_EXPORT CXuDocContext
{
public:
    CXuDocContext();
    ~CXuDocContext();
    CXuDocContext(const CXuDocContext&) = delete;
    CXuDocContext& operator=(const CXuDocContext&) = delete;

    CXuCommandObject* commandObject();
    // Commands running now; above 0 means a command is active.
    int activeCommandCount() const;
    void setActiveCommandCount(int count);
    bool inputCenter() const;
    void setInputCenter(bool on);

    // The pick-first selection: the objects chosen before a command.
    const std::vector<ZrDbObjectId>& pickFirst() const;
    void setPickFirst(std::vector<ZrDbObjectId> ids);
    // Fills the two-word name of the pick-first selection; false when there is none.
    bool pickFirstSS(long name[2]) const;
    bool hasSelection() const;

    CXuGraphicsManager* graphicsManager();

private:
    struct Data;
    Data* d;
};

class ZRHOST_EXPORT CXuDocument
{
public:
    explicit CXuDocument(const ZrString& name);
    ~CXuDocument();
    CXuDocument(const CXuDocument&) = delete;
    CXuDocument& operator=(const CXuDocument&) = delete;

    ZrString name() const;
    CXuDocContext* context();
    // The document's drawing; the document keeps a reference.
    ZrDbDatabase* database() const;
    void setDatabase(ZrDbDatabase* database);

private:
    struct Data;
    Data* d;
};

class ZRHOST_EXPORT CXuDocManager
{
public:
    CXuDocManager();
    ~CXuDocManager();
    CXuDocManager(const CXuDocManager&) = delete;
    CXuDocManager& operator=(const CXuDocManager&) = delete;

    // Null when no drawing is open.
    CXuDocument* curDocument() const;
    int documentCount() const;
    CXuDocument* document(int i) const;
    // The manager owns the document; it becomes current.
    CXuDocument* addDocument(const ZrString& name);
    void setCurDocument(CXuDocument* doc);
    void closeDocument(CXuDocument* doc);

private:
    struct Data;
    Data* d;
};

ZRHOST_EXPORT CXuDocManager* zrDocManagerPtr();
