#pragma once
// The spreadsheet that reports are sent to: one workbook with one sheet, built cell by cell and range by
// range, then saved to a file that the shell opens. Every failure is thrown as ESpreadsheetError.
// Rows and columns count from 1.

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
};

class Spreadsheet
{
public:
    enum LineStyle { Continuous = 1 };
    // Border weights as the user sees them.
    enum LineWeight { Hairline = 1, Thin = 2, Medium = -4138, Thick = 4 };

    virtual ~Spreadsheet() = default;

    virtual void SetDisplayAlerts(bool alerts) = 0;
    virtual void SetVisible(bool visible) = 0;
    // Starts the workbook with one empty sheet.
    virtual void NewWorkbook() = 0;

    virtual void SetCellText(int row, int col, const QString &text) = 0;
    // The range that the following operations apply to.
    virtual void Select(const SheetRange &range) = 0;
    virtual void Merge() = 0;
    virtual void SetBold(bool bold) = 0;
    virtual void SetFontSize(int points) = 0;
    virtual void SetHorizontalCentre() = 0;
    // Every edge of every cell of the selection, inside ones included.
    virtual void SetBorders(LineStyle style, LineWeight weight) = 0;
    // "@": the cells hold text as typed, never a number or a formula.
    virtual void SetNumberFormat(const QString &format) = 0;
    // Columns of the selection as wide as their content.
    virtual void AutoFitColumns() = 0;

    // Writes the workbook to the file; on failure nothing is left at that path.
    virtual void SaveAs(const QString &fileName) = 0;
    virtual void Quit() = 0;

    // True when the desktop can open the workbooks this makes.
    static bool Installed();
    static std::unique_ptr<Spreadsheet> Create();
};
