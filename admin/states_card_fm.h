#pragma once
// The card of a user state: the generated card with its name required.

#include "dict_fm.h"

class TStatesCardFM : public TDictFM
{
    Q_OBJECT
public:
    TStatesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                  QWidget *parent = nullptr);

    void actOKExecute(QObject *sender) override;

    static const QString NoNameText;
    static const QString SaveErrorCaption;
};
