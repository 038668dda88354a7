#pragma once
// The card of one cash operation. "Приход" or "Расход" decides which purposes, customers and objects
// can be chosen; choosing a customer or an object reopens the three lists, and a list left with a
// single row fills its field in, the object with what remains to pay on it.

#include "cash_card.h"

#include <memory>

class QPushButton;
class TFIBDataSet;
namespace Ui {
class PaymentCardFM;
}

class TPaymentCardFM : public TMoneyCardFM
{
    Q_OBJECT
public:
    TPaymentCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                   QWidget *parent = nullptr);
    ~TPaymentCardFM() override;

    QPushButton *btnPrixod;
    QPushButton *btnRasxod;
    // 1 money in, 2 money out.
    int Direction = 1;

    // What changed: the direction or the purpose (0), the customer (1), the object (2).
    enum TReopenMode { rmPurpose = 0, rmCustomer = 1, rmObject = 2 };
    // Reopens the lists unless a reopening is under way already: values it sets start no second round.
    void TryReopenDatasets(int mode);
    void ReopenDatasets(int mode);

    void FormShow(QObject *sender) override;
    void btnDirectionClick(QPushButton *sender);
    void PurposeChange(QObject *sender);
    void CustomerChange(QObject *sender);
    void ObjectChange(QObject *sender);
    // The direction and the three lookups overwrite the row's values.
    void CreateDataArray() override;
    QString Refusal() override;

    static const QString PurposeField, CustomerField, ObjectField, TypeField;
    static const QString NoPurposeText, NoCounterpartyText;

private:
    // Sets the three parameters of a list, reopens it, and gives its only row's index, or -1.
    int ReopenList(TFIBDataSet &list, bool withChoice);
    // Runs `handler` after the data link of the box's editor has written the user's change.
    void AfterUserChange(const QString &field, void (TPaymentCardFM::*handler)(QObject *));

    std::unique_ptr<Ui::PaymentCardFM> ui;
    bool m_reopening = false;
    bool m_handlersSet = false;
};
