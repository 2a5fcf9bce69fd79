#include "zrtabbar.h"

#include "ZrQtUtilsFunc.h"

#include <QApplication>
#include <QCursor>
#include <QDropEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QList>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>
#include <QScreen>
#include <QStyle>
#include <QToolTip>
#include <QX11Info>

#include <cstdlib>

// Xlib last: its macros (None, Bool, Status, ...) would clash with names in the headers above.
#include <X11/Xlib.h>

namespace {

constexpr double kSlope = 0.5;
// The fill starts this far down, so that tabs stand a little apart from what is above the bar.
constexpr int kFillTop = 3;
constexpr int kCloseLeftOfCorner = 13;
// The separator covers the central 60 % of a slanted edge.
constexpr double kSeparatorInset = 0.2;

const QString kNewTabText = QStringLiteral("+");

QString startTabText()
{
    return zrUiText("IDS_ZRMD_INPLACEEDITOR_PROMPT137", QStringLiteral("开始"));
}

QString modelTabText()
{
    return zrUiText("IDS_PLOTDLG_8", QStringLiteral("模型"));
}

} // namespace

namespace zrtabbar {

int tabWidth(int textWidth, bool closeButton, bool icon)
{
    return (closeButton ? kTabExtra : kTabExtra - kCloseButtonSize) + textWidth + (icon ? kIconExtra : 0);
}

QVector<QPoint> tabPolygon(QPoint topLeft, int width, int height)
{
    const int x = topLeft.x();
    const int y = topLeft.y();
    return {QPoint(x, y), QPoint(x + width, y), QPoint(int(x + width - height * kSlope), y + height),
            QPoint(int(x - height * kSlope), y + height)};
}

bool polygonContains(const QVector<QPoint>& polygon, QPoint pos)
{
    return !polygon.isEmpty() && QPolygon(polygon).containsPoint(pos, Qt::OddEvenFill);
}

QRect closeButtonRect(const QVector<QPoint>& polygon, int height)
{
    if (polygon.size() != 4)
        return QRect();
    const QPoint topLeft(polygon[2].x() - kCloseLeftOfCorner, height / 2 - 3);
    return QRect(topLeft, QSize(kCloseButtonSize, kCloseButtonSize));
}

int endIndexByStart(const std::function<int(int)>& widthOf, int count, int barWidth, int start, bool hasStartPage)
{
    int sum = hasStartPage ? 90 : 45;
    if (start >= count - 1)
        return count - 2;
    for (int i = qMax(start, 0);; ++i) {
        sum += widthOf(i);
        if (sum > barWidth)
            return i - 1;
        if (i + 1 >= count - 1)
            return count - 2;
    }
}

int startIndexByEnd(const std::function<int(int)>& widthOf, int count, int barWidth, bool hasStartPage)
{
    int sum = hasStartPage ? 75 : 30;
    const int first = hasStartPage ? 1 : 0;
    if (count - 1 < first)
        return first;
    for (int i = count - 1;; --i) {
        sum += widthOf(i);
        if (sum > barWidth)
            return i + 1;
        if (i - 1 < first)
            return first;
    }
}

int insertPosition(int index, int count, bool hasStartPage, bool closeButton)
{
    if (count == 0 || (count == 1 && (hasStartPage || !closeButton)))
        return count;
    return (index < 0 || index >= count) ? count - 1 : index;
}

} // namespace zrtabbar

class ZrTabBarImpl
{
public:
    struct Tab
    {
        QString text;
        QString toolTip;
        QIcon icon;
        QVector<QPoint> polygon;
        QVariant data;
        int width = -1;
        bool noContent = false;
    };

    // What one paint hands from one draw function to the next.
    struct DrawItem
    {
        QPainter* painter = nullptr;
        QPoint* startPoint = nullptr;
        Tab* tab = nullptr;
        double slope = kSlope;
        int height = 0;
        QColor* textColor = nullptr;
        QColor* selectColor = nullptr;
        QColor* hoverColor = nullptr;
        QColor* multiSelectColor = nullptr;
        QFontMetrics* metrics = nullptr;
        bool isCurrent = false;
        bool isHover = false;
        bool showClose = false;
        bool showSeparator = false;
        bool noContent = false;
        bool storePolygon = true;
        int index = -1; // in the bar's list, for the multi-selection; -1 for a stand-in

        void clearFlags()
        {
            isCurrent = isHover = showClose = showSeparator = noContent = false;
            index = -1;
        }
    };

    explicit ZrTabBarImpl(ZrTabBar* owner) : m_owner(owner) {}

    bool isValid(int index) const { return index >= 0 && index < m_tabs.size(); }
    int firstIndex() const { return m_hasStartPage ? 1 : 0; }
    int lastIndex() const { return m_tabs.size() - 1; }
    bool hasDragingWindow() const { return m_dragingFlags & zrtabbar::kDragingWindowBack; }
    void setFlagsFor(DrawItem& item, int index) const;
    QString elided(const QFontMetrics& metrics, const QString& text) const
    {
        return metrics.elidedText(text, Qt::ElideMiddle, m_maxTabTextWidth);
    }

    void paintPolygon(DrawItem& item, const QVector<QPoint>& polygon) const;
    void drawSeparator(DrawItem& item, QPoint from, QPoint to) const;
    void drawCross(DrawItem& item, const QVector<QPoint>& polygon) const;
    void drawItemTab(DrawItem& item);
    void drawStartTab(DrawItem& item);
    void drawNewTab(DrawItem& item);
    void drawList(DrawItem& item, QList<Tab>& tabs);
    void drawFromFront(DrawItem& item, int start, int end, int first);
    void drawFromBack(DrawItem& item, int start, int end, int first);
    void drawDragFromBack(DrawItem& item, int start, int end, int first);
    void drawDragMoveTab(DrawItem& item);
    void drawDragIndependentWndToTabbar(DrawItem& item, int start, int end, int first);
    int cursorDropIndex();

