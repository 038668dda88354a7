#pragma once
// The report windows: a period, an order status and a payment state; a statement built from them line
// by line; the grid of its rows with footer sums; the export of those rows to a spreadsheet workbook.
// The three reports are one window told by one row of the settings table each.

#include "fm_base.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

class QComboBox;
class QGroupBox;
class QToolButton;
class TDataDM;
class TDataSource;
class TDateEdit;
class TDBGrid;
class TDBGridView;
class TpFIBDataSet;

// What makes one report.
struct TReportSettings
{
    QString FormName;
    TpFIBDataSet TDataDM::*DataSet;
    TDataSource TDataDM::*DataSource;
    // The statement before its conditions ending in "where", and what follows the date condition.
    QStringList SelectHead;
    QStringList SelectTail;
    // Grid columns: field and caption; footer sums under the columns of these fields.
    QList<QPair<QString, QString>> GridColumns;
    QStringList FooterSums;
    // The workbook: title, header row, the fields written as text in that order, the fields totalled.
    QString SheetTitle;
    QStringList SheetHeaders;
    QStringList SheetFields;
    QStringList TotalFields;
    // The workbook's file name before the moment it was made.
    QString FileName;
};

class TfmReport : public TfmBase
{
    Q_OBJECT
public:
    TfmReport(const TReportSettings &settings, TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    // One row of an in-memory list of a lookup.
    struct TMemRow
    {
        int id;
        QString Name;
    };

    QGroupBox *gbPeriod;
    TDateEdit *edDateStart;
    TDateEdit *edDateEnd;
    // Payment state over dxMemData2, status over dxMemData4; each holds its choice in dxMemData1, dxMemData3.
    QComboBox *cxDBLookupComboBox1;
    QComboBox *cxDBLookupComboBox2;
    QToolButton *cxButton1;
    QToolButton *cxButton2;
    TDBGrid *cxGrid2;
    TDBGridView *cxGridDBTableView1;
    int dxMemData1 = 0;
    QList<TMemRow> dxMemData2;
    int dxMemData3 = 0;
    QList<TMemRow> dxMemData4;

    const TReportSettings &Settings() const { return m_settings; }
    TpFIBDataSet &DataSet() const;

    // Defaults and lists, then the report.
    void FormShow(QObject *sender) override;
    // Frees the window; the main window is not told.
    void FormClose(QObject *sender, TCloseAction &action) override;
    // Builds the statement from the choices and opens it.
    void cxButton1Click(QObject *sender);
    // Writes the rows to a new workbook under the documents folder and hands it to the shell.
    void cxButton2Click(QObject *sender);

    // The path of the last workbook written; empty when none was.
    QString LastWorkbook() const { return m_lastWorkbook; }

    // A field's value as the report writes it: dates as "dd.MM.yyyy" with the time when there is one,
    // numbers by the general conversion of the locale.
    static QString GeneralText(const QVariant &value);
    // "<folder><name> yyyy-MM-dd hh-mm-ss.xlsx", with " (2)", " (3)"… when such a file is there already.
    static QString NewWorkbookName(const QString &folder, const QString &name, const QDateTime &moment);

    static const QString NoSpreadsheetText;
    static const QString ExportErrorText;

private:
    void FillList(QComboBox *lookup, QList<TMemRow> &list, const QString &procedure, const QString &nameField);
    void ExportTo(class Spreadsheet &sheet);

    const TReportSettings &m_settings;
    QString m_lastWorkbook;
};

// Orders of a period with their status, payment state and sums.
class TfmVipZakaz : public TfmReport
{
    Q_OBJECT
public:
    explicit TfmVipZakaz(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    static const TReportSettings Report;
};

// Services of a period by the number of order lines.
class TfmOtchetUslug : public TfmReport
{
    Q_OBJECT
public:
    explicit TfmOtchetUslug(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    static const TReportSettings Report;
};

// Materials of a period by the count sold.
class TfmOtchetMaterial : public TfmReport
{
    Q_OBJECT
public:
    explicit TfmOtchetMaterial(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    static const TReportSettings Report;
};
