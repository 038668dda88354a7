#pragma once
// The hand-laid card: a designer form places an empty group box per field, named like the field, and
// the card makes the right editor inside each box at show time from the grid's columns. Enter moves
// from box to box and on the last one presses OK.

#include "custom_dict_fm.h"

#include <QPointer>

class QGroupBox;

class TComplexFM : public TCustomDictFM
{
    Q_OBJECT
public:
    // A descendant lays its design into pnlMain in its own constructor.
    TComplexFM(const QString &formName, TDBGridView *gridView, const QString &namePrefix, const QString &procName,
               QWidget *parent = nullptr);

    // Where navigation starts on show; no card of the system sets it.
    QPointer<QWidget> FirstControl;
    QString CurrentField;

    // Empty; descendants call it from their own.
    virtual void FormCreate(QObject *sender);

    // The control of that name anywhere below the form, the form included; names compare upper-cased.
    QWidget *FindFormControl(const QString &name) const;
    // The value shown in the box named like the field among pnlMain's direct children; 0 without one.
    void GetIntValue(const QString &fieldName, QVariant &value) const;
    // Enter navigation from a box: focuses the next box's editor, or at the end presses OK.
    QWidget *FindNextCxControl(QWidget *start);
    void ControlKeyPress(QWidget *sender, int key);

    void CreateControls() override;
    void DoCreateLabel(QLabel *label) override;
    bool IsEnabled() override;
    bool IsVisible() override;
    void AlignControl(QWidget *control, QWidget *parent) override;
    void FormShow(QObject *sender) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *CreateEditor(QGroupBox *box, TGridColumn *column, const QString &editorName);
    // Controls in the order Tab visits them: each followed by its own children.
    QList<QWidget *> TabOrderList() const;
    // Position among the windowed siblings in tab order.
    int TabOrder(QWidget *control) const;
};
