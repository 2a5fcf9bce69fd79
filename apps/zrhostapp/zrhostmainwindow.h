#pragma once
// The reference host's main window: a drawing view, the Dialogs menu and the command line.

#include <QMainWindow>
#include <memory>

class ZrHostMainWindow : public QMainWindow
{
public:
    // `dialogs`: the names the module's UI service answers to.
    explicit ZrHostMainWindow(const QStringList& dialogs);
    ~ZrHostMainWindow() override;

    void appendToCommandLine(const QString& line);

private:
    // Runs a dialog with its sample parameter and writes the answer line to the command line.
    void runDialog(const QString& name);

    struct Data;
    std::unique_ptr<Data> d;
};
