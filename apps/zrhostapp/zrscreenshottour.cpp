#include "zrscreenshottour.h"

#include "zrappenv.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdialogrun.h"
#include "zrdocument.h"
#include "zrdocumenttabbar.h"
#include "zrdrawingcontrol.h"
#include "zrdrawingview.h"
#include "zrhostmainwindow.h"
#include "zrlayercombobox.h"
#include "zrsavefile.h"
#include "zrui.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QWindow>

#include <algorithm>
#include <memory>

namespace {

bool savePng(const QPixmap& picture, const QString& file)
{
    QByteArray png;
    QBuffer buffer(&png);
    QString error;
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG") || !zrHostSaveFile(file, png, &error)) {
        ZrApp::printLine(stderr, QStringLiteral("zrhostapp: cannot write %1").arg(error.isEmpty() ? file : error));
        return false;
    }
    ZrApp::printLine(stdout, file);
    return true;
}

bool saveGrab(QWidget* widget, const QString& file) { return savePng(widget->grab(), file); }

// How long the window may take to show the selection, and a dialog its content.
constexpr int kSettleMs = 5000;

struct Candidate
{
    ZrDbObjectId id, layer;
    double minX, minY, maxX, maxY;

    double size() const { return std::max(maxX - minX, maxY - minY); }
};

bool isOnLockedLayer(ZrDbObjectId layer)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> record(layer, ZrDb::kForRead);
    return record && record->isLocked();
}

// The entities a user would pick to show the layer box: none on a locked layer, none reaching into
// the outer tenth of the drawing, where frames and site boundaries lie. Larger ones first.
std::vector<Candidate> pickableCandidates()
{
    std::vector<Candidate> all;
    for (ZrDbObjectId id : ZrHostControl::entitiesOfCurrentSpace()) {
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        Candidate c{id, entity ? entity->layerId() : ZrDbObjectId(), 0, 0, 0, 0};
        if (entity && ZrHostControl::entityExtents(entity.object(), c.minX, c.minY, c.maxX, c.maxY))
            all.push_back(c);
    }
    if (all.empty())
        return all;
    Candidate whole = all.front();
    for (const Candidate& c : all) {
        whole.minX = std::min(whole.minX, c.minX);
        whole.minY = std::min(whole.minY, c.minY);
        whole.maxX = std::max(whole.maxX, c.maxX);
        whole.maxY = std::max(whole.maxY, c.maxY);
    }
    const double marginX = (whole.maxX - whole.minX) / 10;
    const double marginY = (whole.maxY - whole.minY) / 10;
    std::vector<Candidate> inner;
    for (const Candidate& c : all) {
        if (c.minX >= whole.minX + marginX && c.maxX <= whole.maxX - marginX && c.minY >= whole.minY + marginY
            && c.maxY <= whole.maxY - marginY && !isOnLockedLayer(c.layer))
            inner.push_back(c);
    }
    std::stable_sort(inner.begin(), inner.end(), [](const Candidate& a, const Candidate& b) { return a.size() > b.size(); });
    return inner;
}

// Where to click for two entities on different layers: a large outline, then a piece at most half
// its size on another layer, so that both highlights read clearly. False when the view has no such
// pair in sight.
bool twoOnDifferentLayers(const ZrDrawingView* view, QPoint clicks[2])
{
    const std::vector<Candidate> candidates = pickableCandidates();
    const auto first = std::find_if(candidates.begin(), candidates.end(),
                                    [&](const Candidate& c) { return view->pickPoint(c.id, &clicks[0]); });
    if (first == candidates.end())
        return false;
    return std::any_of(first + 1, candidates.end(), [&](const Candidate& c) {
        return c.layer != first->layer && c.size() <= first->size() / 2 && view->pickPoint(c.id, &clicks[1]);
    });
}

// Clicks two entities on different layers as a user would.
bool clickTwoOnDifferentLayers(ZrDrawingView* view)
{
    QPoint clicks[2];
    if (!twoOnDifferentLayers(view, clicks))
        return false;
    QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, clicks[0]);
    QTest::mouseClick(view, Qt::LeftButton, Qt::ShiftModifier, clicks[1]);
    return true;
}

size_t selectionSize()
{
    return zrDocManagerPtr()->curDocument()->context()->pickFirst().size();
}

// Two objects selected and the layer box blank: the host's events have reached the window.
bool showsTwoLayers(const ZrHostMainWindow* window)
{
    return selectionSize() == 2 && window->layerBox()->currentText().isEmpty();
}

