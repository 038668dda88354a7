#pragma once
// Writing what a grid shows into a spreadsheet file (.xlsx): the captions of the shown columns, then
// every row of the dataset, numbers and dates as values under the column's picture.

#include <QString>

class TDBGridView;

class TGridExport
{
public:
    // Fetches all rows. Raises EDatabaseError when the file cannot be written.
    static void ToXlsx(TDBGridView *view, const QString &fileName);

    // The program's number and date pictures in the spreadsheet's own terms.
    static QString NumberFormat(const QString &picture);
    static QString DateFormat(const QString &picture);
};
