// The three reports over a shop of a few orders in March 2024: their windows, the statements built from
// the choices, the figures, and the workbooks as a spreadsheet program reads them: the cells through
// LibreOffice, the looks from the file's own XML.

#include "window_fixture.h"

#include "date_edit.h"
#include "grid_column.h"
#include "grid_summary.h"
#include "grid_view.h"
#include "report_fm.h"
#include "xlsx_spreadsheet.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QToolButton>

namespace {

class Reports : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        Exec("delete from ORDERS");
        ivanov = NewCustomer("Иванов");
        const int quoted = NewCustomer("Пётр O'Нил \"Ёлка\""), car = NewVehicle("А123ВС77");
        first = NewOrder(ivanov, car, 1, "'2024-03-01'");
        paid = NewOrder(quoted, car, 2, "'2024-03-15'");
        deleted = NewOrder(ivanov, car, 1, "'2024-03-31'", 1);
        nextDay = NewOrder(quoted, car, 2, "'2024-04-01'");
        NewOrder(ivanov, car, 1, "'2024-04-01 12:00'");
        NewOrder(ivanov, car, 1, "'2024-02-29'");
        Exec(QString("update ORDERS set NUM = '=1+1' where ID = %1").arg(paid));
        const int oil = NewService("Замена масла", 1000), tyres = NewService("Шиномонтаж", 500), filter = NewMaterial("Фильтр", 100);
        for (auto [order, service] : {std::pair{first, oil}, {paid, oil}, {paid, tyres}, {deleted, oil}, {nextDay, tyres}})
            Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, %2)").arg(order).arg(service));
        Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, null)").arg(first));
        Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 3)").arg(first).arg(filter));
        Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 2)").arg(deleted).arg(filter));
        Exec(QString("update ORDERS set PAYSTATE = 3, SUMPAY = SUMORDER where ID = %1").arg(paid));
        dm->pFIBTransaction1.CommitRetaining();
    }

    // The window shown, then set to the period (March 2024) with the status and payment state of those ids, and run.
    template <class W>
    W *Run(int status = 0, int payState = 0, QDate start = QDate(2024, 3, 1), QDate end = QDate(2024, 3, 31))
    {
        window.reset();
        W *w = Show<W>();
        w->edDateStart->SetEditValue(QDateTime(start, QTime(0, 0)));
        w->edDateEnd->SetEditValue(QDateTime(end, QTime(0, 0)));
        w->cxDBLookupComboBox2->setCurrentIndex(w->cxDBLookupComboBox2->findData(status));
        w->cxDBLookupComboBox1->setCurrentIndex(w->cxDBLookupComboBox1->findData(payState));
        w->cxButton1->click();
        return w;
    }
    // The rows of the report's dataset, the fields the workbook gets, as the report writes them.
    static QList<QStringList> Rows(TfmReport *w)
    {
        TpFIBDataSet &ds = w->DataSet();
        ds.FetchAll();
        QList<QStringList> rows(ds.RecordCount());
        for (int row = 0; row < rows.size(); ++row)
            for (const QString &field : w->Settings().SheetFields)
                rows[row] << TfmReport::GeneralText(ds.RowValue(row, ds.FieldByName(field)->Index()));
        return rows;
    }

    int ivanov = 0, first = 0, paid = 0, deleted = 0, nextDay = 0;
};

// The sheets as LibreOffice reads them, converted to CSV in one run: rows of cells for each workbook.
QList<QList<QStringList>> Cells(const QStringList &workbooks)
{
    QTemporaryDir out;
    QProcess soffice;
    soffice.start("soffice", QStringList{"--headless", "-env:UserInstallation=file://" + out.path() + "/profile", "--convert-to",
                                         "csv:Text - txt - csv (StarCalc):44,34,76,1", "--outdir", out.path()} + workbooks);
    EXPECT_TRUE(soffice.waitForFinished(180000) && soffice.exitCode() == 0) << "soffice: " << soffice.errorString().toStdString();
    QList<QList<QStringList>> books(workbooks.size());
    for (int b = 0; b < workbooks.size(); ++b) {
        QFile csv(QDir(out.path()).filePath(QFileInfo(workbooks[b]).completeBaseName() + ".csv"));
        EXPECT_TRUE(csv.open(QIODevice::ReadOnly)) << workbooks[b].toStdString();
        // A field is quoted, its quotes doubled, or plain up to the next comma.
        for (const QString &line : QString::fromUtf8(csv.readAll()).remove('\r').split('\n', Qt::SkipEmptyParts)) {
            books[b] << QStringList();
            for (const auto &m : QRegularExpression("(?:^|,)(?:\"((?:[^\"]|\"\")*)\"|([^,]*))").globalMatch(line))
                books[b].last() << m.captured(1).replace("\"\"", "\"") + m.captured(2);
        }
    }
    return books;
}

