#include "xlsx_spreadsheet.h"

#include "shell.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <xlsxwriter.h>
#include <cmath>

ESpreadsheetError::ESpreadsheetError(const QString &message) : std::runtime_error(message.toStdString())
{
}

QString ESpreadsheetError::Message() const
{
    return QString::fromUtf8(what());
}

SheetRange SheetRange::Parse(const QString &text)
{
    static const QRegularExpression cell(QStringLiteral("^([A-Z])([1-9][0-9]*)(?::([A-Z])([1-9][0-9]*))?$"));
    const QRegularExpressionMatch m = cell.match(text.trimmed().toUpper());
    if (!m.hasMatch())
        throw ESpreadsheetError(QStringLiteral("Неверный диапазон ячеек \"%1\"").arg(text));
    SheetRange range;
    range.Col1 = m.captured(1).at(0).unicode() - 'A' + 1;
    range.Row1 = m.captured(2).toInt();
    range.Col2 = m.captured(3).isEmpty() ? range.Col1 : m.captured(3).at(0).unicode() - 'A' + 1;
    range.Row2 = m.captured(4).isEmpty() ? range.Row1 : m.captured(4).toInt();
    if (range.Row2 < range.Row1 || range.Col2 < range.Col1)
        throw ESpreadsheetError(QStringLiteral("Неверный диапазон ячеек \"%1\"").arg(text));
    return range;
}

const QString Spreadsheet::Extension = QStringLiteral("xlsx");

bool Spreadsheet::Installed()
{
    return Shell::Current().CanOpen(Extension);
}

std::unique_ptr<Spreadsheet> Spreadsheet::Create()
{
    return std::make_unique<XlsxSpreadsheet>();
}

// ---------------------------------------------------------------------------------------------

void XlsxSpreadsheet::NewWorkbook()
{
    Quit();
    m_looks = {Look()};
    m_lookIndex.clear();
    m_open = true;
}

void XlsxSpreadsheet::RequireWorkbook() const
{
    if (!m_open)
        throw ESpreadsheetError(QStringLiteral("Нет открытой книги"));
}

XlsxSpreadsheet::Cell &XlsxSpreadsheet::At(int row, int col)
{
    if (row < 1 || col < 1 || row > 1048576 || col > 16384)
        throw ESpreadsheetError(QStringLiteral("Ячейка (%1, %2) вне листа").arg(row).arg(col));
    if (m_rows.size() <= row)
        m_rows.resize(row + 1);
    QList<Cell> &cells = m_rows[row];
    if (cells.size() <= col)
        cells.resize(col + 1);
    return cells[col];
}

const XlsxSpreadsheet::Cell *XlsxSpreadsheet::Find(int row, int col) const
{
    if (row < 1 || row >= m_rows.size() || col < 1 || col >= m_rows[row].size())
        return nullptr;
    return &m_rows[row][col];
}

void XlsxSpreadsheet::SetCellText(int row, int col, const QString &text)
{
    RequireWorkbook();
    Cell &cell = At(row, col);
    cell.Text = text;
    cell.HasText = true;
}

QString XlsxSpreadsheet::CellText(int row, int col) const
{
    const Cell *cell = Find(row, col);
    return cell ? cell->Text : QString();
}

void XlsxSpreadsheet::Select(const SheetRange &range)
{
    RequireWorkbook();
    if (range.Row1 < 1 || range.Col1 < 1 || range.Row2 < range.Row1 || range.Col2 < range.Col1)
        throw ESpreadsheetError(QStringLiteral("Неверный диапазон ячеек"));
    m_selection = range;
}

int XlsxSpreadsheet::LookIndex(const Look &look)
{
    const QString key = QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8")
                            .arg(look.Bold)
                            .arg(look.Size)
                            .arg(look.Centre)
                            .arg(look.Left)
                            .arg(look.Right)
                            .arg(look.Top)
                            .arg(look.Bottom)
                            .arg(look.NumberFormat);
    auto it = m_lookIndex.constFind(key);
    if (it != m_lookIndex.constEnd())
        return *it;
    m_looks.append(look);
    const int index = int(m_looks.size()) - 1;
    m_lookIndex.insert(key, index);
    return index;
}

template <class F>
void XlsxSpreadsheet::Restyle(F change)
{
    RequireWorkbook();
    // The same change gives the same new look for the same old one.
    QHash<int, int> changed;
    const SheetRange &s = m_selection;
    for (int row = s.Row1; row <= s.Row2; ++row)
        for (int col = s.Col1; col <= s.Col2; ++col) {
            Cell &cell = At(row, col);
            auto it = changed.constFind(cell.Look);
            if (it == changed.constEnd()) {
                Look look = m_looks[cell.Look];
                change(look, row, col);
                it = changed.insert(cell.Look, LookIndex(look));
            }
            cell.Look = *it;
        }
}

