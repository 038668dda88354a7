// The cards of an order's lines over a frame of the order's lines, as the order card holds them: the
// service chosen on OK, several materials added at once, the single edit mode, filters, an empty catalogue.

#include "orders_fixture.h"

#include "fm_base.h"
#include "ord_line_cards.h"

#include <QItemSelectionModel>
#include <QVBoxLayout>

namespace {

class LineCards : public OrdersTest
{
protected:
    void SetUp() override
    {
        OrdersTest::SetUp();
        order = NewOrder(NewCustomer("Сидоров"), NewVehicle("М001ММ77"));
        dm->pFIBTransaction1.CommitRetaining();
    }
    void TearDown() override
    {
        host.reset();
        OrdersTest::TearDown();
    }

    // A frame of the order's lines in a window of its own, opening the line card of `Card`.
    template <class Card>
    TGridFrame *Lines(TFIBDataSet *lines, const QString &frameName, const QString &prefix)
    {
        host = std::make_unique<TfmBase>();
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

    QList<QStringList> Rows(const QString &sql)
    {
        QList<QStringList> rows;
        for (const QString &row : Scalar("select list(" + sql + ", '|') from (" + "select * from ORDMAT where IDORDER = "
                                         + QString::number(order) + " order by ID)")
                                      .toString()
                                      .split('|', Qt::SkipEmptyParts))
            rows << row.split(';');
        return rows;
    }

    // Selects catalogue rows as Ctrl + click does.
    static void Select(TGridFrame *frame, const QList<int> &rows)
    {
        QItemSelectionModel *selection = frame->GridView->selectionModel();
        selection->clearSelection();
        for (int row : rows)
            selection->select(frame->GridView->model()->index(row, 0),
                              QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    static int RowOf(TGridFrame *frame, int id)
    {
        const QStringList ids = Column(frame, "ID");
        return int(ids.indexOf(QString::number(id)));
    }

    int order = 0;
    std::unique_ptr<TfmBase> host;
};

TEST_F(LineCards, ServiceCardWritesTheChosenServiceIntoTheNewLine)
{
    const int oil = NewService("Замена масла", 1500, 2, "ЗМ-1", "501");
    NewService("Мойка 100%", 300, 1, "М_1", "502");
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdServCardFM>(&dm->spOrdServOpen, "frmOrdServ", "spOrdServ");
    OnCard(lines->actAdd, {[&](TCustomDictFM *card) {
               auto *c = qobject_cast<TOrdServCardFM *>(card);
               ASSERT_NE(c, nullptr);
               EXPECT_EQ(c->windowTitle() + c->gbFilter->title() + c->frmServices->gbGrid->title(), "ДобавитьФильтрСправочник услуг");
               EXPECT_EQ(NotRussian(CardTexts(c)), QStringList());
               ExpectRussianTitles(c->frmServices);
               EXPECT_GE(Column(c->frmServices, "ID").size(), 2);
               // Filters: contains on each field, all together; patterns and quotes are text.
               const QList<std::tuple<QWidget *, QString, QStringList>> cases = {
                   {c->edName, "масл", {"Замена масла"}},
                   {c->edName, "", {}},
                   {c->edArticul, "М_1", {"Замена масла", "Мойка 100%"}},
                   {c->edArticul, "", {}},
                   {c->edCode, "0%2", {"Мойка 100%"}},
                   {c->edName, "Мойка 100", {"Мойка 100%"}},
                   {c->edName, "'", {}},
                   {c->edName, "", {}},
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
    EXPECT_EQ(Scalar(QString("select IDSERV || ';' || IDORDER || ';' || cast(COST as integer) from ORDSERV where IDORDER = %1").arg(order))
                  .toString(),
              QString("%1;%2;1500").arg(oil).arg(order));
    EXPECT_EQ(Column(lines, "IDSERV_LKP_SERV_F_SERVNAME"), QStringList({QString::number(oil)}));
}

TEST_F(LineCards, ServiceCardOverAnEmptyCatalogueKeepsTheLinesValue)
{
    Exec("delete from SERV");
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdServCardFM>(&dm->spOrdServOpen, "frmOrdServ", "spOrdServ");
    OnCard(lines->actAdd, {[&](TCustomDictFM *card) {
               auto *c = static_cast<TOrdServCardFM *>(card);
               EXPECT_TRUE(Column(c->frmServices, "ID").isEmpty());
               c->AdvGlowButton1->click();
               EXPECT_EQ(c->ChosenId, 0);
           }});
    EXPECT_EQ(Scalar(QString("select count(*) from ORDSERV where IDORDER = %1 and IDSERV is null").arg(order)).toInt(), 1);
    EXPECT_EQ(dialogs.Shown.size(), 0);
}

TEST_F(LineCards, MaterialsAddModeAddsALineForEachSelectedMaterialAndNoneForNoSelection)
{
    const int valve = NewMaterial("Вентиль «ТР»", 50, 100, "TR'1", "0001");
    const int weight = NewMaterial("Груз 10 г", 15, 100, "BG10", "0002");
    const int tyre = NewMaterial("Шина R15", 4200, 100, "S15", "0003");
    const int empl = Insert("insert into EMPLS (EMPLNAME) values ('Соколов')");
    // The focused line whose values every new line takes.
    Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT, DISCOUNT, IDEMPL) values (%1, %2, 2, 10, %3)")
             .arg(order)
             .arg(weight)
             .arg(empl));
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdMatCardFM>(&dm->spOrdMatOpen, "frmOrdMat", "spOrdMat");
    ModalDriver driver;
    int result = -1;
    driver.Then([&](QWidget *modal) {
        auto *c = static_cast<TOrdMatCardFM *>(modal);
        c->frmMaterials->GridView->selectionModel()->clearSelection();
        c->AdvGlowButton3->click();
        result = c->ModalResult();
    });
    lines->Test(nullptr);
    EXPECT_EQ(result, mrOk);
    EXPECT_EQ(Count("ORDMAT"), 1);
    driver.Then([&](QWidget *modal) {
        auto *c = qobject_cast<TOrdMatCardFM *>(modal);
        ASSERT_NE(c, nullptr);
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
        Select(c->frmMaterials, {RowOf(c->frmMaterials, valve), RowOf(c->frmMaterials, weight),
                                 RowOf(c->frmMaterials, tyre)});
        c->AdvGlowButton3->click();
    });
    lines->Test(nullptr);
    EXPECT_EQ(driver.Ran(), 2);
    const QList<QStringList> rows = Rows("IDMAT || ';' || OCNT || ';' || cast(DISCOUNT as integer) || ';' || IDEMPL");
    EXPECT_EQ(rows, (QList<QStringList>{{QString::number(weight), "2", "10", QString::number(empl)},
                                        {QString::number(valve), "2", "10", QString::number(empl)},
                                        {QString::number(weight), "2", "10", QString::number(empl)},
                                        {QString::number(tyre), "2", "10", QString::number(empl)}}));
    EXPECT_EQ(Column(lines, "ID").size(), 4) << "the frame refreshed after OK";
}

TEST_F(LineCards, MaterialsEditModeTakesOneMaterial)
{
    const int a = NewMaterial("Фильтр масляный", 400);
    const int b = NewMaterial("Фильтр воздушный", 600);
    Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 3)").arg(order).arg(a));
    dm->pFIBTransaction1.CommitRetaining();
    TGridFrame *lines = Lines<TOrdMatCardFM>(&dm->spOrdMatOpen, "frmOrdMat", "spOrdMat");
    OnCard(lines->actEdit, {[&](TCustomDictFM *card) {
               auto *c = static_cast<TOrdMatCardFM *>(card);
               EXPECT_FALSE(c->AdvGlowButton1->isHidden());
               EXPECT_TRUE(c->AdvGlowButton3->isHidden());
               EXPECT_TRUE(c->cxLabel1->isHidden());
               EXPECT_EQ(c->frmMaterials->GridView->selectionMode(), QAbstractItemView::SingleSelection);
               Filter(c->edMatName, "воздуш");
               ASSERT_EQ(Column(c->frmMaterials, "ID"), QStringList({QString::number(b)}));
               c->AdvGlowButton1->click();
           }});
    EXPECT_EQ(Rows("IDMAT || ';' || OCNT"), (QList<QStringList>{{QString::number(b), "3"}}));
}

} // namespace
