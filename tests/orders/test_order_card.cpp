// The order card as the journal opens it: one whole order entered as a user would, the empty card,
// Cancel of a new order, the footer sums of a second show, the status date, and refused input.

#include "window_fixture.h"

#include "app_exception.h"
#include "currency_edit.h"
#include "cust_dialog_fm.h"
#include "db_editors.h"
#include "grid_summary.h"
#include "ord_line_cards.h"
#include "order_fm.h"
#include "orders_card_fm.h"

#include <QCheckBox>
#include <QPushButton>
#include <QToolButton>

namespace {

class OrderCard : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        journal = Show<TOrderFM>();
    }

    void OnOrder(int order, const std::function<void(TOrdersCardFM *)> &step)
    {
        journal->frmOrders->actRefresh->Execute();
        ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", order));
        OnModal<TOrdersCardFM>(journal->frmOrders->actEdit, {step});
    }

    static void AddService(TOrdersCardFM *card, int service)
    {
        OnModal<TOrdServCardFM>([card] { card->frmOrdServ->ToolButton2->click(); }, {[service](TOrdServCardFM *c) {
            ASSERT_TRUE(c->frmServices->DS->DataSet()->Locate("ID", service));
            c->AdvGlowButton1->click();
        }});
    }
    static void AddMaterials(TOrdersCardFM *card, const QList<int> &materials)
    {
        OnModal<TOrdMatCardFM>([card] { card->frmOrdMat->ToolButton2->click(); }, {[materials](TOrdMatCardFM *c) {
            QList<int> rows;
            for (int material : materials)
                rows << RowOf(c->frmMaterials, {{"ID", material}});
            Select(c->frmMaterials, rows);
            c->AdvGlowButton3->click();
        }});
    }
    static double Total(TCurrencyEdit *edit) { return edit->EditValue().toDouble(); }
    double StoredSum(int order) { return Scalar(QString("select SUMORDER from ORDERS where ID = %1").arg(order)).toDouble(); }
    // The order's service lines, then "|", then its material lines.
    QString Lines(int order)
    {
        return Scalar(QString("select coalesce((select list(ID || ':' || coalesce(OHOURS, '') || ':' || coalesce(DISCOUNT, '') "
                              "|| ':' || coalesce(IDEMPL, ''), ' ') from ORDSERV where IDORDER = %1), '') || '|' || coalesce("
                              "(select list(ID || ':' || OCNT || ':' || coalesce(DISCOUNT, ''), ' ') from ORDMAT where "
                              "IDORDER = %1), '') from RDB$DATABASE").arg(order)).toString();
    }

    TOrderFM *journal = nullptr;
};

