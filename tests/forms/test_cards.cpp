// Generated and hand-laid cards: their controls, captions, saving and closing.

#include "db_editors.h"
#include "frame_fixture.h"
#include "roles_test_card.h"
#include "type_text.h"

#include <QLabel>
#include <QTest>

namespace {

class CardTest : public FrameTest
{
protected:
    // Shows the card modally, runs `check` on it and cancels it.
    static void ShowAndCancel(TCustomDictFM *card, const std::function<void()> &check = [] {})
    {
        OnCard([card] { card->ShowModal(); }, {[&](TCustomDictFM *) { check(), card->AdvGlowButton2->click(); }});
    }
    static QString Label(QWidget *card, const QString &name) { return card->findChild<QLabel *>(name)->text(); }
};

TEST_F(CardTest, GeneratedCardHasALabelAndAnEditorPerColumnOnceAVisMarkHidesTheRowAndDatesBecomeDates)
{
    CaptionsFileGuard ini("[frmUserDictFM]\nUSERNAME_LBL=Логин\n");
    MakeFrame("TestUsersFM", "frmUser", &dm->spUsersOpen, "spUsers")->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmUser", "spUsersEdit");
    for (int show = 0; show < 2; ++show) // the second show makes nothing twice
        ShowAndCancel(&card, [&] {
            QStringList labels;
            for (QLabel *label : card.gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
                labels << label->objectName();
            EXPECT_EQ(labels, QStringList({"ID_LBL", "USERNAME_LBL", "PASSWORD_LBL", "ID_ROLE_LKP_ROLES_F_ROLENAME_LBL",
                                           "USER_FULL_NAME_LBL", "SYS_CREATE_DATE_LBL", "STATE_LKP_STATES_F_STATENAME_LBL"}));
            EXPECT_EQ(Label(&card, "USERNAME_LBL") + " " + Label(&card, "ID_ROLE_LKP_ROLES_F_ROLENAME_LBL"), "Логин ID_ROLE");
            auto *name = dynamic_cast<TDBTextEdit *>(Child(&card, "USERNAME_TCX"));
            auto *role = dynamic_cast<TDBLookupComboBox *>(Child(&card, "ID_ROLE_LKP_ROLES_F_ROLENAME_TCX"));
            ASSERT_TRUE(name && role && dynamic_cast<TDBDateEdit *>(Child(&card, "SYS_CREATE_DATE_TCX")));
            // name, its enabling, the role list's size and choice, the key's enabling
            EXPECT_EQ(QString("%1 %2 %3 %4 %5").arg(name->text()).arg(name->isEnabled()).arg(role->count())
                          .arg(role->currentText()).arg(Child(&card, "ID_TCX")->isEnabled()),
                      "Администратор 1 3 Администратор 0");
            EXPECT_EQ(QList<qsizetype>({card.findChildren<QLabel *>().size(), card.findChildren<QWidget *>("USERNAME_TCX").size()}),
                      QList<qsizetype>({7, 1}));
        });
    // The save's arguments follow the grid's columns; a lookup gives its key, not the shown text.
    card.CreateDataArray();
    ASSERT_EQ(card.DataArray.size(), 7);
    EXPECT_EQ(card.DataArray[1].toString() + " " + card.DataArray[3].toString(), "Администратор 1");

    // A VIS_ mark hides the row; dates become dates once a card opens.
    TpFIBDataSet *ds = Own("spVisOpen", "select ID, ROLENAME as VIS_NAME, COMMENT, 1 as PAID_BIT, "
                                        "cast('2024-03-05 14:07:09' as date) as MADE_DATE from ROLES");
    MakeFrame("TestVisFM", "frmVis", ds, "spRoles")->actRefresh->Execute();
    const int made = frame->GridView->FindColumnByFieldName("MADE_DATE")->Index();
    EXPECT_EQ(frame->GridView->DisplayText(0, made), "05.03.2024 1424:07");
    {
        TDictFM card(frame->GridView, "frmVis", "spRolesEdit");
        ShowAndCancel(&card, [&] {
            EXPECT_TRUE(Child(&card, "VIS_NAME_LBL")->isHidden());
            EXPECT_TRUE(Child(&card, "VIS_NAME_TCX")->isHidden());
            // The rows below stay aligned.
            EXPECT_EQ(Child(&card, "COMMENT_LBL")->geometry().top(), Child(&card, "COMMENT_TCX")->geometry().top());
            // No branch of the generated card knows check boxes.
            EXPECT_NE(dynamic_cast<TDBTextEdit *>(Child(&card, "PAID_BIT_TCX")), nullptr);
            auto *date = dynamic_cast<TDBDateEdit *>(Child(&card, "MADE_DATE_TCX"));
            ASSERT_NE(date, nullptr);
            EXPECT_EQ(date->Properties().DateKind, TDateKind::Date);
            EXPECT_EQ(date->text(), "05.03.2024");
        });
    }
    EXPECT_TRUE(frame->GridView->FindColumnByFieldName("VIS_NAME")->Visible());
    EXPECT_EQ(frame->GridView->DisplayText(0, made), "05.03.2024");
}

TEST_F(CardTest, CancelAsksToSaveOnlyAfterTypingAFailedSaveClosesACardOfADataSourceAndHandLaidEditorsAreMadeOnceInTheirBoxes)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles")->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    ShowAndCancel(&card);
    EXPECT_TRUE(dialogs.Shown.isEmpty() && card.ModalResult() == mrCancel);

    dialogs.Answer(Dialogs::ResultOk);
    ShowAndCancel(&card, [&] { TypeText(Child(&card, "COMMENT_TCX"), "Смотрит"); });
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Данные были изменены. Сохранить?");
    EXPECT_TRUE(dialogs.Shown[0].buttons == Dialogs::OkCancel && card.ModalResult() == mrCancel);
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 3").toString(), "Смотрит");

    // Not saved: the typed row stays in the grid.
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    dialogs.Answer(Dialogs::ResultCancel);
    ShowAndCancel(&card, [&] { TypeText(Child(&card, "COMMENT_TCX"), "Не сохранять"); });
    EXPECT_EQ(dialogs.Shown.size(), 2);
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 3").toString(), "Смотрит");
    EXPECT_EQ(dm->spRolesOpen.State(), dsEdit);
    EXPECT_EQ(dm->spRolesOpen.FieldByName("COMMENT")->AsString(), "Не сохранять");

    // A card of a data source closes after a failed save.
    dm->spRolesOpen.Cancel();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    TDictFM source(&dm->dsRolesOpen, "spRolesEdit");
    OnCard([&] { EXPECT_TRUE(source.Execute()); }, {[&](TCustomDictFM *) {
        TypeText(Child(&source, "ROLENAME_TCX"), "Администратор");
        source.AdvGlowButton1->click();
    }});
    EXPECT_TRUE(source.ErrorText.isEmpty());
    ASSERT_EQ(dialogs.Shown.size(), 3);
    EXPECT_TRUE(dialogs.Shown[2].text.contains("Роль с таким названием уже существует"));

    // The hand-laid card over the roles grid: its editors are made once in the boxes, Enter ends in OK, and a
    // field without a box is still saved.
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles")->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    TRolesTestCardFM handLaid(frame->GridView, "frmRoles");
    for (int show = 0; show < 2; ++show) {
        ShowAndCancel(&handLaid, [&] {
            EXPECT_EQ(handLaid.ui.ROLENAME->findChildren<QWidget *>("TCXROLENAME").size(), 1);
            auto *name = dynamic_cast<TDBTextEdit *>(handLaid.ui.ROLENAME->findChild<QWidget *>("TCXROLENAME"));
            ASSERT_NE(name, nullptr);
            EXPECT_EQ(name->text() + (name->isEnabled() ? " enabled" : ""), "Оператор enabled");
            auto *memo = dynamic_cast<TDBMemo *>(handLaid.ui.comment->findChild<QWidget *>("TCXCOMMENT"));
            ASSERT_NE(memo, nullptr);
            EXPECT_GT(memo->height(), 60);
            EXPECT_FALSE(handLaid.ui.ID->findChild<QWidget *>("TCXID")->isEnabled());
            EXPECT_EQ(handLaid.FindFormControl("COMMENT"), handLaid.ui.comment);
            QVariant id, none;
            handLaid.GetIntValue("id", id);
            handLaid.GetIntValue("NOSUCHBOX", none);
            EXPECT_EQ(QList<int>({id.toInt(), none.toInt()}), QList<int>({2, 0}));
        });
    }

    // Enter moves to the next box; on the last one it presses OK.
    QWidget *name = Child(&handLaid, "TCXROLENAME"), *memo = Child(&handLaid, "TCXCOMMENT");
    QWidget *focusAfterFirstEnter = nullptr;
    ModalDriver driver;
    driver
        .Then([&](QWidget *) {
            name->setFocus();
            QTest::keyClick(name, Qt::Key_Return);
            focusAfterFirstEnter = handLaid.focusWidget();
            TypeText(memo, "Смена");
            QTest::keyClick(memo, Qt::Key_Return);
        })
        .Then([&](QWidget *) { handLaid.AdvGlowButton2->click(); }); // runs only if OK was not pressed
    EXPECT_EQ(handLaid.ShowModal(), mrOk);
    EXPECT_EQ(focusAfterFirstEnter, memo);
    EXPECT_EQ(driver.Remaining(), 1);
    EXPECT_TRUE(Scalar("select COMMENT from ROLES where ID = 2").toString().startsWith("Смена"));

    // A field without a box is still saved.
    TRolesTestCardFM boxless(frame->GridView, "frmRoles");
    delete boxless.ui.comment;
    boxless.ui.comment = nullptr;
    Exec("update ROLES set COMMENT = 'Хранится' where ID = 2");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    OnCard([&] { EXPECT_EQ(boxless.ShowModal(), mrOk); }, {[&](TCustomDictFM *) {
        EXPECT_EQ(Child(&boxless, "TCXCOMMENT"), nullptr);
        TypeText(Child(&boxless, "TCXROLENAME"), "Кассир");
        boxless.AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, "select ROLENAME, COMMENT from ROLES where ID = 2"), QStringList{"Кассир|Хранится"});
    // Without a grid there is nothing to show.
    TComplexFM lone("LoneFM", nullptr, "x", "spRolesEdit");
    EXPECT_THROW(lone.ShowModal(), EDatabaseError);
}

} // namespace
