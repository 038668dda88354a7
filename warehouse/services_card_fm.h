#pragma once
// The card of a service: its category is chosen from the list or typed anew, and a new name is added
// to the list at once.

#include "complex_fm.h"

#include <memory>

namespace Ui {
class ServicesCardFM;
}

class TServicesCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TServicesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                    QWidget *parent = nullptr);
    ~TServicesCardFM() override;

    void FormShow(QObject *sender) override;

private:
    std::unique_ptr<Ui::ServicesCardFM> ui;
};
