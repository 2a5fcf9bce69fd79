#pragma once
// The command line: shows what reaches the host's menu-macro queue and what ran,
// and queues what is typed into it.

#include <QWidget>
#include <memory>

class ZrCommandPanel : public QWidget
{
public:
    explicit ZrCommandPanel(QWidget* parent = nullptr);
    ~ZrCommandPanel() override;

    void appendLine(const QString& line);

private:
    struct Data;
    std::unique_ptr<Data> d;
};
