#include "zrsteps.h"

#include "zrappenv.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>
#include <QRadioButton>
#include <QRegion>
#include <QStyleOptionButton>
#include <QTabBar>

#include "zrtabbar.h"
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>

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

// NAME@X,Y, split at the last "@" so that a name may hold one.
bool readTargetPoint(ZrStep* step)
{
    const int at = step->argument.lastIndexOf(QLatin1Char('@'));
    const QStringList coordinates = step->argument.mid(at + 1).split(QLatin1Char(','));
    if (at <= 0 || coordinates.size() != 2)
        return false;
    bool xOk = false;
    bool yOk = false;
    step->target = step->argument.left(at);
    step->point = QPoint(coordinates[0].trimmed().toInt(&xOk), coordinates[1].trimmed().toInt(&yOk));
    return xOk && yOk;
}

// Empty when the step is well formed, else why not.
QString readStep(const QString& written, ZrStep* step)
{
    step->text = written;
    const int colon = written.indexOf(QLatin1Char(':'));
    const QString verb = written.left(colon).trimmed();
    step->argument = colon < 0 ? QString() : written.mid(colon + 1);

    static const struct { const char* verb; ZrStep::Kind kind; } verbs[] = {
        {"click", ZrStep::Click},     {"key", ZrStep::Key},   {"type", ZrStep::Type},
        {"focus", ZrStep::Focus},     {"wait", ZrStep::Wait}, {"shot", ZrStep::Shot},
        {"close", ZrStep::Close},     {"clickat", ZrStep::ClickAt}, {"dblclickat", ZrStep::DoubleClickAt},
        {"hover", ZrStep::Hover},     {"select", ZrStep::Select},
    };
    const auto known = std::find_if(std::begin(verbs), std::end(verbs),
                                    [&verb](const auto& v) { return verb == QLatin1String(v.verb); });
    if (known == std::end(verbs))
        return QStringLiteral("unknown step; the steps are click:X, key:SEQ, type:TEXT, focus:X, wait:MS, "
                              "shot:FILE.png, close, clickat:NAME@X,Y, dblclickat:NAME@X,Y, hover:NAME@X,Y "
                              "and select:NAME=TEXT");
    step->kind = known->kind;

    switch (step->kind) {
    case ZrStep::ClickAt:
    case ZrStep::DoubleClickAt:
    case ZrStep::Hover:
        return readTargetPoint(step) ? QString()
                                     : verb + QStringLiteral(" needs NAME@X,Y, X and Y whole pixels");
    case ZrStep::Select: {
        // The first "=" ends the name: an item's text may hold one, an object name hardly ever does.
        const int equals = step->argument.indexOf(QLatin1Char('='));
        if (equals <= 0)
            return QStringLiteral("select needs NAME=TEXT");
        step->target = step->argument.left(equals);
        step->item = step->argument.mid(equals + 1);
        return {};
    }
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

// What a button says: its own text, else the text of a label it is the buddy of (a button that
// lays out its caption in labels of its own, as the task dialog's command buttons do).
QString buttonCaption(const QAbstractButton* button)
{
    if (!button->text().isEmpty())
        return button->text();
    for (const QLabel* label : button->findChildren<QLabel*>()) {
        if (label->buddy() == button && !label->text().isEmpty())
            return label->text();
    }
    return QString();
}

// The visible button whose object name, else caption, is `nameOrText`; an enabled one first.
QAbstractButton* findButton(QWidget* window, const QString& nameOrText)
{
    const auto buttons = window->findChildren<QAbstractButton*>();
    QAbstractButton* disabled = nullptr;
    for (const bool byName : {true, false}) {
        for (QAbstractButton* button : buttons) {
            if (!button->isVisible() || (byName ? button->objectName() : buttonCaption(button)) != nameOrText)
                continue;
            if (button->isEnabled())
                return button;
            disabled = disabled ? disabled : button;
        }
    }
    return disabled;
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

QWidget* findVisibleWidget(QWidget* window, const QString& name)
{
    const QList<QWidget*> named = window->findChildren<QWidget*>(name);
    const auto visible = std::find_if(named.begin(), named.end(), [](QWidget* widget) { return widget->isVisible(); });
    return visible == named.end() ? nullptr : *visible;
}

QString noVisibleWidget(const QString& name)
{
    return QStringLiteral("no visible widget named \"%1\"").arg(name);
}

// The mouse at one point of a widget, handed to its window as the window system hands it over: the
// widget under the pointer gets the events, enter and leave are sent, Qt records where the pointer is,
// and two quick clicks make a double click. QTest's functions for windows would turn the event loop
// between the move and the click, and with it the next step.
class Pointer
{
public:
    Pointer(QWidget* widget, QPoint point)
        : m_top(widget->window()),
          m_window(m_top->windowHandle()),
          m_local(widget->mapTo(m_top, point)),
          m_global(widget->mapToGlobal(point))
    {
    }

    void move() const
    {
        // The window is entered first, as the window system would say; Qt passes that on to the
        // widget under the pointer and its parents.
        if (m_window && !m_top->underMouse()) {
            QEnterEvent enter(m_local, m_local, m_global);
            QCoreApplication::sendEvent(m_window, &enter);
        }
        send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton);
    }

    void click(int times) const
    {
        for (int i = 0; i < times; ++i) {
            send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
            send(QEvent::MouseButtonRelease, Qt::NoButton, Qt::LeftButton);
        }
        // The next click, in this step or a later one, starts afresh.
        QTest::lastMouseTimestamp += QTest::mouseDoubleClickInterval;
    }

private:
    // A press may open a nested modal window and return only once it has gone, and the window
    // clicked may have gone with it.
    void send(QEvent::Type type, Qt::MouseButtons buttons, Qt::MouseButton button) const
    {
        if (m_window)
            qt_handleMouseEvent(m_window, m_local, m_global, buttons, button, type, Qt::NoModifier,
                                ++QTest::lastMouseTimestamp);
    }

    QPointer<QWidget> m_top;
    QPointer<QWindow> m_window;
    QPoint m_local;
    QPoint m_global;
};

void clickAt(QWidget* widget, QPoint point)
{
    const Pointer pointer(widget, point);
    pointer.move();
    pointer.click(1);
}

// Empty when the item was clicked, else why not.
QString clickItem(QAbstractItemView* view, const QModelIndex& item, const QString& what)
{
    if (!(item.flags() & Qt::ItemIsEnabled))
        return what + QStringLiteral(" is disabled");
    view->scrollTo(item);
    const QRect shown = view->visualRect(item).intersected(view->viewport()->rect());
    if (shown.isEmpty())
        return what + QStringLiteral(" is out of sight");
    clickAt(view->viewport(), shown.center());
    return {};
}

// The first item in the order of rows, then columns, then children.
QModelIndex findItem(const QAbstractItemModel* model, const QModelIndex& parent, const QString& text)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        for (int column = 0; column < model->columnCount(parent); ++column) {
            const QModelIndex item = model->index(row, column, parent);
            if (item.data(Qt::DisplayRole).toString() == text)
                return item;
        }
        const QModelIndex below = findItem(model, model->index(row, 0, parent), text);
        if (below.isValid())
            return below;
    }
    return {};
}

