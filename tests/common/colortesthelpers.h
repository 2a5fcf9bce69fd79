#pragma once
// Colours by index, and answers to the module's colour dialog once it is up, given as a user gives them.

#include "zrcmcolor.h"
#include "zrtesthost.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace ZrTest {

inline ZrCmColor aci(uint16_t index)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(index);
    return color;
}

// Clicks the shown OK button.
inline void clickOk(QWidget* dialog)
{
    for (QPushButton* ok : dialog->findChildren<QPushButton*>()) {
        if (ok->text() == QStringLiteral("确定") && ok->isVisible())
            return QTest::mouseClick(ok, Qt::LeftButton);
    }
    QFAIL("the dialog shows no OK button");
}

// Types `text` over the dialog's colour line and clicks OK.
inline void typeColorAndOk(QWidget* dialog, const QString& text)
{
    auto* line = dialog->findChild<QLineEdit*>(QStringLiteral("colorLineEdit"));
    QVERIFY(line);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
    clickOk(dialog);
}

// Cancels the next modal window with Escape as soon as it is up.
inline void cancelNextModal() { whenModalShown([](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); }); }

} // namespace ZrTest
