// The three reports: their windows, the statements built from the choices, the figures, and the
// workbooks as a spreadsheet program reads them.

#include "reports_fixture.h"

#include "db_grid.h"
#include "grid_column.h"
#include "grid_summary.h"
#include "grid_view.h"
#include "main_fm.h"
#include "xlsx_spreadsheet.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace {

using Reports = ReportsTest;

const QString kOrdersHead = "SELECT *\nFROM ORDERS O\nLEFT JOIN CUST C ON O.IDCUST = C.ID\nLEFT JOIN AUTO A ON O.IDAUTO = A.ID\n"
                            "LEFT JOIN MODEL M ON A.MODNAME = M.ID\nLEFT JOIN PAYSTATE N ON O.PAYSTATE = N.ID\n"
                            "LEFT JOIN OSTATE D ON O.idstatus = D.ID\nwhere\n";
const QString kDates = "(create_date>=:dtstart and create_date<=:dtend)";

TEST_F(Reports, MainWindowOpensEachReportOnceMaximisedUnderItsActionsCaption)
{
    TMainFM main({"kelvarion"});
    main.show();
    for (TAction *action : {main.actOtchetVipZakaz, main.actOtchetUslug, main.actOtchetMaterial}) {
        ASSERT_TRUE(action->isEnabled());
        action->Execute();
        QMdiSubWindow *sub = main.MDIClient->activeSubWindow();
        ASSERT_NE(sub, nullptr);
        auto *report = dynamic_cast<TfmReport *>(sub->widget());
        ASSERT_NE(report, nullptr);
        EXPECT_TRUE(sub->isMaximized());
        EXPECT_EQ(report->windowTitle(), action->text());
        action->Execute();
        EXPECT_EQ(main.MDIClient->activeSubWindow()->widget(), report) << "made once";
    }
    EXPECT_EQ(main.MDIClient->subWindowList().size(), 3);
    EXPECT_NE(dynamic_cast<TfmOtchetMaterial *>(fmOtchetMaterial.data()), nullptr);
    fmVipZakaz->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(fmVipZakaz.isNull()) << "freed on close";
}

TEST_F(Reports, ShowSetsTheCurrentMonthAndListsHeadedByAllThenRuns)
{
    auto *w = Show<TfmVipZakaz>();
    const QDate today = QDate::currentDate();
    EXPECT_EQ(w->edDateStart->EditValue().toDate(), QDate(today.year(), today.month(), 1));
    EXPECT_EQ(w->edDateEnd->EditValue().toDate(), QDate(today.year(), today.month(), today.daysInMonth()));
    EXPECT_EQ(w->dxMemData4.value(0).Name, "Все");
    EXPECT_EQ(w->dxMemData2.value(0).Name, "Все");
    EXPECT_EQ(w->dxMemData4.size(), Scalar("select count(*) from OSTATE where AFILTER = 0").toInt() + 1);
    EXPECT_EQ(w->dxMemData2.size(), Scalar("select count(*) from PAYSTATE").toInt() + 1);
    EXPECT_EQ(w->cxDBLookupComboBox1->currentText(), "Все");
    EXPECT_TRUE(dm->dbOtchetVipZakaz.Active());
    QStringList captions;
    for (TGridColumn *column : w->cxGridDBTableView1->ColumnList())
        captions << column->Caption();
    EXPECT_EQ(captions, QStringList({"Номер заказа", "Дата заказа", "Дата изменения", "Статус", "Статус оплаты", "Клиент",
                                     "Полное наименование", "Скидка", "Сумма заказа", "К оплате"}));
    EXPECT_EQ(w->cxGridDBTableView1->EmptyText, "");
}