    ZrTabBar* m_owner;
    int m_currentIndex = -1;
    QPoint m_pressPos;
    int m_dragTabIndex = -1;
    bool m_dragFlag = false;
    int m_lastStartIndex = 1;
    int m_lastEndIndex = 1;
    bool m_canDrag = true;
    QList<Tab> m_tabs;
    Tab m_dragTab;
    int m_closeBtnSize = zrtabbar::kCloseButtonSize;
    bool m_closeTabButton = true;
    bool m_isMovingHorizontally = false;
    bool m_hasStartPage = false;
    bool m_updateLastTabToolTip = false;
    bool m_dragOutside = false;
    bool m_selAll = false;
    bool m_multiSelect = false;
    int m_hoverIndex = -1;
    int m_dragingFlags = 0;
    int m_maxTabTextWidth = zrtabbar::kDefaultMaxTextWidth;
    QString m_lastTabToolTip;
    QPoint m_dragPos;
    QString m_dragingTitle;
    QVector<int> m_selectIndexes;
};

void ZrTabBarImpl::setFlagsFor(DrawItem& item, int index) const
{
    item.isCurrent = index == m_currentIndex;
    item.isHover = m_hoverIndex >= 0 && index == m_hoverIndex;
    item.showClose = item.isCurrent || item.isHover;
    item.showSeparator = index != m_currentIndex && index != m_currentIndex + 1;
    item.noContent = false;
    item.index = index;
}

void ZrTabBarImpl::paintPolygon(DrawItem& item, const QVector<QPoint>& polygon) const
{
    QPolygon shape(polygon);
    for (QPoint& point : shape) {
        if (point.y() == 0)
            point.setY(kFillTop);
    }
    item.painter->drawPolygon(shape, Qt::OddEvenFill);
}

void ZrTabBarImpl::drawSeparator(DrawItem& item, QPoint from, QPoint to) const
{
    const QPointF d = to - from;
    const QPoint a(int(from.x() + kSeparatorInset * d.x()), int(from.y() + kSeparatorInset * d.y()));
    const QPoint b(int(to.x() - kSeparatorInset * d.x()), int(to.y() - kSeparatorInset * d.y()));
    item.painter->setPen(QPen(Qt::gray));
    item.painter->drawLine(a, b);
}

void ZrTabBarImpl::drawCross(DrawItem& item, const QVector<QPoint>& polygon) const
{
    const int left = polygon[2].x() - kCloseLeftOfCorner;
    const int top = item.height / 2 - 3;
    const int right = left + m_closeBtnSize - 1;
    const int bottom = top + m_closeBtnSize - 1;
    item.painter->setPen(QPen(*item.textColor, 2, Qt::SolidLine, Qt::RoundCap));
    item.painter->drawLine(left, top, right, bottom);
    item.painter->drawLine(left, bottom, right, top);
}

void ZrTabBarImpl::drawItemTab(DrawItem& item)
{
    Tab& tab = *item.tab;
    if (tab.text == kNewTabText)
        return;
    QPainter& painter = *item.painter;
    const int extra = m_closeTabButton ? zrtabbar::kTabExtra : zrtabbar::kTabExtra - m_closeBtnSize;

    QBrush brush = Qt::NoBrush;
    if (item.isCurrent)
        brush = *item.selectColor;
    else if (item.isHover)
        brush = *item.hoverColor;
    if (m_selAll) {
        if (tab.text != modelTabText())
            brush = *item.multiSelectColor;
    } else if (item.index >= 0 && m_selectIndexes.contains(item.index)) {
        brush = *item.multiSelectColor;
    }
    painter.setBrush(brush);
    painter.setPen(Qt::NoPen);

    tab.text = elided(*item.metrics, tab.text);
    const int iconWidth = tab.icon.isNull() ? 0 : zrtabbar::kIconExtra;
    tab.width = extra + item.metrics->horizontalAdvance(tab.text) + iconWidth;
    const QVector<QPoint> polygon = zrtabbar::tabPolygon(*item.startPoint, tab.width, item.height);
    if (item.storePolygon && tab.polygon != polygon)
        tab.polygon = polygon;
    paintPolygon(item, polygon);

    if (!item.noContent && !tab.icon.isNull()) {
        const QRect iconRect(QPoint(polygon[0].x(), polygon[0].y() + 5), QPoint(polygon[0].x() + 14, polygon[0].y() + 19));
        tab.icon.paint(&painter, iconRect, Qt::AlignCenter, QIcon::Normal, QIcon::Off);
    }
    *item.startPoint = polygon[1];

    QRect textRect(QPoint(polygon[3].x() + iconWidth, 0), polygon[2]);
    if (!m_closeTabButton)
        textRect.setLeft(textRect.left() + 10);
    painter.setPen(*item.textColor);
    if (m_owner->isLayoutTabBar() && m_isMovingHorizontally && tab.text == modelTabText())
        return;
    if (!item.noContent) {
        painter.save();
        if (item.isCurrent) {
            QFont font = painter.font();
            font.setWeight(75);
            painter.setFont(font);
        }
        painter.drawText(textRect, Qt::AlignCenter, tab.text);
        painter.restore();
    }
    if (item.showClose && !item.noContent && m_closeTabButton)
        drawCross(item, polygon);
    if (item.showSeparator)
        drawSeparator(item, polygon[3], polygon[0]);
}

