#include "zrsteps.h"

#include "zrappenv.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <iterator>

namespace {

QStringList splitSteps(const QString& text)
{
    QStringList parts(QString{});
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('\\') && i + 1 < text.size() && text[i + 1] == QLatin1Char(';'))
            parts.last() += text[++i];
        else if (text[i] == QLatin1Char(';'))
            parts << QString{};
        else
            parts.last() += text[i];
    }
    return parts;
}

// Empty when the step is well formed, else why not.
QString readStep(const QString& written, ZrStep* step)
{
    step->text = written;
    const int colon = written.indexOf(QLatin1Char(':'));
    const QString verb = written.left(colon).trimmed();
    step->argument = colon < 0 ? QString() : written.mid(colon + 1);

    static const struct { const char* verb; ZrStep::Kind kind; } verbs[] = {
        {"click", ZrStep::Click}, {"key", ZrStep::Key},   {"type", ZrStep::Type},   {"focus", ZrStep::Focus},
        {"wait", ZrStep::Wait},   {"shot", ZrStep::Shot}, {"close", ZrStep::Close},
    };
    const auto known = std::find_if(std::begin(verbs), std::end(verbs),
                                    [&verb](const auto& v) { return verb == QLatin1String(v.verb); });
    if (known == std::end(verbs))
        return QStringLiteral("unknown step; the steps are click:X, key:SEQ, type:TEXT, focus:X, wait:MS, "
                              "shot:FILE.png and close");
    step->kind = known->kind;

    switch (step->kind) {
    case ZrStep::Close:
        return colon < 0 ? QString() : QStringLiteral("close takes no argument");
    case ZrStep::Wait: {
        bool ok = false;
        step->milliseconds = step->argument.toInt(&ok);
        return ok && step->milliseconds >= 0 ? QString() : QStringLiteral("wait needs milliseconds, 0 or more");
    }
    case ZrStep::Key: {
        step->keys = QKeySequence::fromString(step->argument.trimmed(), QKeySequence::PortableText);
        bool valid = !step->keys.isEmpty();
        for (int i = 0; i < step->keys.count(); ++i)
            valid = valid && (step->keys[i] & ~Qt::KeyboardModifierMask) != Qt::Key_unknown;
        return valid ? QString() : QStringLiteral("not a key sequence (try Esc, Return, Alt+Y)");
    }
    default:
        return step->argument.isEmpty() ? QStringLiteral("needs an argument after \":\"") : QString();
    }
}

QString describe(int index, const ZrStep& step)
{
    return QStringLiteral("step %1 \"%2\"").arg(index).arg(step.text);
}

QAbstractButton* findButton(QWidget* window, const QString& nameOrText)
{
    const auto buttons = window->findChildren<QAbstractButton*>();
    auto usable = [](QAbstractButton* b) { return b->isVisible() && b->isEnabled(); };
    for (QAbstractButton* button : buttons) {
        if (usable(button) && button->objectName() == nameOrText)
            return button;
    }
    for (QAbstractButton* button : buttons) {
        if (usable(button) && button->text() == nameOrText)
            return button;
    }
    return nullptr;
}

// Where a person clicks: a check box or a radio button answers only on its indicator and label.
QPoint clickPoint(QAbstractButton* button)
{
    QStyle::SubElement clickArea;
    if (qobject_cast<QCheckBox*>(button))
        clickArea = QStyle::SE_CheckBoxClickRect;
    else if (qobject_cast<QRadioButton*>(button))
        clickArea = QStyle::SE_RadioButtonClickRect;
    else
        return button->rect().center();
    // What the button's own hit test gives the style; the label's extent depends on text and icon.
    QStyleOptionButton option;
    option.initFrom(button);
    option.text = button->text();
    option.icon = button->icon();
    option.iconSize = button->iconSize();
    return button->style()->subElementRect(clickArea, &option, button).center();
}

// Qt's message box, or the module's own, known by its class name: zrui runs the module as a plug-in.
bool isMessageBox(const QWidget* window)
{
    return qobject_cast<const QMessageBox*>(window) || window->inherits("ZrQtMessageBox");
}

// The texts of the window's labels, in order: the message as it is shown.
QString shownText(const QWidget* window)
{
    QStringList texts;
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->text().isEmpty() && label->isVisibleTo(window))
            texts << label->text();
    }
    return texts.join(QLatin1Char('\n'));
}

// Where a person's keys would go: the window's focus widget, else the window.
QWidget* keyTarget(QWidget* window)
{
    // Shortcuts and mnemonics answer only in the active window.
    if (QApplication::activeWindow() != window)
        QApplication::setActiveWindow(window);
    QWidget* focus = window->focusWidget();
    return focus ? focus : window;
}

