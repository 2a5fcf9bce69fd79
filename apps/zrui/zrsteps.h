#pragma once
// The --do steps of zrui: what a person would do to a dialog, carried out once it is up.

#include <QKeySequence>
#include <QObject>
#include <QString>
#include <QVector>
#include <memory>

struct ZrStep
{
    enum Kind { Click, Key, Type, Focus, Wait, Shot, Close };
    Kind kind = Close;
    QString text;     // as written, for messages
    QString argument; // what follows the ":"
    QKeySequence keys;
    int milliseconds = 0;
};

// Splits STEPS on ";" ("\;" is a literal semicolon) and checks each step;
// on a bad step `error` names it by its 1-based index and text.
bool parseSteps(const QString& text, QVector<ZrStep>* steps, QString* error);

// Carries the steps out on the modal dialog once it is up, one step per turn of the event loop,
// so that what a step starts (an animated click, a nested dialog) can happen before the next.
class ZrStepRunner : public QObject
{
public:
    // `timeoutMs` below 0 means no time limit.
    ZrStepRunner(QVector<ZrStep> steps, QString screenshotFile, int timeoutMs);
    ~ZrStepRunner() override;

    // Starts watching for the dialog; call before the dialog runs.
    void start();
    // What went wrong, naming the step; empty while all went well.
    QString error() const;

private:
    void runNext();
    void fail(const QString& message);

    struct Data;
    std::unique_ptr<Data> d;
};
