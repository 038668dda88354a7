#include "report_fm.h"

#include "app_exception.h"
#include "data_dm.h"
#include "date_edit.h"
#include "db_grid.h"
#include "dialogs.h"
#include "fib_xsqlvar.h"
#include "grid_column.h"
#include "grid_summary.h"
#include "grid_view.h"
#include "spreadsheet.h"

#include <QComboBox>
#include <QDir>
#include <QFontMetrics>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

const QString TfmReport::NoSpreadsheetText = QStringLiteral("В системе не установле MS Excel!");
const QString TfmReport::ExportErrorText = QStringLiteral("Ошибка создания отчёта!");

namespace {

// Column letters of the workbook, as far as a report may reach.
const char *const kLetters[20] = {"A", "B", "C", "D", "E", "F", "G", "H", "I", "J",
                                  "K", "L", "M", "N", "O", "P", "Q", "R", "S", "T"};

template <class W>
W *Make(QWidget *parent, const char *name)
{
    auto *w = new W(parent);
    w->setObjectName(QLatin1String(name));
    return w;
}

QToolButton *ImageButton(QWidget *parent, const char *name, QStyle::StandardPixmap icon, const QString &hint)
{
    auto *button = Make<QToolButton>(parent, name);
    button->setIcon(parent->style()->standardIcon(icon));
    button->setIconSize(QSize(32, 32));
    button->setToolTip(hint);
    button->setAutoRaise(true);
    return button;
}

double NumberOf(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<TFIBCurrency>())
        return value.value<TFIBCurrency>().ToDouble();
    return value.isValid() ? value.toDouble() : 0.0;
}

} // namespace

TfmReport::TfmReport(const TReportSettings &settings, TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent), m_settings(settings)
{
    setObjectName(settings.FormName);
    auto *layout = new QVBoxLayout(pnlMain);
    auto *top = new QHBoxLayout;
    layout->addLayout(top);

    gbPeriod = Make<QGroupBox>(pnlMain, "gbPeriod");
    gbPeriod->setTitle(QStringLiteral("Период"));
    auto *period = new QHBoxLayout(gbPeriod);
    edDateStart = Make<TDateEdit>(gbPeriod, "edDateStart");
    edDateEnd = Make<TDateEdit>(gbPeriod, "edDateEnd");
    auto *from = Make<QLabel>(gbPeriod, "lbDateStart");
    from->setText(QStringLiteral("C:"));
    from->setBuddy(edDateStart);
    auto *to = Make<QLabel>(gbPeriod, "lbDateEnd");
    to->setText(QStringLiteral("ПО:"));
    to->setBuddy(edDateEnd);
    period->addWidget(from);
    period->addWidget(edDateStart);
    period->addWidget(to);
    period->addWidget(edDateEnd);
    top->addWidget(gbPeriod);

    auto lookupBox = [this, top](const char *box, const QString &title, const char *name) {
        auto *group = Make<QGroupBox>(pnlMain, box);
        group->setTitle(title);
        auto *inner = new QHBoxLayout(group);
        auto *lookup = Make<QComboBox>(group, name);
        lookup->setMinimumWidth(170);
        inner->addWidget(lookup);
        top->addWidget(group);
        return lookup;
    };
    cxDBLookupComboBox2 = lookupBox("gbStatus", QStringLiteral("Статус"), "cxDBLookupComboBox2");
    cxDBLookupComboBox1 = lookupBox("gbPayState", QStringLiteral("Статус оплаты"), "cxDBLookupComboBox1");
    connect(cxDBLookupComboBox1, &QComboBox::currentIndexChanged, this,
            [this](int index) { dxMemData1 = index >= 0 ? cxDBLookupComboBox1->itemData(index).toInt() : 0; });
    connect(cxDBLookupComboBox2, &QComboBox::currentIndexChanged, this,
            [this](int index) { dxMemData3 = index >= 0 ? cxDBLookupComboBox2->itemData(index).toInt() : 0; });

    cxButton1 = ImageButton(pnlMain, "cxButton1", QStyle::SP_BrowserReload, QStringLiteral("Сформировать отчёт"));
    cxButton2 = ImageButton(pnlMain, "cxButton2", QStyle::SP_DialogSaveButton, QStringLiteral("Выгрузить в таблицу"));
    top->addWidget(cxButton1);
    top->addWidget(cxButton2);
    top->addStretch(1);
    auto guarded = [this](void (TfmReport::*handler)(QObject *), QObject *sender) {
        try {
            (this->*handler)(sender);
        } catch (...) {
            HandleCurrentException();
        }
    };
    connect(cxButton1, &QToolButton::clicked, this, [=, this] { guarded(&TfmReport::cxButton1Click, cxButton1); });
    connect(cxButton2, &QToolButton::clicked, this, [=, this] { guarded(&TfmReport::cxButton2Click, cxButton2); });

    cxGrid2 = Make<TDBGrid>(pnlMain, "cxGrid2");
    cxGridDBTableView1 = cxGrid2->View();
    cxGridDBTableView1->setObjectName(QStringLiteral("cxGridDBTableView1"));
    layout->addWidget(cxGrid2, 1);
    TDBGridView *view = cxGridDBTableView1;
    view->SetEditing(false);
    view->SetColumnAutoWidth(true);
    view->EmptyText = QString();
    view->setWordWrap(true);
    // The indicator: a narrow strip before the rows.
    view->verticalHeader()->setVisible(true);
    view->verticalHeader()->setDefaultSectionSize(22);
    if (DataDM)
        view->SetDataSource(&(DataDM->*settings.DataSource));
    // The columns share the width in proportion to their captions, so that no caption is cut.
    const QFontMetrics metrics(view->horizontalHeader()->font());
    for (const auto &[field, caption] : settings.GridColumns) {
        TGridColumn *column = view->CreateColumn(field);
        column->SetCaption(caption);
        column->SetWidth(qMax(80, metrics.horizontalAdvance(caption) + 24));
    }
    view->SetFooterVisible(true);
    for (const QString &field : settings.FooterSums)
        view->Summary()->Add(view->FindColumnByFieldName(field), QStringLiteral("#,##0.00"));
}

