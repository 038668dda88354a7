// The field-name grammar, example by example: what a name makes in the grid and in both kinds of card.

#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_view.h"

#include <gtest/gtest.h>
#include <map>

namespace {

// What a name makes in the grid: "kind caption shown|hidden width tag key list", or "none" for no column.
// Kinds: L lookup, B button, D date, C check box, M money, P plain.
TEST(FieldNameGrammar, NameMakesTheColumnOfTheTable)
{
    const struct { const char *name; bool isFloat; const char *column; } cases[] = {
        {"ID_ROLE_LKP_ROLES_F_ROLENAME", false, "L ID_ROLE shown 150 0 ROLES ROLENAME"},
        {"YEAR_LKP_AYEAR_F_AYEARNAME", false, "L YEAR shown 150 0 AYEAR AYEARNAME"},
        {"ID", false, "P ID hidden 150 0 - -"},                     {"id", false, "P id shown 150 0 - -"},
        {"PASSWORD", false, "P PASSWORD hidden 150 0 - -"},         {"Password", false, "P Password shown 150 0 - -"},
        {"SYS_TACTION", false, "P SYS_TACTION hidden 150 0 - -"},   {"sys_taction", false, "P sys_taction shown 150 0 - -"},
        {"SYS_CREATE_DATE", false, "D SYS_CREATE_DATE hidden 150 0 - -"},
        {"DLG_IDCUST", false, "B IDCUST shown 150 1 - -"},          {"dlg_idcust", false, "B idcust shown 150 1 - -"},
        {"DLG_SUMM", true, "B SUMM shown 150 1 - -"},
        {"DLG_X_LKP_CUST_F_CUSTNAME", false, "L DLG_X shown 150 0 CUST CUSTNAME"},
        {"PAY_DATE", false, "D PAY_DATE shown 150 0 - -"},          {"pay_date", false, "D pay_date shown 150 0 - -"},
        {"DLG_PAY_DATE", false, "B PAY_DATE shown 150 1 - -"},
        {"CLOSE_DATE", true, "D CLOSE_DATE shown 150 0 - -"},
        {"IDSTATE_LKP_OSTATE_F_STATENAME_DATE", false, "L IDSTATE shown 150 0 OSTATE STATENAME_DATE"},
        {"PAID_BIT", false, "C PAID_BIT shown 80 0 - -"},           {"paid_bit", false, "C paid_bit shown 80 0 - -"},
        {"SUMM", true, "M SUMM shown 250 0 - -"},                   {"SYS_SUMM", true, "M SYS_SUMM hidden 250 0 - -"},
        {"VIS_NOTE", false, "P VIS_NOTE shown 150 0 - -"},          {"COMMENT", false, "P COMMENT shown 150 0 - -"},
        {"X_LKP_CUST", false, "none"}, {"X_LKP__F_NAME", false, "none"}, {"X_LKP_CUST_F_", false, "none"},
        {"A_LKP_B_F_C_F_D", false, "L A shown 150 0 B C_F_D"},
        {"A_LKP_B_LKP_C_F_D", false, "L A shown 150 0 B_LKP_C D"},
        {"X_lkp_CUST_F_CUSTNAME", false, "P X_lkp_CUST_F_CUSTNAME shown 150 0 - -"},
    };
    const std::map<TEditKind, QString> kinds{{TEditKind::Lookup, "L"},   {TEditKind::Button, "B"},
                                             {TEditKind::Date, "D"},     {TEditKind::CheckBox, "C"},
                                             {TEditKind::Currency, "M"}, {TEditKind::Plain, "P"}};
    for (const auto &c : cases) {
        const TGridColumnSpec p = TFieldNameGrammar::ParseForGrid(QString::fromLatin1(c.name), c.isFloat);
        const QString shown = !p.HasColumn ? QString("none")
                                           : QStringList{kinds.count(p.Kind) ? kinds.at(p.Kind) : "?", p.Caption, p.Visible ? "shown" : "hidden",
                                                         QString::number(p.Width), QString::number(p.Tag),
                                                         p.LookupKey.isEmpty() ? "-" : p.LookupKey,
                                                         p.ListField.isEmpty() ? "-" : p.ListField}
                                                 .join(' ');
        EXPECT_EQ(shown, c.column) << c.name;
    }
    // The module's components a lookup needs are named from its stem.
    const TGridColumnSpec year = TFieldNameGrammar::ParseForGrid("YEAR_LKP_AYEAR_F_AYEARNAME", false);
    EXPECT_EQ(year.LookupDataSetName() + " " + year.LookupDataSourceName(), "spAYEAROpen dsAYEAROpen");
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

TEST_F(CardGrammar, EachCardPicksItsEditorEnablesAndNamesItAndWritesItsSettingsIntoTheColumn)
{
    using E = TCardEditor;
    const struct { const char *name; bool isFloat; TCardEditor generated, handLaid; } table[] = {
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

    // Enabled state and names use the upper-cased name.
    QStringList dict;
    for (const char *name : {"ID", "id", "sys_note", "DLG_IDCUST", "NAME"})
        dict << QString::number(TFieldNameGrammar::DictEditorEnabled(name, Column(name)));
    dict << QString::number(TFieldNameGrammar::DictEditorEnabled("VIS_NOTE", nullptr));
    EXPECT_EQ(dict.join(""), "000011");
    QStringList complex;
    for (const char *name : {"id", "Sys_Create_Date", "DLG_IDCUST", "PASSWORD"})
        complex << QString::number(TFieldNameGrammar::ComplexEditorEnabled(name));
    EXPECT_EQ(complex.join(""), "0011");
    EXPECT_TRUE(TFieldNameGrammar::IsHiddenInCard("vis_note"));
    EXPECT_FALSE(TFieldNameGrammar::IsHiddenInCard("NOTE_VIS_"));
    EXPECT_EQ(QStringList({TFieldNameGrammar::LabelName("username"), TFieldNameGrammar::DictEditorName("id_role"),
                           TFieldNameGrammar::ComplexEditorName("Summ")}),
              QStringList({"USERNAME_LBL", "ID_ROLE_TCX", "TCXSUMM"}));

    // Hand-laid cards write their settings into the column.
    TEditProperties &date = *Column("PAY_DATE")->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(date, TCardEditor::DateTime);
    EXPECT_EQ(date.DisplayFormat + " " + date.EditFormat, "dd.mm.yyyy HH:NN dd.mm.yyyy HH:NN");
    TEditProperties &lookup = *Column("ID_ROLE_LKP_ROLES_F_ROLENAME")->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(lookup, TCardEditor::Lookup);
    EXPECT_EQ(lookup.DropDownStyle, 1);
    TEditProperties &money = *Column("SUMM", true)->Properties();
    TFieldNameGrammar::ApplyComplexCardSettings(money, TCardEditor::Currency);
    EXPECT_EQ(money.HorizontalAlignment, Qt::AlignLeft);
}

} // namespace