TEST_F(Reports, OrdersStatementFollowsTheChoicesAndKeepsDeletedOrdersAndTheDayAfter)
{
    const int unpaid = Scalar(QString("select PAYSTATE from ORDERS where ID = %1").arg(first)).toInt();
    struct Case
    {
        int status, payState;
        QString conditions;
        QList<int> orders;
    };
    const QList<Case> cases{
        {0, 0, kDates, {first, paid, deleted, nextDay}},
        {1, 0, "idstatus=:idstatus and\n" + kDates, {first, deleted}},
        {0, 3, "paystate=:paystate and\n" + kDates, {paid}},
        {2, unpaid, "idstatus=:idstatus and\npaystate=:paystate and\n" + kDates, {nextDay}},
    };
    for (const Case &c : cases) {
        auto *w = Run<TfmVipZakaz>(c.status, c.payState);
        EXPECT_EQ(dm->dbOtchetVipZakaz.SelectSQL(), kOrdersHead + c.conditions) << c.status << c.payState;
        EXPECT_EQ(dm->dbOtchetVipZakaz.RefreshSQL, dm->dbOtchetVipZakaz.SelectSQL());
        QList<int> ids;
        for (const QString &num : Column(w, "NUM"))
            ids << Scalar("select ID from ORDERS where NUM = " + Quoted(num)).toInt();
        std::sort(ids.begin(), ids.end());
        EXPECT_EQ(ids, c.orders) << c.status << c.payState;
    }
}

TEST_F(Reports, OrdersGridSumsWhatIsOwedAndTheFooterAddsThemUp)
{
    auto *w = Run<TfmVipZakaz>();
    TGridSummary *footer = w->cxGridDBTableView1->Summary();
    ASSERT_EQ(footer->Count(), 2);
    const double total = Scalar(QString("select sum(SUMORDER) from ORDERS where ID in (%1, %2, %3, %4)")
                                    .arg(first).arg(paid).arg(deleted).arg(nextDay)).toDouble();
    EXPECT_GT(total, 0);
    EXPECT_NEAR(footer->Sum(0).toDouble(), total, 0.01);
    const double paidSum = Scalar(QString("select SUMORDER from ORDERS where ID = %1").arg(paid)).toDouble();
    EXPECT_NEAR(footer->Sum(1).toDouble(), total - paidSum, 0.01) << "a null SUMPAY owes the whole order";
    EXPECT_EQ(footer->At(0).Column->FieldName(), "SUMORDER");
    EXPECT_FALSE(w->grab().isNull()) << "the window paints, footer and all";
}

TEST_F(Reports, PopularityStatementsGroupLinesOfDeletedOrdersAndCountByTheirRules)
{
    struct Case
    {
        int status, payState;
        QString uslug, material;
    };
    // Lines in March: oil on the first, paid and deleted orders, tyres on the paid one and the next
    // day's, a line with no service on the first; filters three on the first, two on the deleted one.
    const QList<Case> cases{
        {0, 0, "Замена масла|3|3000;Шиномонтаж|2|1000;|0|0", "Фильтр|5|1300"},
        {1, 0, "Замена масла|2|2000;|0|0", "Фильтр|5|1300"},
        {0, 3, "Замена масла|1|1000;Шиномонтаж|1|500", ""},
        {2, 3, "Замена масла|1|1000;Шиномонтаж|1|500", ""},
    };
    const QString head = "SELECT A.%1,%2\nFROM %3 D\nLEFT JOIN ORDERS O ON O.ID = D.idorder\nLEFT JOIN %4 A ON A.id=D.%5\nwhere\n";
    for (const Case &c : cases) {
        QString conditions = kDates;
        if (c.payState)
            conditions.prepend("paystate=:paystate and\n");
        if (c.status)
            conditions.prepend("idstatus=:idstatus and\n");
        for (bool services : {true, false}) {
            TfmReport *w = services ? static_cast<TfmReport *>(Run<TfmOtchetUslug>(c.status, c.payState))
                                    : Run<TfmOtchetMaterial>(c.status, c.payState);
            const QString sql = services ? head.arg("servname", "count(A.ID) as cnt,sum(D.summ) as sumprice", "ORDSERV", "SERV", "idserv")
                                                 + conditions + "\nGROUP BY A.servname,A.ID"
                                         : head.arg("matname", "sum(D.OCNT) as cnt,sum(D.OCNT*D.summ) as sumprice", "ORDMAT", "MAT", "idmat")
                                                 + conditions + "\nGROUP BY A.matname,A.ID";
            EXPECT_EQ(w->DataSet().SelectSQL(), sql);
            QStringList rows;
            for (const QStringList &row : Rows(w))
                rows << row.join('|');
            QStringList expected = (services ? c.uslug : c.material).split(';', Qt::SkipEmptyParts);
            EXPECT_EQ(Sorted(rows), Sorted(expected)) << services << c.status << c.payState;
            window.reset();
        }
    }
    auto *w = Run<TfmOtchetMaterial>();
    EXPECT_EQ(w->cxGridDBTableView1->Columns(0)->Caption(), "Наименование услуги") << "the services' caption kept";
    EXPECT_EQ(w->cxGridDBTableView1->Summary()->Count(), 0);
}

