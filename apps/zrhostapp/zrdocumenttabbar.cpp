#include "zrdocumenttabbar.h"

#include "ZrQtUtilsFunc.h"
#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbobject.h"
#include "zrdocument.h"

#include <QLabel>
#include <QPixmap>
#include <algorithm>
#include <memory>
#include <vector>

namespace {

const char kDocumentProperty[] = "zrDocument";

QVariant documentData(CXuDocument* document)
{
    return QVariant::fromValue(reinterpret_cast<quintptr>(document));
}

} // namespace

ZrDocumentTabBar::ZrDocumentTabBar(QWidget* parent) : ZrDetachTabBar(parent)
{
    setObjectName(QStringLiteral("DocumentTabBar"));
    setHasStartPage(true);
    setFixedHeight(24);
    addTab(zrUiText("IDS_ZRMD_INPLACEEDITOR_PROMPT137", QStringLiteral("开始")));
    addTab(QStringLiteral("+"));
    setTabToolTip(1, QStringLiteral("新建图纸"));
}

ZrDocumentTabBar::~ZrDocumentTabBar() = default;

int ZrDocumentTabBar::addDocument(CXuDocument* document, const QString& name, const QString& tip)
{
    const int index = insertTab(count() - 1, name);
    setTabToolTip(index, tip);
    setTabData(index, documentData(document));
    showTab(index);
    return index;
}

CXuDocument* ZrDocumentTabBar::documentAt(int index) const
{
    return reinterpret_cast<CXuDocument*>(tabData(index).value<quintptr>());
}

int ZrDocumentTabBar::indexOf(const CXuDocument* document) const
{
    for (int i = 1; i < count() - 1; ++i) {
        if (documentAt(i) == document)
            return i;
    }
    return -1;
}

void ZrDocumentTabBar::setPictureSource(std::function<QPixmap(CXuDocument*)> picture)
{
    m_picture = std::move(picture);
}

void ZrDocumentTabBar::on_NewClicked()
{
    Q_EMIT newDrawingRequested();
}

bool ZrDocumentTabBar::closeClicked(int index, const QPoint& pos)
{
    if (!documentAt(index) || !zrtabbar::closeButtonRect(tabPolygon(index), height()).contains(pos))
        return false;
    Q_EMIT closeRequested(index);
    return true;
}

QWidget* ZrDocumentTabBar::detachTab(int index)
{
    CXuDocument* document = documentAt(index);
    if (!document)
        return nullptr;
    auto* window = new QLabel;
    window->setObjectName(QStringLiteral("detachedDrawingWindow"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(tabToolTip(index));
    window->setProperty(kDocumentProperty, documentData(document));
    window->setProperty("zrTabText", tabText(index));
    window->setAlignment(Qt::AlignCenter);
    window->setMinimumSize(240, 160);
    const QPixmap picture = m_picture ? m_picture(document) : QPixmap();
    if (!picture.isNull())
        window->setPixmap(picture.scaled(480, 320, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    else
        window->setText(tabToolTip(index));
    window->resize(500, 340);
    removeTab(index);
    // The drawing next to it, else the start tab, takes its place.
    showTab(qMin(index, count() - 2));
    return window;
}

void ZrDocumentTabBar::attachWindow(QWidget* window, int index)
{
    auto* document = reinterpret_cast<CXuDocument*>(window->property(kDocumentProperty).value<quintptr>());
    if (!document)
        return;
    const int at = insertTab(qMax(index, 1), window->property("zrTabText").toString());
    setTabToolTip(at, window->windowTitle());
    setTabData(at, documentData(document));
    showTab(at);
}

void ZrDocumentTabBar::showTab(int index)
{
    // An insertion or removal can leave the index as it was with another drawing under it.
    if (currentIndex() == index)
        Q_EMIT currentChanged(index);
    else
        setCurrentIndex(index);
    update();
}

ZrLayoutTabBar::ZrLayoutTabBar(QWidget* parent) : ZrTabBar(parent)
{
    setObjectName(QStringLiteral("LayoutTabBar"));
    setCloseTabButton(false);
    setFixedHeight(24);
    connect(this, &ZrTabBar::currentChanged, this, &ZrLayoutTabBar::switchSpace);
}

void ZrLayoutTabBar::showDrawing(ZrDbDatabase* database)
{
    const QSignalBlocker quiet(this);
    while (count() > 0)
        removeTab(count() - 1);
    clearLastIndexInfo();
    m_database = database;
    if (!database)
        return;
    struct Layout
    {
        int order;
        QString name;
        ZrDbObjectId id;
    };
    std::vector<Layout> layouts;
    // Read and closed again before the tabs go in: the bar keeps ids, not open objects.
    {
        ZrDbObjectPointer<ZrDbDictionary> dictionary(database->layoutDictionaryId(), ZrDb::kForRead);
        if (dictionary) {
            std::unique_ptr<ZrDbDictionaryIterator> it(dictionary->newIterator());
            for (; !it->done(); it->next()) {
                ZrDbObjectPointer<ZrDbLayout> layout(it->objectId(), ZrDb::kForRead);
                if (layout && !layout->modelType())
                    layouts.push_back({layout->getTabOrder(), layout->getLayoutName().toQString(), it->objectId()});
            }
        }
    }
    std::sort(layouts.begin(), layouts.end(), [](const Layout& a, const Layout& b) { return a.order < b.order; });
    addTab(zrUiText("IDS_PLOTDLG_8", QStringLiteral("模型")));
    addTab(QStringLiteral("+"));
    int current = 0;
    for (const Layout& layout : layouts) {
        const int index = insertTab(count() - 1, layout.name);
        setTabToolTip(index, layout.name);
        setTabData(index, QVariant::fromValue(layout.id.handle()));
        if (!database->tilemode() && database->currentLayoutId() == layout.id)
            current = index;
    }
    setCurrentIndex(current);
    update();
}

void ZrLayoutTabBar::switchSpace(int index)
{
    if (!m_database || index < 0 || index >= count() - 1)
        return;
    if (index == 0) {
        m_database->setTilemode(true);
    } else {
        m_database->setTilemode(false);
        m_database->setCurrentLayoutId(ZrDbObjectId(tabData(index).value<int64_t>()));
    }
    Q_EMIT spaceChanged();
}
