#pragma once
// The administrator's window: users, roles, user states, the catalogue of actions (every grid of the
// program), the rights of each role on each action, and the names of the rights. Rights are chosen in
// place in the grid of permissions.

#include "fm_base.h"
#include "frame_settings.h"

#include <memory>

class QResizeEvent;
class TGridFrame;
namespace Ui {
class UsersFM;
}

class TUsersFM : public TfmBase
{
    Q_OBJECT
public:
    explicit TUsersFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TUsersFM() override;

    TGridFrame *frmUser;
    TGridFrame *frmRoles;
    TGridFrame *frmStates;
    TGridFrame *frmActions;
    TGridFrame *frmRolesActions;
    TGridFrame *frmRights;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FormResize(QObject *sender);
    // Edit of a user; the grid is read again, so that no typed password stays in its row.
    void frmUseractEditExecute(QObject *sender);
    void frmRolesactEditExecute(QObject *sender);
    // Add of a role; a new role brings new rows of rights.
    void frmRolesToolButton2Click(QObject *sender);
    void frmRolesActionsGridViewEditValueChanged(QObject *sender);

    static const QString Caption;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    std::unique_ptr<Ui::UsersFM> ui;
    TFrameTable m_frames;
};
