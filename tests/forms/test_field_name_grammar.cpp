// The field-name grammar, example by example: what a name makes in the grid and in both kinds of card.

#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_view.h"

#include <gtest/gtest.h>

namespace {

struct GridCase
{
    const char *name;
    bool isFloat;
    bool hasColumn;
    TEditKind kind;
    const char *caption;
    bool visible;
    int width;
    int tag;
    const char *key;
    const char *listField;
};

std::ostream &operator<<(std::ostream &os, const GridCase &c) { return os << c.name; }

constexpr auto L = TEditKind::Lookup, B = TEditKind::Button, D = TEditKind::Date, C = TEditKind::CheckBox,
               M = TEditKind::Currency, P = TEditKind::Plain;

const GridCase kGridCases[] = {
    // name                               float  column kind caption            vis    width tag key          list
    {"IDCMAT_LKP_CMAT_F_CMATNAME",        false, true,  L, "IDCMAT",            true,  150, 0, "CMAT",      "CMATNAME"},
    {"ID_ROLE_LKP_ROLES_F_ROLENAME",      false, true,  L, "ID_ROLE",           true,  150, 0, "ROLES",     "ROLENAME"},
    {"STATUS_LKP_PAYSTATUS_F_STATUS",     false, true,  L, "STATUS",            true,  150, 0, "PAYSTATUS", "STATUS"},
    {"YEAR_LKP_AYEAR_F_AYEARNAME",        false, true,  L, "YEAR",              true,  150, 0, "AYEAR",     "AYEARNAME"},
    {"NAME_LKP_NAL_F_NAME",               false, true,  L, "NAME",              true,  150, 0, "NAL",       "NAME"},
    {"ID",                                false, true,  P, "ID",                false, 150, 0, "", ""},
    {"id",                                false, true,  P, "id",                true,  150, 0, "", ""},
    {"PASSWORD",                          false, true,  P, "PASSWORD",          false, 150, 0, "", ""},
    {"Password",                          false, true,  P, "Password",          true,  150, 0, "", ""},
    {"SYS_TACTION",                       false, true,  P, "SYS_TACTION",       false, 150, 0, "", ""},
    {"sys_taction",                       false, true,  P, "sys_taction",       true,  150, 0, "", ""},
    {"SYS_CREATE_DATE",                   false, true,  D, "SYS_CREATE_DATE",   false, 150, 0, "", ""},
    {"DLG_IDCUST",                        false, true,  B, "IDCUST",            true,  150, 1, "", ""},
    {"dlg_idcust",                        false, true,  B, "idcust",            true,  150, 1, "", ""},
    {"DLG_SUMM",                          true,  true,  B, "SUMM",              true,  150, 1, "", ""},
    {"DLG_X_LKP_CUST_F_CUSTNAME",         false, true,  L, "DLG_X",             true,  150, 0, "CUST",      "CUSTNAME"},
    {"PAY_DATE",                          false, true,  D, "PAY_DATE",          true,  150, 0, "", ""},
    {"pay_date",                          false, true,  D, "pay_date",          true,  150, 0, "", ""},
    {"DLG_PAY_DATE",                      false, true,  B, "PAY_DATE",          true,  150, 1, "", ""},
    {"CLOSE_DATE",                        true,  true,  D, "CLOSE_DATE",        true,  150, 0, "", ""},
    {"IDSTATE_LKP_OSTATE_F_STATENAME_DATE", false, true, L, "IDSTATE",          true,  150, 0, "OSTATE",    "STATENAME_DATE"},
    {"PAID_BIT",                          false, true,  C, "PAID_BIT",          true,  80,  0, "", ""},
    {"paid_bit",                          false, true,  C, "paid_bit",          true,  80,  0, "", ""},
    {"SUMM",                              true,  true,  M, "SUMM",              true,  250, 0, "", ""},
    {"SYS_SUMM",                          true,  true,  M, "SYS_SUMM",          false, 250, 0, "", ""},
    {"VIS_NOTE",                          false, true,  P, "VIS_NOTE",          true,  150, 0, "", ""},
    {"COMMENT",                           false, true,  P, "COMMENT",           true,  150, 0, "", ""},
    {"X_LKP_CUST",                        false, false, P, "X",                 true,  150, 0, "", ""},
    {"X_LKP__F_NAME",                     false, false, P, "X",                 true,  150, 0, "", ""},
    {"X_LKP_CUST_F_",                     false, false, P, "X",                 true,  150, 0, "CUST", ""},
    {"A_LKP_B_F_C_F_D",                   false, true,  L, "A",                 true,  150, 0, "B",         "C_F_D"},
    {"A_LKP_B_LKP_C_F_D",                 false, true,  L, "A",                 true,  150, 0, "B_LKP_C",   "D"},
    {"X_lkp_CUST_F_CUSTNAME",             false, true,  P, "X_lkp_CUST_F_CUSTNAME", true, 150, 0, "", ""},
};

class GridGrammar : public ::testing::TestWithParam<GridCase>
{
};

TEST_P(GridGrammar, NameMakesTheColumnOfTheTable)
{
    const GridCase &c = GetParam();
    const TGridColumnSpec parsed = TFieldNameGrammar::ParseForGrid(QString::fromLatin1(c.name), c.isFloat);
    EXPECT_EQ(parsed.HasColumn, c.hasColumn);
    if (!c.hasColumn)
        return;
    EXPECT_EQ(parsed.Kind, c.kind);
    EXPECT_EQ(parsed.Caption, QString::fromLatin1(c.caption));
    EXPECT_EQ(parsed.Visible, c.visible);
    EXPECT_EQ(parsed.Width, c.width);
    EXPECT_EQ(parsed.Tag, c.tag);
    EXPECT_EQ(parsed.LookupKey, QString::fromLatin1(c.key));
    EXPECT_EQ(parsed.ListField, QString::fromLatin1(c.listField));
}

INSTANTIATE_TEST_SUITE_P(Examples, GridGrammar, ::testing::ValuesIn(kGridCases));

TEST(GridGrammarLookups, ComponentsAreNamedFromTheStem)
{
    const TGridColumnSpec roles = TFieldNameGrammar::ParseForGrid("ID_ROLE_LKP_ROLES_F_ROLENAME", false);
    EXPECT_EQ(roles.LookupDataSetName(), "spROLESOpen");
    EXPECT_EQ(roles.LookupDataSourceName(), "dsROLESOpen");
    const TGridColumnSpec year = TFieldNameGrammar::ParseForGrid("YEAR_LKP_AYEAR_F_AYEARNAME", false);
    EXPECT_EQ(year.LookupDataSetName(), "spAYEAROpen");
}

TEST(GridGrammarSettings, EachKindGetsTheSettingsOfItsRow)
{
    TEditProperties lookup;
    TFieldNameGrammar::ApplyGridSettings(lookup, TFieldNameGrammar::ParseForGrid("ID_ROLE_LKP_ROLES_F_ROLENAME", false));
    EXPECT_EQ(lookup.Kind, TEditKind::Lookup);
    EXPECT_EQ(lookup.ListFieldNames, "ROLENAME");
    EXPECT_EQ(lookup.KeyFieldNames, "ID");
    EXPECT_FALSE(lookup.ListHeaderVisible);

    TEditProperties date;
    TFieldNameGrammar::ApplyGridSettings(date, TFieldNameGrammar::ParseForGrid("PAY_DATE", false));
    EXPECT_EQ(date.DateKind, TDateKind::DateTime);
    EXPECT_TRUE(date.ShowTime);
    EXPECT_EQ(date.DisplayFormat, "dd.mm.yyyy HH24:NN");
    EXPECT_EQ(date.EditFormat, "dd.mm.yyyy HH24:NN");

    TEditProperties check;
    TFieldNameGrammar::ApplyGridSettings(check, TFieldNameGrammar::ParseForGrid("PAID_BIT", false));
    EXPECT_EQ(check.NullStyle, 0);
    EXPECT_EQ(check.ValueChecked.toInt(), 1);
    EXPECT_EQ(check.ValueUnchecked.toInt(), 0);
    EXPECT_EQ(check.ValueGrayed.toInt(), 0);
    EXPECT_EQ(check.DisplayChecked, "true");
    EXPECT_EQ(check.DisplayUnchecked, "false");
    EXPECT_EQ(check.DisplayGrayed, "false");
    EXPECT_EQ(check.ValueType, "Boolean");

    TEditProperties money;
    TFieldNameGrammar::ApplyGridSettings(money, TFieldNameGrammar::ParseForGrid("SUMM", true));
    EXPECT_EQ(money.Kind, TEditKind::Currency);
    EXPECT_EQ(money.DecimalPlaces, 2);
    EXPECT_EQ(money.DisplayFormat, "###,##0.00");
    EXPECT_EQ(money.ValueType, "Float");
}

// Card side: a grid column made for a name, as the frame would make it.
class CardGrammar : public ::testing::Test
{
protected:
    TGridColumn *Column(const char *name, bool isFloat = false)
    {
        const TGridColumnSpec parsed = TFieldNameGrammar::ParseForGrid(QString::fromLatin1(name), isFloat);
        TGridColumn *column = view.CreateColumn(QString::fromLatin1(name));
        auto properties = std::make_shared<TEditProperties>();
        TFieldNameGrammar::ApplyGridSettings(*properties, parsed);
        column->SetProperties(properties);
        column->SetTag(parsed.Tag);
        column->SetCaption(parsed.Caption);
        return column;
    }
    TDBGridView view;
};

TEST_F(CardGrammar, GeneratedCardPicksItsEditorInTableOrder)
{
    EXPECT_EQ(TFieldNameGrammar::DictEditor(nullptr), TCardEditor::Text);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("ID_ROLE_LKP_ROLES_F_ROLENAME")), TCardEditor::Lookup);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("SUMM", true)), TCardEditor::Currency);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("PAY_DATE")), TCardEditor::Date);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("DLG_IDCUST")), TCardEditor::Text);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("PAID_BIT")), TCardEditor::Text);
    EXPECT_EQ(TFieldNameGrammar::DictEditor(Column("COMMENT")), TCardEditor::Text);
}