// A message box over the window, grabbed once it is up and closed as its close button would.
bool writeMessageBox(ZrHostMainWindow* window, const QString& file)
{
    QObject boxWatch;
    bool written = false;
    ZrApp::whenModalShown(&boxWatch, [&file, &written](QWidget* box) {
        written = saveGrab(box, file);
        box->close();
    });
    const ZrJsonPtr answer = zruiMessageBoxEx(L"ZrQtBaseUtils", L"图纸“平面图-1”已修改。\n是否在关闭前保存更改？",
                                              nullptr, 3, 1, 32, window);
    const QString line = QString::fromUtf8(ZrApp::answerLine(nullptr, answer));
    window->appendToCommandLine(line);
    ZrApp::printLine(stdout, line);
    return written;
}

// The main window with `dialog` drawn where it stands over it, saved to `file`; then the dialog is
// closed as its close button would.
bool saveDialogOverWindow(ZrHostMainWindow* window, QWidget* dialog, const QString& file)
{
    QPixmap picture = window->grab();
    QPainter painter(&picture);
    painter.drawPixmap(window->mapFromGlobal(dialog->mapToGlobal(QPoint(0, 0))), dialog->grab());
    painter.end();
    const bool written = savePng(picture, file);
    dialog->close();
    return written;
}

// A dialog of the module over the main window, drawn once `ready` says it is (at once without it).
bool writeDialog(ZrHostMainWindow* window, const QString& file, const QString& name, const ZrJsonPtr& param,
                 std::function<bool(QWidget*)> ready = nullptr)
{
    QObject dialogWatch;
    bool written = false;
    ZrApp::whenModalShown(&dialogWatch, [window, &file, &written, ready](QWidget* dialog) {
        const auto grab = [window, &file, &written, dialog] { written = saveDialogOverWindow(window, dialog, file); };
        if (!ready)
            return grab();
        auto waited = std::make_shared<QElapsedTimer>();
        waited->start();
        ZrApp::when(dialog, [dialog, ready, waited] { return ready(dialog) || waited->hasExpired(kSettleMs); }, grab);
    });
    const ZrJsonPtr answer = ZrApp::runDialog(name, param, window);
    const QString line = QString::fromUtf8(ZrApp::answerLine(param, answer));
    window->appendToCommandLine(line);
    ZrApp::printLine(stdout, line);
    return written;
}

// The colour dialog on the tab its colour opens.
bool writeColorDialog(ZrHostMainWindow* window, const QString& file, const ZrJsonPtr& param)
{
    return writeDialog(window, file, QStringLiteral("ColorDialog"), param);
}

// The file dialog of an export to PDF, with the export panel in place of the preview, in `folder`.
bool writeExportPanel(ZrHostMainWindow* window, const QString& file, const QString& folder)
{
    const ZrJsonPtr param = ElementValue::createObject(2);
    param->SetDataB("Open", false);
    param->SetDataB("bExport", true);
    param->SetDataB("bPreview", false);
    param->SetDataSW("caption", ZrString(L"输出 PDF"));
    param->SetDataSW("filter", ZrString(L"PDF (*.pdf)"));
    param->SetDataSW("defFilter", ZrString(L"PDF (*.pdf)"));
    param->SetDataSW("dir", ZrString(folder));
    return writeDialog(window, file, QStringLiteral("FileDialogBox"), param);
}

// An open of images on a folder with one floor plan picture of our own, the side bar on
// the left and the picture's preview on the right, drawn once the list and the preview are filled.
bool writeFileDialog(ZrHostMainWindow* window, const QString& file)
{
    QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("平面图.svg"));
    QString error;
    const QByteArray plan = R"(<svg xmlns="http://www.w3.org/2000/svg" width="300" height="200" viewBox="0 0 300 200">
<rect width="300" height="200" fill="#ffffff"/>
<g fill="none" stroke="#2d3a4a" stroke-width="6"><rect x="20" y="20" width="260" height="160"/>
<path d="M150 20 V110 M20 110 H110 M190 110 H280 M150 150 V180"/></g>
<g fill="#c9dcef"><rect x="26" y="26" width="118" height="78"/><rect x="156" y="26" width="118" height="78"/></g>
<path d="M110 110 A40 40 0 0 1 150 70" fill="none" stroke="#7a8694" stroke-width="2"/>
<text x="60" y="150" font-size="18" fill="#2d3a4a">客厅</text><text x="200" y="150" font-size="18" fill="#2d3a4a">卧室</text>
</svg>)";
    if (!folder.isValid() || !zrHostSaveFile(picture, plan, &error)) {
        ZrApp::printLine(stderr, QStringLiteral("zrhostapp: %1").arg(error));
        return false;
    }
    const ZrJsonPtr param = ElementValue::createObject(2);
    param->SetDataB("Open", true);
    param->SetDataSW("caption", ZrString(L"打开图纸"));
    param->SetDataSW("filter", ZrString(L"图像 (*.svg *.png);;图纸 (*.dwg)"));
    param->SetDataSW("dir", ZrString(folder.path()));
    param->SetDataSW("saveDefName", ZrString(picture));
    const auto filled = [](QWidget* dialog) {
        const auto* preview = dialog->findChild<QLabel*>(QStringLiteral("previewLabel"));
        const auto* view = dialog->findChild<QTreeView*>();
        return preview && !preview->pixmap(Qt::ReturnByValue).isNull() && view
            && view->model()->rowCount(view->rootIndex()) == 1;
    };
    return writeDialog(window, file, QStringLiteral("FileDialogBox"), param, filled);
}

