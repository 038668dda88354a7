#pragma once
// The administration windows over their own copy of the deployed database, logged in as the
// administrator, with the column titles and labels of resources/kelvarion.ini beside the test binary.

#include "window_fixture.h"

#include "grid_model.h"
#include "rights_grid.h"
#include "users_fm.h"

class AdminTest : public WindowTest
{
protected:
    void TearDown() override
    {
        users.reset();
        WindowTest::TearDown();
    }

    // Standing alone: its show refreshes all six grids.
    TUsersFM *ShowUsers()
    {
        users = std::make_unique<TUsersFM>();
        users->show();
        return users.get();
    }

    // The right a grid of rights shows in that row.
    static QString ShownRight(TGridFrame *frame, int row)
    {
        return frame->GridView->DisplayText(row, frame->GridView->FindColumnByFieldName(TRightsGrid::RightColumn)->Index());
    }

    // Lets queued notifications of the grids run (an edited cell is told after its editor let go).
    static void Settle() { QTest::qWait(30); }

    static QStringList LabelTexts(QWidget *card)
    {
        QStringList texts;
        for (QLabel *label : card->findChildren<QLabel *>())
            if (label->objectName().endsWith("_LBL"))
                texts << label->text();
        return texts;
    }

    int ActionId(const QString &key) { return Scalar("select ID from ACTIONS where TACTION = '" + key + "'").toInt(); }
    int RightOf(int role, int action)
    {
        return Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = %1 and ID_ACTION = %2").arg(role).arg(action)).toInt();
    }

    std::unique_ptr<TUsersFM> users;
};
