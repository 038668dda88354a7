#pragma once
// A child window holding one grid frame over a dataset, with the generated card as its card.

#include "captions_file.h"
#include "dict_fm.h"
#include "fm_base.h"
#include "frame_settings.h"
#include "forms_fixture.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"

#include <QFile>
#include <QGroupBox>
#include <QVBoxLayout>
#include <vector>

class FrameTest : public FormsTest
{
protected:
    void TearDown() override
    {
        form.reset();
        own.clear();
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
        TFrameSettings{frame, title, dataSet, prefix, CardOf<TDictFM>(), prefix + "Edit", "Новая запись",
                       "Изменить запись"}
            .Apply();
        form->resize(800, 600);
        form->show();
        return frame;
    }

    // A dataset of the module's connection, freed after the window; its update statement changes nothing.
    TpFIBDataSet *Own(const QString &name, const QString &select)
    {
        own.push_back(std::make_unique<TpFIBDataSet>());
        TpFIBDataSet *ds = own.back().get();
        ds->setObjectName(name);
        ds->SetDatabase(&dm->pFIBDatabaseMain);
        ds->SetTransaction(&dm->pFIBTransaction1);
        ds->SetSelectSQL(select);
        ds->UpdateSQL = "update ROLES set ROLENAME = ROLENAME where ID = :OLD_ID";
        return ds;
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

    // The grid's columns, by field name or by caption.
    QStringList Columns(bool captions = false)
    {
        QStringList names;
        for (TGridColumn *column : frame->GridView->ColumnList())
            names << (captions ? column->Caption() : column->FieldName());
        return names;
    }

    std::unique_ptr<TfmBase> form;
    TGridFrame *frame = nullptr;
    std::vector<std::unique_ptr<TpFIBDataSet>> own;
};

inline QWidget *Child(const QObject *parent, const QString &name) { return parent->findChild<QWidget *>(name); }

// Writes the captions file beside the test executable for its lifetime.
class CaptionsFileGuard
{
public:
    explicit CaptionsFileGuard(const QString &text)
    {
        QFile file(TCaptionsFile::FileName());
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(text.toUtf8());
    }
    ~CaptionsFileGuard() { QFile::remove(TCaptionsFile::FileName()); }
};