void typeText(QWidget* target, const QString& text)
{
    for (uint codePoint : text.toUcs4()) {
        const QString character = QString::fromUcs4(&codePoint, 1);
        if (codePoint < 0x80)
            QTest::keyClick(target, static_cast<char>(codePoint));
        else
            QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, character, Qt::NoModifier);
    }
}

bool saveGrab(QWidget* window, const QString& file)
{
    return window->grab().save(file, "PNG");
}

// Empty when done, else why not.
QString carryOut(const ZrStep& step, QWidget* window)
{
    switch (step.kind) {
    case ZrStep::Click: {
        QAbstractButton* button = findButton(window, step.argument);
        if (!button)
            return QStringLiteral("no visible, enabled button named or labelled \"%1\"").arg(step.argument);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, clickPoint(button));
        return {};
    }
    case ZrStep::Key:
        QTest::keySequence(keyTarget(window), step.keys);
        return {};
    case ZrStep::Type:
        typeText(keyTarget(window), step.argument);
        return {};
    case ZrStep::Focus: {
        auto* widget = window->findChild<QWidget*>(step.argument);
        if (!widget || !widget->isVisible())
            return QStringLiteral("no visible widget named \"%1\"").arg(step.argument);
        widget->setFocus(Qt::OtherFocusReason);
        return {};
    }
    case ZrStep::Shot:
        return saveGrab(window, step.argument) ? QString() : QStringLiteral("cannot write %1").arg(step.argument);
    case ZrStep::Close:
        window->close();
        return {};
    case ZrStep::Wait:
        return {};
    }
    return {};
}

} // namespace

bool parseSteps(const QString& text, QVector<ZrStep>* steps, QString* error)
{
    for (const QString& part : splitSteps(text)) {
        const QString written = part.trimmed();
        if (written.isEmpty())
            continue;
        ZrStep step;
        const QString why = readStep(written, &step);
        if (!why.isEmpty()) {
            *error = describe(steps->size() + 1, step) + QStringLiteral(": ") + why;
            return false;
        }
        steps->append(step);
    }
    return true;
}

struct ZrStepRunner::Data
{
    QVector<ZrStep> steps;
    QString screenshotFile;
    int timeoutMs = -1;
    int next = 0;
    QString error;
    std::function<void(const QString&, const QString&)> reportMessageBox;
};

ZrStepRunner::ZrStepRunner(QVector<ZrStep> steps, QString screenshotFile, int timeoutMs)
    : d(std::make_unique<Data>())
{
    d->steps = std::move(steps);
    d->screenshotFile = std::move(screenshotFile);
    d->timeoutMs = timeoutMs;
}

ZrStepRunner::~ZrStepRunner() = default;

void ZrStepRunner::onMessageBox(std::function<void(const QString&, const QString&)> report)
{
    d->reportMessageBox = std::move(report);
}

void ZrStepRunner::start()
{
    if (d->reportMessageBox)
        qApp->installEventFilter(this);
    if (d->timeoutMs >= 0)
        QTimer::singleShot(d->timeoutMs, this, &ZrApp::closeModalWidgets);
    ZrApp::whenModalShown(this, [this](QWidget* dialog) {
        if (!d->screenshotFile.isEmpty() && !saveGrab(dialog, d->screenshotFile))
            return fail(QStringLiteral("--screenshot: cannot write %1").arg(d->screenshotFile));
        runNext();
    });
}

QString ZrStepRunner::error() const
{
    return d->error;
}

bool ZrStepRunner::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto* window = static_cast<QWidget*>(watched);
        if (window->isWindow() && isMessageBox(window))
            d->reportMessageBox(window->windowTitle(), shownText(window));
    }
    return QObject::eventFilter(watched, event);
}

void ZrStepRunner::runNext()
{
    QWidget* window = QApplication::activeModalWidget();
    // No modal widget left means the dialog has ended, and with it the steps.
    if (!d->error.isEmpty() || d->next >= d->steps.size() || !window)
        return;
    const int number = ++d->next;
    const ZrStep step = d->steps[number - 1];
    // Due before this step starts, so that a nested modal window it opens runs the next step.
    QTimer::singleShot(step.kind == ZrStep::Wait ? step.milliseconds : 0, this, [this] { runNext(); });
    const QString why = carryOut(step, window);
    if (!why.isEmpty())
        fail(describe(number, step) + QStringLiteral(": ") + why);
}

void ZrStepRunner::fail(const QString& message)
{
    d->error = message;
    // The process can only end once the dialog has.
    ZrApp::closeModalWidgets();
}
