#pragma once
// The generated card: a label and an editor per grid column (or dataset field), side by side, made at
// the first show by the field-name grammar. Label captions come from the ini file, section = card name.

#include "custom_dict_fm.h"

#include <QPointer>

class QSplitter;

class TDictFM : public TCustomDictFM
{
    Q_OBJECT
public:
    TDictFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);
    TDictFM(TDataSource *dataSource, const QString &procName, QWidget *parent = nullptr);

    QWidget *gbNames;  // the labels
    QWidget *gbValues; // the editors
    QSplitter *cxSplitter1;

    // The field being laid out, upper-cased, and whether its column lets a card edit it.
    QString CurrentField;
    bool FieldEditable = true;
    // The last editor made of each kind.

    void CreateControls() override;
    void DoCreateLabel(QLabel *label) override;
    bool IsEnabled() override;
    bool IsVisible() override;
    void AlignControl(QWidget *control, QWidget *parent) override;

    void ReadControlCaption();
    void WriteControlCaption(QObject *sender = nullptr);

private:
    void Build();
    QWidget *CreateEditor(const QString &fieldName, TGridColumn *column);
};
