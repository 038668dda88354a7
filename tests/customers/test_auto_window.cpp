// The vehicles window: its filter, its cards and deletes, the jump to the orders of a vehicle, the
// widths of the lists, and the rights of every grid of the customers' and vehicles' windows.

#include "window_fixture.h"

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

class AutoWindowTest : public WindowTest
{
protected:
    void Show() { autos = WindowTest::Show<TAutoFM>(&link); }
    QStringList Plates() { return Column(autos->frmAuto, "REG"); }

    RecordingLink link;
    TAutoFM *autos = nullptr;
};

TEST_F(AutoWindowTest, FiltersCardsDeletesTheJumpToOrdersTheWidthsOfTheListsTheTitlesAndTheRightsOfEveryGrid)
{
    const int mine = NewVehicle("Е555КХ", 2, 2);
    Exec(QString("update AUTO set VIN = 'WVW%_1', DRIVE = 'бензин', COLNAME = 'красный', AYEAR = 3 where ID = %1").arg(mine));
    Exec(QString("update AUTO set VIN = 'XTA', DRIVE = 'дизель', COLNAME = 'синий' where ID = %1").arg(NewVehicle("М001ММ")));
    Exec("insert into AUTO (REG, DEL) values ('У000УУ', 1)");
    const QStringList found{"Е555КХ"};
    const QList<std::pair<std::function<void()>, QStringList>> cases = {
        {[&] { TypeText(autos->edReg, "е555"); }, found},      {[&] { TypeText(autos->edVIN, "wvw%_"); }, found},
        {[&] { TypeText(autos->edDrive, "бенз"); }, found},    {[&] { TypeText(autos->edColName, "КРАС"); }, found},
        {[&] { Pick(autos->lcbModel, "Fabia"); }, found},      {[&] { Pick(autos->lcbMark, "Skoda"); }, found},
        {[&] { Pick(autos->lcbYear, "2013"); }, found},        {[&] { autos->cbDel->click(); }, {"У000УУ"}},
        {[&] { TypeText(autos->edReg, "'"); }, {}},
    };
    for (const auto &[set, expected] : cases) {
        Show();
        EXPECT_EQ(Plates().size(), 2) << "no filter: the vehicles not deleted";
        set();
        Settle();
        EXPECT_EQ(Plates(), expected);
    }

    // A vehicle is added through its card; rows in use are not deleted.
    NewOrder(NewCustomer("Петров"), NewVehicle("О001ОО"));
    Show();
    OnCard(autos->frmAuto->actAdd, {[](TCustomDictFM *card) {
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
         {std::tuple{autos->frmAuto, "REG", "О001ОО", "Имеются заказы по данному автомобилю. Удаление запрещено"},
          {autos->frmMark, "MARKNAME", "Volkswagen", "Имеются автомобили данной марки. Удаление запрещено"},
          {autos->frmModel, "MODNAME", "Passat", "Имеются автомобили данной модели. Удаление запрещено"}}) {
        ASSERT_TRUE(frame->DS->DataSet()->Locate(field, name));
        const QStringList before = Column(frame, field);
        EXPECT_EQ(Delete(frame).value(1), QString(text) + ".");
        EXPECT_EQ(Column(frame, field), before);
    }

    // "Show orders" sends the plate and the whole period; three lists take a quarter each.
    NewVehicle("А111АА");
    const int current = NewVehicle("В222ВВ");
    Show();
    ASSERT_TRUE(dm->spAutoOpen.Locate("ID", current));
    autos->miShowOrders->trigger();
    TypeText(autos->edReg, "нет такого");
    Settle();
    autos->miShowOrders->trigger();
    EXPECT_EQ(link.Sent, QStringList({"1027 0", "1027 0"}));
    ASSERT_EQ(link.Filters.size(), 2);
    for (const auto &[sent, reg] : {std::pair{link.Filters[0], "В222ВВ"}, {link.Filters[1], ""}}) {
        EXPECT_EQ(sent.Reg, reg);
        EXPECT_EQ(sent.DateUp, 0);
        EXPECT_NEAR(sent.DateTo, DateTimeToSerial(QDateTime::currentDateTime()), 1.0 / 24 / 60);
        EXPECT_TRUE((sent.OState + sent.Num + sent.Cust + sent.Mark + sent.Model).isEmpty());
    }
    EXPECT_EQ(autos->frmAuto->pmMain->actions().last()->text(), "Показать заказы по данному автомобилю");

    // Three lists take a quarter of the window each, the years the rest.
    for (const int width : {1000, 1203, 801}) {
        autos->resize(width, 700);
        QCoreApplication::processEvents();
        const int quarter = width / 4;
        QList<int> lefts;
        for (TGridFrame *frame : {autos->frmMark, autos->frmModel, autos->frmAType, autos->frmAYear})
            lefts << frame->x();
        EXPECT_EQ(lefts, QList<int>({0, quarter, 2 * quarter, 3 * quarter})) << width;
        EXPECT_EQ(autos->frmAType->width(), quarter);
        EXPECT_EQ(autos->frmAYear->geometry().right() + 1, autos->frmAYear->parentWidget()->width());
    }

    // Every grid and generated card has Russian titles.
    Show();
    for (TGridFrame *frame : {autos->frmAuto, autos->frmMark, autos->frmModel, autos->frmAType, autos->frmAYear}) {
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
    for (TGridFrame *frame : {autos->frmAuto, autos->frmMark, autos->frmModel, autos->frmAType, autos->frmAYear,
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
