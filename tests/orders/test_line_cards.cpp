// The cards of an order's lines over a frame of the order's lines, as the order card holds them: the
// service chosen on OK, several materials added at once, the single edit mode, filters, an empty catalogue.

#include "window_fixture.h"

#include "fm_base.h"
#include "ord_line_cards.h"

#include <QVBoxLayout>

namespace {

class LineCards : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        order = NewOrder(NewCustomer("Сидоров"), NewVehicle("М001ММ77"));
        dm->pFIBTransaction1.CommitRetaining();
    }
    // A frame of the order's lines in a window of its own, opening the line card of `Card`.
    template <class Card>
    TGridFrame *Lines(TFIBDataSet *lines, const QString &frameName, const QString &prefix)
    {
        auto *host = new TfmBase();
        window.reset(host);
        host->setObjectName("OrdersCardFM");
        auto *layout = new QVBoxLayout(host->pnlMain);
        auto *frame = new TGridFrame(host->pnlMain, frameName);
        layout->addWidget(frame);
        TFrameSettings settings{frame, "Строки", lines, prefix, CardOf<Card>(), prefix + "Edit", "Добавить",
                                "Редактировать"};
        settings.FillParameters = [this](TFIBDataSet *ds) {
            if (TFIBXSQLVAR *p = ds->FindParam("IDORDER"))
                p->SetValue(order);
        };
        settings.Apply();
        host->resize(900, 500);
        host->show();
        frame->actRefresh->Execute();
        return frame;
    }

    // The order's material lines: material, count, discount and employee.
    QStringList MaterialLines()
    {
        return RowsIn(*dm, QString("select IDMAT, OCNT, cast(DISCOUNT as integer), IDEMPL from ORDMAT where IDORDER = %1 "
                                   "order by ID").arg(order));
    }

    int order = 0;
};

TEST_F(LineCards, ServiceCardWritesTheChosenServiceOrNoneFromAnEmptyCatalogueAndTheMaterialsEditModeTakesOneMaterial)
{
    const int oil = NewService("Замена масла", 1500, 2, "ЗМ-1", "501");
    NewService("Мойка 100%", 300, 1, "М_1", "502");
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdServCardFM>(&dm->spOrdServOpen, "frmOrdServ", "spOrdServ");
    OnModal<TOrdServCardFM>(lines->actAdd, {[&](TOrdServCardFM *c) {
        EXPECT_EQ(c->windowTitle() + c->gbFilter->title() + c->frmServices->gbGrid->title(), "ДобавитьФильтрСправочник услуг");
        EXPECT_EQ(NotRussian(CardTexts(c)), QStringList());
        ExpectRussianTitles(c->frmServices);
        EXPECT_GE(Column(c->frmServices, "ID").size(), 2);
        // Filters: contains on each field, all together; patterns and quotes are text.
        const QList<std::tuple<QWidget *, QString, QStringList>> cases = {
            {c->edName, "масл", {"Замена масла"}},                    {c->edName, "", {}},
            {c->edArticul, "М_1", {"Замена масла", "Мойка 100%"}},   {c->edArticul, "", {}},
            {c->edCode, "0%2", {"Мойка 100%"}},                      {c->edName, "Мойка 100", {"Мойка 100%"}},
            {c->edName, "'", {}},                                    {c->edName, "", {}},
            {c->edCode, "", {}},
        };
        for (const auto &[editor, text, names] : cases) {
            Filter(editor, text);
            if (!names.isEmpty() || text == "'")
                EXPECT_EQ(Sorted(Column(c->frmServices, "SERVNAME")), names) << text.toStdString();
        }
        Filter(c->edCode, "501");
        ASSERT_EQ(Column(c->frmServices, "ID"), QStringList({QString::number(oil)}));
        c->AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, QString("select IDSERV, cast(COST as integer) from ORDSERV where IDORDER = %1").arg(order)),
              QStringList{QString("%1|1500").arg(oil)});
    EXPECT_EQ(Column(lines, "IDSERV_LKP_SERV_F_SERVNAME"), QStringList({QString::number(oil)}));

    // Over an empty catalogue the new line keeps its value.
    Exec(QString("delete from ORDSERV where IDORDER = %1").arg(order));
    Exec("delete from SERV");
    dm->pFIBTransaction1.CommitRetaining();
    OnModal<TOrdServCardFM>(lines->actAdd, {[&](TOrdServCardFM *c) {
        EXPECT_TRUE(Column(c->frmServices, "ID").isEmpty());
        c->AdvGlowButton1->click();
        EXPECT_EQ(c->ChosenId, 0);
    }});
    EXPECT_EQ(Scalar(QString("select count(*) from ORDSERV where IDORDER = %1 and IDSERV is null").arg(order)).toInt(), 1);
    EXPECT_EQ(dialogs.Shown.size(), 0);

    // The materials card in its edit mode takes one material.
    const int a = NewMaterial("Фильтр масляный", 400);
    const int b = NewMaterial("Фильтр воздушный", 600);
    Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 3)").arg(order).arg(a));
    dm->pFIBTransaction1.CommitRetaining();
    lines = Lines<TOrdMatCardFM>(&dm->spOrdMatOpen, "frmOrdMat", "spOrdMat");
    OnModal<TOrdMatCardFM>(lines->actEdit, {[&](TOrdMatCardFM *c) {
        EXPECT_FALSE(c->AdvGlowButton1->isHidden());
        EXPECT_TRUE(c->AdvGlowButton3->isHidden());
        EXPECT_TRUE(c->cxLabel1->isHidden());
        EXPECT_EQ(c->frmMaterials->GridView->selectionMode(), QAbstractItemView::SingleSelection);
        Filter(c->edMatName, "воздуш");
        ASSERT_EQ(Column(c->frmMaterials, "ID"), QStringList({QString::number(b)}));
        c->AdvGlowButton1->click();
    }});
    EXPECT_EQ(MaterialLines(), QStringList{QString("%1|3||").arg(b)});
}

