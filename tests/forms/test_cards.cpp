// Generated and hand-laid cards: their controls, captions, saving and closing.

#include "captions_file.h"
#include "db_editors.h"
#include "frame_fixture.h"
#include "grid_column.h"
#include "roles_test_card.h"

#include <QGroupBox>
#include <QLabel>
#include <QTest>

#include "type_text.h"

namespace {

void Type(QWidget *editor, const QString &text)
{
    TypeText(editor, text);
}

class CardTest : public FrameTest
{
protected:
    // A dataset of the module's connection; its update statement changes nothing.
    void TearDown() override
    {
        form.reset();
        own.clear();
        FrameTest::TearDown();
    }

    TpFIBDataSet *Own(const QString &name, const QString &select)
    {
        own.push_back(std::make_unique<TpFIBDataSet>());
        TpFIBDataSet *ds = own.back().get();
        ds->setObjectName(name);
        ds->SetDatabase(&dm->pFIBDatabaseMain);
        ds->SetTransaction(&dm->pFIBTransaction1);
        ds->SetSelectSQL(select);
        ds->UpdateSQL = "update ROLES set ROLENAME = ROLENAME where ID = :OLD_ID";
        return ds;
    }
    std::vector<std::unique_ptr<TpFIBDataSet>> own;

    // Shows the card modally, runs `check` on it and cancels it.
    void ShowAndCancel(TCustomDictFM *card, const std::function<void(TCustomDictFM *)> &check)
    {
        ModalDriver driver;
        driver.Then([&](QWidget *) {
            check(card);
            card->AdvGlowButton2->click();
        });
        card->ShowModal();
        EXPECT_EQ(driver.Ran(), 1);
    }
};

TEST_F(CardTest, GeneratedCardHasALabelAndAnEditorPerColumn)
{
    MakeFrame("TestUsersFM", "frmUser", &dm->spUsersOpen, "spUsers");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmUser", "spUsersEdit");
    EXPECT_EQ(card.objectName(), "frmUserDictFM");
    ShowAndCancel(&card, [&](TCustomDictFM *) {
        QStringList labels;
        for (QLabel *label : card.gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
            labels << label->objectName();
        EXPECT_EQ(labels, QStringList({"ID_LBL", "USERNAME_LBL", "PASSWORD_LBL", "ID_ROLE_LKP_ROLES_F_ROLENAME_LBL",
                                       "USER_FULL_NAME_LBL", "SYS_CREATE_DATE_LBL", "STATE_LKP_STATES_F_STATENAME_LBL"}));
        EXPECT_EQ(card.findChild<QLabel *>("ID_ROLE_LKP_ROLES_F_ROLENAME_LBL")->text(), "ID_ROLE");
        EXPECT_NE(dynamic_cast<TDBTextEdit *>(card.findChild<QWidget *>("USERNAME_TCX")), nullptr);
        EXPECT_NE(dynamic_cast<TDBLookupComboBox *>(card.findChild<QWidget *>("ID_ROLE_LKP_ROLES_F_ROLENAME_TCX")),
                  nullptr);
        EXPECT_NE(dynamic_cast<TDBDateEdit *>(card.findChild<QWidget *>("SYS_CREATE_DATE_TCX")), nullptr);
        EXPECT_FALSE(card.findChild<QWidget *>("ID_TCX")->isEnabled());
        EXPECT_FALSE(card.findChild<QLabel *>("ID_LBL")->isEnabled());
        EXPECT_FALSE(card.findChild<QWidget *>("SYS_CREATE_DATE_TCX")->isEnabled());
        EXPECT_TRUE(card.findChild<QWidget *>("USERNAME_TCX")->isEnabled());
        auto *role = dynamic_cast<TDBLookupComboBox *>(card.findChild<QWidget *>("ID_ROLE_LKP_ROLES_F_ROLENAME_TCX"));
        EXPECT_EQ(role->count(), 3);
        EXPECT_EQ(role->currentText(), "Администратор");
        EXPECT_EQ(qobject_cast<QLineEdit *>(card.findChild<QWidget *>("USERNAME_TCX"))->text(), "Администратор");
    });
}

TEST_F(CardTest, SecondShowMakesNoSecondSetOfControls)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    ShowAndCancel(&card, [](TCustomDictFM *) {});
    ShowAndCancel(&card, [](TCustomDictFM *c) {
        EXPECT_EQ(c->findChildren<QLabel *>().size(), 3);
        EXPECT_EQ(c->findChildren<QWidget *>("ROLENAME_TCX").size(), 1);
    });
}

TEST_F(CardTest, LabelCaptionsComeFromTheCardsSection)
{
    CaptionsFileGuard ini("[frmRolesDictFM]\nROLENAME_LBL=Название роли\nCOMMENT_LBL=Примечание\n");
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    ShowAndCancel(&card, [&](TCustomDictFM *) {
        EXPECT_EQ(card.findChild<QLabel *>("ROLENAME_LBL")->text(), "Название роли");
        EXPECT_EQ(card.findChild<QLabel *>("COMMENT_LBL")->text(), "Примечание");
        EXPECT_EQ(card.findChild<QLabel *>("ID_LBL")->text(), "ID");
    });
}

TEST_F(CardTest, VisMarkHidesLabelAndEditorButKeepsTheRowsAligned)
{
    TpFIBDataSet *ds = Own("spVisOpen", "select ID, ROLENAME as VIS_NAME, COMMENT, 1 as PAID_BIT from ROLES");
    MakeFrame("TestVisFM", "frmVis", ds, "spRoles");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmVis", "spRolesEdit");
    ShowAndCancel(&card, [&](TCustomDictFM *) {
        EXPECT_TRUE(card.findChild<QLabel *>("VIS_NAME_LBL")->isHidden());
        EXPECT_TRUE(card.findChild<QWidget *>("VIS_NAME_TCX")->isHidden());
        EXPECT_EQ(card.findChild<QLabel *>("COMMENT_LBL")->geometry().top(),
                  card.findChild<QWidget *>("COMMENT_TCX")->geometry().top());
        // No branch of the generated card knows check boxes.
        EXPECT_NE(dynamic_cast<TDBTextEdit *>(card.findChild<QWidget *>("PAID_BIT_TCX")), nullptr);
    });
    EXPECT_TRUE(frame->GridView->FindColumnByFieldName("VIS_NAME")->Visible());
}

TEST_F(CardTest, OpeningAGeneratedCardTurnsTheGridsDatesIntoDates)
{
    TpFIBDataSet *ds = Own("spDatesOpen", "select ID, cast('2024-03-05 14:07:09' as date) as MADE_DATE from ROLES");
    MakeFrame("TestDatesFM", "frmDates", ds, "spRoles");
    frame->actRefresh->Execute();
    TGridColumn *made = frame->GridView->FindColumnByFieldName("MADE_DATE");
    EXPECT_EQ(frame->GridView->DisplayText(0, made->Index()), "05.03.2024 1424:07");
    {
        TDictFM card(frame->GridView, "frmDates", "spRolesEdit");
        ShowAndCancel(&card, [](TCustomDictFM *c) {
            auto *editor = dynamic_cast<TDBDateEdit *>(c->findChild<QWidget *>("MADE_DATE_TCX"));
            ASSERT_NE(editor, nullptr);
            EXPECT_EQ(editor->Properties().DateKind, TDateKind::Date);
            EXPECT_EQ(editor->text(), "05.03.2024");
        });
    }
    EXPECT_EQ(frame->GridView->DisplayText(0, made->Index()), "05.03.2024");
}

TEST_F(CardTest, CancelWithNothingTypedAsksNothing)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    ShowAndCancel(&card, [](TCustomDictFM *) {});
    EXPECT_TRUE(dialogs.Shown.isEmpty());
    EXPECT_EQ(card.ModalResult(), mrCancel);
}

