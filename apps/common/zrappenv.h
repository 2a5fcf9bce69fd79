#pragma once
// Start-up pieces both apps share: the platform, the theme, the host's options, the look,
// and waiting for a modal dialog without sleeping.

#include "zrhostcontrol.h"

#include <functional>

class QObject;
class QString;
class QWidget;

namespace ZrApp {

constexpr int kLightTheme = 1;
constexpr int kDarkTheme = 2;

// Chooses the offscreen platform when no platform is asked for and there is no display.
// Call before the QApplication is made.
void preferOffscreenWhenHeadless();

// "light" or "dark"; false for anything else.
bool parseTheme(const QString& name, int* theme);

// The resource root is $ZR_RESOURCE_ROOT, or else the source tree's resources/.
ZrHostControl::Options hostOptions(int theme);

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