void XlsxSpreadsheet::Merge()
{
    RequireWorkbook();
    for (const SheetRange &m : std::as_const(m_merges))
        if (m.Row1 <= m_selection.Row2 && m_selection.Row1 <= m.Row2 && m.Col1 <= m_selection.Col2
            && m_selection.Col1 <= m.Col2)
            throw ESpreadsheetError(QStringLiteral("Диапазон пересекается с уже объединённым"));
    if (m_selection.Row1 != m_selection.Row2 || m_selection.Col1 != m_selection.Col2) {
        At(m_selection.Row1, m_selection.Col1);
        m_merges.append(m_selection);
    }
}

void XlsxSpreadsheet::SetBold(bool bold)
{
    Restyle([bold](Look &look, int, int) { look.Bold = bold; });
}

void XlsxSpreadsheet::SetFontSize(int points)
{
    if (points < 1 || points > 409)
        throw ESpreadsheetError(QStringLiteral("Неверный размер шрифта %1").arg(points));
    Restyle([points](Look &look, int, int) { look.Size = points; });
}

void XlsxSpreadsheet::SetHorizontalCentre()
{
    Restyle([](Look &look, int, int) { look.Centre = true; });
}

void XlsxSpreadsheet::AdjustNeighbour(int row, int col, int Look::*edge, int weight)
{
    const Cell *cell = Find(row, col);
    if (!cell || !(m_looks[cell->Look].*edge))
        return;
    Look look = m_looks[cell->Look];
    look.*edge = weight;
    At(row, col).Look = LookIndex(look);
}

void XlsxSpreadsheet::SetBorders(LineStyle style, LineWeight weight)
{
    if (style != Continuous || weight < Hairline || weight > Thick)
        throw ESpreadsheetError(QStringLiteral("Неверный вид линий"));
    Restyle([weight](Look &look, int, int) { look.Left = look.Right = look.Top = look.Bottom = weight; });
    // An edge is shared with the cell beyond it: that cell's side of it, if drawn, takes the new weight.
    const SheetRange s = m_selection;
    for (int col = s.Col1; col <= s.Col2; ++col) {
        AdjustNeighbour(s.Row1 - 1, col, &Look::Bottom, weight);
        AdjustNeighbour(s.Row2 + 1, col, &Look::Top, weight);
    }
    for (int row = s.Row1; row <= s.Row2; ++row) {
        AdjustNeighbour(row, s.Col1 - 1, &Look::Right, weight);
        AdjustNeighbour(row, s.Col2 + 1, &Look::Left, weight);
    }
}

void XlsxSpreadsheet::SetNumberFormat(const QString &format)
{
    Restyle([&format](Look &look, int, int) { look.NumberFormat = format; });
}

void XlsxSpreadsheet::AutoFitColumns()
{
    RequireWorkbook();
    const SheetRange s = m_selection;
    auto merged = [this](int row, int col) {
        for (const SheetRange &m : std::as_const(m_merges))
            if (row >= m.Row1 && row <= m.Row2 && col >= m.Col1 && col <= m.Col2)
                return true;
        return false;
    };
    for (int col = s.Col1; col <= s.Col2; ++col) {
        double width = 0;
        for (int row = s.Row1; row <= s.Row2; ++row) {
            const Cell *cell = Find(row, col);
            if (!cell || cell->Text.isEmpty() || merged(row, col))
                continue;
            const Look &look = m_looks[cell->Look];
            // Widths count characters of the sheet's 11-point font; the longest line of a cell decides.
            qsizetype longest = 0, line = 0;
            for (const QChar c : cell->Text) {
                line = c == QLatin1Char('\n') ? 0 : line + 1;
                longest = qMax(longest, line);
            }
            const double scale = (look.Size ? look.Size / 11.0 : 1.0) * (look.Bold ? 1.1 : 1.0);
            width = qMax(width, longest * scale * 1.1 + 1.0);
        }
        if (width > 0)
            m_widths[col] = qMin(width, 255.0);
    }
}

