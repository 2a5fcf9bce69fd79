#include "zrdocument.h"

#include <algorithm>
#include <memory>
#include <vector>

struct CXuCommandObject::Data
{
    ZrString name;
    bool state = true;
    int stateCalls = 0;
};

CXuCommandObject::CXuCommandObject() : d(new Data) {}
CXuCommandObject::~CXuCommandObject() { delete d; }
ZrString CXuCommandObject::commandName() const { return d->name; }
void CXuCommandObject::setCommandName(const ZrString& name) { d->name = name; }
bool CXuCommandObject::commandState() const { return d->state; }
int CXuCommandObject::commandStateCalls() const { return d->stateCalls; }

void CXuCommandObject::setCommandState(bool ok)
{
    d->state = ok;
    ++d->stateCalls;
}

struct CXuDocContext::Data
{
    CXuCommandObject command;
    int activeCommands = 0;
    bool inputCenter = true;
};

CXuDocContext::CXuDocContext() : d(new Data) {}
CXuDocContext::~CXuDocContext() { delete d; }
CXuCommandObject* CXuDocContext::commandObject() { return &d->command; }
int CXuDocContext::activeCommandCount() const { return d->activeCommands; }
void CXuDocContext::setActiveCommandCount(int count) { d->activeCommands = std::max(0, count); }
bool CXuDocContext::inputCenter() const { return d->inputCenter; }
void CXuDocContext::setInputCenter(bool on) { d->inputCenter = on; }

struct CXuDocument::Data
{
    ZrString name;
    CXuDocContext context;
};

CXuDocument::CXuDocument(const ZrString& name) : d(new Data) { d->name = name; }
CXuDocument::~CXuDocument() { delete d; }
ZrString CXuDocument::name() const { return d->name; }
CXuDocContext* CXuDocument::context() { return &d->context; }

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

void CXuDocManager::setCurDocument(CXuDocument* doc) { d->current = doc; }

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
