#pragma once
// The card of a role: its name and comment in hand-laid boxes, and under them the role's rights on
// every action, chosen in place in the grid and saved at once.

#include "complex_fm.h"

#include <memory>

class QGroupBox;
class TGridFrame;
namespace Ui {
class RolesCardFM;
}

class TRolesCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TRolesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);
    ~TRolesCardFM() override;

    QGroupBox *ROLENAME;
    QGroupBox *ID;
    QGroupBox *COMMENT;
    TGridFrame *frmRolesAction;

    void FormCreate(QObject *sender) override;
    // Shows the rights of the role on the card.
    void FormShow(QObject *sender) override;
    void actOKExecute(QObject *sender) override;
    void AfterOpenDataset() override;
    void frmRolesActionGridViewEditValueChanged(QObject *sender);

    static const QString NoNameText;
    static const QString SaveErrorCaption;

private:
    std::unique_ptr<Ui::RolesCardFM> ui;
};