TEST_F(CardGrammar, HandLaidCardPicksItsEditorInTableOrder)
{
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("ID_ROLE_LKP_ROLES_F_ROLENAME")), TCardEditor::Lookup);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("COMMENT")), TCardEditor::Memo);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("comment")), TCardEditor::Memo);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("DLG_IDCUST")), TCardEditor::Button);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("PAY_DATE")), TCardEditor::DateTime);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("PAID_BIT")), TCardEditor::Text);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("NAME")), TCardEditor::Text);
    EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column("SUMM", true)), TCardEditor::Currency);
}

TEST_F(CardGrammar, EnabledStateComparesTheUpperCasedName)
{
    EXPECT_FALSE(TFieldNameGrammar::DictEditorEnabled("ID", Column("ID")));
    EXPECT_FALSE(TFieldNameGrammar::DictEditorEnabled("id", Column("id")));
    EXPECT_FALSE(TFieldNameGrammar::DictEditorEnabled("sys_note", Column("sys_note")));
    EXPECT_FALSE(TFieldNameGrammar::DictEditorEnabled("DLG_IDCUST", Column("DLG_IDCUST")));
    EXPECT_TRUE(TFieldNameGrammar::DictEditorEnabled("NAME", Column("NAME")));
    EXPECT_TRUE(TFieldNameGrammar::DictEditorEnabled("NAME", nullptr));
    EXPECT_TRUE(TFieldNameGrammar::DictEditorEnabled("VIS_NOTE", nullptr));

    EXPECT_FALSE(TFieldNameGrammar::ComplexEditorEnabled("id"));
    EXPECT_FALSE(TFieldNameGrammar::ComplexEditorEnabled("Sys_Create_Date"));
    EXPECT_TRUE(TFieldNameGrammar::ComplexEditorEnabled("DLG_IDCUST"));
    EXPECT_TRUE(TFieldNameGrammar::ComplexEditorEnabled("PASSWORD"));

    EXPECT_TRUE(TFieldNameGrammar::IsHiddenInCard("vis_note"));
    EXPECT_FALSE(TFieldNameGrammar::IsHiddenInCard("NOTE_VIS_"));
}

