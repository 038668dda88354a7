// The grid frame over real procedure families: columns, add with its empty row, edit, delete, the
// refresh and its failures.

#include "frame_fixture.h"
#include "type_text.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QScrollBar>

namespace {

using GridFrameTest = FrameTest;

TDictFM *Card(QWidget *modal)
{
    return qobject_cast<TDictFM *>(modal);
}

TEST_F(GridFrameTest, RefreshBuildsColumnsFromTheFieldNamesOnce)
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
}

TEST_F(GridFrameTest, DiscountsAreAddedCancelledSavedAndDeleted)
{
    Exec("insert into DISCOUNTS (DFROM, DTO, DVALUE) values (1000, 25000.5, 5)");
    MakeFrame("TestDiscountFM", "frmDiscount", &dm->spDiscountsOpen, "spDiscounts")->actRefresh->Execute();
    // Float fields are money with two decimals.
    EXPECT_EQ(frame->GridView->FindColumnByFieldName("DTO")->Properties()->Kind, TEditKind::Currency);
    EXPECT_TRUE(Shown("DTO").contains("25,000.50")) << Shown("DTO").join(';').toStdString();
    const int before = Count("DISCOUNTS");
    const int rows = frame->GridView->RowCount();

    // Cancel: the empty row made for the card goes again.
    QString caption;
    int idUnderCursor = 0, rowsWhileOpen = 0;
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        caption = modal->windowTitle();
        idUnderCursor = dm->spDiscountsOpen.FieldByName("ID")->AsInteger();
        rowsWhileOpen = Count("DISCOUNTS");
        Card(modal)->AdvGlowButton2->click();
    });
    frame->actAdd->Execute();
    EXPECT_EQ(caption, "Новая запись");
    EXPECT_EQ(QList<int>({rowsWhileOpen, idUnderCursor, Count("DISCOUNTS"), frame->GridView->RowCount()}),
              QList<int>({before + 1, frame->NewRowId, before, rows}));
    EXPECT_EQ(frame->CardForm, nullptr);

    // OK: what was typed goes through the edit procedure.
    driver.Then([&](QWidget *modal) {
        TypeText(Child(modal, "DFROM_TCX"), "100");
        TypeText(Child(modal, "DTO_TCX"), "200");
        TypeText(Child(modal, "DVALUE_TCX"), "7");
        EXPECT_EQ(dm->spDiscountsOpen.State(), dsEdit);
        Card(modal)->AdvGlowButton1->click();
    });
    frame->actAdd->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    EXPECT_EQ(RowsIn(*dm, QString("select DFROM, DTO, DVALUE from DISCOUNTS where ID = %1").arg(frame->NewRowId)),
              QStringList{"100|200|7"});
    EXPECT_EQ(dm->spDiscountsOpen.FieldByName("ID")->AsInteger(), frame->NewRowId);

    // A blank prompt asks the default one; the frame's own is asked as set.
    frame->DelPrompt = "   ";
    dialogs.Answer(Dialogs::ResultCancel);
    frame->actDel->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, TGridFrame::DefaultDelPrompt);
    EXPECT_EQ(Count("DISCOUNTS"), before + 1);
    frame->DelPrompt = "Удалить скидку?";
    dialogs.Answer(Dialogs::ResultOk);
    frame->actDel->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, "Удалить скидку?");
    EXPECT_EQ(QList<int>({Count("DISCOUNTS"), frame->GridView->RowCount()}), QList<int>({before, rows}));

    // A failure inside the add removes the empty row, under the delete heading.
    frame->OnAfterAddRefresh = [](QObject *) { throw EDatabaseError("сломалось"); };
    frame->actAdd->Execute();
    EXPECT_EQ(dialogs.Shown.last().text, "Ошибка при удалении.\r\nТекст ошибки:\r\nEDatabaseError сломалось");
    EXPECT_EQ(Count("DISCOUNTS"), before);
}

TEST_F(GridFrameTest, FailedSaveKeepsTheCardOpenAGuardRefusesTheDeleteAndTheTestDoubleClickAndExportCommands)
{
    MakeFrame("TestRolesFM", "frmRoles", &dm->spRolesOpen, "spRoles")->actRefresh->Execute();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    QString caption, errorAfterFirstOk;
    bool openAfterFirstOk = false;
    ModalDriver driver;
    driver
        .Then([&](QWidget *modal) {
            caption = modal->windowTitle();
            TypeText(Child(modal, "ROLENAME_TCX"), "Администратор");
            Card(modal)->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            openAfterFirstOk = modal->isVisible();
            errorAfterFirstOk = Card(modal)->ErrorText;
            EXPECT_EQ(qobject_cast<QLineEdit *>(Child(modal, "ROLENAME_TCX"))->text(), "Администратор");
            TypeText(Child(modal, "ROLENAME_TCX"), "Старший оператор");
            Card(modal)->AdvGlowButton1->click();
        });
    frame->actEdit->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_EQ(caption, "Изменить запись");
    EXPECT_TRUE(openAfterFirstOk);
    EXPECT_TRUE(errorAfterFirstOk.contains("Роль с таким названием уже существует"));
    // The application's handler showed the database's own text, nothing more.
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_EQ(dialogs.Shown[0].text.trimmed(), "Роль с таким названием уже существует.");
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 2").toString(), "Старший оператор");
    EXPECT_EQ(frame->GridView->FocusedRowIndex(), 1);
    EXPECT_EQ(frame->CardForm, nullptr);

    // The administrators' role has users.
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 1));
    dialogs.Clear();
    dialogs.Answer(Dialogs::ResultOk);
    frame->actDel->Execute();
    ASSERT_EQ(dialogs.Shown.size(), 2);
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
    EXPECT_EQ(dialogs.Shown[1].text.trimmed(), "Имеются пользователи данной роли. Удаление запрещено.");
    EXPECT_EQ(Count("ROLES where ID = 1"), 1);

    // The test command shows a new card without its OK button.
    bool okHidden = false, editMode = true;
    driver.Then([&](QWidget *modal) {
        okHidden = Card(modal)->AdvGlowButton1->isHidden();
        editMode = Card(modal)->EditMode;
        Card(modal)->AdvGlowButton2->click();
    });
    frame->Test(nullptr);
    EXPECT_TRUE(okHidden && !editMode);

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

TEST_F(GridFrameTest, ManyRowsAreFetchedAsShownAndARefreshKeepsThePlace)
{
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
    TDBGridView *view = frame->GridView;
    EXPECT_EQ(QList<int>({view->FocusedRowIndex(), many->CurrentIndex(), view->TopRowIndex(), view->currentIndex().row()}),
              QList<int>({130, 130, 125, 130}));
    EXPECT_FALSE(many->AllFetched());
}

TEST_F(GridFrameTest, FailingSelectShowsTheRefreshErrorTheFrameStaysUsableAndLookupsWithoutAComponentAreLeftOut)
{
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

} // namespace
