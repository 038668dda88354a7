// The grid frame over real procedure families: columns and their titles from the ini file beside the
// executable, add with its empty row, edit, delete, the refresh and its failures.

#include "frame_fixture.h"
#include "type_text.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QScrollBar>

namespace {

using GridFrameTest = FrameTest;

TEST_F(GridFrameTest, RefreshBuildsTitledColumnsOnceFetchesManyRowsAsShownKeepsThePlaceAndAFailingOneLeavesTheFrameUsable)
{
    // Without the captions file beside the executable the titles are the field names.
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    EXPECT_EQ(TCaptionsFile::FileName(), executable.absolutePath() + "/" + executable.completeBaseName() + ".ini");
    QFile::remove(TCaptionsFile::FileName());
    MakeFrame("TestUsersFM", "frmUser", &dm->spUsersOpen, "spUsers")->actRefresh->Execute();
    TDBGridView *view = frame->GridView;
    EXPECT_EQ(Columns(true), QStringList({"ID", "USERNAME", "PASSWORD", "ID_ROLE", "USER_FULL_NAME",
                                          "SYS_CREATE_DATE", "STATE"}));
    EXPECT_EQ(QList<bool>({view->isColumnHidden(0), view->isColumnHidden(1)}), QList<bool>({true, false}));
    // Lookups show the name for the key.
    EXPECT_EQ(Shown("ID_ROLE_LKP_ROLES_F_ROLENAME").first() + " " + Shown("STATE_LKP_STATES_F_STATENAME").first(),
              "Администратор Активен");

    // A second refresh keeps the columns as the user left them.
    view->FindColumnByFieldName("USERNAME")->SetWidth(321);
    view->FindColumnByFieldName("USERNAME")->SetCaption("Имя");
    frame->actRefresh->Execute();
    EXPECT_EQ(QString("%1 %2 ").arg(view->ColumnCount()).arg(view->FindColumnByFieldName("USERNAME")->Width())
                  + view->FindColumnByFieldName("USERNAME")->Caption(), "7 321 Имя");
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();

    // Written captions read back the same.
    frame->WriteColumnCaption(nullptr);
    EXPECT_EQ(TCaptionsFile().Read("TestUsersFM.frmUser", "USERNAME", QString()), "Имя");
    QFile::remove(TCaptionsFile::FileName());

    // With the captions file, the titles of the owner form's section and the frame's.
    CaptionsFileGuard ini("[CaptionFM.frmUsers]\nUSERNAME=Пользователь\nID_ROLE_LKP_ROLES_F_ROLENAME=Роль\nID=Код\n"
                          "[OtherFM.frmUsers]\nUSER_FULL_NAME=Чужое\n[OwnerFM.frmUsers]\nUSERNAME=Логин\n");
    MakeFrame("CaptionFM", "frmUsers", &dm->spUsersOpen, "spUsers")->actRefresh->Execute();
    EXPECT_EQ(Columns(true), QStringList({"Код", "Пользователь", "PASSWORD", "Роль", "USER_FULL_NAME", "SYS_CREATE_DATE", "STATE"}));
    QWidget owner;
    owner.setObjectName("OwnerFM");
    frame->SetOwnerForm(&owner);
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->GridView->FindColumnByFieldName("USERNAME")->Caption(), "Логин");

    // Many rows are fetched as shown; a refresh keeps the place.
    TpFIBDataSet *many = Own("many", "select first 100000 r1.RDB$TYPE as ID, r2.RDB$TYPE_NAME as NAME "
                                     "from RDB$TYPES r1, RDB$TYPES r2, RDB$TYPES r3");
    MakeFrame("TestManyFM", "frmMany", many, "spNothing")->actRefresh->Execute();
    QCoreApplication::processEvents();
    EXPECT_FALSE(many->AllFetched());
    EXPECT_LT(many->RecordCount(), 1000);
    const int first = many->RecordCount();
    QScrollBar *bar = frame->GridView->verticalScrollBar();
    bar->setValue(bar->maximum());
    QCoreApplication::processEvents();
    EXPECT_GT(many->RecordCount(), first);
    EXPECT_FALSE(many->AllFetched());

