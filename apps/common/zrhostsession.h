#pragma once
// The substitute host set up for a run, with the module loaded into it as the CAD host loads it:
// a plug-in found at run time and told through its entry point, then the reactor service in slot 14.

#include <QString>
#include <memory>

class ZrHostSession
{
public:
    // Sets the host up with the theme, loads the module from moduleFile() and installs the reactor service.
    explicit ZrHostSession(int theme);
    // Unloads the module, then takes the host down.
    ~ZrHostSession();
    ZrHostSession(const ZrHostSession&) = delete;
    ZrHostSession& operator=(const ZrHostSession&) = delete;

    // $ZR_MODULE, else the library in ../lib beside the executable, else the one this build made.
    static QString moduleFile();

    // Why the module could not be loaded; empty when it was.
    QString error() const;
    // Removes the reactor service, sends the unload message and unloads the library, for a host that
    // must do so before its end.
    void unloadModule();

private:
    struct Data;
    std::unique_ptr<Data> d;
};
