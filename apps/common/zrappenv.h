#pragma once
// Start-up pieces both apps share: the platform, the theme, the host's options, the look,
// and waiting for a modal dialog without sleeping.

#include "zrhostcontrol.h"

#include <cstdio>
#include <functional>

class QObject;
class QString;
class QWidget;

namespace ZrApp {

constexpr int kLightTheme = 1;
constexpr int kDarkTheme = 2;

// Writes the line in UTF-8 and flushes, so that lines of stdout and stderr keep their order.
void printLine(FILE* stream, const QString& line);

// Chooses the offscreen platform when no platform is asked for and there is no display.
// Call before the QApplication is made.
void preferOffscreenWhenHeadless();

// "light" or "dark"; false for anything else.
bool parseTheme(const QString& name, int* theme);

// The resource root is $ZR_RESOURCE_ROOT, or else the source tree's resources/.
ZrHostControl::Options hostOptions(int theme);

// What a run starts with when --drawing names no file.
enum class StartDrawing { HostDefault, Sample };
// Opens the --drawing file, else the start drawing. False, with a message that names the file and
// the place in it, when the file cannot be read; the host keeps the drawing it had. What the host left
// out of a DXF drawing is said on stderr.
bool openStartDrawing(const QString& file, StartDrawing fallback, QString* error);

// Fusion with a restrained palette for the theme.
void applyAppearance(int theme);

// Calls `then` once, as soon as `ready` holds; polls from the event loop, never sleeps.
// Stops when `context` goes.
void when(QObject* context, std::function<bool()> ready, std::function<void()> then);
// Calls `onShown` with the modal widget as soon as one is up.
void whenModalShown(QObject* context, std::function<void(QWidget*)> onShown);

// Closes the modal widgets from the top down, as their close buttons would.
void closeModalWidgets();

} // namespace ZrApp
