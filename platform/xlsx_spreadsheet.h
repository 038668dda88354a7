#pragma once
// The spreadsheet as an .xlsx file. The file format keeps one format per cell and is written in one go,
// so the cells and their looks are kept here until SaveAs.

#include "spreadsheet.h"

#include <QHash>
#include <QList>

class XlsxSpreadsheet : public Spreadsheet
{
public:
    void SetDisplayAlerts(bool alerts) override { m_alerts = alerts; }
    void SetVisible(bool visible) override { m_visible = visible; }
    bool Visible() const override { return m_visible; }
    void NewWorkbook() override;

    void SetCellText(int row, int col, const QString &text) override;
    QString CellText(int row, int col) const override;
    void Select(const SheetRange &range) override;
    void Merge() override;
    void SetBold(bool bold) override;
    void SetFontSize(int points) override;
    void SetHorizontalCentre() override;
    void SetBorders(LineStyle style, LineWeight weight) override;
    void SetNumberFormat(const QString &format) override;
    void AutoFitColumns() override;

    void SaveAs(const QString &fileName) override;
    void Quit() override;

    // Width of a column in characters; 0 when it was never fitted.
    double ColumnWidth(int col) const { return m_widths.value(col, 0); }

    struct Look
    {
        bool Bold = false;
        int Size = 0; // 0: the sheet's default
        bool Centre = false;
        QString NumberFormat;
        // Edge weights: 0 none, else a LineWeight.
        int Left = 0, Right = 0, Top = 0, Bottom = 0;
        bool operator==(const Look &) const = default;
    };

private:
    struct Cell
    {
        QString Text;
        bool HasText = false;
        int Look = 0; // index into m_looks; 0 is the plain look
    };
    void RequireWorkbook() const;
    // Changes the look of every cell of the selection.
    template <class F>
    void Restyle(F change);
    Cell &At(int row, int col);
    const Cell *Find(int row, int col) const;
    // Sets an edge of a cell outside the selection that already has one, so that a shared edge is one line.
    void AdjustNeighbour(int row, int col, int Look::*edge, int weight);
    int LookIndex(const Look &look);

    bool m_alerts = true;
    bool m_visible = false;
    bool m_open = false;
    SheetRange m_selection;
    QList<QList<Cell>> m_rows; // by row, then column, from 1; the file wants them in this order
    QList<Look> m_looks;
    QHash<QString, int> m_lookIndex;
    QList<SheetRange> m_merges;
    QHash<int, double> m_widths;
};
