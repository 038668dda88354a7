#include "field_name_grammar.h"

#include "grid_column.h"

const QString TFieldNameGrammar::CardDateTimeFormat = QStringLiteral("dd.mm.yyyy HH:NN");
const QString TFieldNameGrammar::GridDateTimeFormat = QStringLiteral("dd.mm.yyyy HH24:NN");
const QString TFieldNameGrammar::GridCurrencyFormat = QStringLiteral("###,##0.00");

namespace {

// Date and time, shown and edited in one picture.
void setDateTime(TEditProperties &p, const QString &format)
{
    p.DateKind = TDateKind::DateTime;
    p.ShowTime = true;
    p.DisplayFormat = format;
    p.EditFormat = format;
}

} // namespace

bool TFieldNameGrammar::IsVisibleInGrid(const QString &name)
{
    return name != QLatin1String("ID") && name != QLatin1String("PASSWORD") && !name.startsWith(QLatin1String("SYS_"));
}

TGridColumnSpec TFieldNameGrammar::ParseForGrid(const QString &fieldName, bool isFloat)
{
    TGridColumnSpec parsed;
    QString name = fieldName;
    parsed.Caption = name;
    parsed.Visible = IsVisibleInGrid(name);
    const bool isDlg = name.left(4).toUpper() == QLatin1String("DLG_");
    if (isDlg)
        parsed.Caption.remove(0, 4);

    const qsizetype lkp = name.indexOf(QLatin1String("_LKP_"));
    if (lkp >= 0) {
        const QString rest = name.mid(lkp + 5);
        name = name.left(lkp);
        // The lookup's caption is the name before the mark, a DLG_ prefix included.
        parsed.Caption = name;
        const qsizetype f = rest.indexOf(QLatin1String("_F_"));
        if (f >= 0) {
            parsed.LookupKey = rest.left(f);
            parsed.ListField = rest.mid(f + 3);
        }
        if (parsed.LookupKey.isEmpty() || parsed.ListField.isEmpty()) {
            parsed.HasColumn = false;
            return parsed;
        }
        parsed.Kind = TEditKind::Lookup;
        parsed.Width = 150;
        return parsed;
    }
    if (isDlg) {
        parsed.Kind = TEditKind::Button;
        parsed.Tag = ButtonTag;
        return parsed;
    }
    if (name.right(5).toUpper() == QLatin1String("_DATE")) {
        parsed.Kind = TEditKind::Date;
        return parsed;
    }
    if (name.right(4).toUpper() == QLatin1String("_BIT")) {
        parsed.Kind = TEditKind::CheckBox;
        parsed.Width = 80;
        return parsed;
    }
    if (isFloat) {
        // Caption is the field name itself, DLG_ cannot stand here.
        parsed.Kind = TEditKind::Currency;
        parsed.Caption = fieldName;
        parsed.Width = 250;
        return parsed;
    }
    parsed.Caption = fieldName;
    return parsed;
}

void TFieldNameGrammar::ApplyGridSettings(TEditProperties &p, const TGridColumnSpec &parsed)
{
    p.Kind = parsed.Kind;
    switch (parsed.Kind) {
    case TEditKind::Lookup:
        p.ListFieldNames = parsed.ListField;
        p.KeyFieldNames = QStringLiteral("ID");
        p.ListHeaderVisible = false;
        break;
    case TEditKind::Date:
        setDateTime(p, GridDateTimeFormat);
        break;
    case TEditKind::CheckBox:
        p.NullStyle = 0;
        p.ValueChecked = 1;
        p.ValueUnchecked = 0;
        p.ValueGrayed = 0;
        p.DisplayChecked = QStringLiteral("true");
        p.DisplayUnchecked = QStringLiteral("false");
        p.DisplayGrayed = QStringLiteral("false");
        p.ValueType = QStringLiteral("Boolean");
        break;
    case TEditKind::Currency:
        p.DecimalPlaces = 2;
        p.DisplayFormat = GridCurrencyFormat;
        p.ValueType = QStringLiteral("Float");
        break;
    case TEditKind::Button:
    case TEditKind::Plain:
        break;
    }
}

bool TFieldNameGrammar::IsDisabledInCard(const QString &fieldName)
{
    const QString upper = fieldName.toUpper();
    return upper == QLatin1String("ID") || upper.startsWith(QLatin1String("SYS_"));
}

bool TFieldNameGrammar::IsHiddenInCard(const QString &fieldName)
{
    return fieldName.toUpper().startsWith(QLatin1String("VIS_"));
}

bool TFieldNameGrammar::IsComment(const QString &fieldName)
{
    return fieldName.toUpper() == QLatin1String("COMMENT");
}

QString TFieldNameGrammar::LabelName(const QString &fieldName)
{
    return fieldName.toUpper() + QStringLiteral("_LBL");
}

QString TFieldNameGrammar::DictEditorName(const QString &fieldName)
{
    return fieldName.toUpper() + QStringLiteral("_TCX");
}

QString TFieldNameGrammar::ComplexEditorName(const QString &fieldName)
{
    return QStringLiteral("TCX") + fieldName.toUpper();
}

TCardEditor TFieldNameGrammar::DictEditor(const TGridColumn *column)
{
    if (!column)
        return TCardEditor::Text;
    switch (column->Properties()->Kind) {
    case TEditKind::Lookup: return TCardEditor::Lookup;
    case TEditKind::Currency: return TCardEditor::Currency;
    case TEditKind::Date: return TCardEditor::Date;
    default: return TCardEditor::Text;
    }
}

bool TFieldNameGrammar::DictEditorEnabled(const QString &fieldName, const TGridColumn *column)
{
    return !IsDisabledInCard(fieldName) && (!column || column->Tag() < ButtonTag);
}

void TFieldNameGrammar::ApplyDictCardSettings(TEditProperties &p, TCardEditor editor)
{
    switch (editor) {
    case TCardEditor::Currency:
        p.DecimalPlaces = 2;
        break;
    case TCardEditor::Date:
        p.DateKind = TDateKind::Date;
        p.ShowTime = false;
        break;
    default:
        break;
    }
}

TCardEditor TFieldNameGrammar::ComplexEditor(const TGridColumn &column)
{
    const TEditKind kind = column.Properties()->Kind;
    if (kind == TEditKind::Lookup)
        return TCardEditor::Lookup;
    if (IsComment(column.FieldName()))
        return TCardEditor::Memo;
    if (column.Tag() == ButtonTag)
        return TCardEditor::Button;
    if (kind == TEditKind::Date)
        return TCardEditor::DateTime;
    if (kind != TEditKind::Currency)
        return TCardEditor::Text;
    return TCardEditor::Currency;
}

bool TFieldNameGrammar::ComplexEditorEnabled(const QString &fieldName)
{
    return !IsDisabledInCard(fieldName);
}

void TFieldNameGrammar::ApplyComplexCardSettings(TEditProperties &p, TCardEditor editor)
{
    switch (editor) {
    case TCardEditor::Lookup:
        p.DropDownStyle = 1;
        break;
    case TCardEditor::DateTime:
        setDateTime(p, CardDateTimeFormat);
        break;
    case TCardEditor::Currency:
        p.DecimalPlaces = 2;
        p.HorizontalAlignment = Qt::AlignLeft;
        break;
    default:
        break;
    }
}
