#pragma once
// The reports over a shop of a few orders in March 2024, and what a spreadsheet program reads from the
// workbooks they write: the cells through LibreOffice, the looks from the file's own XML.

#include "orders_fixture.h"

#include "date_edit.h"
#include "report_fm.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QToolButton>

class ReportsTest : public OrdersTest
{
protected:
    void SetUp() override
    {
        OrdersTest::SetUp();
        Exec("delete from ORDERS");
        ivanov = NewCustomer("Иванов");
        quoted = NewCustomer("Пётр O'Нил \"Ёлка\"");
        car = NewVehicle("А123ВС77");
        first = NewOrder(ivanov, car, 1, "'2024-03-01'");
        paid = NewOrder(quoted, car, 2, "'2024-03-15'");
        deleted = NewOrder(ivanov, car, 1, "'2024-03-31'", 1);
        nextDay = NewOrder(quoted, car, 2, "'2024-04-01'");
        NewOrder(ivanov, car, 1, "'2024-04-01 12:00'");
        NewOrder(ivanov, car, 1, "'2024-02-29'");
        Exec(QString("update ORDERS set NUM = '=1+1' where ID = %1").arg(paid));

        oil = NewService("Замена масла", 1000);
        tyres = NewService("Шиномонтаж", 500);
        filter = NewMaterial("Фильтр", 100);
        for (auto [order, service] : {std::pair{first, oil}, {paid, oil}, {paid, tyres}, {deleted, oil}, {nextDay, tyres}})
            Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, %2)").arg(order).arg(service));
        Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, null)").arg(first));
        Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 3)").arg(first).arg(filter));
        Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 2)").arg(deleted).arg(filter));
        Exec(QString("update ORDERS set PAYSTATE = 3, SUMPAY = SUMORDER where ID = %1").arg(paid));
        dm->pFIBTransaction1.CommitRetaining();
    }

    // The window shown, then set to March 2024 with the status and payment state of those ids, and run.
    template <class W>
    W *Run(int status = 0, int payState = 0, QDate start = QDate(2024, 3, 1), QDate end = QDate(2024, 3, 31))
    {
        W *w = window ? static_cast<W *>(window.get()) : Show<W>();
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
        QList<QStringList> rows;
        for (int row = 0; row < ds.RecordCount(); ++row) {
            QStringList cells;
            for (const QString &field : w->Settings().SheetFields)
                cells << TfmReport::GeneralText(ds.RowValue(row, ds.FieldByName(field)->Index()));
            rows << cells;
        }
        return rows;
    }
    static QStringList Column(TfmReport *w, const QString &field)
    {
        QStringList values;
        for (const QStringList &row : Rows(w))
            values << row[w->Settings().SheetFields.indexOf(field)];
        return values;
    }

    // Exports and returns the workbook written, after checking that nothing was said.
    QString Export(TfmReport *w)
    {
        w->cxButton2->click();
        EXPECT_EQ(dialogs.Texts(), QStringList());
        return w->LastWorkbook();
    }
    QStringList Workbooks() { return QDir(dm->DocFolder).entryList(QDir::Files); }

    // The sheet as LibreOffice reads it, row by row, converted to CSV.
    static QList<QStringList> Cells(const QString &workbook)
    {
        QTemporaryDir out;
        QProcess soffice;
        soffice.start("soffice", {"--headless",
                                  QString("-env:UserInstallation=file:///tmp/lo-reports-%1").arg(QCoreApplication::applicationPid()),
                                  "--convert-to", "csv:Text - txt - csv (StarCalc):44,34,76,1", "--outdir", out.path(), workbook});
        EXPECT_TRUE(soffice.waitForFinished(180000)) << "soffice is needed to read the workbooks";
        QFile csv(QDir(out.path()).filePath(QFileInfo(workbook).completeBaseName() + ".csv"));
        EXPECT_TRUE(csv.open(QIODevice::ReadOnly)) << soffice.readAllStandardError().toStdString();
        QList<QStringList> rows;
        for (const QString &line : QString::fromUtf8(csv.readAll()).split('\n', Qt::SkipEmptyParts)) {
            QStringList cells{QString()};
            bool inQuotes = false;
            for (qsizetype i = 0; i < line.size(); ++i) {
                const QChar c = line[i];
                if (c == '"' && inQuotes && i + 1 < line.size() && line[i + 1] == '"')
                    cells.last() += c, ++i;
                else if (c == '"')
                    inQuotes = !inQuotes;
                else if (c == ',' && !inQuotes)
                    cells << QString();
                else if (c != '\r')
                    cells.last() += c;
            }
            rows << cells;
        }
        return rows;
    }

    // One part of the workbook file.
    static QString Part(const QString &workbook, const QString &part)
    {
        QProcess unzip;
        unzip.start("unzip", {"-p", workbook, part});
        EXPECT_TRUE(unzip.waitForFinished(30000));
        return QString::fromUtf8(unzip.readAllStandardOutput());
    }
    // The look of each cell that has one, as "bold size border numberformat": "b16 - -", "- - medium 49"…
    static QMap<QString, QString> Looks(const QString &workbook)
    {
        const QString styles = Part(workbook, "xl/styles.xml");
        auto elements = [&](const QString &list, const QString &item) {
            const QString body = styles.section("<" + list, 1, 1).section("</" + list + ">", 0, 0);
            QStringList all = body.split("<" + item, Qt::SkipEmptyParts);
            all.removeFirst();
            return all;
        };
        const QStringList fonts = elements("fonts", "font>"), borders = elements("borders", "border>"),
                          xfs = elements("cellXfs", "xf ");
        auto attr = [](const QString &text, const QString &name) {
            return QRegularExpression(name + "=\"([^\"]*)\"").match(text).captured(1);
        };
        QMap<QString, QString> looks;
        const QString sheet = Part(workbook, "xl/worksheets/sheet1.xml");
        QRegularExpression cell("<c r=\"([A-Z]+[0-9]+)\" s=\"([0-9]+)\"");
        for (const auto &m : cell.globalMatch(sheet)) {
            const QString xf = xfs.value(m.captured(2).toInt());
            const QString font = fonts.value(attr(xf, "fontId").toInt());
            const QString border = borders.value(attr(xf, "borderId").toInt());
            looks[m.captured(1)] = QString("%1%2 %3 %4")
                                       .arg(font.contains("<b/>") ? "b" : "-", attr(font, "sz val") == "16" ? "16" : "")
                                       .arg(attr(border.section("<left", 1, 1), "style").isEmpty() ? "-" : attr(border.section("<left", 1, 1), "style"))
                                       .arg(attr(xf, "numFmtId") == "49" ? "49" : "-");
        }
        return looks;
    }

    int ivanov = 0, quoted = 0, car = 0, first = 0, paid = 0, deleted = 0, nextDay = 0;
    int oil = 0, tyres = 0, filter = 0;
};
