#include "xsession.h"

#include <QDeadlineTimer>
#include <QStandardPaths>
#include <QThread>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace {

void stop(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

} // namespace

XSession::XSession() = default;

XSession::~XSession()
{
    stop(m_windowManager);
    stop(m_xvfb);
}

bool XSession::fail(const QString& message)
{
    m_error = message;
    return false;
}

bool XSession::start()
{
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty()) {
        m_xvfbMissing = true;
        return fail(QStringLiteral("Xvfb is not installed (Debian package xvfb)"));
    }
    // Xvfb picks a free display itself and writes its number to standard output: no race with other
    // servers on the machine.
    m_xvfb.setProgram(xvfb);
    m_xvfb.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                         QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"),
                         QStringLiteral("tcp")});
    m_xvfb.setProcessChannelMode(QProcess::SeparateChannels);
    m_xvfb.start();
    if (!m_xvfb.waitForStarted(10000))
        return fail(QStringLiteral("Xvfb did not start: %1").arg(m_xvfb.errorString()));
    QDeadlineTimer deadline(20000);
    while (!m_xvfb.canReadLine() && !deadline.hasExpired()) {
        if (!m_xvfb.waitForReadyRead(int(qMax<qint64>(1, deadline.remainingTime()))))
            break;
    }
    const QByteArray number = m_xvfb.readLine().trimmed();
    if (number.isEmpty())
        return fail(QStringLiteral("Xvfb gave no display number: %1")
                        .arg(QString::fromLocal8Bit(m_xvfb.readAllStandardError())));
    m_display = QLatin1Char(':') + QString::fromLatin1(number);
    qputenv("DISPLAY", m_display.toLatin1());

    const QString openbox = QStandardPaths::findExecutable(QStringLiteral("openbox"));
    if (openbox.isEmpty())
        return fail(QStringLiteral("openbox is not installed (Debian package openbox)"));
    m_windowManager.setProgram(openbox);
    m_windowManager.setArguments({QStringLiteral("--sm-disable")});
    m_windowManager.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_windowManager.start();
    if (!m_windowManager.waitForStarted(10000))
        return fail(QStringLiteral("openbox did not start: %1").arg(m_windowManager.errorString()));
    if (!waitForWindowManager(20000))
        return fail(QStringLiteral("openbox did not take display %1").arg(m_display));
    return true;
}

// An EWMH window manager announces itself with _NET_SUPPORTING_WM_CHECK on the root window.
bool XSession::waitForWindowManager(int timeoutMs)
{
    Display* display = XOpenDisplay(m_display.toLatin1().constData());
    if (!display)
        return false;
    const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
    QDeadlineTimer deadline(timeoutMs);
    bool found = false;
    while (!found && !deadline.hasExpired() && m_windowManager.state() == QProcess::Running) {
        Atom type = 0;
        int format = 0;
        unsigned long items = 0;
        unsigned long after = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False, XA_WINDOW, &type, &format,
                               &items, &after, &data) == Success) {
            found = items == 1;
            XFree(data);
        }
        if (!found)
            QThread::msleep(20); // before the application exists: nothing else to wait on
    }
    XCloseDisplay(display);
    return found;
}