TEST_F(Reports, StartAfterEndGivesAnEmptyReportAndNoMessage)
{
    auto *w = Run<TfmVipZakaz>(0, 0, QDate(2024, 3, 31), QDate(2024, 3, 1));
    EXPECT_TRUE(w->DataSet().Active());
    EXPECT_TRUE(w->DataSet().IsEmpty());
    EXPECT_EQ(dialogs.Texts(), QStringList());
}

TEST_F(Reports, OrdersWorkbookHoldsTheGridsCellsWithTotalsOutsideTheBorders)
{
    const QStringList before = RowsIn(*dm, "select ID, NUM, SUMORDER, SUMPAY, PAYSTATE, DEL from ORDERS order by ID");
    auto *w = Run<TfmVipZakaz>();
    const QList<QStringList> rows = Rows(w);
    ASSERT_EQ(rows.size(), 4);
    const QString book = Export(w);
    EXPECT_EQ(shell.Asked, QStringList({"xlsx"}));
    EXPECT_EQ(shell.Opened, QStringList({book}));
    EXPECT_TRUE(QFileInfo(book).fileName().startsWith("Отчет о заказах " + QDate::currentDate().toString("yyyy-MM-dd")));
    EXPECT_EQ(w->DataSet().CurrentIndex(), 3) << "read to its last row";

    const QList<QStringList> cells = Cells(book);
    ASSERT_EQ(cells.size(), 9);
    EXPECT_EQ(cells[1].value(0), "Отчёт о заказах");
    EXPECT_EQ(cells[3], QStringList({"№ заказа", "Дата заказа", "Дата изменения", "Статус", "Статус оплаты", "Клиент",
                                     "Полное наименование", "Скидка", "Сумма заказа", "К оплате"}));
    for (int r = 0; r < rows.size(); ++r)
        EXPECT_EQ(cells[4 + r], rows[r]) << r;
    EXPECT_TRUE(cells.mid(4, 4).contains(rows[1]));
    EXPECT_EQ(rows[1][0], "=1+1") << "a formula stays text";
    EXPECT_EQ(rows[1][5], "Пётр O'Нил \"Ёлка\"");
    EXPECT_EQ(rows[0][1], "01.03.2024");
    double sumOrder = 0, owed = 0;
    for (const QStringList &row : rows)
        sumOrder += row[8].toDouble(), owed += row[9].toDouble();
    EXPECT_EQ(cells[8].mid(0, 8).join(""), "") << "no caption";
    EXPECT_NEAR(cells[8][8].toDouble(), sumOrder, 0.01);
    EXPECT_NEAR(cells[8][9].toDouble(), owed, 0.01);

    const QMap<QString, QString> looks = Looks(book);
    EXPECT_EQ(looks.value("A2"), "b16 - -");
    EXPECT_EQ(looks.value("A4"), "- medium 49");
    EXPECT_EQ(looks.value("J8"), "- thin 49");
    EXPECT_EQ(looks.value("I9", "none"), "none") << "totals row outside the borders";
    const QString sheet = Part(book, "xl/worksheets/sheet1.xml");
    EXPECT_TRUE(sheet.contains("<mergeCell ref=\"A2:J2\"/>") && sheet.contains("<mergeCell ref=\"A3:J3\"/>"));
    EXPECT_FALSE(sheet.contains("<f>")) << "no formulas";
    EXPECT_TRUE(sheet.contains("<cols>")) << "columns fitted";

    EXPECT_EQ(RowsIn(*dm, "select ID, NUM, SUMORDER, SUMPAY, PAYSTATE, DEL from ORDERS order by ID"), before);
    EXPECT_EQ(Workbooks().size(), 1);
    w->cxButton2->click();
    EXPECT_EQ(Workbooks().size(), 2) << "no earlier workbook overwritten";
}