void ZrTabBarImpl::drawStartTab(DrawItem& item)
{
    QPainter& painter = *item.painter;
    QBrush brush = Qt::NoBrush;
    if (m_currentIndex == 0)
        brush = *item.selectColor;
    else if (m_hoverIndex == 0)
        brush = *item.hoverColor;
    painter.setBrush(brush);
    painter.setPen(Qt::NoPen);

    Tab& tab = m_tabs[0];
    const QString text = elided(*item.metrics, tab.text);
    tab.width = zrtabbar::kStartTabExtra + item.metrics->horizontalAdvance(text);
    tab.polygon = zrtabbar::tabPolygon(*item.startPoint, tab.width, item.height);
    paintPolygon(item, tab.polygon);
    *item.startPoint = tab.polygon[1];

    const QPalette::ColorGroup group = m_owner->isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(QGuiApplication::palette().color(group, QPalette::WindowText));
    painter.drawText(QRect(QPoint(tab.polygon[0].x(), 0), tab.polygon[2]), Qt::AlignCenter, text);
    if (m_currentIndex != 0)
        drawSeparator(item, tab.polygon[3], tab.polygon[0]);
}

void ZrTabBarImpl::drawNewTab(DrawItem& item)
{
    QPainter& painter = *item.painter;
    const int last = lastIndex();
    painter.setBrush(m_hoverIndex == last ? QBrush(*item.hoverColor) : QBrush(Qt::NoBrush));
    painter.setPen(Qt::NoPen);
    const QVector<QPoint> polygon = zrtabbar::tabPolygon(*item.startPoint, zrtabbar::kNewTabWidth, item.height);
    paintPolygon(item, polygon);
    Tab& tab = m_tabs[last];
    tab.polygon = polygon;
    tab.width = zrtabbar::kNewTabWidth;
    if (m_updateLastTabToolTip)
        tab.toolTip = m_lastTabToolTip;
    painter.restore();

    const bool layoutBar = m_owner->isLayoutTabBar();
    if (layoutBar || m_currentIndex != m_tabs.size() - 2)
        drawSeparator(item, polygon[3], polygon[0]);
    if (m_lastEndIndex != m_currentIndex)
        drawSeparator(item, polygon[2], polygon[1]);
    if (layoutBar && m_isMovingHorizontally)
        return;

    painter.setPen(QPen(*item.textColor, 2, Qt::SolidLine, Qt::RoundCap));
    const int middleY = item.height / 2;
    painter.drawLine(polygon[0].x() + 10, middleY, polygon[2].x() - 10, middleY);
    const int middleX = (polygon[0].x() + polygon[2].x()) / 2;
    painter.drawLine(middleX, 7, middleX, 18);
}

void ZrTabBarImpl::drawList(DrawItem& item, QList<Tab>& tabs)
{
    for (Tab& tab : tabs) {
        item.clearFlags();
        item.noContent = tab.noContent;
        item.tab = &tab;
        drawItemTab(item);
    }
}

void ZrTabBarImpl::drawFromFront(DrawItem& item, int start, int end, int first)
{
    QFontMetrics& metrics = *item.metrics;
    if (m_currentIndex != 0 && m_currentIndex != lastIndex()) {
        if (m_currentIndex < start) {
            start = m_currentIndex;
            end = m_owner->calEndIndexByStartIndex(metrics, start);
        } else if (m_currentIndex > end) {
            start = m_owner->calStartIndexByEndIndex(metrics, m_currentIndex);
            end = m_currentIndex;
        }
    }
    // Tabs out of view must not be hit through the polygons of an older paint.
    for (int i = first; i < start && i < m_tabs.size(); ++i)
        m_tabs[i].polygon.clear();
    for (int i = qMax(end + 1, 0); i <= m_tabs.size() - 2; ++i)
        m_tabs[i].polygon.clear();
    m_lastStartIndex = start;
    m_lastEndIndex = end;
    for (int i = qMax(start, 0); i <= end && i < m_tabs.size(); ++i) {
        setFlagsFor(item, i);
        item.tab = &m_tabs[i];
        drawItemTab(item);
    }
}

void ZrTabBarImpl::drawFromBack(DrawItem& item, int start, int end, int first)
{
    if (m_currentIndex >= 0 && m_currentIndex < start) {
        end = m_owner->calEndIndexByStartIndex(*item.metrics, m_currentIndex);
        start = (m_hasStartPage && m_currentIndex == 0) ? 1 : m_currentIndex;
    }
    if (start > end)
        return;
    m_lastStartIndex = start;
    m_lastEndIndex = end;
    if (isValid(m_dragTabIndex) && m_dragFlag && !hasDragingWindow()) {
        drawDragFromBack(item, start, end, first);
        return;
    }
    if (hasDragingWindow()) {
        drawDragIndependentWndToTabbar(item, start, end, first);
        return;
    }
    for (int i = qMax(start, 0); i <= end && i < m_tabs.size(); ++i) {
        // The tab on its way out of the bar leaves its place empty.
        if (m_canDrag && !m_dragOutside && i == m_dragTabIndex)
            continue;
        setFlagsFor(item, i);
        item.tab = &m_tabs[i];
        drawItemTab(item);
    }
}

int ZrTabBarImpl::cursorDropIndex()
{
    return m_owner->getDropIndex(m_owner->mapFromGlobal(QCursor::pos()));
}

void ZrTabBarImpl::drawDragFromBack(DrawItem& item, int start, int end, int first)
{
    Q_UNUSED(first)
    const int drop = cursorDropIndex();
    QList<Tab> tabs;
    for (int i = qMax(start, 0); i <= end && i < m_tabs.size(); ++i) {
        if (i != m_dragTabIndex)
            tabs.append(m_tabs[i]);
    }
    if (!m_dragTab.text.isEmpty() && !m_dragTab.toolTip.isEmpty() && !m_dragTab.polygon.isEmpty() && drop >= 0) {
        Tab placeholder = m_dragTab;
        placeholder.noContent = true;
        tabs.insert(qBound(0, drop - start, tabs.size()), placeholder);
    }
    drawList(item, tabs);
    drawDragMoveTab(item);
}

