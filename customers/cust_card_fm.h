#pragma once
// The customer's card: name, phones and address on the first page, the legal requisites on the second,
// discounts below them, and under all that the customer's orders and payments, for reading only.

#include "complex_fm.h"
#include "frame_settings.h"

#include <memory>

class QTabWidget;
class TGridFrame;
namespace Ui {
class CustCardFM;
}

class TCustCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TCustCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);
    ~TCustCardFM() override;

    QTabWidget *pcInfo;
    QTabWidget *pcReferences;
    TGridFrame *frmOrders;
    TGridFrame *frmPayments;

    void FormCreate(QObject *sender) override;
    // Shows the orders and payments of the customer on the card.
    void FormShow(QObject *sender) override;

private:
    std::unique_ptr<Ui::CustCardFM> ui;
    TFrameTable m_frames;
};
