#pragma once
// A private X server with a real window manager for one test run: Xvfb on a display it picks itself,
// openbox on it. Both are stopped when the session ends.

#include <QProcess>
#include <QString>

class XSession
{
public:
    XSession();
    ~XSession();
    XSession(const XSession&) = delete;
    XSession& operator=(const XSession&) = delete;

    // Starts both and points DISPLAY at the server; false with `error()` saying why.
    bool start();
    bool xvfbMissing() const { return m_xvfbMissing; }
    QString error() const { return m_error; }

private:
    bool fail(const QString& message);
    bool waitForWindowManager(int timeoutMs);

    QProcess m_xvfb;
    QProcess m_windowManager;
    QString m_display;
    QString m_error;
    bool m_xvfbMissing = false;
};
