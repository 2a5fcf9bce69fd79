#pragma once
// The headless tour scripts/run-host.sh takes: the main window with a selection on two layers, a
// message box over the window, and the colour dialog over the window.

class QString;
class ZrHostMainWindow;

// Once the window is up, writes main-window.png, message-box.png and color-dialog.png to `dir`,
// printing each path, then ends the application: 0 when all three were written.
void takeScreenshots(ZrHostMainWindow* window, const QString& dir);
