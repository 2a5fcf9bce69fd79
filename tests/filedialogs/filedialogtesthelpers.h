#pragma once
// Running "FileDialogBox" as a host module does, acting on it as a user, and answering the message
// boxes it puts up over itself.

#include "zrtesthost.h"

#include "qt_filedialog.h"

#include "zrjson.h"
#include "zrui.h"

#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

namespace FileDialogTest {

inline QLineEdit* nameEdit(QWidget* dlg) { return dlg->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")); }
inline QComboBox* typeCombo(QWidget* dlg) { return dlg->findChild<QComboBox*>(QStringLiteral("fileTypeCombo")); }

// Types `text` into the file name and presses Return, as a user does.
inline void typeAndReturn(QWidget* dlg, const QString& text)
{
    QLineEdit* edit = nameEdit(dlg);
    edit->setFocus();
    edit->selectAll();
    // QTest types ASCII only; other characters come in whole, as an input method commits them.
    bool ascii = true;
    for (QChar c : text)
        ascii = ascii && c.unicode() < 128;
    if (ascii)
        QTest::keyClicks(edit, text);
    else
        edit->insert(text);
    QTest::keyClick(edit, Qt::Key_Return);
}

inline void escape(QWidget* dlg)
{
    if (dlg->isVisible())
        QTest::keyClick(dlg, Qt::Key_Escape);
}

// A message box that came up over the file dialog, as its user saw it.
struct Box
{
    QString title;
    QStringList labels;
    QStringList buttons;
    bool says(const QString& text) const { return labels.contains(text); }
};

// While it lives, notes each box that comes up over the file dialog and answers it with a click on
// the button whose text is the next of `clicks`, or with Esc when they are used up. Of several
// watches the newest acts, so a test's own watch comes before the one every run keeps against a box
// nobody expected.
class BoxWatch
{
public:
    explicit BoxWatch(QStringList clicks = {}) : m_clicks(std::move(clicks))
    {
        watches().append(this);
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { poll(); });
        m_timer.start();
    }
    ~BoxWatch() { watches().removeOne(this); }
    BoxWatch(const BoxWatch&) = delete;
    BoxWatch& operator=(const BoxWatch&) = delete;

    const QList<Box>& boxes() const { return m_boxes; }

private:
    static QList<BoxWatch*>& watches()
    {
        static QList<BoxWatch*> all;
        return all;
    }

    void poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || qobject_cast<QFileDialog*>(modal) || !modal->isVisible() || m_busy || watches().last() != this)
            return;
        m_busy = true;
        Box box;
        box.title = modal->windowTitle();
        for (QLabel* label : modal->findChildren<QLabel*>()) {
            if (!label->text().isEmpty())
                box.labels << label->text();
        }
        QPushButton* answer = nullptr;
        for (QPushButton* button : modal->findChildren<QPushButton*>()) {
            if (!button->isVisible())
                continue;
            box.buttons << button->text();
            if (!m_clicks.isEmpty() && button->text() == m_clicks.first())
                answer = button;
        }
        m_boxes << box;
        modal->activateWindow();
        if (!QTest::qWaitForWindowActive(modal))
            qWarning("the message box never became the active window");
        if (!m_clicks.isEmpty())
            m_clicks.removeFirst();
        if (answer)
            QTest::mouseClick(answer, Qt::LeftButton);
        else
            QTest::keyClick(modal, Qt::Key_Escape);
        m_busy = false;
    }

    QStringList m_clicks;
    QList<Box> m_boxes;
    QTimer m_timer;
    bool m_busy = false;
};

// Types `text` and Return while a watch answers the boxes with `clicks`; gives the boxes seen.
inline QList<Box> typeWatched(QWidget* dlg, const QString& text, QStringList clicks = {})
{
    BoxWatch watch(std::move(clicks));
    typeAndReturn(dlg, text);
    return watch.boxes();
}

struct Run
{
    int result = -99;
    ZrJsonPtr answer;
    // Boxes no watch of the test answered.
    QList<Box> unexpected;
};

inline ZrJsonPtr param(const QString& json)
{
    ZrJsonPtr value = ElementValue::parse(ZrUtf8String(json));
    Q_ASSERT(value);
    return value;
}

// Runs the dialog `name` with `param`; `user` acts on the window once it is up and must end it.
inline Run run(const ZrJsonPtr& param, std::function<void(ZrQtFileDialogImpl*)> user,
               const wchar_t* name = L"FileDialogBox")
{
    ZrTest::whenModalShown([user](QWidget* window) {
        auto* dlg = qobject_cast<ZrQtFileDialogImpl*>(window);
        if (!dlg) {
            qWarning("the modal window is no file dialog");
            window->close();
            return;
        }
        user(dlg);
    });
    const BoxWatch unexpected;
    const ZrJsonPtr answer = zruiShowModelDialogEx(48, ZrString(name), param, ZrRxObjectPtr(), nullptr);
    return {answer ? answer->GetVarI("result", -99) : -99, answer, unexpected.boxes()};
}

inline bool touch(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly);
}

} // namespace FileDialogTest
