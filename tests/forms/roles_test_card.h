#pragma once
// A hand-laid card over the roles, drawn in the designer: one box per field.

#include "complex_fm.h"
#include "ui_roles_test_card.h"

class TRolesTestCardFM : public TComplexFM
{
public:
    TRolesTestCardFM(TDBGridView *gridView, const QString &prefix)
        : TComplexFM(QStringLiteral("RolesTestCardFM"), gridView, prefix, QStringLiteral("spRolesEdit"))
    {
        ui.setupUi(pnlMain);
        FormCreate(this);
    }
    Ui::RolesTestCard ui;
};
