#pragma once
// The card of a user: the generated card, with a name and a role required, and the typed password
// hashed before it is saved. An empty password field keeps the stored password.

#include "dict_fm.h"

class TUserCardFM : public TDictFM
{
    Q_OBJECT
public:
    TUserCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);

    // No label, and no visible editor, for a column that only flags an empty password.
    QLabel *CreateLabel(QWidget *parent, const QString &caption, const QString &name) override;
    void AlignControl(QWidget *control, QWidget *parent) override;
    void actOKExecute(QObject *sender) override;
    // The third value, the password, goes to the database as its MD5.
    void CreateDataArray() override;

    static const QString NoNameText;
    static const QString NoRoleText;
    static const QString SaveErrorCaption;
    static constexpr int PasswordIndex = 2;
};
