#include "services_card_fm.h"

#include "data_dm.h"
#include "quick_add_lookup.h"
#include "ui_services_card_fm.h"

TServicesCardFM::TServicesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                                 QWidget *parent)
    : TComplexFM(QStringLiteral("ServicesCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::ServicesCardFM>())
{
    ui->setupUi(pnlMain);
    resize(720, 420);
    FormCreate(this);
}

TServicesCardFM::~TServicesCardFM() = default;

void TServicesCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    InstallQuickAdd(this, {{QStringLiteral("IDCSERV_LKP_CSERV_F_CSERVNAME"), QStringLiteral("spCServEdit"),
                            &DataDM->spCServOpen}});
}