void ZrTabBarImpl::drawDragMoveTab(DrawItem& item)
{
    if (m_dragTab.text.isEmpty() || m_dragTab.toolTip.isEmpty() || m_dragTab.polygon.size() != 4
        || m_dragTab.text == kNewTabText)
        return;
    QVector<QPoint> polygon = m_dragTab.polygon;
    int dx = m_dragPos.x() - m_pressPos.x();
    // The floating tab stops at the start tab (or the first tab) and at the new-tab tab.
    const QVector<QPoint>& firstPolygon = m_tabs.first().polygon;
    if (firstPolygon.size() == 4) {
        const int wall = m_hasStartPage ? firstPolygon[2].x() : firstPolygon[3].x();
        if (polygon[3].x() + dx <= wall)
            dx = wall - polygon[3].x();
    }
    const QVector<QPoint>& lastPolygon = m_tabs.last().polygon;
    if (lastPolygon.size() == 4 && polygon[1].x() + dx >= lastPolygon[0].x())
        dx = lastPolygon[0].x() - polygon[1].x();
    for (QPoint& point : polygon)
        point.rx() += dx;

    QPainter& painter = *item.painter;
    painter.save();
    painter.setBrush(*item.selectColor);
    painter.setPen(Qt::NoPen);
    paintPolygon(item, polygon);
    painter.restore();

    painter.save();
    painter.setPen(*item.textColor);
    if (m_dragTabIndex == m_currentIndex) {
        QFont font = painter.font();
        font.setWeight(75);
        painter.setFont(font);
    }
    painter.drawText(QRect(QPoint(polygon[3].x(), 0), polygon[2]), Qt::AlignCenter,
                     elided(*item.metrics, m_dragTab.text));
    painter.restore();
    drawCross(item, polygon);
}

void ZrTabBarImpl::drawDragIndependentWndToTabbar(DrawItem& item, int start, int end, int first)
{
    Q_UNUSED(first)
    const int drop = cursorDropIndex();
    if (drop < 0)
        return;
    QList<Tab> tabs;
    for (int i = qMax(start, 0); i <= end && i < m_tabs.size(); ++i) {
        if (i != m_dragTabIndex)
            tabs.append(m_tabs[i]);
    }
    Tab incoming;
    incoming.text = m_dragingTitle;
    const int at = (drop == end ? drop : drop - 1) - start;
    tabs.insert(qBound(0, at, tabs.size()), incoming);
    drawList(item, tabs);
}

ZrTabBar::ZrTabBar(QWidget* parent) : QWidget(parent), d(new ZrTabBarImpl(this))
{
    setObjectName(QStringLiteral("ZrTabBar"));
    setMouseTracking(true);
}

ZrTabBar::~ZrTabBar()
{
    delete d;
}

int ZrTabBar::addTab(const QString& text)
{
    return insertTab(-1, QIcon(), text);
}

int ZrTabBar::addTab(const QIcon& icon, const QString& text)
{
    return insertTab(-1, icon, text);
}

int ZrTabBar::insertTab(int index, const QString& text)
{
    return insertTab(index, QIcon(), text);
}

int ZrTabBar::insertTab(int index, const QIcon& icon, const QString& text)
{
    const int position = zrtabbar::insertPosition(index, d->m_tabs.size(), d->m_hasStartPage, d->m_closeTabButton);
    ZrTabBarImpl::Tab tab;
    tab.text = text;
    tab.icon = icon;
    d->m_tabs.insert(position, tab);
    const int count = d->m_tabs.size();
    if (count < 3 && (d->m_hasStartPage || count == 1))
        setCurrentIndex(0);
    else
        d->m_currentIndex = position;
    tabChanged();
    update();
    return d->m_currentIndex;
}

bool ZrTabBar::removeTab(int index)
{
    if (!d->isValid(index))
        return false;
    d->m_tabs.removeAt(index);
    // A drag goes on with the tab it holds; one whose tab went away ends.
    if (index == d->m_dragTabIndex)
        clearDrag();
    else if (index < d->m_dragTabIndex)
        --d->m_dragTabIndex;
    if (d->m_hoverIndex >= d->m_tabs.size())
        d->m_hoverIndex = -1;
    const int count = d->m_tabs.size();
    setCurrentIndex(d->m_hasStartPage ? count - 2 : count - 1);
    update();
    return true;
}

int ZrTabBar::count() const
{
    return d->m_tabs.size();
}

int ZrTabBar::currentIndex() const
{
    return d->m_currentIndex;
}

void ZrTabBar::setCurrentIndex(int index)
{
    if (index < 0 || index >= d->m_tabs.size() || index == d->m_currentIndex)
        return;
    d->m_currentIndex = index;
    Q_EMIT currentChanged(index);
}

void ZrTabBar::switchNext(bool back)
{
    const int n = d->m_tabs.size() - 1;
    if (n <= 0)
        return;
    setCurrentIndex(back ? (n + d->m_currentIndex - 1) % n : (d->m_currentIndex + 1) % n);
}

QString ZrTabBar::tabText(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].text : QString();
}

void ZrTabBar::setTabText(int index, const QString& text)
{
    if (!d->isValid(index) || d->m_tabs[index].text == text)
        return;
    d->m_tabs[index].text = text;
    update();
}

QIcon ZrTabBar::tabIcon(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].icon : QIcon();
}

void ZrTabBar::setTabIcon(int index, const QIcon& icon)
{
    if (!d->isValid(index))
        return;
    QIcon& current = d->m_tabs[index].icon;
    if ((current.isNull() && icon.isNull()) || current.cacheKey() == icon.cacheKey())
        return;
    current = icon;
    update();
}

QString ZrTabBar::tabToolTip(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].toolTip : QString();
}

void ZrTabBar::setTabToolTip(int index, const QString& tip)
{
    if (d->isValid(index))
        d->m_tabs[index].toolTip = tip;
}

QVariant ZrTabBar::tabData(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].data : QVariant();
}