    frame->GridView->SetFocusedRowIndex(130);
    frame->GridView->SetTopRowIndex(125);
    ASSERT_EQ(frame->GridView->TopRowIndex(), 125);
    frame->actRefresh->Execute();
    view = frame->GridView;
    EXPECT_EQ(QList<int>({view->FocusedRowIndex(), many->CurrentIndex(), view->TopRowIndex(), view->currentIndex().row()}),
              QList<int>({130, 130, 125, 130}));
    EXPECT_FALSE(many->AllFetched());

    // A failing select shows the refresh error; the frame stays usable.
    MakeFrame("TestBrokenFM", "frmBroken", Own("broken", "select * from spNoSuchProcedureOpen"), "spRoles");
    frame->actRefresh->Execute();
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка обновления");
    EXPECT_TRUE(dialogs.Shown[0].text.startsWith("Не удалось обновить таблицу\r\nПричина: "));
    EXPECT_TRUE(dialogs.Shown[0].text.contains("SPNOSUCHPROCEDUREOPEN", Qt::CaseInsensitive));
    EXPECT_EQ(frame->GridView->ColumnCount(), 0);
    EXPECT_TRUE(frame->actRefresh->isEnabled());

    frame->DS->SetDataSet(&dm->spRolesOpen);
    frame->actRefresh->Execute();
    EXPECT_EQ(QList<int>({int(dialogs.Shown.size()), frame->GridView->ColumnCount(), frame->GridView->RowCount()}),
              QList<int>({1, 3, 3}));

    // A lookup that finds no component leaves the field out.
    TpFIBDataSet *odd = Own("odd", "select ID, 1 as X_LKP_NOSUCH_F_NAME, 2 as Y_LKP_ROLES, ID as Z_LKP_ROLES_F_NOFIELD, "
                                   "ID as R_LKP_ROLES_F_ROLENAME, ROLENAME from ROLES");
    MakeFrame("TestOddFM", "frmOdd", odd, "spRoles")->actRefresh->Execute();
    EXPECT_EQ(dialogs.Shown.size(), 1) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Columns(), QStringList({"ID", "R_LKP_ROLES_F_ROLENAME", "ROLENAME"}));
    EXPECT_EQ(Shown("R_LKP_ROLES_F_ROLENAME"), Shown("ROLENAME"));
    // A second refresh tries those fields again and still makes nothing of them.
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->GridView->ColumnCount(), 3);
}

