#pragma once
// The convention by which result-column names of the stored procedures say how a field is shown: in a
// grid column, in a generated card and in a hand-laid card. Pure functions over names and column
// settings; looking up the module's datasets is the caller's part.

#include "edit_properties.h"

#include <QString>

class TGridColumn;

// What a field becomes in a grid, decided from its name and whether its type is float.
struct TGridColumnSpec
{
    // False: the field gets no column (a lookup name without stem or list field).
    bool HasColumn = true;
    TEditKind Kind = TEditKind::Plain;
    QString Caption;
    bool Visible = true;
    int Width = 150;
    int Tag = 0;
    // A lookup: the stem between "_LKP_" and "_F_" and the list field after "_F_".
    QString LookupKey;
    QString ListField;

    // The module's components the lookup needs: "sp" + stem + "Open" and "ds" + stem + "Open".
    QString LookupDataSetName() const { return QStringLiteral("sp") + LookupKey + QStringLiteral("Open"); }
    QString LookupDataSourceName() const { return QStringLiteral("ds") + LookupKey + QStringLiteral("Open"); }
};

// The editor a card makes for a field.
enum class TCardEditor { Text, Lookup, Currency, Date, DateTime, Memo, Button };

class TFieldNameGrammar
{
public:
    // Grid side. Comparisons of the whole-name and SYS_ marks are case-sensitive here.
    static TGridColumnSpec ParseForGrid(const QString &fieldName, bool isFloat);
    static bool IsVisibleInGrid(const QString &fieldName);
    // Kind settings of a new column, as the grid table gives them; the lookup's list source is the caller's.
    static void ApplyGridSettings(TEditProperties &properties, const TGridColumnSpec &parsed);

    // Card side: cards compare the upper-cased name.
    static bool IsDisabledInCard(const QString &fieldName);
    static bool IsHiddenInCard(const QString &fieldName);
    static bool IsComment(const QString &fieldName);

    // Names composed from the upper-cased field name.
    static QString LabelName(const QString &fieldName);        // "<FIELD>_LBL", generated card
    static QString DictEditorName(const QString &fieldName);   // "<FIELD>_TCX", generated card
    static QString ComplexEditorName(const QString &fieldName); // "TCX<FIELD>", hand-laid card

    // Generated card: the editor for a column (null with no grid), and whether it is enabled.
    static TCardEditor DictEditor(const TGridColumn *column);
    static bool DictEditorEnabled(const QString &fieldName, const TGridColumn *column);
    // Writes the generated card's settings for its editor into the column's own settings.
    static void ApplyDictCardSettings(TEditProperties &properties, TCardEditor editor);

    // Hand-laid card: the editor for a column of a box, and whether it is enabled.
    static TCardEditor ComplexEditor(const TGridColumn &column);
    static bool ComplexEditorEnabled(const QString &fieldName);
    static void ApplyComplexCardSettings(TEditProperties &properties, TCardEditor editor);

    static constexpr int ButtonTag = 1;
    static const QString CardDateTimeFormat;  // "dd.mm.yyyy HH:NN"
    static const QString GridDateTimeFormat;  // "dd.mm.yyyy HH24:NN"
    static const QString GridCurrencyFormat;  // "###,##0.00"
};