TEST(CardNames, AreComposedFromTheUpperCasedFieldName)
{
    EXPECT_EQ(TFieldNameGrammar::LabelName("username"), "USERNAME_LBL");
    EXPECT_EQ(TFieldNameGrammar::DictEditorName("ID_ROLE_LKP_ROLES_F_ROLENAME"), "ID_ROLE_LKP_ROLES_F_ROLENAME_TCX");
    EXPECT_EQ(TFieldNameGrammar::ComplexEditorName("Summ"), "TCXSUMM");
}

TEST_F(CardGrammar, CardsWriteTheirSettingsIntoTheColumn)
{
    TGridColumn *date = Column("PAY_DATE");
    TFieldNameGrammar::ApplyDictCardSettings(*date->Properties(), TCardEditor::Date);
    EXPECT_EQ(date->Properties()->DateKind, TDateKind::Date);
    EXPECT_EQ(date->Properties()->EffectiveDateFormat(), "dd.mm.yyyy");

    TGridColumn *other = Column("PAY_DATE");
    TFieldNameGrammar::ApplyComplexCardSettings(*other->Properties(), TCardEditor::DateTime);
    EXPECT_EQ(other->Properties()->DisplayFormat, "dd.mm.yyyy HH:NN");
    EXPECT_EQ(other->Properties()->EditFormat, "dd.mm.yyyy HH:NN");

    TGridColumn *lookup = Column("ID_ROLE_LKP_ROLES_F_ROLENAME");
    TFieldNameGrammar::ApplyComplexCardSettings(*lookup->Properties(), TCardEditor::Lookup);
    EXPECT_EQ(lookup->Properties()->DropDownStyle, 1);

    TGridColumn *money = Column("SUMM", true);
    TFieldNameGrammar::ApplyComplexCardSettings(*money->Properties(), TCardEditor::Currency);
    EXPECT_EQ(money->Properties()->HorizontalAlignment, Qt::AlignLeft);
}

} // namespace
