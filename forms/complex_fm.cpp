#include "complex_fm.h"

#include "db_editors.h"
#include "db_grid.h"
#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_view.h"

#include <QGroupBox>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QList<QWidget *> childWidgets(const QWidget *parent)
{
    return parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

// A windowed control, as tab order counts them: labels are painted, not windowed.
bool isWindowed(const QWidget *w)
{
    return !qobject_cast<const QLabel *>(w) && !w->isWindow();
}

QWidget *firstChild(const QWidget *parent)
{
    const QList<QWidget *> children = childWidgets(parent);
    return children.isEmpty() ? nullptr : children.first();
}

QHash<const QWidget *, int> focusChainPositions(QWidget *form)
{
    QHash<const QWidget *, int> positions;
    QWidget *w = form;
    int i = 0;
    do {
        positions.insert(w, i++);
        w = w->nextInFocusChain();
    } while (w && w != form && i < 100000);
    return positions;
}

QList<QWidget *> inTabOrder(const QWidget *parent, const QHash<const QWidget *, int> &positions)
{
    QList<QWidget *> siblings;
    for (QWidget *w : childWidgets(parent))
        if (isWindowed(w))
            siblings << w;
    std::stable_sort(siblings.begin(), siblings.end(), [&](QWidget *a, QWidget *b) {
        return positions.value(a, INT_MAX) < positions.value(b, INT_MAX);
    });
    return siblings;
}

} // namespace

TComplexFM::TComplexFM(const QString &formName, TDBGridView *gridView, const QString &namePrefix,
                       const QString &procName, QWidget *parent)
    : TCustomDictFM(formName, gridView, namePrefix, procName, parent)
{
}

void TComplexFM::FormCreate(QObject *)
{
}

QWidget *TComplexFM::FindFormControl(const QString &name) const
{
    std::function<QWidget *(QWidget *)> search = [&](QWidget *control) -> QWidget * {
        if (control->objectName().toUpper() == name)
            return control;
        for (QWidget *child : childWidgets(control))
            if (QWidget *found = search(child))
                return found;
        return nullptr;
    };
    return search(const_cast<TComplexFM *>(this));
}

void TComplexFM::GetIntValue(const QString &fieldName, QVariant &value) const
{
    value = 0;
    for (QWidget *child : childWidgets(pnlMain)) {
        if (!qobject_cast<QGroupBox *>(child) || child->objectName().compare(fieldName, Qt::CaseInsensitive) != 0)
            continue;
        if (auto *edit = dynamic_cast<TDBTextEdit *>(firstChild(child))) {
            TFIBField *field = edit->DataBinding().Field();
            value = field ? field->Value() : edit->EditValue();
        }
        return;
    }
}

bool TComplexFM::IsEnabled()
{
    return TFieldNameGrammar::ComplexEditorEnabled(CurrentField);
}

bool TComplexFM::IsVisible()
{
    return !TFieldNameGrammar::IsHiddenInCard(CurrentField);
}

void TComplexFM::DoCreateLabel(QLabel *)
{
}

void TComplexFM::AlignControl(QWidget *control, QWidget *parent)
{
    control->setParent(parent);
    control->setEnabled(IsEnabled());
    auto *layout = qobject_cast<QVBoxLayout *>(parent->layout());
    if (!layout) {
        layout = new QVBoxLayout(parent);
        layout->setContentsMargins(4, 4, 4, 4);
    }
    // Aligned to the bottom of the box.
    layout->addStretch(1);
    layout->addWidget(control);
}

QWidget *TComplexFM::CreateEditor(QGroupBox *box, TGridColumn *column, const QString &editorName)
{
    const QString fieldName = column->FieldName();
    const TCardEditor kind = TFieldNameGrammar::ComplexEditor(*column);
    if (kind == TCardEditor::Lookup || kind == TCardEditor::DateTime || kind == TCardEditor::Currency) {
        // The card's settings go into the grid column itself; the editor gets a copy.
        TFieldNameGrammar::ApplyComplexCardSettings(*column->Properties(), kind);
        column->PropertiesChanged();
    }
    QWidget *editor = CreateBoundEditor(kind, fieldName, column ? column->Properties().get() : nullptr);
    editor->setObjectName(editorName);
    QFont font = editor->font();
    font.setPointSize(10);
    editor->setFont(font);
    editor->installEventFilter(this);
    AlignControl(editor, box);
    if (kind == TCardEditor::Memo) {
        // The memo fills its box.
        auto *layout = static_cast<QVBoxLayout *>(box->layout());
        for (int i = layout->count() - 1; i >= 0; --i)
            if (layout->itemAt(i)->spacerItem())
                delete layout->takeAt(i);
        layout->setStretchFactor(editor, 1);
    }
    return editor;
}