// The lineweight settings as 格式 → 线宽… opens them, over the main window, closed as their close
// button would, so that the drawing keeps its settings.
bool writeLineWeightDialog(ZrHostMainWindow* window, const QString& file)
{
    QObject dialogWatch;
    bool written = false;
    ZrApp::whenModalShown(&dialogWatch, [window, &file, &written](QWidget* dialog) {
        written = saveDialogOverWindow(window, dialog, file);
    });
    window->openLineWeightSettings();
    return written;
}

// A true colour without book names, which opens the dialog on the true colour tab.
const char kTrueColorParam[] = R"({"method":194,"rgb":16748574})";

// A colour of the shipped book "ZR Design", which opens the dialog on the book tab at its page.
const char kBookColorParam[] =
    R"({"method":194,"rgb":4958164,"colorName":"ZR 130 Saffron 9","bookName":"ZR Design"})";

// The document tabs with two more drawings, one named beyond the width a tab shows, the sample's tab
// current: the start tab, the tabs, one elided, and "+". The bar as it stands over the drawing.
bool writeTabBar(ZrHostMainWindow* window, const QString& file)
{
    ZrDocumentTabBar* tabs = window->documentTabs();
    const int sample = tabs->currentIndex();
    window->newDrawing();
    CXuDocument* named = window->newDrawing();
    tabs->setTabText(tabs->indexOf(named), QStringLiteral("一层平面图 - 结构与给排水专业会审修订版 (第三次修改, 2026年11月).dwg"));
    tabs->setCurrentIndex(sample);
    tabs->repaint();
    return saveGrab(tabs, file);
}

} // namespace

void takeScreenshots(ZrHostMainWindow* window, const QString& dir)
{
    // A platform that tells nothing of exposure goes straight on.
    const auto exposed = [window] { return !window->windowHandle() || window->windowHandle()->isExposed(); };
    ZrApp::when(window, exposed, [window, dir] {
        QDir().mkpath(dir);
        if (!clickTwoOnDifferentLayers(window->drawingView())) {
            ZrApp::printLine(stderr, QStringLiteral("zrhostapp: no two entities on different layers in sight"));
            return QApplication::exit(1);
        }
        // The host tells the window of the new selection from the event loop.
        auto waited = std::make_shared<QElapsedTimer>();
        waited->start();
        const auto settled = [window, waited] { return showsTwoLayers(window) || waited->hasExpired(kSettleMs); };
        ZrApp::when(window, settled, [window, dir] {
            if (!showsTwoLayers(window)) {
                ZrApp::printLine(stderr, QStringLiteral("zrhostapp: two clicks selected %1 entities and the layer box "
                                                        "shows \"%2\"")
                                             .arg(selectionSize())
                                             .arg(window->layerBox()->currentText()));
                return QApplication::exit(1);
            }
            const QDir out(dir);
            const bool written = saveGrab(window, out.filePath(QStringLiteral("main-window.png")))
                && writeMessageBox(window, out.filePath(QStringLiteral("message-box.png")))
                && writeColorDialog(window, out.filePath(QStringLiteral("color-dialog.png")),
                                    ZrApp::sampleParam(QStringLiteral("ColorDialog")))
                && writeColorDialog(window, out.filePath(QStringLiteral("color-dialog-true.png")),
                                    ElementValue::parse(kTrueColorParam))
                && writeColorDialog(window, out.filePath(QStringLiteral("color-dialog-book.png")),
                                    ElementValue::parse(kBookColorParam))
                && writeDialog(window, out.filePath(QStringLiteral("task-dialog.png")), QStringLiteral("TaskDialog"),
                               ZrApp::sampleParam(QStringLiteral("TaskDialog")))
                && writeExportPanel(window, out.filePath(QStringLiteral("export-panel.png")), out.path())
                && writeFileDialog(window, out.filePath(QStringLiteral("file-dialog.png")))
                && writeLineWeightDialog(window, out.filePath(QStringLiteral("lineweight-dialog.png")))
                // Last: it opens two more drawings.
                && writeTabBar(window, out.filePath(QStringLiteral("tab-bar.png")));
            QApplication::exit(written ? 0 : 1);
        });
    });
}
