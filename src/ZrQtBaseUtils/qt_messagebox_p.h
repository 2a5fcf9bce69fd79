#pragma once
// What the message box shares with the task dialog: the icons by type code, the standard buttons
// with their texts and ids, the text colour for style sheets and the title bar without extra buttons.

#include <QString>
#include <Qt>

class QButtonGroup;
class QWidget;

namespace zrdialogparts {

// The image of an icon code (32 question, 48 information, 64 warning, 80 error) in the current
// theme; empty for any other code.
QString iconPath(int code);
// Whether `code` is one of the four icon codes.
bool isIconCode(int code);

struct ButtonChoice
{
    const char* key;
    const char* text;
    char shortcut;
    int id;
};

extern const ButtonChoice kOk;
extern const ButtonChoice kCancel;
extern const ButtonChoice kYes;
extern const ButtonChoice kNo;
extern const ButtonChoice kRetry;

// The button's text in the user's language.
QString buttonText(const ButtonChoice& choice);

// The id of the last button of `group`, or `none` when the group is gone or empty: what Esc and the
// window's close button report.
int lastButtonId(const QButtonGroup* group, int none);

// A text colour that reads on the widget's window colour, as "rgb(r, g, b)".
QString textColor(const QWidget* widget);

// The window flags without the minimize, maximize and help buttons.
Qt::WindowFlags withoutExtraTitleButtons(Qt::WindowFlags flags);

} // namespace zrdialogparts
