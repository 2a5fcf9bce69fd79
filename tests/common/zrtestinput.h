#pragma once
// Clicks where a user puts them, for the suites that drive check boxes and lists.

#include <QCheckBox>
#include <QListWidget>
#include <QTest>

namespace ZrTest {

// On the indicator: a check box's row is wider than what a click toggles.
inline void clickCheckBox(QCheckBox* box)
{
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2));
}

// On the one item shown as `text`, scrolled into sight first; false when there is no such item.
inline bool clickListItem(QListWidget* list, const QString& text)
{
    const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
    if (found.size() != 1)
        return false;
    list->scrollToItem(found[0]);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found[0]).center());
    return true;
}

} // namespace ZrTest
