// Drawings built in code: the sample drawing (a small flat with its title sheet) and the generated
// drawings of the benchmarks. Lengths of the plan are millimetres.

#include "zrdbfile.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"

#include <cmath>
#include <memory>
#include <utility>

namespace {

constexpr double kPi = 3.14159265358979323846;

ZrCmColor aci(int index)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(static_cast<uint16_t>(index));
    return color;
}

ZrCmColor rgb(int red, int green, int blue)
{
    ZrCmColor color;
    color.setRGB(uint8_t(red), uint8_t(green), uint8_t(blue));
    return color;
}

ZrCmColor byBlock()
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByBlock);
    return color;
}

ZrGePoint3d pt(double x, double y) { return ZrGePoint3d(x, y, 0.0); }

// A chain of extended data from (code, value) pairs: texts for codes below 1040, integers above.
ZrResBuf* xdataChain(std::initializer_list<std::pair<int, const wchar_t*>> groups)
{
    ZrResBuf* head = nullptr;
    ZrResBuf** tail = &head;
    for (const auto& group : groups) {
        auto* rb = zrutNewRb(group.first);
        if (group.first < 1040) {
            zrrbSetString(rb, ZrString(group.second));
            rb->restype = static_cast<short>(group.first);
        } else {
            rb->resval.rint = static_cast<short>(std::wcstol(group.second, nullptr, 10));
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

enum LayerFlag { kPlain = 0, kOff = 1, kFrozen = 2, kLocked = 4, kHidden = 8, kNoPlot = 16 };

class SampleBuilder
{
public:
    explicit SampleBuilder(ZrDbDatabase* database) : m_db(database), m_data(zrdbData(database)) {}

    void build()
    {
        addLinetypes();
        addNamedObjects();
        addTextStyles();
        addLayers();
        addStyles();
        addBlocks();
        addPlan();
        addPaperSheets();
        addViewsAndUcs();
        ZrDbVariableValue scale = m_data.variable(kVarLtscale);
        scale.real = 50.0;
        m_data.storeVariable(kVarLtscale, scale);
    }

private:
    template <class Record>
    ZrDbObjectId record(ZrDbObjectId table, const wchar_t* name, Record* record)
    {
        record->setName(ZrString(name));
        ZrDbObjectPointer<ZrDbSymbolTable> open(table, ZrDb::kForWrite);
        ZrDbObjectId id;
        if (open->add(record, &id) != Zr::eOk) {
            delete record;
            return ZrDbObjectId();
        }
        record->close();
        return id;
    }

    ZrDbObjectId entry(ZrDbObjectId dictionary, const wchar_t* name, ZrDbObject* object)
    {
        ZrDbObjectPointer<ZrDbDictionary> open(dictionary, ZrDb::kForWrite);
        ZrDbObjectId id;
        if (open->setAt(ZrString(name), object, id) != Zr::eOk) {
            delete object;
            return ZrDbObjectId();
        }
        object->close();
        return id;
    }

    ZrDbObjectId linetype(const wchar_t* name, const wchar_t* comments, std::vector<double> dashes)
    {
        auto* record = new ZrDbLinetypeTableRecord;
        record->setComments(ZrString(comments));
        record->setDashes(std::move(dashes));
        return this->record(m_db->linetypeTableId(), name, record);
    }

    void addLinetypes()
    {
        m_center = linetype(L"CENTER", L"Center ____ _ ____ _ ____ _ ____", {31.75, -6.35, 6.35, -6.35});
        m_dashed = linetype(L"DASHED", L"Dashed __ __ __ __ __ __ __ __", {12.7, -6.35});
        linetype(L"DASHED2", L"Dashed (.5x) _ _ _ _ _ _ _ _ _ _", {6.35, -3.175});
        m_hidden = linetype(L"HIDDEN", L"Hidden __ __ __ __ __ __ __", {6.35, -3.175});
        m_dot = linetype(L"DOT", L"Dot . . . . . . . . . . . . . .", {0.0, -6.35});
        m_phantom = linetype(L"PHANTOM", L"Phantom ______  __  __  ______", {31.75, -6.35, 6.35, -6.35, 6.35, -6.35});
        linetype(L"DASHDOT", L"Dash dot __ . __ . __ . __ . __", {12.7, -6.35, 0.0, -6.35});
        linetype(L"BORDER", L"Border __ __ . __ __ . __ __ .", {12.7, -6.35, 12.7, -6.35, 0.0, -6.35});
        linetype(L"DIVIDE", L"Divide ____ . . ____ . . ____", {12.7, -6.35, 0.0, -6.35, 0.0, -6.35});
        linetype(L"XREF|DASHED", L"Dashed __ __ __ __ __ __ __ __", {12.7, -6.35});
    }

    void addNamedObjects()
    {
        for (const wchar_t* name : {L"混凝土", L"Wood - Oak", L"Glass - Clear", L"Brick"}) {
            auto* material = new ZrDbMaterial;
            material->setName(ZrString(name));
            const ZrDbObjectId id = entry(m_db->materialDictionaryId(), name, material);
            if (!m_concrete.isValid())
                m_concrete = id;
        }
        for (const wchar_t* name : {L"粗线", L"细线", L"灰度 50%", L"Style 1"})
            entry(m_db->plotStyleNameDictionaryId(), name, new ZrDbPlaceHolder);
    }

    ZrDbObjectId textStyle(const wchar_t* name, const wchar_t* font, const wchar_t* bigFont, double size,
                           double xScale = 1.0, double oblique = 0.0, bool vertical = false)
    {
        auto* style = new ZrDbTextStyleTableRecord;
        style->setFileName(ZrString(font));
        style->setBigFontFileName(ZrString(bigFont));
        style->setTextSize(size);
        style->setXScale(xScale);
        style->setObliquingAngle(oblique);
        style->setIsVertical(vertical);
        return record(m_db->textStyleTableId(), name, style);
    }

    void setXData(ZrDbObjectId id, ZrResBuf* chain)
    {
        ZrDbObjectPointer<ZrDbObject> open(id, ZrDb::kForWrite);
        open->setXData(chain);
        zrutRelRb(chain);
    }

    void addTextStyles()
    {
        for (const wchar_t* name : {L"AcadAnnotative", L"AcadAnnoPO", L"ZR_SAMPLE"})
            record(m_db->regAppTableId(), name, new ZrDbRegAppTableRecord);
        m_roomText = textStyle(L"房间名称", L"gbenor.shx", L"gbcbig.shx", 350.0);
        m_noteText = textStyle(L"说明文字", L"simfang.ttf", L"", 250.0, 0.7);
        m_titleText = textStyle(L"标题", L"simhei.ttf", L"", 5.0);
        textStyle(L"斜体", L"italic.shx", L"", 0.0, 1.0, 0.2618);
        textStyle(L"竖排", L"gbenor.shx", L"gbcbig.shx", 0.0, 1.0, 0.0, true);
        textStyle(L"XREF|Standard", L"txt.shx", L"gbcbig.shx", 0.0);
        const ZrDbObjectId annotative = textStyle(L"Annotative", L"txt.shx", L"gbcbig.shx", 0.0);
        setXData(annotative, xdataChain({{1001, L"AcadAnnotative"}, {1000, L"AnnotativeData"}, {1002, L"{"},
                                         {1070, L"1"}, {1070, L"1"}, {1002, L"}"}}));
        setXData(annotative, xdataChain({{1001, L"AcadAnnoPO"}, {1070, L"1"}}));
        // Annotative data of a shape the readers must not take for annotative.
        const ZrDbObjectId broken = textStyle(L"注释性-损坏", L"txt.shx", L"gbcbig.shx", 0.0);
        setXData(broken, xdataChain({{1001, L"AcadAnnotative"}, {1000, L"AnnotativeData"}, {1002, L"{"},
                                     {1070, L"1"}}));
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> mirrored(textStyle(L"镜像", L"txt.shx", L"", 0.0), ZrDb::kForWrite);
        mirrored->setTextGenerationFlags(true, true);
    }

    ZrDbObjectId layer(const wchar_t* name, const ZrCmColor& color, ZrDbObjectId linetype, int weight, int flags = kPlain,
                       const wchar_t* description = L"", const wchar_t* plotStyle = L"Normal")
    {
        auto* record = new ZrDbLayerTableRecord;
        record->setColor(color);
        record->setLinetypeObjectId(linetype.isValid() ? linetype : m_db->continuousLinetype());
        record->setLineWeight(static_cast<ZrDb::LineWeight>(weight));
        record->setIsOff(flags & kOff);
        record->setIsFrozen(flags & kFrozen);
        record->setIsLocked(flags & kLocked);
        record->setIsHidden(flags & kHidden);
        record->setIsPlottable(!(flags & kNoPlot));
        record->setDescription(ZrString(description));
        record->setPlotStyleName(ZrString(plotStyle));
        record->setMaterialId(m_data.recordNamed(ZrDbRecordKind::kMaterial, ZrString(L"Global"))
                                  ? ZrDbObjectId(m_data.recordNamed(ZrDbRecordKind::kMaterial, ZrString(L"Global")))
                                  : ZrDbObjectId());
        return this->record(m_db->layerTableId(), name, record);
    }

    void addLayers()
    {
        const ZrDbObjectId none;
        m_axis = layer(L"轴线", aci(1), m_center, 18, kPlain, L"定位轴线");
        m_walls = layer(L"墙体", aci(7), none, 50, kPlain, L"承重墙与隔墙", L"粗线");
        m_doors = layer(L"门窗", aci(4), none, 25);
        m_furniture = layer(L"家具", aci(6), none, 18);
        m_dims = layer(L"标注", aci(3), none, 18);
        m_text = layer(L"文字", aci(7), none, 25);
        m_hatch = layer(L"填充", aci(8), none, 13, kPlain, L"", L"灰度 50%");
        m_beams = layer(L"梁", aci(5), m_hidden, 18, kPlain, L"上部梁线");
        m_ceiling = layer(L"吊顶", aci(30), m_dashed, 13);
        m_frame = layer(L"图框", aci(7), none, 35);
        m_viewports = layer(L"视口", aci(9), none, -3, kNoPlot);
        layer(L"Defpoints", aci(7), none, -3, kNoPlot);
        m_columns = layer(L"S-COLS", aci(2), none, 35);
        m_grid = layer(L"S-GRID", aci(1), m_center, 13);
        m_lights = layer(L"E-LITE", aci(40), none, 13);
        m_pipes = layer(L"P-PIPE", aci(150), m_dashed, 25);
        m_hvac = layer(L"M-HVAC", aci(140), m_hidden, 18);
        m_property = layer(L"C-PROP", aci(3), m_phantom, 35, kPlain, L"用地红线");
        m_trees = layer(L"L-PLNT", aci(82), none, 13);
        m_floor = layer(L"A-FLOR", rgb(180, 120, 60), none, 13, kPlain, L"地面材料");
        m_area = layer(L"A-AREA", aci(211), m_dot, 9, kOff, L"面积计算");
        m_old = layer(L"A-OLD", aci(8), none, 13, kFrozen, L"原有建筑");
        m_base = layer(L"A-BASE", aci(251), none, 9, kLocked, L"底图");
        layer(L"A-NOTE", aci(7), none, 18, kOff | kLocked);
        layer(L"隐藏图层", aci(7), none, -3, kHidden);
        layer(L"*SYSTEM_LIGHTS", aci(7), none, -3);
        m_xrefWalls = layer(L"XREF|A-WALL", aci(7), none, 50);
        layer(L"XREF|A-DOOR", aci(4), none, 25);
        layer(L"XREF|0", aci(7), none, -3);
        layer(L"XREF|A-GRID", aci(1), m_center, 13, kFrozen);
        layer(L"A-GLAZ", rgb(0, 160, 220), none, 18, kPlain, L"玻璃");
        layer(L"A-ROOF", aci(7), m_dashed, 25, kOff);
    }

    void addStyles()
    {
        auto* architectural = new ZrDbDimStyleTableRecord;
        architectural->setDimtxsty(m_noteText);
        architectural->setDimscale(100.0);
        record(m_db->dimStyleTableId(), L"建筑", architectural);
        auto* iso = new ZrDbDimStyleTableRecord;
        iso->setDimtxsty(m_db->textstyle());
        record(m_db->dimStyleTableId(), L"ISO-25", iso);
        auto* radial = new ZrDbDimStyleTableRecord;
        radial->setDimtxsty(m_db->textstyle());
        record(m_db->dimStyleTableId(), L"ISO-25$4", radial);
        auto* dependent = new ZrDbDimStyleTableRecord;
        dependent->setDimtxsty(m_db->textstyle());
        record(m_db->dimStyleTableId(), L"XREF|ISO-25", dependent);
        // Dimensions of the plan take the architectural style as they are made.
        ZrDbVariableValue current = m_data.variable(kVarDimstyle);
        current.integer = m_data.recordNamed(ZrDbRecordKind::kDimStyle, ZrString(L"建筑"));
        m_data.storeVariable(kVarDimstyle, current);
        m_db->setDimstyleData(ZrDbObjectId(current.integer));

        auto* schedule = new ZrDbTableStyle;
        schedule->setName(ZrString(L"门窗表"));
        schedule->createCellStyle(ZrString(L"备注"));
        m_scheduleStyle = entry(m_db->tableStyleDictionaryId(), L"门窗表", schedule);
        auto* plain = new ZrDbTableStyle;
        plain->setName(ZrString(L"Table 2"));
        entry(m_db->tableStyleDictionaryId(), L"Table 2", plain);

        auto* notes = new ZrDbMLeaderStyle;
        notes->setName(ZrString(L"引线说明"));
        notes->setTextStyleId(m_noteText);
        m_leaderStyle = entry(m_db->mleaderStyleDictionaryId(), L"引线说明", notes);
        auto* annotative = new ZrDbMLeaderStyle;
        annotative->setName(ZrString(L"Annotative"));
        annotative->setTextStyleId(m_db->textstyle());
        entry(m_db->mleaderStyleDictionaryId(), L"Annotative", annotative);
    }

    // Adds an entity to a block with its layer and the properties it does not take by layer.
    template <class Entity>
    ZrDbObjectId add(ZrDbObjectId block, Entity* entity, ZrDbObjectId layer)
    {
        entity->setLayer(layer, true, true);
        ZrDbObjectPointer<ZrDbBlockTableRecord> open(block, ZrDb::kForWrite);
        ZrDbObjectId id;
        if (open->appendZrDbEntity(id, entity) != Zr::eOk) {
            delete entity;
            return ZrDbObjectId();
        }
        entity->close();
        return id;
    }

    ZrDbObjectId line(ZrDbObjectId block, double x0, double y0, double x1, double y1, ZrDbObjectId layer)
    {
        return add(block, new ZrDbLine(pt(x0, y0), pt(x1, y1)), layer);
    }

    ZrDbObjectId rectangle(ZrDbObjectId block, double x0, double y0, double x1, double y1, ZrDbObjectId layer)
    {
        auto* polyline = new ZrDbPolyline;
        for (const ZrGePoint3d& p : {pt(x0, y0), pt(x1, y0), pt(x1, y1), pt(x0, y1)})
            polyline->addVertexAt(polyline->numVerts(), p);
        polyline->setClosed(true);
        return add(block, polyline, layer);
    }

    ZrDbObjectId text(ZrDbObjectId block, double x, double y, double height, const wchar_t* content, ZrDbObjectId layer,
                      ZrDbObjectId style = ZrDbObjectId())
    {
        auto* entity = new ZrDbText;
        entity->setPosition(pt(x, y));
        entity->setHeight(height);
        entity->setTextString(ZrString(content));
        if (style.isValid())
            entity->setTextStyle(style);
        return add(block, entity, layer);
    }

    ZrDbObjectId hatch(ZrDbObjectId block, const wchar_t* pattern, std::vector<ZrGePoint3d> loop, ZrDbObjectId layer)
    {
        auto* entity = new ZrDbHatch;
        entity->setPattern(ZrString(pattern));
        entity->setLoop(std::move(loop));
        return add(block, entity, layer);
    }

    ZrDbObjectId reference(ZrDbObjectId space, ZrDbObjectId block, double x, double y, double rotation,
                           ZrDbObjectId layer, double scale = 1.0)
    {
        auto* entity = new ZrDbBlockReference(pt(x, y), block);
        entity->setScaleAndRotation(scale, rotation);
        return add(space, entity, layer);
    }

    ZrDbObjectId block(const wchar_t* name)
    {
        return record(m_db->blockTableId(), name, new ZrDbBlockTableRecord);
    }

    // Entities of blocks take the reference's colour, as blocks drawn on layer "0" do.
    template <class Entity>
    void addByBlock(ZrDbObjectId block, Entity* entity)
    {
        entity->setColor(byBlock());
        add(block, entity, m_db->clayer());
    }

    void addBlocks()
    {
        // A door of 900 swinging through a quarter circle.
        m_door = block(L"门");
        addByBlock(m_door, new ZrDbLine(pt(0, 0), pt(0, 900)));
        addByBlock(m_door, new ZrDbArc(pt(0, 0), 900, 0.0, kPi / 2));
        m_window = block(L"窗");
        for (double y : {0.0, 80.0, 160.0, 240.0})
            addByBlock(m_window, new ZrDbLine(pt(0, y), pt(1500, y)));
        m_chair = block(L"椅子");
        addByBlock(m_chair, new ZrDbCircle(pt(0, 0), 220));
        m_table = block(L"餐桌");
        auto* top = new ZrDbPolyline;
        for (const ZrGePoint3d& p : {pt(-700, -450), pt(700, -450), pt(700, 450), pt(-700, 450)})
            top->addVertexAt(top->numVerts(), p);
        top->setClosed(true);
        addByBlock(m_table, top);
        for (double x : {-400.0, 400.0}) {
            for (double y : {-700.0, 700.0}) {
                auto* chair = new ZrDbBlockReference(pt(x, y), m_chair);
                addByBlock(m_table, chair);
            }
        }
        m_bed = block(L"床");
        auto* frame = new ZrDbPolyline;
        for (const ZrGePoint3d& p : {pt(0, 0), pt(1800, 0), pt(1800, 2000), pt(0, 2000)})
            frame->addVertexAt(frame->numVerts(), p);
        frame->setClosed(true);
        addByBlock(m_bed, frame);
        for (double x : {150.0, 950.0}) {
            auto* pillow = new ZrDbPolyline;
            for (const ZrGePoint3d& p : {pt(x, 1600), pt(x + 700, 1600), pt(x + 700, 1900), pt(x, 1900)})
                pillow->addVertexAt(pillow->numVerts(), p);
            pillow->setClosed(true);
            addByBlock(m_bed, pillow);
        }
        m_tree = block(L"树");
        addByBlock(m_tree, new ZrDbCircle(pt(0, 0), 600));
        addByBlock(m_tree, new ZrDbLine(pt(-600, 0), pt(600, 0)));
        addByBlock(m_tree, new ZrDbLine(pt(0, -600), pt(0, 600)));
        m_light = block(L"吸顶灯");
        addByBlock(m_light, new ZrDbCircle(pt(0, 0), 150));
        addByBlock(m_light, new ZrDbLine(pt(-106, -106), pt(106, 106)));
        addByBlock(m_light, new ZrDbLine(pt(-106, 106), pt(106, -106)));
        m_north = block(L"指北针");
        addByBlock(m_north, new ZrDbCircle(pt(0, 0), 800));
        addByBlock(m_north, new ZrDbLine(pt(0, -800), pt(0, 800)));
        auto* needle = new ZrDbHatch;
        needle->setPattern(ZrString(L"SOLID"));
        needle->setLoop({pt(0, 800), pt(-150, -800), pt(150, -800)});
        addByBlock(m_north, needle);

        // Blocks nobody shows, an anonymous copy of the door as a dynamic block makes one, a
        // dimension's picture, an external reference and one of its blocks.
        const ZrDbObjectId unused = block(L"未使用的块");
        add(unused, new ZrDbCircle(pt(0, 0), 100), m_db->clayer());
        m_dynamicDoor = block(L"*U12");
        addByBlock(m_dynamicDoor, new ZrDbLine(pt(0, 0), pt(0, 1000)));
        addByBlock(m_dynamicDoor, new ZrDbArc(pt(0, 0), 1000, 0.0, kPi / 2));
        const ZrDbObjectId dimensionPicture = block(L"*D3");
        add(dimensionPicture, new ZrDbLine(pt(0, 0), pt(1000, 0)), m_dims);
        auto* xref = new ZrDbBlockTableRecord;
        xref->setIsFromExternalReference(true);
        m_xref = record(m_db->blockTableId(), L"邻楼", xref);
        const ZrDbObjectId column = block(L"邻楼|柱");
        add(column, new ZrDbCircle(pt(0, 0), 300), m_xrefWalls);
        add(m_xref, new ZrDbBlockReference(pt(0, 0), column), m_xrefWalls);
    }

    void addDimension(double x0, double y0, double x1, double y1, double lineX, double lineY)
    {
        auto* dimension = new ZrDbAlignedDimension(pt(x0, y0), pt(x1, y1), pt(lineX, lineY));
        add(m_model, dimension, m_dims);
    }

    void addPlan()
    {
        m_model = m_db->modelSpaceId();
        const ZrDbObjectId model = m_model;
        const double xs[] = {0, 3600, 7800, 12000};
        const double ys[] = {0, 4200, 9000};
        // Axes and their bubbles.
        for (double x : xs) {
            line(model, x, -1500, x, 10500, m_axis);
            add(model, new ZrDbCircle(pt(x, -2000), 500), m_grid);
        }
        for (double y : ys) {
            line(model, -1500, y, 13500, y, m_axis);
            add(model, new ZrDbCircle(pt(-2000, y), 500), m_grid);
        }
        const wchar_t* numbers[] = {L"1", L"2", L"3", L"4"};
        for (int i = 0; i < 4; ++i)
            text(model, xs[i] - 120, -2170, 350, numbers[i], m_grid);
        const wchar_t* letters[] = {L"A", L"B", L"C"};
        for (int i = 0; i < 3; ++i)
            text(model, -2120, ys[i] - 170, 350, letters[i], m_grid);

        // Outer walls 240 thick, the inner walls 120.
        rectangle(model, -120, -120, 12120, 9120, m_walls);
        rectangle(model, 120, 120, 11880, 8880, m_walls);
        for (double x : {3600.0, 7800.0}) {
            line(model, x - 60, 120, x - 60, 8880, m_walls);
            line(model, x + 60, 120, x + 60, 8880, m_walls);
        }
        line(model, 120, 4140, 11880, 4140, m_walls);
        line(model, 120, 4260, 11880, 4260, m_walls);
        // Columns at the crossings of the axes.
        for (double x : xs) {
            for (double y : ys)
                hatch(model, L"SOLID", {pt(x - 200, y - 200), pt(x + 200, y - 200), pt(x + 200, y + 200), pt(x - 200, y + 200)},
                      m_columns);
        }
        // Doors and windows.
        reference(model, m_door, 1000, 4260, 0, m_doors);
        reference(model, m_door, 4600, 4260, 0, m_doors);
        reference(model, m_door, 9000, 4140, kPi, m_doors);
        reference(model, m_door, 3660, 1800, -kPi / 2, m_doors);
        reference(model, m_door, 7860, 6000, -kPi / 2, m_doors);
        reference(model, m_door, 5200, -120, 0, m_doors);
        const ZrDbObjectId dynamicDoor = reference(model, m_dynamicDoor, 10600, 4260, 0, m_doors);
        {
            ZrDbObjectPointer<ZrDbBlockReference> open(dynamicDoor, ZrDb::kForWrite);
            open->setDynamicBlockTableRecord(m_door);
        }
        for (double x : {1050.0, 5000.0, 9600.0})
            reference(model, m_window, x, 8880, 0, m_doors);
        for (double x : {1050.0, 9600.0})
            reference(model, m_window, x, -120, 0, m_doors);
        reference(model, m_window, 12120, 1500, kPi / 2, m_doors);
        reference(model, m_window, 12120, 5800, kPi / 2, m_doors);

        // Furniture: beds, the dining table, a sofa, a desk, plants; kitchen and bathroom fittings.
        reference(model, m_bed, 600, 5200, 0, m_furniture);
        reference(model, m_bed, 9500, 5200, 0, m_furniture);
        reference(model, m_table, 5700, 2200, 0, m_furniture);
        auto* sofa = new ZrDbPolyline;
        for (const ZrGePoint3d& p : {pt(4300, 7900), pt(7100, 7900), pt(7100, 8700), pt(4300, 8700)})
            sofa->addVertexAt(sofa->numVerts(), p);
        sofa->setClosed(true);
        add(model, sofa, m_furniture);
        rectangle(model, 4500, 6200, 6900, 7000, m_furniture);
        rectangle(model, 400, 400, 1000, 3800, m_furniture);
        text(model, 450, 3300, 150, L"橱柜", m_text, m_noteText);
        add(model, new ZrDbCircle(pt(2800, 3200), 350), m_furniture);
        add(model, new ZrDbArc(pt(11000, 3000), 450, kPi, 2 * kPi), m_furniture);
        rectangle(model, 10500, 3000, 11500, 3700, m_furniture);
        for (double x : {8500.0, 10000.0})
            add(model, new ZrDbCircle(pt(x, 800), 250), m_furniture);
        // Floor finishes: tiles in the bathroom, boards in the bedrooms.
        hatch(model, L"NET", {pt(9600, 300), pt(11800, 300), pt(11800, 4000), pt(9600, 4000)}, m_floor);
        hatch(model, L"ANSI31", {pt(300, 4400), pt(3500, 4400), pt(3500, 8700), pt(300, 8700)}, m_hatch);
        hatch(model, L"ANSI32", {pt(7900, 4400), pt(11800, 4400), pt(11800, 8700), pt(7900, 8700)}, m_hatch);
        for (int i = 1; i < 8; ++i)
            line(model, 9600, 300 + i * 460, 11800, 300 + i * 460, m_floor);
        for (int i = 1; i < 8; ++i)
            line(model, 1000 + i * 320, 300, 1000 + i * 320, 4000, m_floor);
        for (int i = 1; i < 9; ++i)
            line(model, 1000, 300 + i * 410, 3500, 300 + i * 410, m_floor);
        // Stepping stones from the entrance, sockets along the walls.
        for (int i = 0; i < 10; ++i)
            rectangle(model, 5000, -700 - i * 380, 5600, -420 - i * 380, m_floor);
        for (int i = 0; i < 8; ++i) {
            add(model, new ZrDbCircle(pt(600 + i * 1450, 250), 80), m_lights);
            add(model, new ZrDbCircle(pt(600 + i * 1450, 8750), 80), m_lights);
        }

        // Stairs to the roof, beams and ceiling outlines above, services.
        for (int i = 0; i < 14; ++i)
            line(model, 7900 + i * 260, 300, 7900 + i * 260, 1500, m_furniture);
        line(model, 7900, 900, 11500, 900, m_furniture);
        line(model, 120, 2100, 11880, 2100, m_beams);
        line(model, 120, 6600, 11880, 6600, m_beams);
        rectangle(model, 4000, 5000, 7400, 8400, m_ceiling);
        auto* pipe = new ZrDbPolyline;
        for (const ZrGePoint3d& p : {pt(11500, 300), pt(11500, 3900), pt(9800, 3900)})
            pipe->addVertexAt(pipe->numVerts(), p);
        add(model, pipe, m_pipes);
        line(model, 300, 7000, 3400, 7000, m_hvac);
        for (double x = 1800; x <= 10200; x += 4200) {
            for (double y = 2100; y <= 6600; y += 4500)
                reference(model, m_light, x, y, 0, m_lights);
        }
        for (double x : {900.0, 2700.0, 5700.0, 9000.0, 10800.0})
            reference(model, m_light, x, 7800, 0, m_lights);

        // The plot: its boundary, trees and a north arrow.
        rectangle(model, -4000, -4500, 16000, 13000, m_property);
        for (int i = 0; i < 12; ++i) {
            const double x = -3000 + i * 1700;
            reference(model, m_tree, x, -3500, 0, m_trees);
            reference(model, m_tree, x, 12000, 0, m_trees, 0.8);
        }
        for (double y : {1500.0, 5000.0, 8500.0})
            reference(model, m_tree, 15000, y, 0, m_trees, 1.2);
        reference(model, m_north, 14500, 11500, 0.2, m_text);
        line(model, -4000, -4500, -4000, 13000, m_old);
        rectangle(model, -500, -500, 12500, 9500, m_area);
        rectangle(model, -300, -300, 12300, 9300, m_base);
        reference(model, m_xref, 18000, 0, 0, m_xrefWalls);

        // Room names, notes and leaders.
        const struct
        {
            double x, y;
            const wchar_t* name;
        } rooms[] = {{1300, 2000, L"厨房"}, {4900, 1000, L"餐厅"}, {9200, 1800, L"卫生间"},
                     {1200, 6800, L"主卧"}, {5000, 5400, L"客厅"},  {9300, 7600, L"次卧"}};
        for (const auto& room : rooms)
            text(model, room.x, room.y, 350, room.name, m_text, m_roomText);
        auto* note = new ZrDbMText;
        note->setLocation(pt(-3800, -2600));
        note->setTextHeight(250);
        note->setWidth(9000);
        note->setContents(ZrString(L"说明：\\P1. 本图尺寸以毫米计。\\P2. 墙体厚度 240，隔墙 120。"));
        note->setTextStyle(m_noteText);
        add(model, note, m_text);
        const struct
        {
            double ax, ay, tx, ty;
            const wchar_t* contents;
        } leaders[] = {{10500, 2500, 12800, 3200, L"防滑地砖"}, {2000, 6000, -1200, 7600, L"实木地板"},
                       {5700, 6600, 6800, 10000, L"石膏板吊顶"}};
        for (const auto& leader : leaders) {
            auto* entity = new ZrDbMLeader;
            entity->setMLeaderStyle(m_leaderStyle);
            entity->setPoints(pt(leader.ax, leader.ay), pt(leader.tx, leader.ty));
            entity->setContents(ZrString(leader.contents));
            add(model, entity, m_text);
        }

        // Dimensions: the bays, the whole length, the depth.
        for (int i = 0; i < 3; ++i)
            addDimension(xs[i], 9000, xs[i + 1], 9000, 0, 10000);
        addDimension(0, 9000, 12000, 9000, 0, 10800);
        addDimension(0, 0, 0, 4200, -1000, 0);
        addDimension(0, 4200, 0, 9000, -1000, 0);
        addDimension(0, 0, 0, 9000, -1600, 0);
        addDimension(12000, 0, 12000, 9000, 13200, 0);
        auto* measured = new ZrDbAlignedDimension(pt(3600, 0), pt(7800, 0), pt(0, -1000));
        measured->setDimensionText(ZrString(L"<> (开间)"));
        add(model, measured, m_dims);

        // Entities with colours, line types, lineweights and plot styles of their own.
        const ZrDbObjectId red = line(model, -3500, 11000, -500, 11000, m_furniture);
        const ZrDbObjectId blue = line(model, -3500, 11300, -500, 11300, m_furniture);
        {
            ZrDbObjectPointer<ZrDbEntity> entity(red, ZrDb::kForWrite);
            entity->setColor(aci(1));
            entity->setLinetype(m_dashed);
            entity->setLineWeight(static_cast<ZrDb::LineWeight>(70));
            entity->setPlotStyleName(ZrString(L"粗线"));
            entity->setMaterial(m_concrete);
        }
        {
            ZrDbObjectPointer<ZrDbEntity> entity(blue, ZrDb::kForWrite);
            entity->setColor(rgb(30, 90, 200));
            entity->setLinetype(m_dot);
            entity->setLinetypeScale(0.5);
            entity->setLineWeight(ZrDb::kLnWtByBlock);
            ZrResBuf* chain = xdataChain({{1001, L"ZR_SAMPLE"}, {1000, L"样例数据"}, {1070, L"3"}});
            entity->setXData(chain);
            zrutRelRb(chain);
        }
        // Weights of their own above them, so that the lineweight box has several to show.
        for (const auto& [y, weight] : {std::pair<double, int>{11600, 30}, {11900, 100}}) {
            ZrDbObjectPointer<ZrDbEntity> entity(line(model, -3500, y, -500, y, m_furniture), ZrDb::kForWrite);
            entity->setLineWeight(static_cast<ZrDb::LineWeight>(weight));
        }
    }

    void addPaperSheets()
    {
        const ZrDbObjectId paper = m_db->paperSpaceId();
        // The sheet: an A4 frame, the title block in its lower right corner.
        rectangle(paper, 10, 5, 292, 205, m_frame);
        rectangle(paper, 172, 5, 292, 45, m_frame);
        for (double y : {15.0, 25.0, 35.0})
            line(paper, 172, y, 292, y, m_frame);
        line(paper, 212, 5, 212, 45, m_frame);
        text(paper, 176, 38, 4, L"某住宅楼", m_text, m_titleText);
        text(paper, 176, 28, 4, L"一层平面图", m_text, m_titleText);
        text(paper, 176, 18, 3, L"比例 1:100", m_text);
        text(paper, 176, 8, 3, L"图号 A-101", m_text);
        text(paper, 216, 8, 3, L"2026-01-15", m_text);
        text(paper, 216, 18, 3, L"设计  审核", m_text);
        auto* viewport = new ZrDbViewport;
        viewport->setGeometry(pt(92, 112), 154, 176);
        viewport->setNumber(2);
        viewport->freezeLayersInViewport({m_furniture, m_trees});
        add(paper, viewport, m_viewports);
        auto* detail = new ZrDbViewport;
        detail->setGeometry(pt(232, 125), 110, 80);
        detail->setNumber(3);
        add(paper, detail, m_viewports);
        auto* schedule = new ZrDbTable;
        schedule->setPosition(pt(178, 78));
        schedule->setSize(4, 3, 6, 36);
        schedule->setTableStyle(m_scheduleStyle);
        add(paper, schedule, m_text);
        auto* notes = new ZrDbMText;
        notes->setLocation(pt(176, 82));
        notes->setTextHeight(2.5);
        notes->setContents(ZrString(L"门窗表"));
        add(paper, notes, m_text);

        // A second sheet on a block of its own.
        const ZrDbObjectId second = block(L"*Paper_Space0");
        const int64_t layout = m_data.addLayout(ZrString(L"布局2"), 2, second.handle());
        auto* sheet = new ZrDbViewport;
        sheet->setGeometry(pt(148.5, 105), 297, 210);
        const ZrDbObjectId sheetId = add(second, sheet, m_db->clayer());
        {
            ZrDbObjectPointer<ZrDbLayout> open(ZrDbObjectId(layout), ZrDb::kForWrite);
            open->setPaperViewportId(sheetId);
        }
        rectangle(second, 10, 5, 292, 205, m_frame);
        text(second, 20, 190, 5, L"节点详图", m_text, m_titleText);
        auto* elevation = new ZrDbViewport;
        elevation->setGeometry(pt(150, 100), 200, 150);
        elevation->setNumber(2);
        add(second, elevation, m_viewports);
    }

    void addViewsAndUcs()
    {
        const struct
        {
            const wchar_t* name;
            bool paper;
            double x, y, w, h;
        } views[] = {{L"全图", false, 6000, 4500, 22000, 19000}, {L"客厅", false, 5700, 6600, 4500, 4500},
                     {L"卧室", false, 1800, 6600, 3600, 4500},   {L"标题栏", true, 232, 25, 120, 40},
                     {L"图纸", true, 148.5, 105, 297, 210},      {L"XREF|入口", false, 5200, 0, 3000, 3000}};
        for (const auto& view : views) {
            auto* record = new ZrDbViewTableRecord;
            record->setIsPaperspaceView(view.paper);
            record->setGeometry(pt(view.x, view.y), view.w, view.h);
            this->record(m_db->viewTableId(), view.name, record);
        }
        const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
        const struct
        {
            const wchar_t* name;
            ZrGePoint3d origin;
            ZrGeVector3d x, y;
        } systems[] = {{L"北立面", pt(0, 9000), ZrGeVector3d(1, 0, 0), ZrGeVector3d(0, 0, 1)},
                       {L"转角30度", pt(12000, 0), ZrGeVector3d(c, s, 0), ZrGeVector3d(-s, c, 0)},
                       {L"XREF|UCS1", pt(0, 0), ZrGeVector3d(1, 0, 0), ZrGeVector3d(0, 1, 0)}};
        for (const auto& system : systems) {
            auto* record = new ZrDbUCSTableRecord;
            record->setAxes(system.origin, system.x, system.y);
            this->record(m_db->UCSTableId(), system.name, record);
        }
    }

    ZrDbDatabase* m_db;
    ZrDbData& m_data;
    ZrDbObjectId m_center, m_dashed, m_hidden, m_dot, m_phantom;
    ZrDbObjectId m_concrete;
    ZrDbObjectId m_roomText, m_noteText, m_titleText;
    ZrDbObjectId m_axis, m_walls, m_doors, m_furniture, m_dims, m_text, m_hatch, m_beams, m_ceiling, m_frame,
        m_viewports, m_columns, m_grid, m_lights, m_pipes, m_hvac, m_property, m_trees, m_floor, m_area, m_old, m_base,
        m_xrefWalls;
    ZrDbObjectId m_scheduleStyle, m_leaderStyle;
    ZrDbObjectId m_door, m_window, m_chair, m_table, m_bed, m_tree, m_light, m_north, m_dynamicDoor, m_xref;
    ZrDbObjectId m_model;
};

} // namespace

void zrdbBuildSampleDrawing(ZrDbDatabase* database)
{
    ZrDbQuiet quiet(database);
    SampleBuilder(database).build();
}

void zrdbBuildGeneratedDrawing(ZrDbDatabase* database, int count, int layers)
{
    ZrDbQuiet quiet(database);
    std::vector<ZrDbObjectId> layerIds;
    {
        ZrDbObjectPointer<ZrDbLayerTable> table(database->layerTableId(), ZrDb::kForWrite);
        for (int i = 0; i < layers; ++i) {
            auto* layer = new ZrDbLayerTableRecord;
            layer->setName(ZrString(QStringLiteral("Layer %1").arg(i + 1)));
            layer->setColor(aci(1 + i % 9));
            layer->setLinetypeObjectId(database->continuousLinetype());
            ZrDbObjectId id;
            if (table->add(layer, &id) != Zr::eOk) {
                delete layer;
                continue;
            }
            layer->close();
            layerIds.push_back(id);
        }
    }
    if (layerIds.empty())
        layerIds.push_back(database->clayer());
    ZrDbObjects::reserve(static_cast<size_t>(std::max(0, count)));
    ZrDbObjectPointer<ZrDbBlockTableRecord> space(database->modelSpaceId(), ZrDb::kForWrite);
    // Short diagonals on a square grid, so that the drawing has extents to fit.
    const int side = std::max(1, static_cast<int>(std::sqrt(double(std::max(count, 1)))));
    for (int i = 0; i < count; ++i) {
        const double x = (i % side) * 10.0;
        const double y = (i / side) * 10.0;
        auto* line = new ZrDbLine(pt(x, y), pt(x + 6.0, y + 6.0));
        line->setLayer(layerIds[static_cast<size_t>(i) % layerIds.size()]);
        if (space->appendZrDbEntity(line) != Zr::eOk) {
            delete line;
            break;
        }
        line->close();
    }
}