TEST_F(Reports, PopularityWorkbooksHaveThreeColumnsAndWholeCountsWithoutDecimals)
{
    for (bool services : {true, false}) {
        TfmReport *w = services ? static_cast<TfmReport *>(Run<TfmOtchetUslug>()) : Run<TfmOtchetMaterial>();
        const QList<QStringList> cells = Cells(Export(w));
        const QList<QStringList> rows = Rows(w);
        ASSERT_EQ(cells.size(), 5 + rows.size());
        EXPECT_EQ(cells[1][0], services ? "Отчёт о хитах услуг" : "Отчёт о хитах материалов");
        EXPECT_EQ(cells[3], QStringList({services ? "Наименование услуги" : "Материал", "Кол-во", "На сумму"}));
        EXPECT_EQ(cells.mid(4, rows.size()), rows);
        EXPECT_EQ(cells.last(), services ? QStringList({"", "5", "4000"}) : QStringList({"", "5", "1300"}));
        window.reset();
    }
}

TEST_F(Reports, AnEmptyReportHasItsHeaderBorderedAloneAndNoTotals)
{
    auto *w = Run<TfmOtchetUslug>(0, 0, QDate(2020, 1, 1), QDate(2020, 1, 31));
    const QString book = Export(w);
    const QList<QStringList> cells = Cells(book);
    ASSERT_EQ(cells.size(), 4);
    EXPECT_EQ(cells[3][0], "Наименование услуги");
    const QMap<QString, QString> looks = Looks(book);
    EXPECT_EQ(looks.value("C4"), "- medium 49");
    EXPECT_FALSE(looks.contains("A5"));
}

TEST_F(Reports, ExportFailuresSayWhatHappenedAndLeaveNoFile)
{
    auto *w = Run<TfmVipZakaz>();
    shell.Openable = false;
    w->cxButton2->click();
    EXPECT_EQ(dialogs.Texts(), QStringList({"В системе не установле MS Excel!"}));
    shell.Openable = true;

    // A document folder that cannot be made: a file stands in its place.
    QFile blocker(home.filePath("blocker"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    dm->DocFolder = blocker.fileName() + "/doc/";
    dialogs.Clear();
    w->cxButton2->click();
    EXPECT_EQ(dialogs.Texts(), QStringList({"Ошибка создания отчёта!"}));
    EXPECT_EQ(shell.Opened, QStringList());

    // A cell too long for the file format fails the save half-way: the file goes.
    XlsxSpreadsheet sheet;
    sheet.SetDisplayAlerts(false);
    sheet.NewWorkbook();
    sheet.SetCellText(1, 1, "Итого");
    sheet.SetCellText(2, 1, QString(40000, QChar(u'ж')));
    const QString path = home.filePath("half.xlsx");
    EXPECT_THROW(sheet.SaveAs(path), ESpreadsheetError);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_THROW(sheet.Select(SheetRange::Parse("B2:A1")), ESpreadsheetError);
}

} // namespace
