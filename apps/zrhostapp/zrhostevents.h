#pragma once
// The host's events as the windows of the reference host take them: gathered over one turn of the
// event loop and told once, so that a change of many objects costs one refresh.

#include <QObject>
#include <memory>

class ZrHostEvents : public QObject
{
    Q_OBJECT
public:
    // Listens to the host until destroyed; the host must outlive it.
    explicit ZrHostEvents(QObject* parent = nullptr);
    ~ZrHostEvents() override;

Q_SIGNALS:
    // `kinds`: the union of the ZrGlobalUIEventKind values that came.
    void changed(qint64 kinds);

private:
    struct Data;
    std::unique_ptr<Data> d;
};
