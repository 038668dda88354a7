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

constexpr auto L = TEditKind::Lookup, B = TEditKind::Button, D = TEditKind::Date, C = TEditKind::CheckBox,
               M = TEditKind::Currency, P = TEditKind::Plain;

const GridCase kGridCases[] = {
    // name                               float  column kind caption            vis    width tag key          list
    {"IDCMAT_LKP_CMAT_F_CMATNAME",        false, true,  L, "IDCMAT",            true,  150, 0, "CMAT",      "CMATNAME"},
    {"ID_ROLE_LKP_ROLES_F_ROLENAME",      false, true,  L, "ID_ROLE",           true,  150, 0, "ROLES",     "ROLENAME"},
    {"YEAR_LKP_AYEAR_F_AYEARNAME",        false, true,  L, "YEAR",              true,  150, 0, "AYEAR",     "AYEARNAME"},
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

TEST(FieldNameGrammar, NameMakesTheColumnOfTheTable)
{
    for (const GridCase &c : kGridCases) {
        SCOPED_TRACE(c.name);
        const TGridColumnSpec parsed = TFieldNameGrammar::ParseForGrid(QString::fromLatin1(c.name), c.isFloat);
        EXPECT_EQ(parsed.HasColumn, c.hasColumn);
        if (!c.hasColumn)
            continue;
        EXPECT_EQ(parsed.Kind, c.kind);
        EXPECT_EQ(parsed.Caption, QString::fromLatin1(c.caption));
        EXPECT_EQ(parsed.Visible, c.visible);
        EXPECT_EQ(parsed.Width, c.width);
        EXPECT_EQ(parsed.Tag, c.tag);
        EXPECT_EQ(parsed.LookupKey, QString::fromLatin1(c.key));
        EXPECT_EQ(parsed.ListField, QString::fromLatin1(c.listField));
    }
    // The module's components a lookup needs are named from its stem.
    const TGridColumnSpec year = TFieldNameGrammar::ParseForGrid("YEAR_LKP_AYEAR_F_AYEARNAME", false);
    EXPECT_EQ(year.LookupDataSetName(), "spAYEAROpen");
    EXPECT_EQ(year.LookupDataSourceName(), "dsAYEAROpen");
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

TEST_F(CardGrammar, EachCardPicksItsEditorInTableOrder)
{
    using E = TCardEditor;
    const struct
    {
        const char *name;
        bool isFloat;
        TCardEditor generated, handLaid;
    } table[] = {
        {"ID_ROLE_LKP_ROLES_F_ROLENAME", false, E::Lookup, E::Lookup}, {"SUMM", true, E::Currency, E::Currency},
        {"PAY_DATE", false, E::Date, E::DateTime},                     {"DLG_IDCUST", false, E::Text, E::Button},
        {"PAID_BIT", false, E::Text, E::Text},                         {"COMMENT", false, E::Text, E::Memo},
        {"comment", false, E::Text, E::Memo},                          {"NAME", false, E::Text, E::Text},
    };
    for (const auto &row : table) {
        EXPECT_EQ(TFieldNameGrammar::DictEditor(Column(row.name, row.isFloat)), row.generated) << row.name;
        EXPECT_EQ(TFieldNameGrammar::ComplexEditor(*Column(row.name, row.isFloat)), row.handLaid) << row.name;
    }
    EXPECT_EQ(TFieldNameGrammar::DictEditor(nullptr), E::Text);
}

TEST_F(CardGrammar, EnabledStateAndNamesUseTheUpperCasedName)
{
    for (const char *name : {"ID", "id", "sys_note", "DLG_IDCUST"})
        EXPECT_FALSE(TFieldNameGrammar::DictEditorEnabled(name, Column(name))) << name;
    EXPECT_TRUE(TFieldNameGrammar::DictEditorEnabled("NAME", Column("NAME")));
    EXPECT_TRUE(TFieldNameGrammar::DictEditorEnabled("VIS_NOTE", nullptr));
    EXPECT_FALSE(TFieldNameGrammar::ComplexEditorEnabled("id"));
    EXPECT_FALSE(TFieldNameGrammar::ComplexEditorEnabled("Sys_Create_Date"));
    EXPECT_TRUE(TFieldNameGrammar::ComplexEditorEnabled("DLG_IDCUST"));
    EXPECT_TRUE(TFieldNameGrammar::ComplexEditorEnabled("PASSWORD"));
    EXPECT_TRUE(TFieldNameGrammar::IsHiddenInCard("vis_note"));
    EXPECT_FALSE(TFieldNameGrammar::IsHiddenInCard("NOTE_VIS_"));
    EXPECT_EQ(TFieldNameGrammar::LabelName("username"), "USERNAME_LBL");
    EXPECT_EQ(TFieldNameGrammar::DictEditorName("id_role"), "ID_ROLE_TCX");
    EXPECT_EQ(TFieldNameGrammar::ComplexEditorName("Summ"), "TCXSUMM");
}

TEST_F(CardGrammar, HandLaidCardsWriteTheirSettingsIntoTheColumn)
{
    TEditProperties &date = *Column("PAY_DATE")->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(date, TCardEditor::DateTime);
    EXPECT_EQ(date.DisplayFormat, "dd.mm.yyyy HH:NN");
    EXPECT_EQ(date.EditFormat, "dd.mm.yyyy HH:NN");
    TEditProperties &lookup = *Column("ID_ROLE_LKP_ROLES_F_ROLENAME")->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(lookup, TCardEditor::Lookup);
    EXPECT_EQ(lookup.DropDownStyle, 1);
    TEditProperties &money = *Column("SUMM", true)->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(money, TCardEditor::Currency);
    EXPECT_EQ(money.HorizontalAlignment, Qt::AlignLeft);
}

} // namespace