// In the combo box's list, where a user's choice is made: the only way to every signal of one.
QString chooseInComboBox(QComboBox* combo, int row, const QString& what)
{
    combo->showPopup();
    QString why = clickItem(combo->view(),
                            combo->model()->index(row, combo->modelColumn(), combo->rootModelIndex()), what);
    // An open list would take every later click of the run.
    if (combo->view()->isVisible()) {
        combo->hidePopup();
        if (why.isEmpty())
            why = what + QStringLiteral(": the list did not take the click");
    }
    return why;
}

int findTab(const QTabBar* bar, const QString& text)
{
    for (int i = 0; i < bar->count(); ++i) {
        if (bar->tabText(i) == text)
            return i;
    }
    return -1;
}

// By a click on the tab, which a dialog may refuse as it refuses a user's.
QString clickTab(QTabBar* bar, int tab, const QString& what)
{
    if (!bar->isTabEnabled(tab))
        return what + QStringLiteral(" is disabled");
    // The widest part of the tab that no scroll or close button covers.
    QRegion uncovered(bar->tabRect(tab).intersected(bar->rect()));
    for (const QWidget* button : bar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (button->isVisible())
            uncovered -= button->geometry();
    }
    const auto widest = std::max_element(uncovered.begin(), uncovered.end(),
                                         [](const QRect& a, const QRect& b) { return a.width() < b.width(); });
    if (widest == uncovered.end())
        return what + QStringLiteral(" is out of sight");
    clickAt(bar, widest->center());
    return {};
}

