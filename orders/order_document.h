#pragma once
// One document of an order: a template copied to the document folder, its line table filled from the
// order's lines, its placeholders replaced, saved and handed to the shell.

#include <QList>
#include <QPair>
#include <QString>

class TFIBDataSet;
class WordProcessor;
class WordTable;

class TOrderDocument
{
public:
    // How the cells of a line row are filled.
    enum class TLayout { Short, Wide, Tax };
    struct TKind
    {
        const char *kind;
        int lineTable; // which table of the document holds the lines, from 1
        TLayout layout;
    };
    static const TKind Kinds[5];
    // Null for a kind that is not one of the five.
    static const TKind *FindKind(const QString &kind);

    // The sums kept while the lines are written.
    struct TTotals
    {
        double count = 0;
        double vat = 0;
        double gross = 0;
        double sum = 0;
    };

    // Makes the document of `kind` for the current row of `orders`, reporting through message boxes.
    // Fails only where the opening of the line and customer datasets fails.
    static void Make(TFIBDataSet *orders, const QString &kind);

    // Where the templates are: the folder of the executable + "templates/" unless set (tests).
    static QString TemplateFolder();
    static void SetTemplateFolder(const QString &folder);
    static QString TemplatePath(const QString &kind);
    static QString OutputPath(const QString &docFolder, const QString &kind, const QString &num);

    // Appends one row to `table` and fills it from the current row of `lines`, adding to `totals`.
    static void AddLine(WordTable &table, TLayout layout, const TFIBDataSet &lines, TTotals &totals);
    // The placeholders with their values, in the order in which they are replaced.
    static QList<QPair<QString, QString>> Placeholders(const TTotals &totals, const TFIBDataSet &order,
                                                       const TFIBDataSet &customer, const TFIBDataSet &shop);
    static void Replace(WordProcessor &word, const QString &placeholder, const QString &value);

    // The amounts in ten-thousandths as the words are made of them: the sum as it is, the VAT in whole
    // kopecks first. Both round half to even.
    static qint64 SumAmount(double sum);
    static qint64 VatAmount(double vat);
    // How a floating-point value goes into a cell: a point and at most six decimals, trailing zeros
    // dropped, so 1.5 hours read "1.5" and a count of 2 reads "2".
    static QString FloatText(double value);

    static const QString NoOrderText;
    static const QString NoCustomerText;
    static const QString NoLinesText;
    static const QString CopyFailedText;
    static const QString FailedText;
};
