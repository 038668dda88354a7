#include "user_card_fm.h"

#include "card_check.h"
#include "data_dm.h"

#include <QLineEdit>

const QString TUserCardFM::NoNameText = QStringLiteral("Не указано имя пользователя!");
const QString TUserCardFM::NoRoleText = QStringLiteral("Не указана роль пользователя!");
const QString TUserCardFM::SaveErrorCaption = QStringLiteral("Ошибка сохранения пользователя");

namespace {

const QString hiddenLabel = QStringLiteral("PASSWORD_EMPTY_BIT_LBL");
const QString hiddenEditor = QStringLiteral("PASSWORD_EMPTY_BIT_TCX");

} // namespace

TUserCardFM::TUserCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TDictFM(gridView, namePrefix, procName, parent)
{
    // A card with a form of its own keeps its name: the section of its labels.
    setObjectName(QStringLiteral("UserCardFM"));
}

QLabel *TUserCardFM::CreateLabel(QWidget *parent, const QString &caption, const QString &name)
{
    if (name == hiddenLabel)
        return nullptr;
    return TDictFM::CreateLabel(parent, caption, name);
}

void TUserCardFM::AlignControl(QWidget *control, QWidget *parent)
{
    TDictFM::AlignControl(control, parent);
    if (control->objectName() == hiddenEditor)
        control->hide();
    else if (control->objectName() == QLatin1String("PASSWORD_TCX"))
        if (auto *line = qobject_cast<QLineEdit *>(control))
            line->setEchoMode(QLineEdit::Password);
}

void TUserCardFM::actOKExecute(QObject *sender)
{
    SetModalResult(mrNone);
    const TCardCheck check(SaveErrorCaption);
    if (check.HasText(findChild<QWidget *>(QStringLiteral("USERNAME_TCX")), NoNameText)
        && check.HasValue(findChild<QWidget *>(QStringLiteral("ID_ROLE_LKP_ROLES_F_ROLENAME_TCX")), NoRoleText))
        SetModalResult(mrOk);
    TDictFM::actOKExecute(sender);
}

void TUserCardFM::CreateDataArray()
{
    TDictFM::CreateDataArray();
    if (DataArray.size() <= PasswordIndex)
        return;
    const QVariant password = DataArray[PasswordIndex];
    // Null or empty: spUsersEdit keeps the stored hash. No hash ever reaches the grid.
    if (password.isValid() && !password.isNull() && !password.toString().isEmpty())
        DataArray[PasswordIndex] = TDataDM::MD5(password.toString());
}
