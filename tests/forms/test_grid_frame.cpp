// The grid frame over real procedure families: columns, add with its empty row, edit, delete, the
// refresh and its failures.

#include "captions_file.h"
#include "frame_fixture.h"
#include "grid_column.h"
#include "text_editors.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>

#include "type_text.h"

QString CaptionsFileGuard::TCaptionsFileName()
{
    return TCaptionsFile::FileName();
}

namespace {

template <class T>
T *Child(QWidget *parent, const char *name)
{
    return parent->findChild<T *>(QString::fromLatin1(name));
}

void Type(QWidget *editor, const QString &text)
{
    TypeText(editor, text);
}

class GridFrameTest : public FrameTest
{
};

TEST_F(GridFrameTest, RefreshBuildsColumnsFromTheFieldNamesOnce)
{
    MakeFrame("TestUsersFM", "frmUser", &dm->spUsersOpen, "spUsers");
    frame->actRefresh->Execute();
    TDBGridView *view = frame->GridView;
    ASSERT_EQ(view->ColumnCount(), 7);
    QStringList captions;
    for (TGridColumn *column : view->ColumnList())
        captions << column->Caption();
    EXPECT_EQ(captions, QStringList({"ID", "USERNAME", "PASSWORD", "ID_ROLE", "USER_FULL_NAME", "SYS_CREATE_DATE",
                                     "STATE"}));
    EXPECT_FALSE(view->FindColumnByFieldName("ID")->Visible());
    EXPECT_FALSE(view->FindColumnByFieldName("PASSWORD")->Visible());
    EXPECT_FALSE(view->FindColumnByFieldName("SYS_CREATE_DATE")->Visible());
    EXPECT_EQ(view->FindColumnByFieldName("SYS_CREATE_DATE")->Properties()->Kind, TEditKind::Date);
    EXPECT_TRUE(view->isColumnHidden(0));
    EXPECT_FALSE(view->isColumnHidden(1));
    // The lookup shows the role's name for the key.
    EXPECT_EQ(Shown("ID_ROLE_LKP_ROLES_F_ROLENAME").first(), "Администратор");
    EXPECT_EQ(Shown("STATE_LKP_STATES_F_STATENAME").first(), "Активен");

    view->FindColumnByFieldName("USERNAME")->SetWidth(321);
    view->FindColumnByFieldName("USERNAME")->SetCaption("Имя");
    frame->actRefresh->Execute();
    EXPECT_EQ(view->ColumnCount(), 7);
    EXPECT_EQ(view->FindColumnByFieldName("USERNAME")->Width(), 321);
    EXPECT_EQ(view->FindColumnByFieldName("USERNAME")->Caption(), "Имя");
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(GridFrameTest, FloatColumnsGetCurrencyAndAreShownWithTwoDecimals)
{
    Exec("insert into DISCOUNTS (DFROM, DTO, DVALUE) values (1000, 25000.5, 5)");
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts");
    frame->actRefresh->Execute();
    TGridColumn *from = frame->GridView->FindColumnByFieldName("DTO");
    ASSERT_NE(from, nullptr);
    EXPECT_EQ(from->Properties()->Kind, TEditKind::Currency);
    EXPECT_EQ(from->Width(), 250);
    EXPECT_TRUE(Shown("DTO").contains("25,000.50")) << Shown("DTO").join(';').toStdString();
}

TEST_F(GridFrameTest, CancelledAddRemovesTheEmptyRowAgain)
{
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts");
    frame->actRefresh->Execute();
    const int before = Count("DISCOUNTS");
    const int rowsBefore = frame->GridView->RowCount();

    QVariant idUnderCursor;
    QString caption;
    int rowsWhileOpen = 0;
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        auto *card = qobject_cast<TDictFM *>(modal);
        ASSERT_NE(card, nullptr);
        caption = card->windowTitle();
        idUnderCursor = dm->spDiscountsOpen.FieldByName("ID")->Value();
        rowsWhileOpen = Count("DISCOUNTS");
        card->AdvGlowButton2->click();
    });
    QElapsedTimer clock;
    clock.start();
    frame->actAdd->Execute();
    EXPECT_GE(clock.elapsed(), TGridFrame::AddWaitMs);

