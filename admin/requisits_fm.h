#pragma once
// The shop's own details: the generated card over the one row of CUST that is the shop, a text editor
// per field, saved through the procedure given (spCustEdit). Labels come from the ini section
// "RequisitsFM".

#include "dict_fm.h"

class TRequisitsFM : public TDictFM
{
    Q_OBJECT
public:
    TRequisitsFM(TDataSource *dataSource, const QString &procName, QWidget *parent = nullptr);
};
