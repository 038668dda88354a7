// Column titles from the ini file beside the executable.

#include "frame_fixture.h"

namespace {

using GridCaptionsTest = FrameTest;

TEST_F(GridCaptionsTest, TitlesComeFromTheSectionOfTheOwnerFormAndFrame)
{
    CaptionsFileGuard ini("[CaptionFM.frmUsers]\nUSERNAME=Пользователь\nID_ROLE_LKP_ROLES_F_ROLENAME=Роль\nID=Код\n"
                          "[OtherFM.frmUsers]\nUSER_FULL_NAME=Чужое\n"
                          "[OwnerFM.frmUsers]\nUSERNAME=Логин\n");
    MakeFrame("CaptionFM", "frmUsers", &dm->spUsersOpen, "spUsers")->actRefresh->Execute();
    EXPECT_EQ(Columns(true), QStringList({"Код", "Пользователь", "PASSWORD", "Роль", "USER_FULL_NAME",
                                          "SYS_CREATE_DATE", "STATE"}));
    QWidget owner;
    owner.setObjectName("OwnerFM");
    frame->SetOwnerForm(&owner);
    frame->actRefresh->Execute();
    EXPECT_EQ(frame->GridView->FindColumnByFieldName("USERNAME")->Caption(), "Логин");
}

TEST_F(GridCaptionsTest, WrittenCaptionsReadBackTheSame)
{
    MakeFrame("CaptionFM", "frmRoles", &dm->spRolesOpen, "spRoles")->actRefresh->Execute();
    frame->GridView->FindColumnByFieldName("ROLENAME")->SetCaption("Название");
    frame->WriteColumnCaption(nullptr);
    EXPECT_EQ(TCaptionsFile().Read("CaptionFM.frmRoles", "ROLENAME", QString()), "Название");
    QFile::remove(TCaptionsFile::FileName());
}

} // namespace
