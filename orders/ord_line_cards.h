#pragma once
// The cards of an order's lines: a catalogue browser with filters whose OK writes the chosen service or
// material into the focused line. The materials card also adds several materials at once.

#include "complex_fm.h"
#include "filter_table.h"
#include "frame_settings.h"

class TFIBDataSet;
class TGridFrame;
class TTextEdit;
class QGroupBox;
class QLabel;
class TModalButton;

class TOrdServCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TOrdServCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                   QWidget *parent = nullptr);
    ~TOrdServCardFM() override;

    QGroupBox *gbFilter = nullptr;
    TTextEdit *edName = nullptr;
    TTextEdit *edArticul = nullptr;
    TTextEdit *edCode = nullptr;
    TGridFrame *frmServices = nullptr;
    // The service taken at OK; 0 with an empty catalogue.
    qint32 ChosenId = 0;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    // The catalogue's refresh, then the timer off.
    void tmrFilterTimer(QObject *sender) override;
    // The focused line's values, with the chosen service in its place.
    void CreateDataArray() override;

private:
    TFrameTable m_frames;
    TFilterTable m_filters;
};

class TOrdMatCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TOrdMatCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                  QWidget *parent = nullptr);
    ~TOrdMatCardFM() override;

    QGroupBox *gbFilter = nullptr;
    TTextEdit *edMatName = nullptr;
    TTextEdit *edArticul = nullptr;
    TTextEdit *edScode = nullptr;
    TGridFrame *frmMaterials = nullptr;
    TAction *Action1 = nullptr;
    TModalButton *AdvGlowButton3 = nullptr;
    QLabel *cxLabel1 = nullptr;
    // The material taken last; 0 with an empty catalogue.
    qint32 ChosenId = 0;
    // The line made last by Action1.
    qint32 NewLineId = 0;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    // The catalogue's refresh, then the timer off.
    void tmrFilterTimer(QObject *sender) override;
    void CreateDataArray() override;
    // Adds a line for each selected material.
    void Action1Execute(QObject *sender);
    void frmMaterialsToolButton2Click(QObject *sender);
    void frmMaterialsactEditExecute(QObject *sender);

private:
    TFrameTable m_frames;
    TFilterTable m_filters;
};