TEST_F(GridFrameTest, DiscountsAreAddedCancelledSavedAndDeletedAFailedSaveKeepsTheCardOpenAndAGuardRefusesTheDelete)
{
    Exec("insert into DISCOUNTS (DFROM, DTO, DVALUE) values (1000, 25000.5, 5)");
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts")->actRefresh->Execute();
    // Float fields are money with two decimals.
    EXPECT_EQ(frame->GridView->FindColumnByFieldName("DTO")->Properties()->Kind, TEditKind::Currency);
    EXPECT_TRUE(Shown("DTO").contains("25,000.50")) << Shown("DTO").join(';').toStdString();
    const int before = Count("DISCOUNTS");
    const int rows = frame->GridView->RowCount();

    // Cancel: the empty row made for the card goes again.
    OnModal<TDictFM>(frame->actAdd, {[&](TDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая запись");
        EXPECT_EQ(QList<int>({Count("DISCOUNTS"), dm->spDiscountsOpen.FieldByName("ID")->AsInteger()}),
                  QList<int>({before + 1, frame->NewRowId}));
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(QList<int>({Count("DISCOUNTS"), frame->GridView->RowCount()}), QList<int>({before, rows}));
    EXPECT_EQ(frame->CardForm, nullptr);

    // OK: what was typed goes through the edit procedure.
    OnModal<TDictFM>(frame->actAdd, {[&](TDictFM *card) {
        TypeText(Child(card, "DFROM_TCX"), "100");
        TypeText(Child(card, "DTO_TCX"), "200");
        TypeText(Child(card, "DVALUE_TCX"), "7");
        EXPECT_EQ(dm->spDiscountsOpen.State(), dsEdit);
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, QString("select DFROM, DTO, DVALUE from DISCOUNTS where ID = %1").arg(frame->NewRowId)),
              QStringList{"100|200|7"});
    EXPECT_EQ(dm->spDiscountsOpen.FieldByName("ID")->AsInteger(), frame->NewRowId);

    // A blank prompt asks the default one; the frame's own is asked as set.
    frame->DelPrompt = "   ";
    dialogs.Answer(Dialogs::ResultCancel);
    EXPECT_EQ(Delete(frame), QStringList{TGridFrame::DefaultDelPrompt});
    EXPECT_EQ(Count("DISCOUNTS"), before + 1);
    frame->DelPrompt = "Удалить скидку?";
    dialogs.Answer(Dialogs::ResultOk);
    EXPECT_EQ(Delete(frame), QStringList{"Удалить скидку?"});
    EXPECT_EQ(QList<int>({Count("DISCOUNTS"), frame->GridView->RowCount()}), QList<int>({before, rows}));

    // A failure inside the add removes the empty row, under the delete heading.
    frame->OnAfterAddRefresh = [](QObject *) { throw EDatabaseError("сломалось"); };
    frame->actAdd->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, "Ошибка при удалении.\r\nТекст ошибки:\r\nEDatabaseError сломалось");
    EXPECT_EQ(Count("DISCOUNTS"), before);

    // Over the roles: a failed save keeps the card open, a guard refuses the delete; the test, double click
    // and export commands.
    dialogs.Clear();
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles")->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    OnModal<TDictFM>(frame->actEdit, {[](TDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Изменить запись");
        TypeText(Child(card, "ROLENAME_TCX"), "Администратор");
        card->AdvGlowButton1->click();
    }, [](TDictFM *card) {
        EXPECT_TRUE(card->isVisible() && card->ErrorText.contains("Роль с таким названием уже существует"));
        EXPECT_EQ(qobject_cast<QLineEdit *>(Child(card, "ROLENAME_TCX"))->text(), "Администратор");
        TypeText(Child(card, "ROLENAME_TCX"), "Старший оператор");
        card->AdvGlowButton1->click();
    }});
    // The application's handler showed the database's own text, nothing more.
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_EQ(dialogs.Shown[0].text.trimmed(), "Роль с таким названием уже существует.");
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 2").toString(), "Старший оператор");
    EXPECT_EQ(frame->GridView->FocusedRowIndex(), 1);
    EXPECT_EQ(frame->CardForm, nullptr);

    // The administrators' role has users.
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 1));
    dialogs.Answer(Dialogs::ResultOk);
    EXPECT_EQ(Delete(frame).value(1), "Имеются пользователи данной роли. Удаление запрещено.");
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
    EXPECT_EQ(Count("ROLES where ID = 1"), 1);

    // The test command shows a new card without its OK button.
    OnModal<TDictFM>([&] { frame->Test(nullptr); }, {[](TDictFM *card) {
        EXPECT_TRUE(card->AdvGlowButton1->isHidden() && !card->EditMode);
        card->AdvGlowButton2->click();
    }});

    // A double click edits, or with editing off runs the chooser action while it is visible.
    int cards = 0, chosen = 0;
    frame->OnCreateCard = [&] { ++cards; };
    frame->actDblClick->OnExecute = [&](QObject *) { ++chosen; };
    frame->GridViewDblClick(nullptr);
    frame->actEdit->setEnabled(false);
    frame->GridViewDblClick(nullptr);
    frame->actDblClick->setVisible(false);
    frame->GridViewDblClick(nullptr);
    EXPECT_EQ(QString("%1 %2").arg(cards).arg(chosen), "1 1");

    // The grid's menu exports to a temporary spreadsheet handed to the shell.
    EXPECT_EQ(frame->GridView->PopupMenu(), frame->pmMain);
    frame->miExcelExport->trigger();
    ASSERT_EQ(shell.Opened.size(), 1);
    const QString path = shell.Opened[0];
    EXPECT_TRUE(path.endsWith(".xlsx") && QFileInfo(path).fileName().startsWith("~")) << path.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(2), QByteArray("PK"));
    file.close();
    QFile::remove(path);
    QFile::remove(path.chopped(5));
}

} // namespace
