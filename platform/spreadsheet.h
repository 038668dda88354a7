#pragma once
// The spreadsheet that reports are sent to: one workbook with one sheet, built cell by cell and range by
// range, then saved to a file. Every failure is thrown as ESpreadsheetError. Rows and columns count from 1.

#include <QString>
#include <memory>
#include <stdexcept>

class ESpreadsheetError : public std::runtime_error
{
public:
    explicit ESpreadsheetError(const QString &message);
    QString Message() const;
};

// A rectangle of cells, from (Row1, Col1) to (Row2, Col2) inclusive.
struct SheetRange
{
    int Row1 = 1, Col1 = 1, Row2 = 1, Col2 = 1;

    // "A2:J2"; columns "A" to "Z" only.
    static SheetRange Parse(const QString &text);
};

class Spreadsheet
{
public:
    enum LineStyle { Continuous = 1 };
    // Border weights by the numbers the reports give: 2 for the table, 3 for its heavier header.
    enum LineWeight { Hairline = 1, Thin = 2, Medium = 3, Thick = 4 };

    virtual ~Spreadsheet() = default;

    // With alerts off a save replaces a file of the same name; with them on it refuses to.
    virtual void SetDisplayAlerts(bool alerts) = 0;
    // A visible workbook is handed to the shell as soon as it is saved.
    virtual void SetVisible(bool visible) = 0;
    virtual bool Visible() const = 0;
    // Starts the workbook with one empty sheet.
    virtual void NewWorkbook() = 0;

    // Always text: nothing typed into a cell becomes a number, a date or a formula.
    virtual void SetCellText(int row, int col, const QString &text) = 0;
    virtual QString CellText(int row, int col) const = 0;
    // The range that the following operations apply to.
    virtual void Select(const SheetRange &range) = 0;
    virtual void Merge() = 0;
    virtual void SetBold(bool bold) = 0;
    virtual void SetFontSize(int points) = 0;
    virtual void SetHorizontalCentre() = 0;
    // Every edge of every cell of the selection, inside ones included.
    virtual void SetBorders(LineStyle style, LineWeight weight) = 0;
    // "@" keeps the cells as text when the user edits them later.
    virtual void SetNumberFormat(const QString &format) = 0;
    // Columns of the selection as wide as their content; merged cells do not count.
    virtual void AutoFitColumns() = 0;

    // Writes the workbook to the file; on failure nothing is left at that path.
    virtual void SaveAs(const QString &fileName) = 0;
    // Ends the work; what was not saved is dropped.
    virtual void Quit() = 0;

    // The extension of the files this writes.
    static const QString Extension;
    // True when the desktop has a program for those files.
    static bool Installed();
    static std::unique_ptr<Spreadsheet> Create();
};