TpFIBDataSet &TfmReport::DataSet() const
{
    return DataDM->*m_settings.DataSet;
}

void TfmReport::FormClose(QObject *, TCloseAction &action)
{
    action = caFree;
}

void TfmReport::FillList(QComboBox *lookup, QList<TMemRow> &list, const QString &procedure, const QString &nameField)
{
    list.clear();
    list.append({0, QStringLiteral("Все")});
    TFIBDataSet *source = DataDM->FindDataSet(procedure);
    if (!source->Active())
        source->Open();
    source->FetchAll();
    const int id = source->FieldByName(QStringLiteral("id"))->Index();
    const int name = source->FieldByName(nameField)->Index();
    for (int row = 0; row < source->RecordCount(); ++row)
        list.append({source->RowValue(row, id).toInt(), source->RowValue(row, name).toString().left(30)});
    lookup->clear();
    for (const TMemRow &item : std::as_const(list))
        lookup->addItem(item.Name, item.id);
    lookup->setCurrentIndex(0);
}

void TfmReport::FormShow(QObject *)
{
    const QDate today = QDate::currentDate();
    const QDate first(today.year(), today.month(), 1);
    edDateStart->SetEditValue(QDateTime(first, QTime(0, 0)));
    edDateEnd->SetEditValue(QDateTime(first.addDays(first.daysInMonth() - 1), QTime(0, 0)));
    dxMemData1 = 0;
    FillList(cxDBLookupComboBox1, dxMemData2, QStringLiteral("spPayStateOpen"), QStringLiteral("Status"));
    dxMemData3 = 0;
    FillList(cxDBLookupComboBox2, dxMemData4, QStringLiteral("spOStateOpen"), QStringLiteral("STATENAME"));
    cxButton1Click(this);
}

void TfmReport::cxButton1Click(QObject *)
{
    TpFIBDataSet &ds = DataSet();
    ds.Close();
    const QDateTime start = edDateStart->EditValue().toDateTime();
    const QDateTime end = edDateEnd->EditValue().toDateTime();
    if (!start.isValid() || !end.isValid()) {
        Dialogs::Current().Show(Dialogs::Warning, QStringLiteral("Укажите начало и конец периода отчёта."));
        return;
    }
    QStringList sql = m_settings.SelectHead;
    if (dxMemData3 != 0)
        sql << QStringLiteral("idstatus=:idstatus and");
    if (dxMemData1 != 0)
        sql << QStringLiteral("paystate=:paystate and");
    sql << QStringLiteral("(create_date>=:dtstart and create_date<=:dtend)");
    sql << m_settings.SelectTail;
    ds.SetSelectSQL(sql.join(QLatin1Char('\n')));
    ds.RefreshSQL = ds.SelectSQL();
    if (dxMemData3 != 0)
        ds.ParamByName(QStringLiteral("idstatus")).SetValue(dxMemData3);
    if (dxMemData1 != 0)
        ds.ParamByName(QStringLiteral("paystate")).SetValue(dxMemData1);
    ds.ParamByName(QStringLiteral("dtstart")).SetValue(QDateTime(start.date(), QTime(0, 0)));
    // The day after the end as a day number: an order stamped at its very start still counts.
    ds.ParamByName(QStringLiteral("dtend")).SetValue(DateTimeToSerial(QDateTime(end.date(), QTime(0, 0))) + 1.0);
    ds.Open();
}

