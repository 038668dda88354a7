// Text editors take no more than the column holds and nothing that Windows-1251 cannot hold: a refused
// key does nothing, a pasted text comes in cut and cleaned, and no box is shown.

#include "db_editors.h"
#include "toolkit_fixture.h"
#include "type_text.h"

#include <QMimeData>

namespace {

using TextLimitTest = ToolkitTest;

// Typing, then pasting, into a fresh editor of each kind; what it shows afterwards.
struct LimitCase { const char *typed, *pasted, *shown; };

const LimitCase kCases[] = {
    {"Ёлка ë中✓ №5", "", "Ёлка  №5"},
    {"", "A\u00eb\u4e2dB\u2713 «ё»", "AB «ё»"},
    // 45 characters into a column of 40.
    {"", "0123456789012345678901234567890123456789ABCDE", "0123456789012345678901234567890123456789"},
    {"0123456789012345678901234567890123456789", "X", "0123456789012345678901234567890123456789"},
};

// Reaches the memo's paste and drop, which take a text from a clipboard or a drag.
struct MemoAccess : TMemo { using TMemo::insertFromMimeData; };

// As a paste does: the text goes in where the cursor is.
void Paste(QWidget *editor, const QString &text)
{
    if (auto *line = qobject_cast<QLineEdit *>(editor)) {
        line->insert(text);
        return;
    }
    QMimeData data;
    data.setText(text);
    static_cast<MemoAccess *>(static_cast<TMemo *>(editor))->insertFromMimeData(&data);
}

QString Shown(QWidget *editor) { return dynamic_cast<TValueEditor *>(editor)->EditValue().toString(); }

TEST_F(TextLimitTest, BoundEditorsTakeTheColumnsLengthFiltersAndFreeTypingInAListWindows1251Only)
{
    for (const LimitCase &c : kCases) {
        for (const bool memo : {false, true}) {
            TpFIBDataSet *ds = Open("select * from GOODS where ID = 3");
            const auto bind = [&](auto *e) -> QWidget * {
                Keep(e)->SetDataBinding(Source(ds), "NAME");
                e->clear();
                return e;
            };
            QWidget *editor = memo ? bind(new TDBMemo) : bind(new TDBTextEdit);
            TypeText(editor, QString::fromUtf8(c.typed));
            if (qstrlen(c.pasted))
                Paste(editor, QString::fromUtf8(c.pasted));
            EXPECT_EQ(Shown(editor), QString::fromUtf8(c.shown)) << c.typed << c.pasted << " memo " << memo;
        }
    }
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();

    // Filter editors and free typing in a list refuse what Windows-1251 cannot hold.
    auto *filter = Keep(new TTextEdit);
    filter->insert("Иванов ë中✓ Пётр");
    // A filter is bound to no column.
    EXPECT_EQ(filter->text() + QString(" %1").arg(filter->maxLength()), "Иванов  Пётр 32767");

    TEditProperties p(TEditKind::Lookup);
    p.DropDownStyle = 1;
    auto *list = Keep(new TLookupComboBox);
    list->SetProperties(p);
    list->lineEdit()->insert("Ford ✓");
    EXPECT_EQ(list->lineEdit()->text(), "Ford ");

    EXPECT_FALSE(IsAnsiChar(QChar(0xd83d))); // half of an emoji
}

} // namespace