// The module's painted bar keeps the shape of each tab as it was last painted: a click in its middle.
QString clickTab(ZrTabBar* bar, const QString& text, const QString& what)
{
    bar->repaint();
    for (int i = 0; i < bar->count(); ++i) {
        if (bar->tabText(i) != text)
            continue;
        const QVector<QPoint> shape = bar->tabPolygon(i);
        if (shape.size() != 4)
            return what + QStringLiteral(" is out of sight");
        clickAt(bar, QPoint((shape[0].x() + shape[2].x()) / 2, bar->height() / 2));
        return {};
    }
    return QStringLiteral("no item ") + what;
}

// Empty when the item was chosen, else why not.
QString selectItem(QWidget* widget, const QString& text)
{
    const QString name = widget->objectName();
    const QString what = QStringLiteral("\"%1\" in \"%2\"").arg(text, name);
    const QString noItem = QStringLiteral("no item ") + what;
    if (!widget->isEnabled())
        return QStringLiteral("\"%1\" is disabled").arg(name);
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        const int row = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
        return row < 0 ? noItem : chooseInComboBox(combo, row, what);
    }
    if (auto* bar = qobject_cast<ZrTabBar*>(widget))
        return clickTab(bar, text, what);
    auto* tabs = qobject_cast<QTabWidget*>(widget);
    if (QTabBar* bar = tabs ? tabs->tabBar() : qobject_cast<QTabBar*>(widget)) {
        const int tab = findTab(bar, text);
        return tab < 0 ? noItem : clickTab(bar, tab, what);
    }
    if (auto* view = qobject_cast<QAbstractItemView*>(widget)) {
        const QModelIndex item = view->model() ? findItem(view->model(), view->rootIndex(), text) : QModelIndex();
        return item.isValid() ? clickItem(view, item, what) : noItem;
    }
    return QStringLiteral("\"%1\" is not a combo box, tab widget, tab bar, list or tree view").arg(name);
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
            return QStringLiteral("no visible button named or labelled \"%1\"").arg(step.argument);
        if (!button->isEnabled())
            return QStringLiteral("\"%1\" is disabled").arg(step.argument);
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
        QWidget* widget = findVisibleWidget(window, step.argument);
        if (!widget)
            return noVisibleWidget(step.argument);
        widget->setFocus(Qt::OtherFocusReason);
        return {};
    }
    case ZrStep::ClickAt:
    case ZrStep::DoubleClickAt:
    case ZrStep::Hover: {
        QWidget* widget = findVisibleWidget(window, step.target);
        if (!widget)
            return noVisibleWidget(step.target);
        if (!widget->rect().contains(step.point))
            return QStringLiteral("%1,%2 lies outside \"%3\", which is %4x%5 pixels")
                .arg(step.point.x())
                .arg(step.point.y())
                .arg(step.target)
                .arg(widget->width())
                .arg(widget->height());
        const Pointer pointer(widget, step.point);
        pointer.move();
        if (step.kind != ZrStep::Hover)
            pointer.click(step.kind == ZrStep::DoubleClickAt ? 2 : 1);
        return {};
    }
    case ZrStep::Select: {
        QWidget* widget = findVisibleWidget(window, step.target);
        return widget ? selectItem(widget, step.item) : noVisibleWidget(step.target);
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