// One part of a workbook file.
QString Part(const QString &workbook, const QString &part)
{
    QProcess unzip;
    unzip.start("unzip", {"-p", workbook, part});
    EXPECT_TRUE(unzip.waitForFinished(30000));
    return QString::fromUtf8(unzip.readAllStandardOutput());
}
// The look of each cell that has one, as "bold size border numberformat": "b16 - -", "- medium 49"…
QMap<QString, QString> Looks(const QString &workbook)
{
    const QString styles = Part(workbook, "xl/styles.xml");
    auto elements = [&](const QString &list, const QString &item) {
        return styles.section("<" + list, 1, 1).section("</" + list + ">", 0, 0).split("<" + item).mid(1);
    };
    const QStringList fonts = elements("fonts", "font>"), borders = elements("borders", "border>"), xfs = elements("cellXfs", "xf ");
    auto attr = [](const QString &text, const QString &name) { return QRegularExpression(name + "=\"([^\"]*)\"").match(text).captured(1); };
    QMap<QString, QString> looks;
    for (const auto &m : QRegularExpression("<c r=\"([A-Z]+[0-9]+)\" s=\"([0-9]+)\"").globalMatch(Part(workbook, "xl/worksheets/sheet1.xml"))) {
        const QString xf = xfs.value(m.captured(2).toInt()), font = fonts.value(attr(xf, "fontId").toInt());
        const QString border = attr(borders.value(attr(xf, "borderId").toInt()).section("<left", 1, 1), "style");
        looks[m.captured(1)] = QString("%1%2 %3 %4").arg(font.contains("<b/>") ? "b" : "-", attr(font, "sz val") == "16" ? "16" : "")
                                   .arg(border.isEmpty() ? "-" : border, attr(xf, "numFmtId") == "49" ? "49" : "-");
    }
    return looks;
}

const QString kOrdersHead = "SELECT *\nFROM ORDERS O\nLEFT JOIN CUST C ON O.IDCUST = C.ID\nLEFT JOIN AUTO A ON O.IDAUTO = A.ID\n"
                            "LEFT JOIN MODEL M ON A.MODNAME = M.ID\nLEFT JOIN PAYSTATE N ON O.PAYSTATE = N.ID\n"
                            "LEFT JOIN OSTATE D ON O.idstatus = D.ID\nwhere\n";
const QString kDates = "(create_date>=:dtstart and create_date<=:dtend)";