    EXPECT_EQ(driver.Ran(), 1);
    EXPECT_TRUE(driver.Failures.isEmpty());
    EXPECT_EQ(caption, "Новая запись");
    EXPECT_EQ(rowsWhileOpen, before + 1);
    EXPECT_GT(frame->NewRowId, 0);
    EXPECT_EQ(idUnderCursor.toInt(), frame->NewRowId);
    EXPECT_EQ(Count("DISCOUNTS"), before);
    EXPECT_EQ(frame->GridView->RowCount(), rowsBefore);
    EXPECT_EQ(frame->CardForm, nullptr);
}

TEST_F(GridFrameTest, AddSavesWhatWasTypedThroughTheEditProcedure)
{
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts");
    frame->actRefresh->Execute();
    const int before = Count("DISCOUNTS");
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        EXPECT_FALSE(Child<QWidget>(modal, "ID_TCX")->isEnabled());
        Type(Child<QWidget>(modal, "DFROM_TCX"), "100");
        Type(Child<QWidget>(modal, "DTO_TCX"), "200");
        Type(Child<QWidget>(modal, "DVALUE_TCX"), "7");
        EXPECT_EQ(dm->spDiscountsOpen.State(), dsEdit);
        qobject_cast<TDictFM *>(modal)->AdvGlowButton1->click();
    });
    frame->actAdd->Execute();
    EXPECT_EQ(Count("DISCOUNTS"), before + 1);
    const QString where = QString(" from DISCOUNTS where ID = %1").arg(frame->NewRowId);
    EXPECT_DOUBLE_EQ(Scalar("select DFROM" + where).toDouble(), 100);
    EXPECT_DOUBLE_EQ(Scalar("select DTO" + where).toDouble(), 200);
    EXPECT_DOUBLE_EQ(Scalar("select DVALUE" + where).toDouble(), 7);
    EXPECT_EQ(dm->spDiscountsOpen.FieldByName("ID")->AsInteger(), frame->NewRowId);
}

TEST_F(GridFrameTest, EditSavesAndRefreshes)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        EXPECT_EQ(modal->windowTitle(), "Изменить запись");
        Type(Child<QWidget>(modal, "COMMENT_TCX"), "Работает за стойкой");
        qobject_cast<TDictFM *>(modal)->AdvGlowButton1->click();
    });
    frame->actEdit->Execute();
    EXPECT_EQ(Scalar("select COMMENT from ROLES where ID = 2").toString(), "Работает за стойкой");
    EXPECT_EQ(frame->GridView->FocusedRowIndex(), 1);
    EXPECT_EQ(frame->CardForm, nullptr);
}

TEST_F(GridFrameTest, FailedSaveKeepsTheCardOpenWithWhatWasTyped)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    QString errorAfterFirstOk;
    bool openAfterFirstOk = false;
    ModalDriver driver;
    driver
        .Then([&](QWidget *modal) {
            Type(Child<QWidget>(modal, "ROLENAME_TCX"), "Администратор");
            qobject_cast<TDictFM *>(modal)->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            auto *card = qobject_cast<TDictFM *>(modal);
            openAfterFirstOk = card->isVisible();
            errorAfterFirstOk = card->ErrorText;
            EXPECT_EQ(Child<QLineEdit>(modal, "ROLENAME_TCX")->text(), "Администратор");
            Type(Child<QWidget>(modal, "ROLENAME_TCX"), "Старший оператор");
            card->AdvGlowButton1->click();
        });
    frame->actEdit->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_TRUE(openAfterFirstOk);
    EXPECT_TRUE(errorAfterFirstOk.contains("Роль с таким названием уже существует"));
    // The application's handler showed the database's own text, nothing more.
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_EQ(dialogs.Shown[0].text.trimmed(), "Роль с таким названием уже существует.");
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 2").toString(), "Старший оператор");
}

TEST_F(GridFrameTest, DeleteRefusedByAGuardShowsOnlyTheRussianText)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 1));
    dialogs.Answer(Dialogs::ResultOk);
    frame->actDel->Execute();
    ASSERT_EQ(dialogs.Shown.size(), 2);
    EXPECT_EQ(dialogs.Shown[0].text, TGridFrame::DefaultDelPrompt);
    EXPECT_EQ(dialogs.Shown[0].caption, "Подтверждение");
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
    EXPECT_EQ(dialogs.Shown[1].text.trimmed(), "Имеются пользователи данной роли. Удаление запрещено.");
    EXPECT_EQ(Count("ROLES where ID = 1"), 1);
}

