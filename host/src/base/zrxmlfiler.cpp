#include "zrxmlfiler.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <deque>
#include <pugixml.hpp>
#include <vector>

namespace {

// Anything larger is no file of settings or colours the host would read.
constexpr qint64 kMaxFileSize = qint64(64) << 20;

class XmlNode;

// Read as a fragment, so that text around the root is kept where it can be seen and refused: the
// parser would drop it quietly otherwise. Blanks are text too when they are all an element holds.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_fragment | pugi::parse_ws_pcdata_single;

// XML allows one root and nothing beside it but comments, instructions and blanks.
bool hasOneRootAlone(const pugi::xml_document& document)
{
    int roots = 0;
    for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_element)
            ++roots;
        else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            return false;
    }
    return roots == 1;
}

// The nodes handed out by one filer, made when first asked for and kept until the filer goes.
using NodeStore = std::deque<XmlNode>;

class XmlNode final : public CXuUtXmlNode
{
public:
    XmlNode(pugi::xml_node node, NodeStore* store) : m_node(node), m_store(store) {}
    ~XmlNode() override = default;

    void getName(ZrString& name) const override { name = ZrString::fromUtf8(m_node.name()); }

    void getText(ZrString& text) const override
    {
        std::string bytes;
        for (pugi::xml_node part = m_node.first_child(); part; part = part.next_sibling()) {
            if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata)
                bytes += part.value();
        }
        text = ZrString(ZrUtf8String(std::move(bytes)));
    }

    int childCount() const override { return int(children().size()); }

    CXuUtXmlNode* childAt(int index) const override
    {
        const std::vector<XmlNode*>& list = children();
        return index >= 0 && size_t(index) < list.size() ? list[size_t(index)] : nullptr;
    }

    CXuUtXmlNode* child(const ZrString& name) const override
    {
        const ZrUtf8String wanted = name.toUtf8();
        for (XmlNode* node : children()) {
            if (wanted.std() == node->m_node.name())
                return node;
        }
        return nullptr;
    }

private:
    // Listed once, so that walking a node of thousands of children by position stays linear.
    const std::vector<XmlNode*>& children() const
    {
        if (!m_listed) {
            for (pugi::xml_node node = m_node.first_child(); node; node = node.next_sibling()) {
                if (node.type() == pugi::node_element) {
                    m_store->emplace_back(node, m_store);
                    m_children.push_back(&m_store->back());
                }
            }
            m_listed = true;
        }
        return m_children;
    }

    pugi::xml_node m_node;
    NodeStore* m_store;
    mutable bool m_listed = false;
    mutable std::vector<XmlNode*> m_children;
};

class XmlFiler final : public CXuUtXmlFiler
{
public:
    ~XmlFiler() override = default;

    bool loadFile(const ZrString& path) override
    {
        clear();
        const QFileInfo info(path.toQString());
        if (!info.isFile() || info.size() > kMaxFileSize)
            return false;
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return false;
        m_bytes = file.read(kMaxFileSize + 1);
        // A file that changed size since it was looked at is refused, as is one grown past the limit.
        if (m_bytes.size() != info.size()) {
            clear();
            return false;
        }
        // Parsed in place: the document points into the bytes, which the filer keeps. The parser takes
        // the last byte for its end mark, so it is given one of its own.
        m_bytes.append('\0');
        const pugi::xml_parse_result result =
            m_document.load_buffer_inplace(m_bytes.data(), size_t(m_bytes.size()), kParseOptions);
        if (!result || !hasOneRootAlone(m_document)) {
            clear();
            return false;
        }
        m_nodes.emplace_back(m_document.document_element(), &m_nodes);
        return true;
    }

    CXuUtXmlNode* getRootNode() override { return m_nodes.empty() ? nullptr : &m_nodes.front(); }

private:
    void clear()
    {
        m_nodes.clear();
        m_document.reset();
        m_bytes.clear();
    }

    QByteArray m_bytes;
    pugi::xml_document m_document;
    NodeStore m_nodes;
};

} // namespace

CXuUtXmlNode::~CXuUtXmlNode() = default;
CXuUtXmlFiler::~CXuUtXmlFiler() = default;

CXuUtXmlFiler* CXuUtXmlFiler::createInstance() { return new XmlFiler; }
void CXuUtXmlFiler::destroyInstance(CXuUtXmlFiler* filer) { delete filer; }
