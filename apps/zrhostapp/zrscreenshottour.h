#pragma once
// The headless tour scripts/run-host.sh takes: the main window with a selection on two layers, and a
// message box over the window.

class QString;
class ZrHostMainWindow;

// Once the window is up, writes main-window.png and message-box.png to `dir`, printing each path,
// then ends the application: 0 when both were written.
void takeScreenshots(ZrHostMainWindow* window, const QString& dir);