void ZrTabBar::setTabData(int index, const QVariant& data)
{
    if (d->isValid(index))
        d->m_tabs[index].data = data;
}

QVector<QPoint> ZrTabBar::tabPolygon(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].polygon : QVector<QPoint>();
}

int ZrTabBar::getTabWidth(int index) const
{
    return d->isValid(index) ? d->m_tabs[index].width : -1;
}

int ZrTabBar::tabAt(const QPoint& pos) const
{
    const int limit = d->lastIndex();
    int start = 0;
    int end = limit;
    const bool layoutBar = isLayoutTabBar();
    if (!layoutBar) {
        // The range is what the next paint uses; the calculations are virtual and not const.
        auto* self = const_cast<ZrTabBar*>(this);
        self->calcStartAndEndDrawIndex(start, end);
        const int current = d->m_currentIndex;
        if (current >= 0 && current < start) {
            end = self->calEndIndexByStartIndex(fontMetrics(), current);
            start = (d->m_hasStartPage && current == 0) ? current + 1 : current;
        }
    }
    for (int i = 0; i <= limit; ++i) {
        if (!zrtabbar::polygonContains(d->m_tabs[i].polygon, pos))
            continue;
        if (layoutBar || (i == 0 && d->m_hasStartPage) || i == limit || (i >= start && i <= end))
            return i;
    }
    return -1;
}

int ZrTabBar::getDropIndex(const QPoint& pos)
{
    if (d->m_tabs.isEmpty())
        return -1;
    int index = tabAt(pos);
    const QRect lastBox = QPolygon(d->m_tabs.last().polygon).boundingRect();
    const QRect firstBox = QPolygon(d->m_tabs.first().polygon).boundingRect();
    if (pos.x() < lastBox.left()) {
        if (pos.x() <= firstBox.right())
            index = d->firstIndex();
    } else {
        index = d->lastIndex();
    }
    if (pos.y() < lastBox.top() || pos.y() > lastBox.bottom())
        return -1;
    return index;
}

bool ZrTabBar::isStartTab(int index) const
{
    return index == 0 && d->m_hasStartPage && d->isValid(0) && d->m_tabs[0].text == startTabText();
}

bool ZrTabBar::isLayoutTabBar() const
{
    return objectName() == QLatin1String("LayoutTabBar");
}

void ZrTabBar::setMultiSelect(bool on)
{
    d->m_multiSelect = on;
}

bool ZrTabBar::isMultiSelect() const
{
    return d->m_multiSelect;
}

void ZrTabBar::addSelectIndex(int index)
{
    if (d->m_multiSelect && d->isValid(index) && !d->m_selectIndexes.contains(index))
        d->m_selectIndexes.append(index);
}

void ZrTabBar::removeSelectIndex(int index)
{
    d->m_selectIndexes.removeOne(index);
}

void ZrTabBar::clearMultiSelect()
{
    d->m_selectIndexes.clear();
}

const QVector<int>& ZrTabBar::getSelectIndexes() const
{
    return d->m_selectIndexes;
}

void ZrTabBar::setSelAll(bool on)
{
    d->m_selAll = on;
    if (!d->m_multiSelect)
        return;
    d->m_selectIndexes.clear();
    if (on) {
        for (int i = d->firstIndex(); i <= d->m_tabs.size() - 2; ++i)
            d->m_selectIndexes.append(i);
    }
}

bool ZrTabBar::getSelAll() const
{
    return d->m_selAll;
}

void ZrTabBar::setHasStartPage(bool on)
{
    d->m_hasStartPage = on;
}

bool ZrTabBar::hasStartPage() const
{
    return d->m_hasStartPage;
}

void ZrTabBar::setCloseTabButton(bool on)
{
    d->m_closeTabButton = on;
}

bool ZrTabBar::getCloseTabButton() const
{
    return d->m_closeTabButton;
}

void ZrTabBar::setUpdateLastTabToolTip(bool on)
{
    d->m_updateLastTabToolTip = on;
}

void ZrTabBar::setLastTabToolTip(const QString& tip)
{
    d->m_lastTabToolTip = tip;
}

int ZrTabBar::getMaxTabTextWidth() const
{
    return d->m_maxTabTextWidth;
}

void ZrTabBar::setMaxTabTextWidth(int width)
{
    d->m_maxTabTextWidth = width < 1 ? zrtabbar::kDefaultMaxTextWidth : width;
}

void ZrTabBar::setCanDrag(bool on)
{
    d->m_canDrag = on;
}

bool ZrTabBar::getCanDrag() const
{
    return d->m_canDrag;
}

void ZrTabBar::clearLastIndexInfo()
{
    d->m_lastStartIndex = 1;
    d->m_lastEndIndex = 1;
}

int ZrTabBar::getDragTabIndex() const
{
    return d->m_dragTabIndex;
}

int ZrTabBar::getCurrentDropIndex()
{
    return d->m_dragTabIndex;
}

void ZrTabBar::setDragFlag(bool on)
{
    d->m_dragFlag = on;
}

bool ZrTabBar::getDragFlag()
{
    return d->m_dragFlag;
}

void ZrTabBar::setDragOutsideFlag(bool on)
{
    if (d->m_canDrag)
        d->m_dragOutside = on;
}

bool ZrTabBar::getDragOutsideFlag() const
{
    return d->m_dragOutside;
}

void ZrTabBar::setIsMovingHorizontally(bool on)
{
    d->m_isMovingHorizontally = on;
}

bool ZrTabBar::isMovingHorizontally() const
{
    return d->m_isMovingHorizontally;
}

int ZrTabBar::setDragingFlags(int flags)
{
    const int old = d->m_dragingFlags;
    d->m_dragingFlags = flags;
    return old;
}

int ZrTabBar::getDragingFlags() const
{
    return d->m_dragingFlags;
}

void ZrTabBar::setDragingTitle(const QString& title)
{
    d->m_dragingTitle = title;
}

