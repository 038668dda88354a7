#include "requisits_fm.h"

TRequisitsFM::TRequisitsFM(TDataSource *dataSource, const QString &procName, QWidget *parent)
    : TDictFM(dataSource, procName, parent)
{
    setObjectName(QStringLiteral("RequisitsFM"));
    setWindowTitle(QStringLiteral("Основные сведения"));
}
