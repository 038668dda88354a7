// The picker of a customer: its OK state, the shop's own row, the chosen number and its filters.

#include "window_fixture.h"

#include "cust_dialog_fm.h"

namespace {

class CustDialogTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        petrov = NewCustomer("Петров", "'8-900-111'", "'ул. Ленина 5'");
        NewCustomer("100% O'Brien_", "'555'", "'пр. Мира'");
    }
    int petrov = 0;
};

TEST_F(CustDialogTest, OkIsSetOnShowByWhetherTheGridHasRowsADoubleClickChoosesAndEachFilterWrapsTheText)
{
    TCustDialogFM dialog;
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Диалог выбора клиента");
    EXPECT_TRUE(Column(dialog.frmCust, "ID").contains("1")) << "the shop itself is listed";
    EXPECT_TRUE(dialog.actOK->isEnabled());
    TypeText(dialog.edClientName, "нет такого");
    Settle();
    EXPECT_TRUE(Column(dialog.frmCust, "ID").isEmpty());
    EXPECT_TRUE(dialog.actOK->isEnabled()) << "a filter emptying the grid leaves OK";
    dialog.frmCust->actDblClick->Execute();
    EXPECT_EQ(dialog.ModalResult(), mrOk);
    EXPECT_EQ(dialog.CustId, 0);

    TCustDialogFM empty;
    empty.edClientName->setText("нет такого");
    empty.show();
    EXPECT_FALSE(empty.actOK->isEnabled());
    empty.frmCust->actDblClick->Execute();
    EXPECT_EQ(empty.ModalResult(), mrNone) << "double click does nothing then";

    // A double click chooses the current row, Cancel nothing.
    for (const bool choose : {true, false}) {
        TCustDialogFM dialog;
        OnModal<TCustDialogFM>([&] { EXPECT_EQ(dialog.Execute(), choose); }, {[&](TCustDialogFM *) {
            ASSERT_TRUE(dm->spCustDialog.Locate("ID", petrov));
            choose ? dialog.frmCust->GridViewDblClick(dialog.frmCust->GridView) : dialog.AdvGlowButton2->click();
        }});
        EXPECT_EQ(dialog.CustId, choose ? petrov : 0);
    }
    // Each filter of the first dialog wraps the text; pattern signs and quotes break nothing.
    const QStringList mine{"Петров"}, other{"100% O'Brien_"};
    for (const auto &[edit, typed, found] :
         {std::tuple{dialog.edClientName, "ПЕТР", mine}, {dialog.edPhone, "900", mine}, {dialog.edAddress, "мира", other},
          {dialog.edClientName, "0% o'b", other}, {dialog.edClientName, "n_", other}}) {
        for (TTextEdit *each : {dialog.edClientName, dialog.edPhone, dialog.edAddress})
            each->clear();
        TypeText(edit, typed);
        Settle();
        EXPECT_EQ(Column(dialog.frmCust, "CUSTNAME"), found) << typed;
    }
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Untitled(dialog.frmCust), QStringList());
}

} // namespace