QString ZrTabBar::getDragingTitle() const
{
    return d->m_dragingTitle;
}

void ZrTabBar::clearDrag()
{
    d->m_isMovingHorizontally = false;
    d->m_dragFlag = false;
    d->m_dragOutside = false;
    d->m_dragingFlags = 0;
    d->m_dragTabIndex = -1;
}

int ZrTabBar::calStartIndexByEndIndex(const QFontMetrics& metrics, int end)
{
    Q_UNUSED(end) // the walk always starts at the last tab, so document tabs stay anchored right
    const auto widthOf = [this, &metrics](int i) {
        const ZrTabBarImpl::Tab& tab = d->m_tabs[i];
        if (tab.width != -1)
            return tab.width;
        return metrics.horizontalAdvance(tab.text) + zrtabbar::kTabExtra + (tab.icon.isNull() ? 0 : zrtabbar::kIconExtra);
    };
    return zrtabbar::startIndexByEnd(widthOf, d->m_tabs.size(), width(), d->m_hasStartPage);
}

int ZrTabBar::calEndIndexByStartIndex(const QFontMetrics& metrics, int start)
{
    Q_UNUSED(metrics)
    const auto widthOf = [this](int i) { return d->m_tabs[i].width; };
    return zrtabbar::endIndexByStart(widthOf, d->m_tabs.size(), width(), start, d->m_hasStartPage);
}

void ZrTabBar::calcStartAndEndDrawIndex(int& start, int& end)
{
    start = d->firstIndex();
    end = d->lastIndex();
    const QFontMetrics metrics = fontMetrics();
    if (isLayoutTabBar()) {
        start = d->m_lastStartIndex;
        end = calEndIndexByStartIndex(metrics, start);
    } else if (d->m_tabs.size() >= (d->m_hasStartPage ? 3 : 2)) {
        start = calStartIndexByEndIndex(metrics, end);
    }
}

void ZrTabBar::onTabBarClicked(int) {}
void ZrTabBar::onTabBarMenu(int) {}
void ZrTabBar::onRClickedStartTabItem() {}
void ZrTabBar::onLClickedStartTabItem() {}
void ZrTabBar::onRClickBlankArea() {}
void ZrTabBar::on_NewClicked() {}
void ZrTabBar::on_NewRClicked() {}

bool ZrTabBar::closeClicked(int, const QPoint&)
{
    return false;
}

void ZrTabBar::tabChanged() {}
void ZrTabBar::dragingOutside() {}
void ZrTabBar::draging(const QPoint&) {}
void ZrTabBar::dragRelease(const QPoint&) {}

QSize ZrTabBar::tabSizeHint(int) const
{
    return QSize(-1, height());
}

bool ZrTabBar::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const int index = tabAt(help->pos());
        if (index >= 0 && !d->m_tabs[index].toolTip.isEmpty()) {
            QToolTip::showText(help->globalPos(), d->m_tabs[index].toolTip, this);
            return true;
        }
    }
    return QWidget::event(event);
}

void ZrTabBar::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!d->isValid(d->m_currentIndex))
        setCurrentIndex(0);
}

void ZrTabBar::paintEvent(QPaintEvent* event)
{
    if (d->m_tabs.isEmpty()) {
        QWidget::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool enabled = isEnabled();
    const QPalette::ColorGroup group = enabled ? QPalette::Active : QPalette::Disabled;
    const QPalette palette = QApplication::style()->standardPalette();
    QColor textColor = palette.color(group, QPalette::WindowText);
    QColor window = palette.color(QPalette::Active, QPalette::Window);
    QColor selectColor = enabled ? window : window.darker(120);
    QColor hoverColor = palette.color(QPalette::Active, QPalette::Highlight);
    QColor multiSelectColor = enabled ? window.lighter(120) : window.darker(120);
    QFontMetrics metrics = fontMetrics();

    QPoint startPoint(int(height() * kSlope), 0);
    ZrTabBarImpl::DrawItem item;
    item.painter = &painter;
    item.startPoint = &startPoint;
    item.height = height();
    item.textColor = &textColor;
    item.selectColor = &selectColor;
    item.hoverColor = &hoverColor;
    item.multiSelectColor = &multiSelectColor;
    item.metrics = &metrics;

    int start = 0;
    int end = 0;
    calcStartAndEndDrawIndex(start, end);
    painter.save(); // drawNewTab restores it once the tabs are done
    int first = 0;
    if (d->m_hasStartPage) {
        d->drawStartTab(item);
        first = 1;
    }
    if (isLayoutTabBar()) {
        d->setFlagsFor(item, 0);
        item.showSeparator = d->m_currentIndex > 0;
        item.tab = &d->m_tabs[0];
        d->drawItemTab(item);
        first = 1;
    }
    if (d->m_closeTabButton)
        d->drawFromBack(item, start, end, first);
    else
        d->drawFromFront(item, start, end, first);
    d->drawNewTab(item);
}

void ZrTabBar::mousePressEvent(QMouseEvent* event)
{
    const QPoint pos = event->pos();
    if (event->button() == Qt::RightButton) {
        if (!(d->m_dragingFlags & zrtabbar::kDragingWindowBack) && !d->m_dragFlag && d->m_dragTabIndex == -1
            && !d->m_dragOutside) {
            const int index = tabAt(pos);
            if (index >= 0)
                setCurrentIndex(index);
            onTabBarMenu(index);
        }
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    const int index = tabAt(pos);
    if (index < 0)
        return;
    if (index == d->lastIndex()) {
        on_NewClicked();
        d->m_dragTabIndex = -1;
        return;
    }
    setCurrentIndex(index);
    update();
    if (d->m_closeTabButton && closeClicked(index, pos))
        return;
    if ((d->m_hasStartPage || isLayoutTabBar()) && index == 0) {
        d->m_dragTabIndex = -1;
        return;
    }
    d->m_dragTabIndex = index;
    d->m_dragFlag = true;
    d->m_pressPos = pos;
    setDragOutsideFlag(true);
}

void ZrTabBar::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pos = event->pos();
    if (!(event->buttons() & Qt::LeftButton)) {
        d->m_hoverIndex = tabAt(pos);
        update();
        return;
    }
    const int index = tabAt(pos);
    if (index == 0 && (d->m_hasStartPage || isLayoutTabBar()))
        return;
    if (index >= 0 && index == d->lastIndex())
        return;
    if (!d->isValid(d->m_dragTabIndex)) {
        d->m_dragFlag = false;
        return;
    }
    if (!rect().contains(mapFromGlobal(event->globalPos()))) {
        d->m_dragFlag = false;
        update();
        dragingOutside();
        return;
    }
    if (d->hasDragingWindow()) {
        d->m_dragFlag = false;
        d->m_dragPos = pos;
        update();
        return;
    }
    const int dx = pos.x() - d->m_pressPos.x();
    const int tabsBesideStart = d->m_tabs.size() - (d->m_hasStartPage ? 1 : 0);
    if (tabsBesideStart > 2 && std::abs(dx) > QApplication::startDragDistance()) {
        d->m_dragFlag = d->m_canDrag ? d->m_dragOutside : true;
        d->m_isMovingHorizontally = true;
        d->m_dragTab = d->m_tabs[d->m_dragTabIndex];
        d->m_dragPos = pos;
        update();
        return;
    }
    d->m_dragFlag = false;
}

void ZrTabBar::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint pos = event->pos();
    if (d->m_isMovingHorizontally && d->m_dragFlag) {
        dropDrag(pos);
    } else {
        d->m_isMovingHorizontally = false;
        d->m_dragFlag = false;
    }
    dragRelease(pos);
    if (d->hasDragingWindow())
        clearDrag();
    setCursor(Qt::ArrowCursor);
    update();
}

