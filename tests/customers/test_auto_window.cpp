// The vehicles window: its filter, its cards and deletes, the jump to the orders of a vehicle, the
// widths of the lists, and the rights of every grid of the customers' and vehicles' windows.

#include "customers_fixture.h"

#include "auto_fm.h"
#include "cust_dialog_fm.h"
#include "cust_fm.h"
#include "fib_xsqlvar.h"
#include "filter_order.h"

#include <QDateTime>
#include <QLabel>
#include <QMenu>

namespace {

// A main window that keeps the order filters it was sent.
class RecordingLink : public TMainWindowLink
{
public:
    qintptr SendMessage(int message, qintptr wParam, qintptr lParam) override
    {
        Sent << QString("%1 %2").arg(message).arg(lParam);
        Filters << *reinterpret_cast<const TFilterOrder *>(wParam);
        return 0;
    }
    QStringList Sent;
    QList<TFilterOrder> Filters;
};

class AutoWindowTest : public CustomersTest
{
protected:
    void TearDown() override
    {
        window.reset();
        CustomersTest::TearDown();
    }
    void Show()
    {
        window = std::make_unique<TAutoFM>(&link);
        window->show();
    }
    QStringList Plates() { return Column(window->frmAuto, "REG"); }

    RecordingLink link;
    std::unique_ptr<TAutoFM> window;
};

TEST_F(AutoWindowTest, ShowOrdersSendsThePlateAndTheWholePeriodAndThreeListsTakeAQuarterEach)
{
    NewVehicle("А111АА");
    const int current = NewVehicle("В222ВВ");
    Show();
    ASSERT_TRUE(dm->spAutoOpen.Locate("ID", current));
    window->miShowOrders->trigger();
    TypeText(window->edReg, "нет такого");
    Settle();
    window->miShowOrders->trigger();
    EXPECT_EQ(link.Sent, QStringList({"1027 0", "1027 0"}));
    ASSERT_EQ(link.Filters.size(), 2);
    for (const auto &[sent, reg] : {std::pair{link.Filters[0], "В222ВВ"}, {link.Filters[1], ""}}) {
        EXPECT_EQ(sent.Reg, reg);
        EXPECT_EQ(sent.DateUp, 0);
        EXPECT_NEAR(sent.DateTo, DateTimeToSerial(QDateTime::currentDateTime()), 1.0 / 24 / 60);
        EXPECT_TRUE((sent.OState + sent.Num + sent.Cust + sent.Mark + sent.Model).isEmpty());
    }
    EXPECT_EQ(window->frmAuto->pmMain->actions().last()->text(), "Показать заказы по данному автомобилю");

    // Three lists take a quarter of the window each, the years the rest.
    for (const int width : {1000, 1203, 801}) {
        window->resize(width, 700);
        QCoreApplication::processEvents();
        const int quarter = width / 4;
        QList<int> lefts;
        for (TGridFrame *frame : {window->frmMark, window->frmModel, window->frmAType, window->frmAYear})
            lefts << frame->x();
        EXPECT_EQ(lefts, QList<int>({0, quarter, 2 * quarter, 3 * quarter})) << width;
        EXPECT_EQ(window->frmAType->width(), quarter);
        EXPECT_EQ(window->frmAYear->geometry().right() + 1, window->frmAYear->parentWidget()->width());
    }
}

TEST_F(AutoWindowTest, EachFilterFindsItsVehicleAndPatternSignsOrQuotesBreakNothing)
{
    const int mine = NewVehicle("Е555КХ", 2, 2);
    Exec(QString("update AUTO set VIN = 'WVW%_1', DRIVE = 'бензин', COLNAME = 'красный', AYEAR = 3 where ID = %1").arg(mine));
    Exec(QString("update AUTO set VIN = 'XTA', DRIVE = 'дизель', COLNAME = 'синий' where ID = %1").arg(NewVehicle("М001ММ")));
    Exec("insert into AUTO (REG, DEL) values ('У000УУ', 1)");
    const QStringList found{"Е555КХ"};
    const QList<std::pair<std::function<void()>, QStringList>> cases = {
        {[&] { TypeText(window->edReg, "е555"); }, found},
        {[&] { TypeText(window->edVIN, "wvw%_"); }, found},
        {[&] { TypeText(window->edDrive, "бенз"); }, found},
        {[&] { TypeText(window->edColName, "КРАС"); }, found},
        {[&] { Pick(window->lcbModel, "Fabia"); }, found},
        {[&] { Pick(window->lcbMark, "Skoda"); }, found},
        {[&] { Pick(window->lcbYear, "2013"); }, found},
        {[&] { window->cbDel->click(); }, {"У000УУ"}},
        {[&] { TypeText(window->edReg, "'"); }, {}},
    };
    for (const auto &[set, expected] : cases) {
        Show();
        EXPECT_EQ(Plates().size(), 2) << "no filter: the vehicles not deleted";
        set();
        Settle();
        EXPECT_EQ(Plates(), expected);
    }
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(AutoWindowTest, AVehicleIsAddedThroughItsCardAndRowsInUseAreNotDeleted)
{
    NewOrder(NewCustomer("Петров"), NewVehicle("О001ОО"));
    Show();
    OnCard(window->frmAuto->actAdd, {[](TCustomDictFM *card) {
                                         EXPECT_EQ(card->windowTitle(), "Новый автомобиль");
                                         Type(card, "REG_TCX", "К777КК 'x'");
                                         // The editor stops at the column's 30 characters.
                                         Type(card, "VIN_TCX", "XW8%_" + QString(26, '9'));
                                         card->AdvGlowButton1->click();
                                     }});
    EXPECT_EQ(dialogs.Shown.size(), 0) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar("select VIN from AUTO where REG = 'К777КК ''x'''").toString(), "XW8%_" + QString(25, '9'));
    EXPECT_TRUE(Plates().contains("К777КК 'x'"));
    for (const auto &[frame, field, name, text] :
         {std::tuple{window->frmAuto, "REG", "О001ОО", "Имеются заказы по данному автомобилю. Удаление запрещено"},
          {window->frmMark, "MARKNAME", "Volkswagen", "Имеются автомобили данной марки. Удаление запрещено"},
          {window->frmModel, "MODNAME", "Passat", "Имеются автомобили данной модели. Удаление запрещено"}}) {
        ASSERT_TRUE(frame->DS->DataSet()->Locate(field, name));
        const QStringList before = Column(frame, field);
        dialogs.Clear();
        frame->actDel->Execute();
        EXPECT_EQ(dialogs.Texts().value(1).trimmed(), QString(text) + ".");
        EXPECT_EQ(Column(frame, field), before);
    }
}

TEST_F(AutoWindowTest, EveryGridAndGeneratedCardHasRussianTitlesAndTheGridsRegisterTheirRights)
{
    Show();
    for (TGridFrame *frame : {window->frmAuto, window->frmMark, window->frmModel, window->frmAType, window->frmAYear}) {
        EXPECT_EQ(Untitled(frame), QStringList()) << frame->objectName().toStdString();
        OnCard(frame->actEdit, {[&](TCustomDictFM *card) {
                   QMap<QString, QString> labels;
                   for (QLabel *label : card->findChildren<QLabel *>(QRegularExpression("_LBL$")))
                       labels[label->objectName()] = label->text();
                   EXPECT_EQ(labels.size(), frame->GridView->ColumnCount());
                   EXPECT_EQ(Untitled(card->objectName(), labels), QStringList());
                   card->AdvGlowButton2->click();
               }});
    }

    // The grids register their rights, and a role that may only view cannot change.
    CurrentRoleId = 3;
    Show();
    TCustFM customers;
    customers.show();
    TCustDialogFM picker;
    picker.show();
    QStringList keys;
    for (TGridFrame *frame : {window->frmAuto, window->frmMark, window->frmModel, window->frmAType, window->frmAYear,
                              customers.frmCust, picker.frmCust}) {
        keys << frame->RightsKey();
        EXPECT_EQ(Scalar("select count(*) from ACTIONS where TACTION = '" + frame->RightsKey() + "'").toInt(), 1);
        EXPECT_TRUE(frame->actRefresh->isEnabled());
        EXPECT_FALSE(frame->actAdd->isEnabled() || frame->actEdit->isEnabled() || frame->actDel->isEnabled());
    }
    EXPECT_EQ(keys.join(' '), "AutoFM.frmAuto AutoFM.frmMark AutoFM.frmModel AutoFM.frmAType AutoFM.frmAYear "
                              "CustFM.frmCust CustDialogFM.frmCust");
}

} // namespace
