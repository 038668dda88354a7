#include "roles_card_fm.h"

#include "card_check.h"
#include "data_dm.h"
#include "db_editors.h"
#include "frame_settings.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "rights_grid.h"
#include "ui_roles_card_fm.h"

const QString TRolesCardFM::NoNameText = QStringLiteral("Не указано название роли!");
const QString TRolesCardFM::SaveErrorCaption = QStringLiteral("Ошибка сохранения роли");

TRolesCardFM::TRolesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                           QWidget *parent)
    : TComplexFM(QStringLiteral("RolesCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::RolesCardFM>())
{
    ui->setupUi(pnlMain);
    ROLENAME = ui->ROLENAME;
    ID = ui->ID;
    COMMENT = ui->COMMENT;
    frmRolesAction = ui->frmRolesAction;
    resize(640, 620);
    FormCreate(this);
}

TRolesCardFM::~TRolesCardFM() = default;

void TRolesCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    TFrameSettings settings;
    settings.Frame = frmRolesAction;
    settings.Title = QStringLiteral("Пользовательские действия");
    settings.DataSet = &DataDM->spRolesActionsOpen2;
    settings.ProcPrefix = QStringLiteral("spRolesActions");
    settings.AddCaption = QStringLiteral("Добавить разрешение");
    settings.EditCaption = QStringLiteral("Редактировать разрешение");
    settings.DelPrompt = QStringLiteral("Вы уверены, что хотите удалить выбранное разрешение?");
    settings.Disabled = faAdd | faEdit | faDel | faDblClick;
    settings.Hidden = faAdd | faEdit | faDel;
    settings.Apply();
    connect(frmRolesAction->GridView, &TDBGridView::EditValueChanged, this,
            [this] { frmRolesActionGridViewEditValueChanged(frmRolesAction->GridView); });
}

void TRolesCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    QVariant roleId;
    GetIntValue(QStringLiteral("ID"), roleId);
    DataDM->spRolesActionsOpen2.ParamByName(QStringLiteral("ID_ROLE")).SetValue(roleId);
    frmRolesAction->actRefresh->Execute();
    TRightsGrid(frmRolesAction).AllowRightEditing();
    if (TGridColumn *role = frmRolesAction->GridView->FindColumnByFieldName(TRightsGrid::RoleColumn))
        role->SetVisible(false);
}

void TRolesCardFM::actOKExecute(QObject *sender)
{
    SetModalResult(mrNone);
    const QList<QWidget *> children = ROLENAME->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QWidget *name = children.isEmpty() ? nullptr : children.first();
    if (!dynamic_cast<TDBTextEdit *>(name))
        name = nullptr;
    if (TCardCheck(SaveErrorCaption).HasText(name, NoNameText))
        SetModalResult(mrOk);
    TCustomDictFM::actOKExecute(sender);
}

void TRolesCardFM::AfterOpenDataset()
{
}

void TRolesCardFM::frmRolesActionGridViewEditValueChanged(QObject *)
{
    TRightsGrid(frmRolesAction).SaveRight();
}