void ZrTabBar::leaveEvent(QEvent* event)
{
    d->m_hoverIndex = -1;
    QWidget::leaveEvent(event);
}

void ZrTabBar::dropDrag(const QPoint& pos)
{
    const bool dragging = d->m_isMovingHorizontally && d->m_dragFlag;
    d->m_isMovingHorizontally = false;
    d->m_dragFlag = false;
    if (!dragging)
        return;
    int index = getDropIndex(pos);
    if (index < 0 || index == d->m_dragTabIndex)
        return;
    if (d->m_hasStartPage && index == 0)
        index = 1;
    if (!d->isValid(d->m_dragTabIndex))
        return;
    // The tab itself moves, with whatever the owner changed on it while it was dragged.
    const ZrTabBarImpl::Tab tab = d->m_tabs.takeAt(d->m_dragTabIndex);
    const int position = qMin(index, d->lastIndex());
    d->m_tabs.insert(position, tab);
    d->m_dragTabIndex = position;
    setCurrentIndex(position);
    update();
}

void ZrTabBar::dragEnterEvent(QDragEnterEvent* event)
{
    event->acceptProposedAction();
}

void ZrTabBar::dragLeaveEvent(QDragLeaveEvent* event)
{
    Q_UNUSED(event)
    if (d->m_isMovingHorizontally) {
        d->m_isMovingHorizontally = false;
        d->m_dragFlag = false;
        update();
    }
}

void ZrTabBar::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    dropDrag(event->posF().toPoint());
}

// X11 ---------------------------------------------------------------------------------------------

namespace {

bool onX11(const char* what)
{
    if (qApp && QX11Info::isPlatformX11())
        return true;
    qWarning("%s: not on an X11 (xcb) display, nothing done", what);
    return false;
}

// Qt's global positions are in device independent pixels; X wants the screen's own.
QPoint nativePoint(QWidget* widget, QPoint point)
{
    const qreal ratio = widget ? widget->devicePixelRatioF() : 1.0;
    return QPoint(qRound(point.x() * ratio), qRound(point.y() * ratio));
}

Window topLevelWindow(QWidget* widget)
{
    return widget ? Window(widget->window()->winId()) : Window(0);
}

// Queries are polled while a window is moved; one warning is enough.
bool queryOnX11()
{
    static const bool x11 = qApp && QX11Info::isPlatformX11();
    if (!x11) {
        static bool told = false;
        if (!told)
            qWarning("zrqt: not on an X11 (xcb) display, pointer queries answer nothing");
        told = true;
    }
    return x11 && zrqt_get_display();
}

unsigned int pointerMask(Window window)
{
    Display* display = zrqt_get_display();
    Window root = 0;
    Window child = 0;
    int rootX = 0;
    int rootY = 0;
    int x = 0;
    int y = 0;
    unsigned int mask = 0;
    if (!XQueryPointer(display, window, &root, &child, &rootX, &rootY, &x, &y, &mask))
        return 0;
    return mask;
}

int qtButtons(unsigned int mask)
{
    int buttons = 0;
    if (mask & Button1Mask)
        buttons |= Qt::LeftButton;
    if (mask & Button2Mask)
        buttons |= Qt::MiddleButton;
    if (mask & Button3Mask)
        buttons |= Qt::RightButton;
    if (mask & Button4Mask)
        buttons |= 8;
    if (mask & Button5Mask)
        buttons |= 16;
    return buttons;
}

} // namespace

Display* zrqt_get_display()
{
    if (!qApp || !QX11Info::isPlatformX11())
        return nullptr;
    return QX11Info::display();
}

int zrqt_get_appScreen()
{
    return (qApp && QX11Info::isPlatformX11()) ? QX11Info::appScreen() : 0;
}

