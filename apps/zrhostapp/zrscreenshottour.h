#pragma once
// The headless tour scripts/run-host.sh takes: the main window with a selection on two layers, a
// message box, the colour dialog on each of its tabs, the task dialog, the file dialog with its
// preview and with its export panel and the lineweight settings over the window, and the document tabs.

class QString;
class ZrHostMainWindow;

// Once the window is up, writes main-window.png, message-box.png, color-dialog.png,
// color-dialog-true.png, color-dialog-book.png, task-dialog.png, export-panel.png, file-dialog.png,
// lineweight-dialog.png and tab-bar.png to `dir`, printing each path, then ends the application: 0
// when all were written.
void takeScreenshots(ZrHostMainWindow* window, const QString& dir);
