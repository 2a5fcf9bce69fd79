#pragma once
// The reference host's two tab bars, as a host writes them on the module's bar: the documents above
// the drawing (the start tab, a tab per open drawing, "+" for a new one; tabs torn out into windows
// and brought back) and "LayoutTabBar" below it (model space and the layouts of the drawing).

#include "zrdetachtabbar.h"

#include <functional>

class CXuDocument;
class ZrDbDatabase;

class ZrDocumentTabBar : public ZrDetachTabBar
{
    Q_OBJECT
public:
    explicit ZrDocumentTabBar(QWidget* parent = nullptr);
    ~ZrDocumentTabBar() override;

    // A tab for `document`, named `name` (`tip` the full name or path), before "+"; it becomes current.
    int addDocument(CXuDocument* document, const QString& name, const QString& tip);
    // The document of a tab; null for the start tab and "+".
    CXuDocument* documentAt(int index) const;
    int indexOf(const CXuDocument* document) const;
    // The picture a torn-out drawing shows in its window.
    void setPictureSource(std::function<QPixmap(CXuDocument*)> picture);

Q_SIGNALS:
    void newDrawingRequested();
    // The cross of the tab at `index`; the owner asks and removes the tab.
    void closeRequested(int index);

protected:
    void on_NewClicked() override;
    bool closeClicked(int index, const QPoint& pos) override;
    QWidget* detachTab(int index) override;
    void attachWindow(QWidget* window, int index) override;

private:
    // Makes the tab at `index` current and tells the owner, even when the index itself stays.
    void showTab(int index);

    std::function<QPixmap(CXuDocument*)> m_picture;
};

class ZrLayoutTabBar : public ZrTabBar
{
    Q_OBJECT
public:
    explicit ZrLayoutTabBar(QWidget* parent = nullptr);

    // The model tab and the layouts of `database` in their tab order; the current one follows TILEMODE
    // and the current layout. Empty without a drawing.
    void showDrawing(ZrDbDatabase* database);

Q_SIGNALS:
    // The user switched to model space or a layout of the drawing shown.
    void spaceChanged();

private:
    void switchSpace(int index);

    ZrDbDatabase* m_database = nullptr;
};
