#pragma once
// The host's XML reader: a file read whole into a tree of element nodes.

#include "zrhost_export.h"
#include "zrstring.h"

// A node of a loaded file; owned by its filer and valid until the filer is destroyed.
class ZRHOST_EXPORT CXuUtXmlNode
{
public:
    virtual void getName(ZrString& name) const = 0;
    // The element's own text, without the text of its children.
    virtual void getText(ZrString& text) const = 0;
    // Element children only.
    virtual int childCount() const = 0;
    // Null out of range.
    virtual CXuUtXmlNode* childAt(int index) const = 0;
    // The first element child of that name (case matters), null when none.
    virtual CXuUtXmlNode* child(const ZrString& name) const = 0;

protected:
    CXuUtXmlNode() = default;
    CXuUtXmlNode(const CXuUtXmlNode&) = delete;
    CXuUtXmlNode& operator=(const CXuUtXmlNode&) = delete;
    virtual ~CXuUtXmlNode();
};

class ZRHOST_EXPORT CXuUtXmlFiler
{
public:
    static CXuUtXmlFiler* createInstance();
    static void destroyInstance(CXuUtXmlFiler* filer);
    // False for a missing, unreadable, oversized or malformed file; what was loaded before is gone.
    virtual bool loadFile(const ZrString& path) = 0;
    // Null when nothing is loaded.
    virtual CXuUtXmlNode* getRootNode() = 0;

protected:
    CXuUtXmlFiler() = default;
    CXuUtXmlFiler(const CXuUtXmlFiler&) = delete;
    CXuUtXmlFiler& operator=(const CXuUtXmlFiler&) = delete;
    virtual ~CXuUtXmlFiler();
};