TEST_F(GridFrameTest, DeleteAsksTheFramesPromptAndRemovesTheRow)
{
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts");
    Exec("insert into DISCOUNTS (DFROM, DTO, DVALUE) values (1, 2, 3)");
    frame->actRefresh->Execute();
    const int before = Count("DISCOUNTS");
    const int rows = frame->GridView->RowCount();
    frame->DelPrompt = "   ";
    dialogs.Answer(Dialogs::ResultCancel);
    frame->actDel->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, TGridFrame::DefaultDelPrompt);
    EXPECT_EQ(Count("DISCOUNTS"), before);

    frame->DelPrompt = "Удалить скидку?";
    dialogs.Answer(Dialogs::ResultOk);
    frame->actDel->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, "Удалить скидку?");
    EXPECT_EQ(Count("DISCOUNTS"), before - 1);
    EXPECT_EQ(frame->GridView->RowCount(), rows - 1);
}

TEST_F(GridFrameTest, ErrorInsideAddRemovesTheRowUnderTheDeleteHeading)
{
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts");
    frame->actRefresh->Execute();
    const int before = Count("DISCOUNTS");
    frame->OnAfterAddRefresh = [](QObject *) { throw EDatabaseError("сломалось"); };
    frame->actAdd->Execute();
    ASSERT_FALSE(dialogs.Shown.isEmpty());
    EXPECT_EQ(dialogs.Shown.last().text, "Ошибка при удалении.\r\nТекст ошибки:\r\nEDatabaseError сломалось");
    EXPECT_EQ(Count("DISCOUNTS"), before);
}

TEST_F(GridFrameTest, RefreshKeepsTheFocusedRowIndexAndTheTopRow)
{
    TpFIBDataSet many(dm.get());
    many.setObjectName("many");
    many.SetDatabase(&dm->pFIBDatabaseMain);
    many.SetTransaction(&dm->pFIBTransaction1);
    many.SetSelectSQL("select first 5000 r1.RDB$TYPE as ID, r2.RDB$TYPE_NAME as NAME "
                      "from RDB$TYPES r1, RDB$TYPES r2");
    MakeFrame("TestManyFM", "frmMany", &many, "spNothing");
    frame->RightsOff = true;
    frame->actRefreshExecute(nullptr);
    frame->GridView->SetFocusedRowIndex(130);
    frame->GridView->SetTopRowIndex(125);
    ASSERT_EQ(frame->GridView->TopRowIndex(), 125);
    frame->actRefreshExecute(nullptr);
    EXPECT_EQ(frame->GridView->FocusedRowIndex(), 130);
    EXPECT_EQ(many.CurrentIndex(), 130);
    EXPECT_EQ(frame->GridView->TopRowIndex(), 125);
    EXPECT_EQ(frame->GridView->currentIndex().row(), 130);
}

TEST_F(GridFrameTest, FailingSelectShowsTheRefreshErrorAndTheFrameStaysUsable)
{
    TpFIBDataSet broken(dm.get());
    broken.setObjectName("broken");
    broken.SetDatabase(&dm->pFIBDatabaseMain);
    broken.SetTransaction(&dm->pFIBTransaction1);
    broken.SetSelectSQL("select * from spNoSuchProcedureOpen");
    MakeFrame("TestBrokenFM", "frmBroken", &broken, "spRoles");
    frame->actRefresh->Execute();
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка обновления");
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::Ok);
    EXPECT_TRUE(dialogs.Shown[0].text.startsWith("Не удалось обновить таблицу\r\nПричина: "));
    EXPECT_TRUE(dialogs.Shown[0].text.contains("SPNOSUCHPROCEDUREOPEN", Qt::CaseInsensitive));
    EXPECT_EQ(frame->GridView->ColumnCount(), 0);
    EXPECT_TRUE(frame->actRefresh->isEnabled());

    frame->DS->SetDataSet(&dm->spRolesOpen);
    frame->actRefresh->Execute();
    EXPECT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(frame->GridView->ColumnCount(), 3);
    EXPECT_EQ(frame->GridView->RowCount(), 3);
}

