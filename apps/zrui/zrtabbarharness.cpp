#include "zrtabbarharness.h"

#include "zrtabbar.h"

#include <QDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVBoxLayout>

namespace {

class HarnessBar : public ZrTabBar
{
public:
    using ZrTabBar::ZrTabBar;

    void on_NewClicked() override
    {
        const QString text = QStringLiteral("Drawing%1").arg(++m_made);
        const int index = addTab(text);
        setTabToolTip(index, text);
        setCurrentIndex(index);
        update();
    }
    bool closeClicked(int index, const QPoint& pos) override
    {
        if (!zrtabbar::closeButtonRect(tabPolygon(index), height()).contains(pos))
            return false;
        removeTab(index);
        return true;
    }

private:
    int m_made = 0;
};

} // namespace

QDialog* zrMakeTabBarWindow(const ZrTabBarRequest& request, ZrTabBar** bar)
{
    auto* window = new QDialog;
    window->setWindowTitle(QStringLiteral("ZrTabBar"));
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* tabs = new HarnessBar;
    if (request.layoutBar)
        tabs->setObjectName(QStringLiteral("LayoutTabBar"));
    tabs->setHasStartPage(request.startPage);
    tabs->setCloseTabButton(request.closeButtons);
    tabs->setFixedHeight(24);
    layout->addWidget(tabs);
    window->resize(request.width, 24);

    QStringList texts = request.tabs;
    if (texts.isEmpty() || texts.last() != QLatin1String("+"))
        texts << QStringLiteral("+");
    // The new-tab tab goes in before the drawings, after the first tab of a bar that has a fixed one.
    const bool firstFirst = (request.startPage || request.layoutBar || !request.closeButtons) && texts.size() > 1;
    if (firstFirst)
        tabs->addTab(texts.first());
    tabs->addTab(texts.last());
    for (int i = firstFirst ? 1 : 0; i < texts.size() - 1; ++i)
        tabs->addTab(texts[i]);
    for (int i = 0; i < tabs->count(); ++i)
        tabs->setTabToolTip(i, tabs->tabText(i));
    if (request.current >= 0)
        tabs->setCurrentIndex(request.current);
    *bar = tabs;
    return window;
}

QByteArray zrTabBarLine(const ZrTabBar* bar)
{
    QJsonArray tabs;
    for (int i = 0; i < bar->count(); ++i)
        tabs.append(bar->tabText(i));
    QJsonObject line;
    line.insert(QStringLiteral("tabs"), tabs);
    line.insert(QStringLiteral("current"), bar->currentIndex());
    return QJsonDocument(line).toJson(QJsonDocument::Compact);
}