// The windows and their statements, then the workbooks.
TEST_F(Reports, WindowsStatementsFiguresAndWorkbooksWhoseCellsAreTextWithTotalsOutsideTheBordersAndFailedExportsLeaveNoFile)
{
    auto *w = Show<TfmVipZakaz>();
    const QDate today = QDate::currentDate();
    EXPECT_EQ(w->edDateStart->EditValue().toDate(), QDate(today.year(), today.month(), 1));
    EXPECT_EQ(w->edDateEnd->EditValue().toDate(), QDate(today.year(), today.month(), today.daysInMonth()));
    EXPECT_EQ(QStringList({w->dxMemData4.value(0).Name, w->dxMemData2.value(0).Name, w->cxDBLookupComboBox1->currentText()}),
              QStringList({"Все", "Все", "Все"}));
    EXPECT_EQ(QList<int>({int(w->dxMemData4.size()), int(w->dxMemData2.size())}),
              QList<int>({Scalar("select count(*) from OSTATE where AFILTER = 0").toInt() + 1, Scalar("select count(*) from PAYSTATE").toInt() + 1}));
    EXPECT_TRUE(dm->dbOtchetVipZakaz.Active());
    EXPECT_EQ(Captions(w->cxGridDBTableView1), QStringList({"Номер заказа", "Дата заказа", "Дата изменения", "Статус",
                                                            "Статус оплаты", "Клиент", "Полное наименование", "Скидка",
                                                            "Сумма заказа", "К оплате"}));
    EXPECT_EQ(w->cxGridDBTableView1->EmptyText, "");

    // Over March the grid sums what is owed and the footer adds it up.
    w = Run<TfmVipZakaz>();
    TGridSummary *footer = w->cxGridDBTableView1->Summary();
    ASSERT_EQ(footer->Count(), 2);
    const double total = Scalar(QString("select sum(SUMORDER) from ORDERS where ID in (%1, %2, %3, %4)")
                                    .arg(first).arg(paid).arg(deleted).arg(nextDay)).toDouble();
    EXPECT_GT(total, 0);
    EXPECT_NEAR(footer->Sum(0).toDouble(), total, 0.01);
    const double paidSum = Scalar(QString("select SUMORDER from ORDERS where ID = %1").arg(paid)).toDouble();
    EXPECT_NEAR(footer->Sum(1).toDouble(), total - paidSum, 0.01) << "a null SUMPAY owes the whole order";
    EXPECT_FALSE(w->grab().isNull()) << "the window paints, footer and all";
    auto *material = Run<TfmOtchetMaterial>();
    EXPECT_EQ(material->cxGridDBTableView1->Columns(0)->Caption(), "Наименование услуги") << "the services' caption kept";
    EXPECT_EQ(material->cxGridDBTableView1->Summary()->Count(), 0);

    // A start after the end gives an empty report and no message.
    Run<TfmVipZakaz>(0, 0, QDate(2024, 3, 31), QDate(2024, 3, 1));
    EXPECT_TRUE(dm->dbOtchetVipZakaz.Active() && dm->dbOtchetVipZakaz.IsEmpty());

    // The statements follow the choices; deleted orders count, and so do orders stamped at the very start
    // of the day after the period.
    const int unpaid = Scalar(QString("select PAYSTATE from ORDERS where ID = %1").arg(first)).toInt();
    // Lines in March: oil on the first, paid and deleted orders, tyres on the paid one and the next day's,
    // a line with no service on the first; filters three on the first, two on the deleted one.
    struct Case { int status, payState; QList<int> orders; QString uslug, material; };
    const QList<Case> cases{
        {0, 0, {first, paid, deleted, nextDay}, "Замена масла|3|3000;Шиномонтаж|2|1000;|0|0", "Фильтр|5|1300"},
        {1, 0, {first, deleted}, "Замена масла|2|2000;|0|0", "Фильтр|5|1300"},
        {0, 3, {paid}, "Замена масла|1|1000;Шиномонтаж|1|500", ""},
        {2, unpaid, {nextDay}, "Шиномонтаж|1|500", ""},
    };
    const QString head = "SELECT A.%1,%2\nFROM %3 D\nLEFT JOIN ORDERS O ON O.ID = D.idorder\nLEFT JOIN %4 A ON A.id=D.%5\nwhere\n";
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.status << " " << c.payState);
        const QString conditions = QString(c.status ? "idstatus=:idstatus and\n" : "") + (c.payState ? "paystate=:paystate and\n" : "") + kDates;
        auto *orders = Run<TfmVipZakaz>(c.status, c.payState);
        EXPECT_EQ(dm->dbOtchetVipZakaz.SelectSQL(), kOrdersHead + conditions);
        EXPECT_EQ(dm->dbOtchetVipZakaz.RefreshSQL, dm->dbOtchetVipZakaz.SelectSQL());
        QList<int> ids;
        for (const QStringList &row : Rows(orders))
            ids << Scalar("select ID from ORDERS where NUM = " + Quoted(row[0])).toInt();
        std::sort(ids.begin(), ids.end());
        EXPECT_EQ(ids, c.orders);
        for (bool services : {true, false}) {
            TfmReport *w = services ? static_cast<TfmReport *>(Run<TfmOtchetUslug>(c.status, c.payState))
                                    : Run<TfmOtchetMaterial>(c.status, c.payState);
            EXPECT_EQ(w->DataSet().SelectSQL(),
                      services ? head.arg("servname", "count(A.ID) as cnt,sum(D.summ) as sumprice", "ORDSERV", "SERV", "idserv")
                                     + conditions + "\nGROUP BY A.servname,A.ID"
                               : head.arg("matname", "sum(D.OCNT) as cnt,sum(D.OCNT*D.summ) as sumprice", "ORDMAT", "MAT", "idmat")
                                     + conditions + "\nGROUP BY A.matname,A.ID");
            QStringList rows;
            for (const QStringList &row : Rows(w))
                rows << row.join('|');
            EXPECT_EQ(Sorted(rows), Sorted((services ? c.uslug : c.material).split(';', Qt::SkipEmptyParts))) << services;
        }
    }

    // The orders', the two popularity reports' and an empty report's workbooks, read in one go; then the
    // export's failures.
    const QStringList before = RowsIn(*dm, "select ID, NUM, SUMORDER, SUMPAY, PAYSTATE, DEL from ORDERS order by ID");
    QList<QList<QStringList>> rows;
    QStringList books;
    auto add = [&](TfmReport *w) { rows << Rows(w), w->cxButton2->click(), books << w->LastWorkbook(); };
    add(Run<TfmVipZakaz>());
    EXPECT_EQ(shell.Asked, QStringList({"xlsx"}));
    EXPECT_EQ(shell.Opened, QStringList({books[0]}));
    EXPECT_TRUE(QFileInfo(books[0]).fileName().startsWith("Отчет о заказах " + QDate::currentDate().toString("yyyy-MM-dd")));
    EXPECT_EQ(dm->dbOtchetVipZakaz.CurrentIndex(), 3) << "read to its last row";
    add(Run<TfmOtchetUslug>());
    add(Run<TfmOtchetMaterial>());
    add(Run<TfmOtchetUslug>(0, 0, QDate(2020, 1, 1), QDate(2020, 1, 31)));
    EXPECT_EQ(QDir(dm->DocFolder).entryList(QDir::Files).size(), 4) << "no earlier workbook overwritten";
    EXPECT_EQ(RowsIn(*dm, "select ID, NUM, SUMORDER, SUMPAY, PAYSTATE, DEL from ORDERS order by ID"), before);
    ASSERT_EQ(rows[0].size(), 4);
    EXPECT_EQ(QStringList({rows[0][0][1], rows[0][1][0], rows[0][1][5]}), QStringList({"01.03.2024", "=1+1", "Пётр O'Нил \"Ёлка\""}));

    // Title, a blank row, the headers, the rows, then the sums of the totalled columns, uncaptioned.
    const QList<QList<QStringList>> cells = Cells(books);
    ASSERT_EQ(cells.size(), 4);
    const QStringList titles = {"Отчёт о заказах", "Отчёт о хитах услуг", "Отчёт о хитах материалов", "Отчёт о хитах услуг"};
    const QList<QStringList> headers = {{"№ заказа", "Дата заказа", "Дата изменения", "Статус", "Статус оплаты", "Клиент",
                                         "Полное наименование", "Скидка", "Сумма заказа", "К оплате"},
                                        {"Наименование услуги", "Кол-во", "На сумму"}, {"Материал", "Кол-во", "На сумму"},
                                        {"Наименование услуги", "Кол-во", "На сумму"}};
    double sumOrder = 0, owed = 0;
    for (const QStringList &row : rows[0])
        sumOrder += row[8].toDouble(), owed += row[9].toDouble();
    const QList<QStringList> totals = {QStringList(8, "") << QString::number(sumOrder) << QString::number(owed),
                                       {"", "5", "4000"}, {"", "5", "1300"}};
    for (int b = 0; b < 4; ++b) {
        SCOPED_TRACE(titles[b].toStdString());
        ASSERT_EQ(cells[b].size(), 4 + rows[b].size() + (b < 3));
        EXPECT_EQ(cells[b][1].value(0), titles[b]);
        EXPECT_EQ(cells[b][3], headers[b]);
        EXPECT_EQ(cells[b].mid(4, rows[b].size()), rows[b]);
        if (b < 3)
            EXPECT_EQ(cells[b].last(), totals[b]);
    }
    const QMap<QString, QString> looks = Looks(books[0]);
    EXPECT_EQ(QStringList({looks.value("A2"), looks.value("A4"), looks.value("J8"), looks.value("I9", "none")}),
              QStringList({"b16 - -", "- medium 49", "- thin 49", "none"}));
    const QString sheet = Part(books[0], "xl/worksheets/sheet1.xml");
    EXPECT_TRUE(sheet.contains("<mergeCell ref=\"A2:J2\"/>") && sheet.contains("<mergeCell ref=\"A3:J3\"/>"));
    EXPECT_FALSE(sheet.contains("<f>")) << "no formulas";
    EXPECT_TRUE(sheet.contains("<cols>")) << "columns fitted";
    const QMap<QString, QString> empty = Looks(books[3]);
    EXPECT_EQ(QStringList({empty.value("C4"), empty.value("A5", "none")}), QStringList({"- medium 49", "none"}));

    // The failures of an export say what happened and leave no file.
    w = Run<TfmVipZakaz>();
    shell.Opened.clear();
    shell.Openable = false;
    w->cxButton2->click();
    EXPECT_EQ(dialogs.Texts(), QStringList({"В системе не установле MS Excel!"})) << "and nothing said before";
    shell.Openable = true;

    // A document folder that cannot be made: a file stands in its place.
    ASSERT_TRUE(QFile(home.filePath("blocker")).open(QIODevice::WriteOnly));
    dm->DocFolder = home.filePath("blocker") + "/doc/";
    dialogs.Clear();
    w->cxButton2->click();
    EXPECT_EQ(dialogs.Texts(), QStringList({"Ошибка создания отчёта!"}));
    EXPECT_EQ(shell.Opened, QStringList());

    // A cell too long for the file format fails the save half-way: the file goes.
    XlsxSpreadsheet book;
    book.SetDisplayAlerts(false);
    book.NewWorkbook();
    book.SetCellText(1, 1, "Итого");
    book.SetCellText(2, 1, QString(40000, QChar(u'ж')));
    EXPECT_THROW(book.SaveAs(home.filePath("half.xlsx")), ESpreadsheetError);
    EXPECT_FALSE(QFile::exists(home.filePath("half.xlsx")));
    EXPECT_THROW(book.Select(SheetRange::Parse("B2:A1")), ESpreadsheetError);
}

} // namespace