TEST_F(LineCards, MaterialsAddModeAddsALineForEachSelectedMaterialAndNoneForNoSelection)
{
    const int valve = NewMaterial("Вентиль «ТР»", 50, 100, "TR'1", "0001");
    const int weight = NewMaterial("Груз 10 г", 15, 100, "BG10", "0002");
    const int tyre = NewMaterial("Шина R15", 4200, 100, "S15", "0003");
    const int empl = Insert("insert into EMPLS (EMPLNAME) values ('Соколов')");
    // The focused line whose values every new line takes.
    Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT, DISCOUNT, IDEMPL) values (%1, %2, 2, 10, %3)")
             .arg(order).arg(weight).arg(empl));
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdMatCardFM>(&dm->spOrdMatOpen, "frmOrdMat", "spOrdMat");
    OnModal<TOrdMatCardFM>([&] { lines->Test(nullptr); }, {[&](TOrdMatCardFM *c) {
        Select(c->frmMaterials, {});
        c->AdvGlowButton3->click();
        EXPECT_EQ(c->ModalResult(), mrOk);
    }});
    EXPECT_EQ(Count("ORDMAT"), 1);
    OnModal<TOrdMatCardFM>([&] { lines->Test(nullptr); }, {[&](TOrdMatCardFM *c) {
        EXPECT_TRUE(c->AdvGlowButton1->isHidden());
        EXPECT_FALSE(c->AdvGlowButton3->isHidden());
        EXPECT_EQ(c->AdvGlowButton3->text(), "Принять");
        EXPECT_FALSE(c->cxLabel1->isHidden());
        EXPECT_EQ(c->cxLabel1->text(), "Ctrl + клик (Shift + стрелка вниз, вверх) - выбор нескольких строк");
        EXPECT_EQ(c->frmMaterials->GridView->selectionMode(), QAbstractItemView::ExtendedSelection);
        EXPECT_EQ(NotRussian(CardTexts(c)), QStringList());
        ExpectRussianTitles(c->frmMaterials);
        Filter(c->edArticul, "'");
        EXPECT_EQ(Column(c->frmMaterials, "ID"), QStringList({QString::number(valve)}));
        Filter(c->edArticul, "");
        Select(c->frmMaterials, {RowOf(c->frmMaterials, {{"ID", valve}}), RowOf(c->frmMaterials, {{"ID", weight}}),
                                 RowOf(c->frmMaterials, {{"ID", tyre}})});
        c->AdvGlowButton3->click();
    }});
    QStringList expected;
    for (int material : {weight, valve, weight, tyre})
        expected << QString("%1|2|10|%2").arg(material).arg(empl);
    EXPECT_EQ(MaterialLines(), expected);
    EXPECT_EQ(Column(lines, "ID").size(), 4) << "the frame refreshed after OK";
}

} // namespace
