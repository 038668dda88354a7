#include "dict_fm.h"

#include "captions_file.h"
#include "db_editors.h"
#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>

namespace {

QWidget *makeColumnPanel(QWidget *parent, const QString &name)
{
    auto *panel = new QWidget(parent);
    panel->setObjectName(name);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(0);
    layout->addStretch(1);
    return panel;
}

} // namespace

TDictFM::TDictFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TCustomDictFM(QStringLiteral("DictFM"), gridView, namePrefix, procName, parent)
{
    Build();
}

TDictFM::TDictFM(TDataSource *dataSource, const QString &procName, QWidget *parent)
    : TCustomDictFM(QStringLiteral("DictFM"), dataSource, procName, parent)
{
    Build();
}

void TDictFM::Build()
{
    auto *layout = new QHBoxLayout(pnlMain);
    layout->setContentsMargins(0, 0, 0, 0);
    cxSplitter1 = new QSplitter(Qt::Horizontal, pnlMain);
    cxSplitter1->setObjectName(QStringLiteral("cxSplitter1"));
    gbNames = makeColumnPanel(cxSplitter1, QStringLiteral("gbNames"));
    gbValues = makeColumnPanel(cxSplitter1, QStringLiteral("gbValues"));
    cxSplitter1->addWidget(gbNames);
    cxSplitter1->addWidget(gbValues);
    cxSplitter1->setStretchFactor(1, 1);
    layout->addWidget(cxSplitter1);
    resize(520, 120);
}

bool TDictFM::IsEnabled()
{
    return !TFieldNameGrammar::IsDisabledInCard(CurrentField) && FieldEditable;
}

bool TDictFM::IsVisible()
{
    return !TFieldNameGrammar::IsHiddenInCard(CurrentField);
}

void TDictFM::AlignControl(QWidget *control, QWidget *parent)
{
    control->setParent(parent);
    control->setEnabled(IsEnabled());
    control->setVisible(IsVisible());
    control->setFixedHeight(25);
    auto *layout = static_cast<QVBoxLayout *>(parent->layout());
    layout->insertWidget(layout->count() - 1, control);
}

void TDictFM::DoCreateLabel(QLabel *)
{
    // The dialog grows so that each new row fits.
    int rows = 0;
    for (QLabel *label : gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        if (!label->isHidden())
            ++rows;
    resize(width(), rows * 25 + Panel1->height() + 30 + 8);
}

QWidget *TDictFM::CreateEditor(const QString &fieldName, TGridColumn *column)
{
    const TCardEditor kind = TFieldNameGrammar::DictEditor(column);
    if (column && kind != TCardEditor::Text) {
        // The card's settings go into the grid column itself; the editor gets a copy.
        TFieldNameGrammar::ApplyDictCardSettings(*column->Properties(), kind);
        column->PropertiesChanged();
    }
    return CreateBoundEditor(kind, fieldName, column ? column->Properties().get() : nullptr);
}

void TDictFM::CreateControls()
{
    const int count = GridView ? GridView->ColumnCount() : (DataSet() ? DataSet()->FieldCount() : 0);
    if (gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly).isEmpty()) {
        for (int i = 0; i < count; ++i) {
            TGridColumn *column = nullptr;
            QString fieldName, caption;
            if (GridView) {
                column = GridView->Columns(i);
                fieldName = column->FieldName();
                caption = column->Caption();
                FieldEditable = column->Tag() < TFieldNameGrammar::ButtonTag;
            } else {
                fieldName = DataSet()->Fields(i)->FieldName();
                caption = fieldName;
                FieldEditable = true;
            }
            CurrentField = fieldName.toUpper();
            CreateLabel(gbNames, caption, TFieldNameGrammar::LabelName(CurrentField));
            QWidget *editor = CreateEditor(fieldName, column);
            editor->setObjectName(TFieldNameGrammar::DictEditorName(CurrentField));
            QFont font = editor->font();
            font.setPointSize(10);
            editor->setFont(font);
            AlignControl(editor, gbValues);
        }
    }
    ReadControlCaption();
}

void TDictFM::ReadControlCaption()
{
    const TCaptionsFile ini;
    for (QLabel *label : gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        label->setText(ini.Read(objectName(), label->objectName(), label->text()));
}

void TDictFM::WriteControlCaption(QObject *)
{
    TCaptionsFile ini;
    for (QLabel *label : gbNames->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        ini.Write(objectName(), label->objectName(), label->text());
}
