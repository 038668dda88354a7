#pragma once
// The journal of store operations: one row per goods line of the operations of a period, filtered by
// the kind of operation, the material's article, code and name (each a prefix) and the counterparty;
// the card of an operation edits its head and all its lines.

#include "filter_table.h"
#include "fm_base.h"
#include "frame_settings.h"

class QGroupBox;
class TCheckBoxEdit;
class TDateEdit;
class TFIBDataSet;
class TGridFrame;
class TLookupComboBox;
class TTextEdit;

class TStoreFM : public TfmBase
{
    Q_OBJECT
public:
    explicit TStoreFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TStoreFM() override;

    QGroupBox *gbFilter;
    TDateEdit *deUp;
    TDateEdit *deTo;
    TLookupComboBox *lcbOTypeName;
    TTextEdit *edArticul;
    TTextEdit *edCode;
    TTextEdit *edName;
    TLookupComboBox *lcbCustName;
    TCheckBoxEdit *cbDel;
    TGridFrame *frmStore;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    void actAddExecute(QObject *sender);
    void actEditExecute(QObject *sender);

    static const QString Caption;

private:
    TFrameTable m_frames;
    TFilterTable m_filters;
    bool m_widthsFitted = false;
};
