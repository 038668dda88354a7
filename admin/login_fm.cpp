#include "login_fm.h"

#include "data_dm.h"
#include "lookup_combo_box.h"

#include <QGridLayout>
#include <QVBoxLayout>

TLoginFM *LoginFM = nullptr;

const QString TLoginFM::WrongPasswordText = QStringLiteral("Неверный пароль");
const QString TLoginFM::NoPasswordText = QStringLiteral("Пароль не задан");

namespace {

bool sameKey(const QVariant &a, const QVariant &b)
{
    if (!a.isValid() || a.isNull() || !b.isValid() || b.isNull())
        return false;
    bool okA = false, okB = false;
    const double x = a.toDouble(&okA), y = b.toDouble(&okB);
    return okA && okB ? x == y : a.toString() == b.toString();
}

// The value of `resultField` in the first row whose `keyField` equals `key`, leaving the cursor where it
// is; invalid when no row has the key.
QVariant lookupValue(TFIBDataSet *dataSet, const QString &keyField, const QVariant &key, const QString &resultField)
{
    if (!dataSet || !dataSet->Active())
        return QVariant();
    dataSet->FetchAll();
    const int keyIndex = dataSet->FieldByName(keyField)->Index();
    const int resultIndex = dataSet->FieldByName(resultField)->Index();
    for (int row = 0; row < dataSet->RecordCount(); ++row)
        if (sameKey(dataSet->RowValue(row, keyIndex), key))
            return dataSet->RowValue(row, resultIndex);
    return QVariant();
}

} // namespace

TLoginFM::TLoginFM(QWidget *parent) : TfmDialog(0, parent)
{
    setObjectName(QStringLiteral("LoginFM"));
    setWindowTitle(QStringLiteral("Вход в программу"));
    actOK->setText(QStringLiteral("Вход"));

    dsUsersActive = new TDataSource(this, DataDM ? &DataDM->spUsersActiveSelect : nullptr);
    dsUsersActive->setObjectName(QStringLiteral("dsUsersActive"));

    auto *grid = new QGridLayout(pnlMain);
    lbUserName = new QLabel(QStringLiteral("Имя пользователя"), pnlMain);
    lbUserName->setObjectName(QStringLiteral("lbUserName"));
    cxUserName = new TLookupComboBox(pnlMain);
    cxUserName->setObjectName(QStringLiteral("cxUserName"));
    cxUserName->setMinimumWidth(220);
    TEditProperties list(TEditKind::Lookup);
    list.ListSource = dsUsersActive;
    list.KeyFieldNames = QStringLiteral("ID");
    list.ListFieldNames = QStringLiteral("USERNAME");
    list.ListHeaderVisible = false;
    cxUserName->SetProperties(list);
    lbPassword = new QLabel(QStringLiteral("Пароль"), pnlMain);
    lbPassword->setObjectName(QStringLiteral("lbPassword"));
    cxPassword = new QLineEdit(pnlMain);
    cxPassword->setObjectName(QStringLiteral("cxPassword"));
    cxPassword->setEchoMode(QLineEdit::Password);
    cxMessage = new QLabel(WrongPasswordText, pnlMain);
    cxMessage->setObjectName(QStringLiteral("cxMessage"));
    cxMessage->setAlignment(Qt::AlignCenter);
    cxMessage->setVisible(false);
    // The message keeps its room, so that the dialog does not jump when it appears.
    QSizePolicy keepRoom = cxMessage->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    cxMessage->setSizePolicy(keepRoom);
    grid->addWidget(lbUserName, 0, 0);
    grid->addWidget(cxUserName, 0, 1);
    grid->addWidget(lbPassword, 1, 0);
    grid->addWidget(cxPassword, 1, 1);
    grid->addWidget(cxMessage, 2, 0, 1, 2);

    // A fixed dialog border.
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    cxUserName->OnUserChange = [this] { cxUserNamePropertiesEditValueChanged(cxUserName); };
    // Only the user's typing hides the message; the dialog's own changes of the text do not.
    connect(cxPassword, &QLineEdit::textEdited, this, [this] { cxPasswordPropertiesChange(cxPassword); });
    actOK->OnExecute = [this](QObject *sender) { actOKExecute(sender); };
    actCancel->OnExecute = [this](QObject *sender) { actCancelExecute(sender); };
}

void TLoginFM::FormShow(QObject *sender)
{
    TfmDialog::FormShow(sender);
    cxMessage->setVisible(false);
    cxPassword->clear();
    // Reopened at each show, so that new users are offered.
    TFIBDataSet *users = dsUsersActive->DataSet();
    if (!users)
        return;
    users->Close();
    users->Open();
    QVariant value;
    if (CurrentUserId < 1) {
        if (!users->IsEmpty() && cxUserName->count() > 0)
            value = cxUserName->itemData(0);
    } else {
        value = CurrentUserId;
    }
    cxUserName->SetEditValue(value);
    // The password editor always follows the user shown, whether or not the entry changed.
    cxUserNamePropertiesEditValueChanged(cxUserName);
}

void TLoginFM::cxUserNamePropertiesEditValueChanged(QObject *)
{
    const QString stored =
        lookupValue(dsUsersActive->DataSet(), QStringLiteral("ID"), cxUserName->EditValue(), QStringLiteral("PASSWORD"))
            .toString();
    if (!stored.isEmpty()) {
        cxPassword->clear();
        cxPassword->setEchoMode(QLineEdit::Password);
        cxPassword->setEnabled(true);
        if (cxUserName->hasFocus())
            cxPassword->setFocus();
    } else {
        cxPassword->setEchoMode(QLineEdit::Normal);
        cxPassword->setText(NoPasswordText);
        cxPassword->setEnabled(false);
    }
}

void TLoginFM::cxPasswordPropertiesChange(QObject *)
{
    cxMessage->setVisible(false);
}

void TLoginFM::actOKExecute(QObject *)
{
    TFIBDataSet *users = dsUsersActive->DataSet();
    const QVariant id = cxUserName->EditValue();
    const QString name = lookupValue(users, QStringLiteral("ID"), id, QStringLiteral("USERNAME")).toString();
    const QString stored = lookupValue(users, QStringLiteral("ID"), id, QStringLiteral("PASSWORD")).toString();
    const QString hash = TDataDM::MD5(cxPassword->text());
    // A user with no stored password gets in whatever the editor holds.
    SetModalResult(stored != hash && !stored.isEmpty() ? mrNone : mrOk);
    cxMessage->setVisible(ModalResult() != mrOk);
    if (ModalResult() != mrOk)
        return;

    CurrentUserId = id.toInt();
    CurrentUserName = name;
    DataDM->spUsersOpen.Close();
    DataDM->spUsersOpen.Open();
    CurrentRoleId = lookupValue(&DataDM->spUsersOpen, QStringLiteral("ID"), CurrentUserId,
                                QStringLiteral("ID_ROLE_LKP_ROLES_F_ROLENAME"))
                        .toInt();
    DataDM->spRolesOpen.Close();
    DataDM->spRolesOpen.Open();
    CurrentRoleName = lookupValue(&DataDM->spRolesOpen, QStringLiteral("ID"), CurrentRoleId, QStringLiteral("ROLENAME"));
}

void TLoginFM::actCancelExecute(QObject *)
{
    SetModalResult(mrCancel);
}
