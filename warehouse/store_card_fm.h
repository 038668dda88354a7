#pragma once
// The card of one store operation: its head in hand-laid boxes and its goods lines in a grid. A line is
// added by choosing a material, which at once writes the head with the line; quantity and prices are
// typed in the grid's cells and posted on Enter and at OK. An operation with no goods is not accepted,
// and lines left without a material are removed whichever way the card closes.

#include "complex_fm.h"
#include "frame_settings.h"

#include <memory>

class TGridFrame;
namespace Ui {
class StoreCardFM;
}

class TStoreCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TStoreCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);
    ~TStoreCardFM() override;

    TGridFrame *frmMaterials;
    // The material just chosen for a new line; 0 when none.
    qint32 ChosenId = 0;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FormClose(QObject *sender, TCloseAction &action) override;
    // The journal's columns in its order; a chosen material goes into the line, or into a new line of the
    // same head once the card's line holds one.
    void CreateDataArray() override;
    // Posts what is typed in the grid and refuses an operation with no goods, unless saving while open.
    void actOKExecute(QObject *sender) override;
    // Chooses a material and saves it as a line at once.
    void frmMaterialsactAddExecute(QObject *sender);
    // Posts the grid's unposted row; a refusal is reported and the stored values come back.
    bool PostLines();

    static const QString EmptyText;
    static const QString EmptyCaption;

private:
    // A value typed in a cell, refused with a message when it is not a number in range.
    struct TCellRule
    {
        const char *field;
        double min;
        double max;
        const char *message;
    };
    static const TCellRule CellRules[];
    void CellEdited(int column);
    bool eventFilter(QObject *watched, QEvent *event) override;

    std::unique_ptr<Ui::StoreCardFM> ui;
    TFrameTable m_frames;
    bool m_handlersSet = false;
    // The chosen material goes into the card's own line, which had none.
    bool m_fillsLine = false;
};