QScreen* zrqt_findScreenForVirtualDesktop(int virtualDesktopNumber)
{
    if (!qApp)
        return nullptr;
    if (virtualDesktopNumber == -1)
        return QGuiApplication::primaryScreen();
    using DesktopNumber = int (*)(const QScreen*);
    const auto desktopNumber = reinterpret_cast<DesktopNumber>(
        QGuiApplication::platformFunction(QByteArrayLiteral("XcbVirtualDesktopNumber")));
    if (!desktopNumber)
        return nullptr;
    for (QScreen* screen : QGuiApplication::screens()) {
        if (desktopNumber(screen) == virtualDesktopNumber)
            return screen;
    }
    return nullptr;
}

unsigned long zrqt_get_appRootWindow(int screen)
{
    return (qApp && QX11Info::isPlatformX11()) ? QX11Info::appRootWindow(screen) : 0;
}

void zrqt_X11EmulateButtonRelease(QWidget* widget, const QPoint& globalPos)
{
    if (!widget || !onX11("zrqt_X11EmulateButtonRelease"))
        return;
    Display* display = zrqt_get_display();
    QWidget* window = widget->window();
    const QPoint local = nativePoint(widget, window->mapFromGlobal(globalPos));
    const QPoint root = nativePoint(widget, globalPos);
    XEvent event{};
    event.xbutton.type = ButtonRelease;
    event.xbutton.display = display;
    event.xbutton.button = Button1;
    event.xbutton.window = topLevelWindow(widget);
    event.xbutton.root = zrqt_get_appRootWindow(zrqt_get_appScreen());
    event.xbutton.time = CurrentTime;
    event.xbutton.x = local.x();
    event.xbutton.y = local.y();
    event.xbutton.x_root = root.x();
    event.xbutton.y_root = root.y();
    event.xbutton.same_screen = True;
    if (!XSendEvent(display, event.xbutton.window, True, ButtonReleaseMask, &event))
        qWarning("Cant send ButtonRelease for native drag");
    XFlush(display);
}

void zrqt_X11WMMoveResizeWindow(QWidget* widget, int x, int y, int direction)
{
    if (!widget || !onX11("zrqt_X11WMMoveResizeWindow"))
        return;
    Display* display = zrqt_get_display();
    static const Atom moveResize = XInternAtom(display, "_NET_WM_MOVERESIZE", False);
    XUngrabPointer(display, CurrentTime);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.display = display;
    event.xclient.window = topLevelWindow(widget);
    event.xclient.message_type = moveResize;
    event.xclient.format = 32;
    event.xclient.data.l[0] = x;
    event.xclient.data.l[1] = y;
    event.xclient.data.l[2] = direction;
    event.xclient.data.l[3] = Button1;
    event.xclient.data.l[4] = 0;
    if (!XSendEvent(display, zrqt_get_appRootWindow(zrqt_get_appScreen()), False,
                    SubstructureRedirectMask | SubstructureNotifyMask, &event))
        qWarning("Cant send _NET_WM_MOVERESIZE for native drag");
    XFlush(display);
}

int zrqt_get_mouseButtons_linux()
{
    if (!queryOnX11())
        return 0;
    return qtButtons(pointerMask(zrqt_get_appRootWindow(zrqt_get_appScreen())));
}

bool zrqt_test_mouseButtons_linux(QWidget* widget, QFlags<Qt::MouseButton>& buttons)
{
    if (!queryOnX11())
        return false;
    const Window window = widget ? topLevelWindow(widget) : zrqt_get_appRootWindow(zrqt_get_appScreen());
    const unsigned int mask = pointerMask(window);
    buttons = QFlags<Qt::MouseButton>(qtButtons(mask));
    return buttons != Qt::NoButton || (mask & (1u << 6));
}

int zrqt_test_keyPressed_linux(QWidget* widget, int key)
{
    Q_UNUSED(widget)
    Q_UNUSED(key)
    if (queryOnX11()) {
        char keys[32];
        XQueryKeymap(zrqt_get_display(), keys);
    }
    return 0;
}

int zrqt_peekMessage_linux(DeviceMSG* message, void* window, int first, int last, int remove)
{
    Q_UNUSED(message)
    Q_UNUSED(window)
    Q_UNUSED(first)
    Q_UNUSED(last)
    Q_UNUSED(remove)
    if (queryOnX11()) {
        Display* display = zrqt_get_display();
        if (XPending(display) > 0) {
            XEvent event;
            XPeekEvent(display, &event);
        }
    }
    return 0;
}

QRect zrqt_get_window_geometry_linux(QWidget* widget)
{
    const QRect none(QPoint(0, 0), QPoint(-1, -1));
    if (!widget || !queryOnX11())
        return none;
    Display* display = zrqt_get_display();
    const Window window = topLevelWindow(widget);
    const Window root = zrqt_get_appRootWindow(zrqt_get_appScreen());
    int rootX = 0;
    int rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, root, 0, 0, &rootX, &rootY, &child);
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes)) {
        QMessageLogger(__FILE__, __LINE__, Q_FUNC_INFO).warning("Cant read the attributes of window %lu", window);
        return none;
    }
    const int left = rootX - attributes.x;
    const int top = rootY - attributes.y;
    return QRect(QPoint(left, top), QPoint(left + attributes.width - 1, top + attributes.height - 1));
}

bool zrqt_window_start_native_drag_linux(QWidget* widget, const QPoint& globalPos, Qt::WindowFrameSection section)
{
    if (section < Qt::LeftSection || section > Qt::TitleBarArea)
        return true;
    // _NET_WM_MOVERESIZE directions, by frame section from LeftSection on.
    static const int kDirections[] = {7, 0, 1, 2, 3, 4, 5, 6, 8};
    const int direction = kDirections[section - Qt::LeftSection];
    // First the release, so that Qt gives up its implicit grab, then the window manager's move.
    zrqt_X11EmulateButtonRelease(widget, globalPos);
    const QPoint root = nativePoint(widget, globalPos);
    zrqt_X11WMMoveResizeWindow(widget, root.x(), root.y(), direction);
    return true;
}
