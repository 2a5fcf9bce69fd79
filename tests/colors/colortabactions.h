#pragma once
// What a user does inside the colour dialog's tabs, for the colour suites: type over a field.

#include "colordialogrunner.h"

#include <QTest>

namespace ColorTabTest {

// Replaces a spin box's or line's text as a user does: focus, select all, type.
inline void retype(QWidget* field, const QString& text)
{
    field->setFocus(Qt::MouseFocusReason);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, text);
}

} // namespace ColorTabTest