TEST_F(OrderCard, AWholeOrderEnteredThroughTheWindows)
{
    const int customer = NewCustomer("Иванов Пётр", "'8-900-555'");
    const int service = NewService("Замена масла", 1200, 2);
    const QList<int> materials = {NewMaterial("Фильтр масляный", 300), NewMaterial("Масло 5W30", 900),
                                  NewMaterial("Прокладка", 50)};
    const QString master = "Кузнецов А.";
    const int employee = Insert("insert into EMPLS (EMPLNAME) values ('Кузнецов А.')");
    const int before = Count("ORDERS");
    int order = 0;
    double netto = 0;
    QString num;

    OnModal<TOrdersCardFM>(journal->frmOrders->actAdd, {[&](TOrdersCardFM *card) {
        order = card->OrderId().toInt();
        num = Line(Editor(card, "NUM"))->text();
        EXPECT_EQ(num, "P-" + QString::number(80000 + order));
        EXPECT_EQ(card->windowTitle(), "Новый заказ");
        EXPECT_EQ(card->TCX_SUMM_NETTO->text(), "0.00 р.") << "no lines: null sums count as 0";

        OnModal<TCustDialogFM>([card] { dynamic_cast<TDBButtonEdit *>(Editor(card, "DLG_IDCUST"))->ClickButton(0); },
                               {[&](TCustDialogFM *d) {
                                   ASSERT_TRUE(d->frmCust->DS->DataSet()->Locate("ID", customer));
                                   d->AdvGlowButton1->click();
                               }});
        EXPECT_EQ(Line(Editor(card, "DLG_IDCUST"))->text(), "Иванов Пётр");
        EXPECT_EQ(Line(Editor(card, "MOBI_PHONE"))->text(), "8-900-555");
        TypeAndLeave(Editor(card, "REG"), "А777АА77");
        Pick(Editor(card, "MARK_LKP_MARK_F_MARKNAME"), "Skoda");
        TypeAndLeave(Editor(card, "MODEL_LKP_MODEL_F_MODNAME"), "Октавия");
        card->cbPartsReturn->setChecked(true);

        AddService(card, service);
        AddMaterials(card, materials);
        ASSERT_EQ(Column(card->frmOrdServ, "IDSERV_LKP_SERV_F_SERVNAME"), QStringList{QString::number(service)});
        ASSERT_EQ(Column(card->frmOrdMat, "IDMAT_LKP_MAT_F_MATNAME").size(), 3);
        EXPECT_EQ(Column(card->frmOrdServ, "OHOURS"), QStringList{"2"}) << "the norm hours of the catalogue";
        EXPECT_EQ(Column(card->frmOrdServ, "HOURS"), QStringList{"1"}) << "a new line's hours";

        SetCell(card->frmOrdServ, 0, "HOURS", 3);
        EXPECT_EQ(Column(card->frmOrdServ, "SUMM0"), QStringList{"1800"});
        TypeInCell(card->frmOrdMat, RowOf(card->frmOrdMat, {{"IDMAT_LKP_MAT_F_MATNAME", materials[1]}}), "OCNT", "2");
        EXPECT_NEAR(StoredSum(order), 1800 + 1800, 0.01) << "lines made with no order count once a cell attaches them";
        SetCell(card->frmOrdMat, RowOf(card->frmOrdMat, {{"IDMAT_LKP_MAT_F_MATNAME", materials[0]}}), "DISCOUNT", 10);
        SetCell(card->frmOrdMat, RowOf(card->frmOrdMat, {{"IDMAT_LKP_MAT_F_MATNAME", materials[2]}}), "OCNT", 3);

        Pick(card->lcbMaster, master);
        card->btnMaster->click();
        TypeAndLeave(Editor(card, "DISCOUNT"), "5");
        card->btnDiscount->click();
        EXPECT_EQ(dialogs.Texts(), QStringList({TOrdersCardFM::MasterQuestion, TOrdersCardFM::DiscountQuestion}));

        // Services 1800 less 5 %; materials 300 less 10 %, 900 × 2 and 50 × 3.
        EXPECT_NEAR(Total(card->TCX_SUMM_BRUTTO), 1800 + 300 + 1800 + 150, 0.01);
        netto = Total(card->TCX_SUMM_NETTO);
        EXPECT_NEAR(netto, 1710 + 270 + 1800 + 150, 0.01);
        EXPECT_NEAR(StoredSum(order), netto, 0.01);
        EXPECT_EQ(card->frmOrdServ->GridView->Summary()->Text(1), "1,710.00 р.");
        card->AdvGlowButton1->click();
    }});

    EXPECT_EQ(Count("ORDERS"), before + 1);
    // The master goes to the services only.
    EXPECT_EQ(Scalar(QString("select O.IDCUST || ';' || O.NUM || ';' || O.RETURNZP || ';' || cast(O.DISCOUNT as integer) || ';' || "
                             "A.REG || ';' || K.MARKNAME || ';' || M.MODNAME || ';' || (select list(IDEMPL) from ORDSERV where "
                             "IDORDER = O.ID) || ';' || (select count(*) from ORDMAT where IDORDER = O.ID and IDEMPL is null) "
                             "from ORDERS O join AUTO A on A.ID = O.IDAUTO join MARK K on K.ID = A.MARK join MODEL M on "
                             "M.ID = A.MODNAME where O.ID = %1").arg(order)).toString(),
              QString("%1;%2;1;5;А777АА77;Skoda;Октавия;%3;3").arg(customer).arg(num).arg(employee));
    EXPECT_NEAR(StoredSum(order), netto, 0.01);
    EXPECT_TRUE(Column(journal->frmOrders, "ID").contains(QString::number(order)));
}