TEST_F(CardTest, CancelAfterTypingAsksAndSavesOnOk)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    dialogs.Answer(Dialogs::ResultOk);
    ShowAndCancel(&card, [](TCustomDictFM *c) { Type(c->findChild<QWidget *>("COMMENT_TCX"), "Смотрит"); });
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Данные были изменены. Сохранить?");
    EXPECT_EQ(dialogs.Shown[0].caption, "Подтверждение");
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
    EXPECT_EQ(card.ModalResult(), mrCancel);
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 3").toString(), "Смотрит");
}

TEST_F(CardTest, CancelAfterTypingAndNoSaveKeepsTheTypedRowInTheGrid)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    TDictFM card(frame->GridView, "frmRoles", "spRolesEdit");
    dialogs.Answer(Dialogs::ResultCancel);
    ShowAndCancel(&card, [](TCustomDictFM *c) { Type(c->findChild<QWidget *>("COMMENT_TCX"), "Не сохранять"); });
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 3").toString(), "Только просмотр");
    EXPECT_EQ(dm->spRolesOpen.State(), dsEdit);
    EXPECT_EQ(dm->spRolesOpen.FieldByName("COMMENT")->AsString(), "Не сохранять");
}

TEST_F(CardTest, CardOfADataSourceClosesAfterAFailedSave)
{
    dm->spRolesOpen.Open();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    TDictFM card(&dm->dsRolesOpen, "spRolesEdit");
    EXPECT_EQ(card.objectName(), "DictFM");
    ModalDriver driver;
    driver.Then([&](QWidget *) {
        EXPECT_NE(card.findChild<QWidget *>("ROLENAME_TCX"), nullptr);
        Type(card.findChild<QWidget *>("ROLENAME_TCX"), "Администратор");
        card.AdvGlowButton1->click();
    });
    EXPECT_TRUE(card.Execute());
    EXPECT_TRUE(card.ErrorText.isEmpty());
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_TRUE(dialogs.Shown[0].text.contains("Роль с таким названием уже существует"));
}