void TComplexFM::CreateControls()
{
    if (!GridView)
        throw EDatabaseError(QStringLiteral("%1: a hand-laid card needs a grid").arg(objectName()));
    for (int i = 0; i < GridView->ColumnCount(); ++i) {
        TGridColumn *column = GridView->Columns(i);
        const QString fieldName = column->FieldName();
        CurrentField = fieldName.toUpper();
        const QString editorName = TFieldNameGrammar::ComplexEditorName(CurrentField);
        QWidget *control = FindFormControl(CurrentField);
        if (!control)
            continue; // a field with no box shows nowhere and is still saved
        QFont font = control->font();
        if (auto *radio = dynamic_cast<TDBRadioGroup *>(control)) {
            radio->setTitle(column->Caption());
            font.setPointSize(10);
            radio->setFont(font);
            radio->SetDataBinding(DataSource, fieldName);
        } else if (auto *check = dynamic_cast<TDBCheckBox *>(control)) {
            check->setText(column->Caption());
            font.setPointSize(10);
            check->setFont(font);
            check->SetDataBinding(DataSource, fieldName);
        } else if (auto *box = qobject_cast<QGroupBox *>(control)) {
            box->setTitle(column->Caption());
            if (!box->findChild<QWidget *>(editorName, Qt::FindDirectChildrenOnly))
                CreateEditor(box, column, editorName);
        }
    }
}

void TComplexFM::FormShow(QObject *sender)
{
    TCustomDictFM::FormShow(sender);
    if (!childWidgets(pnlMain).isEmpty())
        FindNextCxControl(FirstControl);
}

QList<QWidget *> TComplexFM::TabOrderList() const
{
    auto *form = const_cast<TComplexFM *>(this);
    const QHash<const QWidget *, int> positions = focusChainPositions(form);
    QList<QWidget *> list;
    std::function<void(QWidget *)> walk = [&](QWidget *parent) {
        for (QWidget *w : inTabOrder(parent, positions)) {
            list << w;
            walk(w);
        }
    };
    walk(form);
    return list;
}

int TComplexFM::TabOrder(QWidget *control) const
{
    if (!control || !control->parentWidget())
        return -1;
    const QHash<const QWidget *, int> positions = focusChainPositions(const_cast<TComplexFM *>(this));
    return int(inTabOrder(control->parentWidget(), positions).indexOf(control));
}

QWidget *TComplexFM::FindNextCxControl(QWidget *start)
{
    if (!start)
        return nullptr;
    const QList<QWidget *> list = TabOrderList();
    if (list.isEmpty())
        return nullptr;
    const auto canFocus = [this](QWidget *w) { return w->isVisibleTo(this) && w->isEnabled(); };
    const auto accepted = [](QWidget *w) {
        QWidget *child = firstChild(w);
        const bool boxOrButton = qobject_cast<QGroupBox *>(w)
                                 || (qobject_cast<QPushButton *>(w) && !qobject_cast<TModalButton *>(w));
        return !w->isHidden() && w->isEnabled() && child && child->isEnabled() && !qobject_cast<TDBGrid *>(child)
               && !qobject_cast<TDBGridView *>(child) && boxOrButton;
    };
    int index = int(list.indexOf(start));
    if (index < 0)
        index = int(list.size()) - 1;
    QWidget *found = nullptr;
    // The search wraps around; one round at most.
    for (int step = 1; step <= list.size() && !found; ++step) {
        QWidget *candidate = list[(index + step) % list.size()];
        if (canFocus(candidate) && accepted(candidate))
            found = candidate;
    }
    if (!found)
        return nullptr;
    QWidget *child = firstChild(found);
    if (TabOrder(child) < TabOrder(found)) {
        child->setFocus();
        return child;
    }
    // The first box of the form: the search went round, Enter was on the last field.
    if (actOK->isEnabled())
        AdvGlowButton1->click();
    return nullptr;
}

void TComplexFM::ControlKeyPress(QWidget *sender, int key)
{
    if (key != 13 || !sender)
        return;
    if (auto *box = qobject_cast<QGroupBox *>(sender->parentWidget()))
        FindNextCxControl(box);
}

bool TComplexFM::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            auto *editor = qobject_cast<QWidget *>(watched);
            ControlKeyPress(editor, 13);
            // A memo still takes its line break; for other editors Enter must not reach the default button.
            return !dynamic_cast<TMemo *>(editor);
        }
    }
    return TCustomDictFM::eventFilter(watched, event);
}
