#pragma once
// The card of a material: category, producer and country are chosen from their lists or typed anew,
// and a new name is added to its list at once, before the card is saved. The stock balance shows but
// is not entered here.

#include "complex_fm.h"

#include <memory>

namespace Ui {
class MaterialsCardFM;
}

class TMaterialsCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TMaterialsCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                     QWidget *parent = nullptr);
    ~TMaterialsCardFM() override;

    void FormShow(QObject *sender) override;
    // What is typed but not yet in the row counts: the exit handlers run first.
    void actOKExecute(QObject *sender) override;
    // Writes the editor's value into the row.
    void ControlExit(QWidget *editor);

    // The editors with an exit handler, in the order OK runs them.
    static const QStringList ExitFields;

private:
    std::unique_ptr<Ui::MaterialsCardFM> ui;
    bool m_handlersSet = false;
};