QString TfmReport::GeneralText(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return QString();
    if (value.typeId() == QMetaType::QDateTime) {
        // Written out by hand: a report writes tens of thousands of them.
        const QDate date = value.toDateTime().date();
        const QTime time = value.toDateTime().time();
        const QString day = QString::asprintf("%02d.%02d.%04d", date.day(), date.month(), date.year());
        return time == QTime(0, 0) ? day
                                   : day + QString::asprintf(" %02d:%02d:%02d", time.hour(), time.minute(), time.second());
    }
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float
        || value.metaType() == QMetaType::fromType<TFIBCurrency>()) {
        QLocale locale;
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
        return locale.toString(NumberOf(value), 'g', 15);
    }
    return value.toString();
}

QString TfmReport::NewWorkbookName(const QString &folder, const QString &name, const QDateTime &moment)
{
    const QString stem = QDir(folder).filePath(name + moment.toString(QStringLiteral(" yyyy-MM-dd hh-mm-ss")));
    QString fileName = stem + QLatin1Char('.') + Spreadsheet::Extension;
    for (int n = 2; QFileInfo::exists(fileName); ++n)
        fileName = stem + QStringLiteral(" (%1).").arg(n) + Spreadsheet::Extension;
    return fileName;
}

void TfmReport::ExportTo(Spreadsheet &sheet)
{
    const int n = int(m_settings.SheetHeaders.size());
    const QString last = QLatin1String(kLetters[n - 1]);
    auto rows = [&last](int first, int final) {
        return SheetRange::Parse(QStringLiteral("A%1:%2%3").arg(first).arg(last).arg(final));
    };

    sheet.SetCellText(2, 1, m_settings.SheetTitle);
    sheet.Select(rows(2, 2));
    sheet.Merge();
    sheet.SetBold(true);
    sheet.SetFontSize(16);
    sheet.SetHorizontalCentre();

    sheet.Select(rows(3, 3));
    sheet.Merge();
    sheet.SetHorizontalCentre();

    for (int c = 0; c < n; ++c)
        sheet.SetCellText(4, c + 1, m_settings.SheetHeaders[c]);
    sheet.Select(rows(4, 4));
    sheet.SetHorizontalCentre();

    TpFIBDataSet &ds = DataSet();
    ds.FetchAll();
    QList<int> fields;
    for (const QString &field : m_settings.SheetFields)
        fields << ds.FieldByName(field)->Index();
    QList<int> totalled;
    for (const QString &field : m_settings.TotalFields)
        totalled << int(m_settings.SheetFields.indexOf(field));
    QList<double> totals(totalled.size(), 0.0);
    int r = 5;
    for (int row = 0; row < ds.RecordCount(); ++row, ++r) {
        for (int c = 0; c < n; ++c)
            sheet.SetCellText(r, c + 1, GeneralText(ds.RowValue(row, fields[c])));
        for (int t = 0; t < totalled.size(); ++t)
            totals[t] += NumberOf(ds.RowValue(row, fields[totalled[t]]));
    }
    if (!ds.IsEmpty()) {
        for (int t = 0; t < totalled.size(); ++t)
            sheet.SetCellText(r, totalled[t] + 1, GeneralText(totals[t]));
        // Read to the end, the dataset rests on its last row.
        ds.Last();
    }

    sheet.Select(rows(4, r - 1));
    sheet.SetBorders(Spreadsheet::Continuous, Spreadsheet::Thin);
    sheet.SetNumberFormat(QStringLiteral("@"));
    sheet.Select(rows(4, 4));
    sheet.SetBorders(Spreadsheet::Continuous, Spreadsheet::Medium);
    sheet.Select(rows(4, r - 1));
    sheet.AutoFitColumns();
}

void TfmReport::cxButton2Click(QObject *)
{
    if (!Spreadsheet::Installed()) {
        Dialogs::Current().Show(Dialogs::Warning, NoSpreadsheetText);
        return;
    }
    std::unique_ptr<Spreadsheet> sheet;
    try {
        sheet = Spreadsheet::Create();
        sheet->SetDisplayAlerts(false);
        sheet->SetVisible(true);
        sheet->NewWorkbook();
        ExportTo(*sheet);
        const QString folder = DataDM->DocFolder;
        if (!QDir().mkpath(folder))
            throw ESpreadsheetError(QStringLiteral("Не удалось создать папку %1").arg(folder));
        const QString fileName = NewWorkbookName(folder, m_settings.FileName, QDateTime::currentDateTime());
        sheet->SaveAs(fileName);
        m_lastWorkbook = fileName;
        sheet->Quit();
    } catch (...) {
        Dialogs::Current().Show(Dialogs::Error, ExportErrorText);
        try {
            if (sheet) {
                if (sheet->Visible())
                    sheet->SetVisible(false);
                sheet->Quit();
            }
        } catch (...) {
        }
    }
}
