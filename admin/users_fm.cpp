#include "users_fm.h"

#include <QTimer>

#include "data_dm.h"
#include "dict_fm.h"
#include "frame_settings.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "rights_grid.h"
#include "roles_card_fm.h"
#include "states_card_fm.h"
#include "ui_users_fm.h"
#include "user_card_fm.h"

#include <QResizeEvent>

const QString TUsersFM::Caption = QStringLiteral("Пользователи и роли");

TUsersFM::TUsersFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent), ui(std::make_unique<Ui::UsersFM>())
{
    setObjectName(QStringLiteral("UsersFM"));
    setWindowTitle(Caption);
    ui->setupUi(pnlMain);
    frmUser = ui->frmUser;
    frmRoles = ui->frmRoles;
    frmStates = ui->frmStates;
    frmActions = ui->frmActions;
    frmRolesActions = ui->frmRolesActions;
    frmRights = ui->frmRights;
    resize(1200, 760);
    FormCreate(this);
}

TUsersFM::~TUsersFM() = default;

void TUsersFM::FormCreate(QObject *sender)
{
    TfmBase::FormCreate(sender);
    TDataDM &dm = *DataDM;
    // Frame, title, dataset, stem, card, save procedure, captions of add and edit, delete question,
    // actions off in the design, actions hidden.
    m_frames = {
        {frmUser, QStringLiteral("Пользователи"), &dm.spUsersOpen, QStringLiteral("spUsers"), CardOf<TUserCardFM>(),
         QStringLiteral("spUsersEdit"), QStringLiteral("Новый пользователь"), QStringLiteral("Редактировать пользователя"),
         QStringLiteral("Вы уверены, что хотите удалить выбранного пользователя?")},
        {frmRoles, QStringLiteral("Роли"), &dm.spRolesOpen, QStringLiteral("spRoles"), CardOf<TRolesCardFM>(),
         QStringLiteral("spRolesEdit"), QStringLiteral("Новая роль"), QStringLiteral("Изменить роль"),
         QStringLiteral("Вы уверены, что хотите удалить выбранную роль?")},
        {frmStates, QStringLiteral("Статус пользователя"), &dm.spStatesOpen, QStringLiteral("spStates"),
         CardOf<TStatesCardFM>(), QStringLiteral("spStatesEdit"), QStringLiteral("Новый статус"),
         QStringLiteral("Изменить статус"), QStringLiteral("Вы уверены, что хотите удалить выбранный статус?"),
         faEdit | faDel},
        {frmActions, QStringLiteral("Действия пользователей"), &dm.spActionsOpen, QStringLiteral("spActions"),
         CardOf<TDictFM>(), QStringLiteral("spActionsEdit"), QStringLiteral("Новое действие"),
         QStringLiteral("Изменить действие"), QStringLiteral("Вы уверены, что хотите удалить выбранное действие?")},
        {frmRolesActions, QStringLiteral("Разрешения"), &dm.spRolesActionsOpen, QStringLiteral("spRolesActions"),
         CardOf<TDictFM>(), QStringLiteral("spRolesActionsEdit"), QStringLiteral("Новое разрешение"),
         QStringLiteral("Изменить разрешение"), QStringLiteral("Вы уверены, что хотите удалить выбранное разрешение?"),
         faAdd | faDel, faAdd | faDel},
        {frmRights, QStringLiteral("Права пользователей"), &dm.spRightsOpen, QStringLiteral("spRights"),
         CardOf<TDictFM>(), QStringLiteral("spRightsEdit"), QStringLiteral("Новое наименование"),
         QStringLiteral("Изменить наименование"), QStringLiteral("Вы уверены, что хотите удалить выбранное наименование?"),
         faEdit | faDel},
    };
    m_frames.Apply();

    frmUser->actEdit->OnExecute = [this](QObject *s) { frmUseractEditExecute(s); };
    frmRoles->actEdit->OnExecute = [this](QObject *s) { frmRolesactEditExecute(s); };
    frmRoles->actAdd->OnExecute = [this](QObject *s) { frmRolesToolButton2Click(s); };
    connect(frmRolesActions->GridView, &TDBGridView::EditValueChanged, this,
            [this] { frmRolesActionsGridViewEditValueChanged(frmRolesActions->GridView); });
}

void TUsersFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    // Once the window has its final size.
    QTimer::singleShot(0, this, [this] { FormResize(this); });
    m_frames.Refresh();
    frmRolesActions->GridView->SetCellSelect(true);
    TRightsGrid(frmRolesActions).AllowRightEditing();
    // A generated card shows the role and the action of a permission, but not for change.
    for (const QString &name : {TRightsGrid::RoleColumn, TRightsGrid::ActionColumn})
        if (TGridColumn *column = frmRolesActions->GridView->FindColumnByFieldName(name))
            column->SetTag(1);
}

void TUsersFM::FormResize(QObject *)
{
    // The splitters may not have their final width yet while the window is laid out: go by the form's.
    const int formWidth = qMax(pnlMain->width(), width());
    const int third = formWidth / 3;
    ui->splTop->setSizes({third, third, qMax(1, formWidth - 2 * third)});
    const int rest = qMax(2, formWidth - third);
    ui->splBottom->setSizes({third, rest * 2 / 3, rest - rest * 2 / 3});
}

void TUsersFM::resizeEvent(QResizeEvent *event)
{
    TfmBase::resizeEvent(event);
    FormResize(this);
}

void TUsersFM::frmUseractEditExecute(QObject *sender)
{
    frmUser->actEditExecute(sender);
    DataDM->spUsersOpen.Close();
    DataDM->spUsersOpen.Open();
}

void TUsersFM::frmRolesactEditExecute(QObject *sender)
{
    if (TFIBDataSet *ds = frmRoles->DS->DataSet(); ds && ds->Active())
        frmRoles->SelectedId = ds->FieldByName(QStringLiteral("ID"))->AsInteger();
    frmRoles->actEditExecute(sender);
}

void TUsersFM::frmRolesToolButton2Click(QObject *sender)
{
    frmRoles->actAddExecute(sender);
    frmRolesActions->actRefresh->Execute();
}

void TUsersFM::frmRolesActionsGridViewEditValueChanged(QObject *)
{
    TRightsGrid(frmRolesActions).SaveRight();
}