TEST_F(CardTest, DataArrayFollowsTheColumnsOfTheGrid)
{
    MakeFrame("TestUsersFM", "frmUser", &dm->spUsersOpen, "spUsers");
    frame->actRefresh->Execute();
    TDictFM card(frame->GridView, "frmUser", "spUsersEdit");
    card.CreateDataArray();
    ASSERT_EQ(card.DataArray.size(), 7);
    EXPECT_EQ(card.DataArray[0].toInt(), 1);
    EXPECT_EQ(card.DataArray[1].toString(), "Администратор");
    // The lookup's value is the key, not the shown text.
    EXPECT_EQ(card.DataArray[3].toInt(), 1);
}

// The hand-laid card over the roles grid.
class ComplexCardTest : public CardTest
{
protected:
    void SetUp() override
    {
        CardTest::SetUp();
        MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
        frame->actRefresh->Execute();
        ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    }
};

TEST_F(ComplexCardTest, EditorsAreMadeInsideTheBoxesNamedLikeTheFields)
{
    TRolesTestCardFM card(frame->GridView, "frmRoles");
    EXPECT_EQ(card.objectName(), "RolesTestCardFM");
    ShowAndCancel(&card, [&](TCustomDictFM *) {
        auto *name = dynamic_cast<TDBTextEdit *>(card.ui.ROLENAME->findChild<QWidget *>("TCXROLENAME"));
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(name->text(), "Оператор");
        EXPECT_TRUE(name->isEnabled());
        auto *memo = dynamic_cast<TDBMemo *>(card.ui.comment->findChild<QWidget *>("TCXCOMMENT"));
        ASSERT_NE(memo, nullptr);
        EXPECT_GT(memo->height(), 60);
        EXPECT_FALSE(card.ui.ID->findChild<QWidget *>("TCXID")->isEnabled());
        EXPECT_EQ(card.ui.ROLENAME->title(), "ROLENAME");
        EXPECT_EQ(card.FindFormControl("COMMENT"), card.ui.comment);
        QVariant id;
        card.GetIntValue("id", id);
        EXPECT_EQ(id.toInt(), 2);
        card.GetIntValue("NOSUCHBOX", id);
        EXPECT_EQ(id.toInt(), 0);
    });
    // A second show keeps the editors it made.
    ShowAndCancel(&card, [&](TCustomDictFM *) {
        EXPECT_EQ(card.ui.ROLENAME->findChildren<QWidget *>("TCXROLENAME").size(), 1);
    });
}

TEST_F(ComplexCardTest, EnterMovesToTheNextBoxAndOnTheLastPressesOk)
{
    TRolesTestCardFM card(frame->GridView, "frmRoles");
    QWidget *focusAfterFirstEnter = nullptr;
    ModalDriver driver;
    driver
        .Then([&](QWidget *) {
            QWidget *name = card.findChild<QWidget *>("TCXROLENAME");
            QWidget *memo = card.findChild<QWidget *>("TCXCOMMENT");
            name->setFocus();
            QTest::keyClick(name, Qt::Key_Return);
            focusAfterFirstEnter = QApplication::focusWidget();
            TypeText(memo, "Смена");
            QTest::keyClick(memo, Qt::Key_Return);
        })
        .Then([&](QWidget *) {
            // Still open means OK was not pressed.
            card.AdvGlowButton2->click();
        });
    const int result = card.ShowModal();
    EXPECT_EQ(focusAfterFirstEnter, card.findChild<QWidget *>("TCXCOMMENT"));
    EXPECT_EQ(result, mrOk);
    EXPECT_EQ(driver.Remaining(), 1);
    EXPECT_TRUE(Scalar("select COMMENT from ROLES where ID = 2").toString().startsWith("Смена"));
}

TEST_F(ComplexCardTest, FieldWithoutABoxIsStillSaved)
{
    TRolesTestCardFM card(frame->GridView, "frmRoles");
    delete card.ui.comment;
    card.ui.comment = nullptr;
    Exec("update ROLES set COMMENT = 'Хранится' where ID = 2");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    ModalDriver driver;
    driver.Then([&](QWidget *) {
        EXPECT_EQ(card.findChild<QWidget *>("TCXCOMMENT"), nullptr);
        Type(card.findChild<QWidget *>("TCXROLENAME"), "Кассир");
        card.AdvGlowButton1->click();
    });
    EXPECT_EQ(card.ShowModal(), mrOk);
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 2").toString(), "Кассир");
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 2").toString(), "Хранится");
}

TEST(ComplexCardWithoutGrid, RefusesToShow)
{
    ScriptedDialogs dialogs;
    TComplexFM card("LoneFM", nullptr, "x", "spRolesEdit");
    EXPECT_THROW(card.ShowModal(), EDatabaseError);
}

} // namespace
