// Column titles from the ini file beside the executable.

#include "captions_file.h"
#include "frame_fixture.h"
#include "grid_column.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

class GridCaptionsTest : public FrameTest
{
protected:
    QStringList Captions()
    {
        QStringList captions;
        for (TGridColumn *column : frame->GridView->ColumnList())
            captions << column->Caption();
        return captions;
    }
};

TEST(CaptionsFile, LiesBesideTheExecutableUnderItsName)
{
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    EXPECT_EQ(TCaptionsFile::FileName(),
              executable.absolutePath() + "/" + executable.completeBaseName() + ".ini");
}

TEST_F(GridCaptionsTest, TitlesComeFromTheSectionOfFormAndFrame)
{
    CaptionsFileGuard ini("[CaptionFM.frmUsers]\n"
                          "USERNAME=Пользователь\n"
                          "ID_ROLE_LKP_ROLES_F_ROLENAME=Роль\n"
                          "ID=Код\n"
                          "[OtherFM.frmUsers]\n"
                          "USER_FULL_NAME=Чужое\n");
    MakeFrame("CaptionFM", "frmUsers", &dm->spUsersOpen, "spUsers");
    frame->actRefresh->Execute();
    EXPECT_EQ(Captions(), QStringList({"Код", "Пользователь", "PASSWORD", "Роль", "USER_FULL_NAME", "SYS_CREATE_DATE",
                                       "STATE"}));
}

TEST_F(GridCaptionsTest, WithoutTheFileColumnsShowTheirFieldNames)
{
    QFile::remove(TCaptionsFile::FileName());
    MakeFrame("CaptionFM", "frmUsers", &dm->spUsersOpen, "spUsers");
    frame->actRefresh->Execute();
    EXPECT_EQ(Captions(), QStringList({"ID", "USERNAME", "PASSWORD", "ID_ROLE", "USER_FULL_NAME", "SYS_CREATE_DATE",
                                       "STATE"}));
}

TEST_F(GridCaptionsTest, TheOwnerFormNamesTheSection)
{
    CaptionsFileGuard ini("[OwnerFM.frmUsers]\nUSERNAME=Логин\n");
    MakeFrame("CaptionFM", "frmUsers", &dm->spUsersOpen, "spUsers");
    QWidget owner;
    owner.setObjectName("OwnerFM");
    frame->SetOwnerForm(&owner);
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->GridView->FindColumnByFieldName("USERNAME")->Caption(), "Логин");
}

TEST_F(GridCaptionsTest, WrittenCaptionsReadBackTheSame)
{
    MakeFrame("CaptionFM", "frmRoles", &dm->spRolesOpen, "spRoles");
    frame->actRefresh->Execute();
    frame->GridView->FindColumnByFieldName("ROLENAME")->SetCaption("Название");
    frame->WriteColumnCaption(nullptr);
    {
        TCaptionsFile file;
        EXPECT_EQ(file.Read("CaptionFM.frmRoles", "ROLENAME", QString()), "Название");
    }
    QFile::remove(TCaptionsFile::FileName());
}

} // namespace
