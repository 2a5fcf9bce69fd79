#pragma once
// Documents and the state of the command that runs in them.

#include "zrhost_export.h"
#include "zrstring.h"

class CXuDocContext;

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
    // How often setCommandState was called.
    int commandStateCalls() const;

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