namespace {

uint8_t borderOf(int weight)
{
    switch (weight) {
    case Spreadsheet::Hairline:
        return LXW_BORDER_HAIR;
    case Spreadsheet::Thin:
        return LXW_BORDER_THIN;
    case Spreadsheet::Medium:
        return LXW_BORDER_MEDIUM;
    case Spreadsheet::Thick:
        return LXW_BORDER_THICK;
    default:
        return LXW_BORDER_NONE;
    }
}

// Closes the file once, and removes it unless it was written whole.
class Book
{
public:
    Book(const QString &fileName, const QByteArray &tmpdir) : m_fileName(fileName), m_tmpdir(tmpdir)
    {
        lxw_workbook_options options{};
        // Rows go out as they are written: the sheet is never held a second time in memory.
        options.constant_memory = LXW_TRUE;
        options.tmpdir = m_tmpdir.data();
        m_book = workbook_new_opt(QFile::encodeName(fileName).constData(), &options);
        if (!m_book)
            throw ESpreadsheetError(QStringLiteral("Не удалось создать файл %1").arg(fileName));
    }
    ~Book()
    {
        if (m_book) {
            workbook_close(m_book);
            QFile::remove(m_fileName);
        }
    }
    lxw_workbook *Get() const { return m_book; }
    void Close()
    {
        const lxw_error error = workbook_close(m_book);
        m_book = nullptr;
        if (error != LXW_NO_ERROR) {
            QFile::remove(m_fileName);
            throw ESpreadsheetError(QStringLiteral("Не удалось записать файл %1: %2")
                                        .arg(m_fileName, QString::fromUtf8(lxw_strerror(error))));
        }
    }

private:
    QString m_fileName;
    QByteArray m_tmpdir;
    lxw_workbook *m_book = nullptr;
};

void check(lxw_error error)
{
    if (error != LXW_NO_ERROR)
        throw ESpreadsheetError(QStringLiteral("Ошибка записи книги: %1").arg(QString::fromUtf8(lxw_strerror(error))));
}

} // namespace

void XlsxSpreadsheet::SaveAs(const QString &fileName)
{
    RequireWorkbook();
    if (m_alerts && QFileInfo::exists(fileName))
        throw ESpreadsheetError(QStringLiteral("Файл %1 уже существует").arg(fileName));
    {
        Book book(fileName, QFile::encodeName(QDir::tempPath()));
        lxw_worksheet *sheet = workbook_add_worksheet(book.Get(), "Лист1");
        if (!sheet)
            throw ESpreadsheetError(QStringLiteral("Не удалось создать лист"));

        QList<lxw_format *> formats(m_looks.size(), nullptr);
        for (int i = 1; i < m_looks.size(); ++i) {
            const Look &look = m_looks[i];
            lxw_format *format = workbook_add_format(book.Get());
            if (look.Bold)
                format_set_bold(format);
            if (look.Size)
                format_set_font_size(format, look.Size);
            if (look.Centre)
                format_set_align(format, LXW_ALIGN_CENTER);
            // The text format has a number of its own that every spreadsheet program knows.
            if (look.NumberFormat == QLatin1String("@"))
                format_set_num_format_index(format, 49);
            else if (!look.NumberFormat.isEmpty())
                format_set_num_format(format, look.NumberFormat.toUtf8().constData());
            format_set_left(format, borderOf(look.Left));
            format_set_right(format, borderOf(look.Right));
            format_set_top(format, borderOf(look.Top));
            format_set_bottom(format, borderOf(look.Bottom));
            formats[i] = format;
        }
        for (auto it = m_widths.constBegin(); it != m_widths.constEnd(); ++it)
            check(worksheet_set_column(sheet, lxw_col_t(it.key() - 1), lxw_col_t(it.key() - 1), it.value(), nullptr));

        QHash<quint64, SheetRange> mergeAt;
        for (const SheetRange &m : std::as_const(m_merges))
            mergeAt.insert((quint64(m.Row1) << 32) | quint32(m.Col1), m);

        QByteArray utf8;
        for (int row = 1; row < m_rows.size(); ++row) {
            const QList<Cell> &cells = m_rows[row];
            for (int col = 1; col < cells.size(); ++col) {
                const Cell &cell = cells[col];
                const lxw_row_t r = lxw_row_t(row - 1);
                const lxw_col_t c = lxw_col_t(col - 1);
                lxw_format *format = formats[cell.Look];
                const auto merge = mergeAt.constFind((quint64(row) << 32) | quint32(col));
                if (merge != mergeAt.constEnd()) {
                    utf8 = cell.Text.toUtf8();
                    check(worksheet_merge_range(sheet, r, c, lxw_row_t(merge->Row2 - 1), lxw_col_t(merge->Col2 - 1),
                                                utf8.constData(), format));
                    // The other cells of the merge keep their own looks.
                    for (int other = col + 1; other <= merge->Col2 && other < cells.size(); ++other)
                        if (lxw_format *own = formats[cells[other].Look])
                            check(worksheet_write_blank(sheet, r, lxw_col_t(other - 1), own));
                    col = merge->Col2;
                    continue;
                }
                if (cell.HasText && !cell.Text.isEmpty()) {
                    utf8 = cell.Text.toUtf8();
                    check(worksheet_write_string(sheet, r, c, utf8.constData(), format));
                } else if (format) {
                    check(worksheet_write_blank(sheet, r, c, format));
                }
            }
        }
        book.Close();
    }
    if (m_visible)
        Shell::Current().Open(fileName);
}

void XlsxSpreadsheet::Quit()
{
    m_open = false;
    m_rows.clear();
    m_looks.clear();
    m_lookIndex.clear();
    m_merges.clear();
    m_widths.clear();
    m_selection = SheetRange();
}
