#include "grid_export.h"

#include "fib_errors.h"
#include "grid_column.h"
#include "grid_model.h"
#include "grid_view.h"
#include "value_display.h"

#include <QDir>
#include <QHash>
#include <xlsxwriter.h>

namespace {

class Workbook
{
public:
    explicit Workbook(const QString &fileName)
    {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        m_tmpdir = QDir::tempPath().toLocal8Bit();
        options.tmpdir = m_tmpdir.data();
        m_book = workbook_new_opt(QFile::encodeName(fileName).constData(), &options);
        if (!m_book)
            throw EDatabaseError(QStringLiteral("Не удалось создать файл %1").arg(fileName));
        m_sheet = workbook_add_worksheet(m_book, nullptr);
    }
    ~Workbook()
    {
        if (m_book)
            workbook_close(m_book);
    }
    void Close(const QString &fileName)
    {
        const lxw_error error = workbook_close(m_book);
        m_book = nullptr;
        if (error != LXW_NO_ERROR)
            throw EDatabaseError(QStringLiteral("Не удалось записать файл %1: %2")
                                     .arg(fileName, QString::fromUtf8(lxw_strerror(error))));
    }
    lxw_worksheet *Sheet() const { return m_sheet; }
    lxw_format *Format(const QString &numberFormat, bool bold = false)
    {
        const QString key = numberFormat + (bold ? QStringLiteral("|b") : QString());
        if (auto it = m_formats.constFind(key); it != m_formats.constEnd())
            return *it;
        lxw_format *format = workbook_add_format(m_book);
        if (!numberFormat.isEmpty())
            format_set_num_format(format, numberFormat.toUtf8().constData());
        if (bold)
            format_set_bold(format);
        m_formats.insert(key, format);
        return format;
    }

private:
    QByteArray m_tmpdir;
    lxw_workbook *m_book = nullptr;
    lxw_worksheet *m_sheet = nullptr;
    QHash<QString, lxw_format *> m_formats;
};

bool asNumber(const QVariant &value, double &number)
{
    QVariant v = value;
    if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
        v = v.value<TFIBCurrency>().ToDouble();
    if (v.typeId() == QMetaType::QString || v.typeId() == QMetaType::QDateTime)
        return false;
    bool ok = false;
    number = v.toDouble(&ok);
    return ok;
}

} // namespace

QString TGridExport::NumberFormat(const QString &picture)
{
    // The program's number pictures are Excel's as they stand; only the first section matters.
    return picture.section(QLatin1Char(';'), 0, 0);
}

QString TGridExport::DateFormat(const QString &picture)
{
    QString out;
    for (qsizetype i = 0; i < picture.size(); ++i) {
        const QChar c = picture[i].toLower();
        if (c == QLatin1Char('n'))
            out += QLatin1Char('m');
        else if (QStringLiteral("dmyhs").contains(c))
            out += c;
        else if (c == QLatin1Char('"'))
            out += QStringLiteral("\\\"");
        else if (c.isLetterOrNumber())
            out += QLatin1Char('\\') + picture[i];
        else
            out += picture[i];
    }
    return out;
}

void TGridExport::ToXlsx(TDBGridView *view, const QString &fileName)
{
    TFIBDataSet *ds = view->DataSet();
    if (ds && ds->Active())
        ds->FetchAll();
    view->Model()->SyncRowCount();

    QList<TGridColumn *> shown;
    for (TGridColumn *column : view->ColumnList())
        if (column->Visible())
            shown << column;

    Workbook book(fileName);
    lxw_worksheet *sheet = book.Sheet();
    lxw_format *bold = book.Format(QString(), true);
    for (int c = 0; c < shown.size(); ++c) {
        worksheet_write_string(sheet, 0, lxw_col_t(c), shown[c]->Caption().toUtf8().constData(), bold);
        worksheet_set_column(sheet, lxw_col_t(c), lxw_col_t(c), qMax(8.0, shown[c]->Width() / 7.0), nullptr);
    }

    TGridModel *model = view->Model();
    const int rows = view->RowCount();
    for (int r = 0; r < rows; ++r) {
        const lxw_row_t row = lxw_row_t(r + 1);
        for (int c = 0; c < shown.size(); ++c) {
            const TGridColumn *column = shown[c];
            const TEditProperties &p = *column->Properties();
            const TFIBField *field = model->FieldOf(column);
            const QVariant value = model->Value(r, column);
            if (!value.isValid() || value.isNull())
                continue;
            const lxw_col_t col = lxw_col_t(c);
            double number = 0;
            if (p.Kind == TEditKind::Lookup || p.Kind == TEditKind::CheckBox) {
                worksheet_write_string(sheet, row, col, TValueDisplay::Text(p, field, value).toUtf8().constData(), nullptr);
            } else if (value.typeId() == QMetaType::QDateTime) {
                const QDateTime dt = value.toDateTime();
                lxw_datetime when{dt.date().year(), dt.date().month(), dt.date().day(), dt.time().hour(),
                                  dt.time().minute(), dt.time().second() + dt.time().msec() / 1000.0};
                QString picture = p.Kind == TEditKind::Date ? p.EffectiveDateFormat()
                                                            : (field ? field->DisplayFormat : QString());
                if (picture.isEmpty())
                    picture = QStringLiteral("dd.mm.yyyy hh:nn");
                worksheet_write_datetime(sheet, row, col, &when, book.Format(DateFormat(picture)));
            } else if (asNumber(value, number)) {
                const QString picture = p.Kind == TEditKind::Currency ? p.DisplayFormat
                                                                      : (field ? field->DisplayFormat : QString());
                worksheet_write_number(sheet, row, col, number,
                                       picture.isEmpty() ? nullptr : book.Format(NumberFormat(picture)));
            } else {
                worksheet_write_string(sheet, row, col, TValueDisplay::Text(p, field, value).toUtf8().constData(), nullptr);
            }
        }
    }
    book.Close(fileName);
}