TEST_F(GridFrameTest, LookupThatFindsNoComponentLeavesTheFieldOut)
{
    TpFIBDataSet odd(dm.get());
    odd.setObjectName("odd");
    odd.SetDatabase(&dm->pFIBDatabaseMain);
    odd.SetTransaction(&dm->pFIBTransaction1);
    odd.SetSelectSQL("select ID, 1 as X_LKP_NOSUCH_F_NAME, 2 as Y_LKP_ROLES, ID as Z_LKP_ROLES_F_NOFIELD, "
                     "ID as R_LKP_ROLES_F_ROLENAME, ROLENAME from ROLES");
    MakeFrame("TestOddFM", "frmOdd", &odd, "spRoles");
    frame->actRefresh->Execute();
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    QStringList fields;
    for (TGridColumn *column : frame->GridView->ColumnList())
        fields << column->FieldName();
    EXPECT_EQ(fields, QStringList({"ID", "R_LKP_ROLES_F_ROLENAME", "ROLENAME"}));
    EXPECT_EQ(Shown("R_LKP_ROLES_F_ROLENAME"), Shown("ROLENAME"));
    // A second refresh tries those fields again and still makes nothing of them.
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->GridView->ColumnCount(), 3);
}

TEST_F(GridFrameTest, FrameWithoutDataSetOnlyChecksRightsAndCaptions)
{
    MakeFrame("TestEmptyFM", "frmEmpty", nullptr, "spRoles");
    frame->actRefresh->Execute();
    EXPECT_TRUE(dialogs.Shown.isEmpty());
    EXPECT_EQ(frame->GridView->ColumnCount(), 0);
    EXPECT_EQ(Count("ACTIONS where TACTION = 'TestEmptyFM.frmEmpty'"), 1);
}

TEST_F(GridFrameTest, FrameFetchesOnlyWhatTheGridShows)
{
    TpFIBDataSet many(dm.get());
    many.setObjectName("many");
    many.SetDatabase(&dm->pFIBDatabaseMain);
    many.SetTransaction(&dm->pFIBTransaction1);
    many.SetSelectSQL("select first 100000 r1.RDB$TYPE as ID, r2.RDB$TYPE_NAME as NAME "
                      "from RDB$TYPES r1, RDB$TYPES r2, RDB$TYPES r3");
    MakeFrame("TestManyFM", "frmMany", &many, "spNothing");
    frame->actRefresh->Execute();
    QCoreApplication::processEvents();
    EXPECT_FALSE(many.AllFetched());
    EXPECT_LT(many.RecordCount(), 1000);
    EXPECT_GT(frame->GridView->RowCount(), 0);
    const int first = many.RecordCount();
    QScrollBar *bar = frame->GridView->verticalScrollBar();
    bar->setValue(bar->maximum());
    QCoreApplication::processEvents();
    EXPECT_GT(many.RecordCount(), first);
    EXPECT_FALSE(many.AllFetched());
}

TEST_F(GridFrameTest, DoubleClickEditsOrRunsTheChooserAction)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    int cards = 0;
    frame->OnCreateCard = [&] { ++cards; };
    frame->GridViewDblClick(nullptr);
    EXPECT_EQ(cards, 1);

    int chosen = 0;
    frame->actDblClick->OnExecute = [&](QObject *) { ++chosen; };
    frame->actEdit->setEnabled(false);
    frame->GridViewDblClick(nullptr);
    EXPECT_EQ(cards, 1);
    EXPECT_EQ(chosen, 1);
    frame->actDblClick->setVisible(false);
    frame->GridViewDblClick(nullptr);
    EXPECT_EQ(chosen, 1);
}

TEST_F(GridFrameTest, TestShowsTheCardWithoutItsOkButton)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    bool okHidden = false;
    bool editMode = true;
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        auto *card = qobject_cast<TDictFM *>(modal);
        okHidden = card->AdvGlowButton1->isHidden();
        editMode = card->EditMode;
        EXPECT_EQ(card->windowTitle(), "Новая запись");
        card->AdvGlowButton2->click();
    });
    frame->Test(nullptr);
    EXPECT_TRUE(okHidden);
    EXPECT_FALSE(editMode);
}

TEST_F(GridFrameTest, ExportWritesASpreadsheetAndHandsItToTheShell)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->miExcelExport->text(), "Экспорт в Excel");
    EXPECT_EQ(frame->GridView->PopupMenu(), frame->pmMain);
    frame->miExcelExport->trigger();
    ASSERT_EQ(shell.Opened.size(), 1);
    const QString path = shell.Opened[0];
    EXPECT_TRUE(path.endsWith(".xlsx"));
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith("~"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(2), QByteArray("PK"));
    file.close();
    QFile::remove(path);
    QFile::remove(path.chopped(5));
}

} // namespace
