#pragma once
// A child window holding one grid frame over a dataset, with the generated card as its card.

#include "dict_fm.h"
#include "fm_base.h"
#include "forms_fixture.h"
#include "grid_frame.h"
#include "grid_column.h"
#include "grid_view.h"

#include <QFile>
#include <QGroupBox>
#include <QVBoxLayout>

class FrameTest : public FormsTest
{
protected:
    void TearDown() override
    {
        form.reset();
        FormsTest::TearDown();
    }

    TGridFrame *MakeFrame(const QString &formName, const QString &frameName, TFIBDataSet *dataSet,
                          const QString &prefix, const QString &title = QString())
    {
        form = std::make_unique<TfmBase>();
        form->setObjectName(formName);
        auto *layout = new QVBoxLayout(form->pnlMain);
        frame = new TGridFrame(form->pnlMain, frameName);
        layout->addWidget(frame);
        frame->gbGrid->setTitle(title);
        frame->DS->SetDataSet(dataSet);
        frame->ProcPrefix = prefix;
        frame->AddCaption = "Новая запись";
        frame->EditCaption = "Изменить запись";
        frame->OnCreateCard = [this] {
            frame->CardForm = new TDictFM(frame->GridView, frame->objectName(), frame->ProcPrefix + "Edit");
        };
        form->resize(800, 600);
        form->show();
        return frame;
    }

    // Values of a column over the rows fetched so far.
    QStringList Shown(const QString &fieldName)
    {
        QStringList texts;
        TGridColumn *column = frame->GridView->FindColumnByFieldName(fieldName);
        for (int row = 0; row < frame->GridView->RowCount(); ++row)
            texts << frame->GridView->DisplayText(row, column->Index());
        return texts;
    }

    std::unique_ptr<TfmBase> form;
    TGridFrame *frame = nullptr;
};

// Writes the captions file beside the test executable for its lifetime.
class CaptionsFileGuard
{
public:
    explicit CaptionsFileGuard(const QString &text)
    {
        QFile file(TCaptionsFileName());
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(text.toUtf8());
    }
    ~CaptionsFileGuard() { QFile::remove(TCaptionsFileName()); }
    static QString TCaptionsFileName();
};
