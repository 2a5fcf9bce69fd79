#pragma once
// The --do steps of zrui: what a person would do to a dialog, carried out once it is up.

#include <QKeySequence>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QVector>
#include <functional>
#include <memory>

struct ZrStep
{
    enum Kind { Click, Key, Type, Focus, Wait, Shot, Close, ClickAt, DoubleClickAt, Hover, Select };
    Kind kind = Close;
    QString text;     // as written, for messages
    QString argument; // what follows the ":"
    QString target;   // the object name before "@" or "="
    QPoint point;     // after "@", in the target's own pixels
    QString item;     // after "=", the text of the item to choose
    QKeySequence keys;
    int milliseconds = 0;
};

// Splits STEPS on ";" ("\;" is a literal semicolon) and checks each step;
// on a bad step `error` names it by its 1-based index and text.
bool parseSteps(const QString& text, QVector<ZrStep>* steps, QString* error);

// Carries the steps out once the dialog is up, one step per turn of the event loop, each on the
// topmost modal window of its time: a step that opens a nested modal window returns only when that
// window is gone, and the nested window's event loop carries the next steps out on it.
class ZrStepRunner : public QObject
{
public:
    // `timeoutMs` below 0 means no time limit.
    ZrStepRunner(QVector<ZrStep> steps, QString screenshotFile, int timeoutMs);
    ~ZrStepRunner() override;

    // Told the title and text of each message box as it comes up; set before start().
    void onMessageBox(std::function<void(const QString& title, const QString& text)> report);
    // Starts watching for the dialog; call before the dialog runs.
    void start();
    // What went wrong, naming the step; empty while all went well.
    QString error() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void runNext();
    void fail(const QString& message);

    struct Data;
    std::unique_ptr<Data> d;
};