TEST_F(OrderCard, ASecondShowAddsNoFooterSumsAStatusChangeStampsTheDateRefusedInputLeavesTheOrderIntactAndCancelRemovesANewOne)
{
    const int order = NewOrder(NewCustomer("Петров"), NewVehicle("В002ВВ"));
    Exec(QString("update ORDERS set STATUS_DATE = '01.01.2020' where ID = %1").arg(order));
    const QString working = Scalar("select STATENAME from OSTATE where ID = 2").toString();
    for (int opening = 0; opening < 2; ++opening)
        OnOrder(order, [&](TOrdersCardFM *card) {
            card->FormShow(card);
            for (TGridFrame *frame : {card->frmOrdServ, card->frmOrdMat})
                EXPECT_EQ(frame->GridView->Summary()->Count(), 2) << frame->objectName().toStdString();
            EXPECT_EQ(CardTexts(card).filter(QRegularExpression("^[A-Z_0-9]+$")), QStringList()) << "raw field names";
            if (opening == 1) {
                Pick(Editor(card, "IDSTATUS_LKP_OSTATE_F_STATENAME"), working);
                card->AdvGlowButton1->click();
            } else {
                card->AdvGlowButton2->click();
            }
        });
    EXPECT_EQ(Scalar(QString("select IDSTATUS || ' ' || trim(iif(datediff(minute from STATUS_DATE to current_timestamp) < 2, "
                             "'now', 'earlier')) from ORDERS where ID = %1").arg(order)).toString(), "2 now");

    // Refused input on another order leaves it as it is stored.
    const int other = NewOrder(NewCustomer("Сидоров"), NewVehicle("С003СС"));
    Exec(QString("insert into ORDSERV (IDORDER, IDSERV, OHOURS) values (%1, %2, 1)").arg(other).arg(NewService("Мойка", 500)));
    Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 1)").arg(other).arg(NewMaterial("Щётка", 40, 5)));
    const QString lines = Lines(other);
    const double sum = StoredSum(other);
    const QString hours = "Количество часов должно быть от 0 до 1 000 000", count = "Количество должно быть целым числом от 1 до 1 000 000";
    const struct { bool services; const char *field; QVariant value; QString message; } cases[] = {
        {true, "DISCOUNT", 150, "Скидка должна быть от 0 до 100 %"},
        {true, "HOURS", -2, hours}, {true, "HOURS", "abc", hours}, {false, "OCNT", -3, count}, {false, "OCNT", 1e12, count},
        {false, "OCNT", 50, "На складе недостаточно данного материала."},
    };
    OnOrder(other, [&](TOrdersCardFM *card) {
        for (const auto &c : cases) {
            dialogs.Clear();
            SetCell(c.services ? card->frmOrdServ : card->frmOrdMat, 0, c.field, c.value);
            EXPECT_EQ(dialogs.Texts().replaceInStrings(QRegularExpression("^\\s+|\\s+$"), ""), QStringList{c.message}) << c.field;
            EXPECT_EQ(Lines(other), lines) << c.field;
            EXPECT_NEAR(StoredSum(other), sum, 0.01);
        }
        dialogs.Clear();
        card->btnMaster->click();
        EXPECT_EQ(dialogs.Texts(), QStringList({TOrdersCardFM::MasterQuestion, ApplicationErrorHeading + TOrdersCardFM::NoMasterText}));
        EXPECT_EQ(Lines(other), lines);

        // A discount of 100 is taken: the line's sum is 0 and leaves the other's total.
        SetCell(card->frmOrdServ, 0, "DISCOUNT", 100);
        EXPECT_EQ(Column(card->frmOrdServ, "SUMM"), QStringList{"0"});
        EXPECT_NEAR(StoredSum(other), 40, 0.01);
        EXPECT_NEAR(Total(card->TCX_SUMM_NETTO), 40, 0.01);
        card->AdvGlowButton2->click();
    });

    // All eight fields empty keep the card open; Cancel removes the new order with its lines.
    const int orders = Count("ORDERS");
    const int diagnostics = NewService("Диагностика");
    int added = 0;
    dialogs.Answer(Dialogs::ResultCancel); // "Данные были изменены. Сохранить?"
    OnModal<TOrdersCardFM>(journal->frmOrders->actAdd, {[&](TOrdersCardFM *card) {
        added = card->OrderId().toInt();
        AddService(card, diagnostics);
        AddMaterials(card, {NewMaterial("Свеча")});
        SetCell(card->frmOrdMat, 0, "OCNT", 4);
        ASSERT_NE(Lines(added), "|");
        TFIBDataSet *row = card->DataSet();
        row->Edit();
        for (const char *field : {"NUM", "CREATE_DATE", "IDSTATUS_LKP_OSTATE_F_STATENAME"})
            row->FieldByName(field)->SetValue(QVariant());
        card->AdvGlowButton1->click();
        QTest::qWait(50);
        EXPECT_EQ(card->ModalResult(), mrNone);
        EXPECT_TRUE(card->isVisible());
        EXPECT_FALSE(Scalar(QString("select NUM from ORDERS where ID = %1").arg(added)).isNull()) << "nothing stored";
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(Count("ORDERS"), orders);
    EXPECT_EQ(Lines(added), "|");
}

} // namespace
