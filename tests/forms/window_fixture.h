#pragma once
// The windows of a subsystem over their own copy of the deployed database, logged in as the
// administrator, with the column titles and labels of resources/kelvarion.ini beside the test binary:
// what the tests of every window folder do to their windows and cards.

#include "forms_fixture.h"

#include "captions_file.h"
#include "choice_editors.h"
#include "custom_dict_fm.h"
#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "lookup_combo_box.h"
#include "text_editors.h"
#include "type_text.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <functional>
#include <memory>
#include <type_traits>

class WindowTest : public FormsTest
{
protected:
    using Step = std::function<void(TCustomDictFM *card)>;

    void TearDown() override
    {
        window.reset();
        FormsTest::TearDown();
    }

    // Shows a window standing alone, freed after the test.
    template <class W>
    W *Show()
    {
        auto *w = new W();
        window.reset(w);
        w->show();
        return w;
    }

    // Inserts a row and gives back its ID, the table's highest.
    int Insert(const QString &sql)
    {
        Exec(sql);
        return Scalar("select max(ID) from " + sql.section(' ', 2, 2)).toInt();
    }
    // The identifier of the row of `table` whose `column` holds `name`.
    int IdOf(const QString &table, const QString &column, const QString &name)
    {
        return Scalar("select ID from " + table + " where " + column + " = '" + QString(name).replace("'", "''") + "'").toInt();
    }

    // Runs `action` with the steps given, each on the card (or dialog) then open.
    static void OnCard(TAction *action, const QList<Step> &steps)
    {
        ModalDriver driver;
        for (const Step &step : steps)
            driver.Then([step](QWidget *modal) {
                auto *card = qobject_cast<TCustomDictFM *>(modal);
                ASSERT_NE(card, nullptr) << modal->objectName().toStdString();
                step(card);
            });
        action->Execute();
        EXPECT_EQ(driver.Ran(), steps.size());
        EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    }

    // Does `open` (an action, or what a user does) and the steps, each on the window of type C then open.
    template <class C, class Open>
    static void OnModal(Open open, const QList<std::function<void(C *)>> &steps)
    {
        ModalDriver driver;
        for (const auto &step : steps)
            driver.Then([step](QWidget *modal) {
                auto *window = qobject_cast<C *>(modal);
                ASSERT_NE(window, nullptr) << modal->objectName().toStdString();
                step(window);
            });
        if constexpr (std::is_invocable_v<Open>)
            open();
        else
            open->Execute();
        EXPECT_EQ(driver.Ran(), steps.size());
        EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    }

    // The editor a hand-laid card made in the box of that field.
    static QWidget *Editor(QWidget *card, const QString &field)
    {
        return card->findChild<QWidget *>(TFieldNameGrammar::ComplexEditorName(field));
    }
    static QLineEdit *Line(QWidget *editor)
    {
        auto *combo = qobject_cast<QComboBox *>(editor);
        return combo ? combo->lineEdit() : qobject_cast<QLineEdit *>(editor);
    }
    static void Type(QWidget *card, const QString &name, const QString &text)
    {
        TypeText(card->findChild<QLineEdit *>(name), text);
    }
    // Types into an editor and leaves it, as a user moving on to the next field.
    static void TypeAndLeave(QWidget *editor, const QString &text)
    {
        QLineEdit *line = Line(editor);
        ASSERT_NE(line, nullptr);
        TypeText(line, text);
        emit line->editingFinished();
    }
    // Lets the filter timer tick and the frame refresh.
    static void Settle() { QTest::qWait(250); }
    // Types into a filter editor (an empty text clears it) and lets the filter timer refresh the grid.
    static void Filter(QWidget *editor, const QString &text)
    {
        if (auto *line = qobject_cast<QLineEdit *>(editor); line && text.isEmpty()) {
            line->clear();
            emit line->textEdited(QString());
        } else {
            TypeText(editor, text);
        }
        Settle();
    }
    // Picks the row of a lookup editor by its shown text, as a user's choice from the list.
    static void Pick(QWidget *editor, const QString &text)
    {
        auto *combo = dynamic_cast<TLookupComboBox *>(editor);
        ASSERT_NE(combo, nullptr);
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
    }

    // One field of all rows of the frame's dataset.
    static QStringList Column(TGridFrame *frame, const QString &field)
    {
        TFIBDataSet *ds = frame->DS->DataSet();
        QStringList values;
        if (!ds->Active())
            return values;
        ds->FetchAll();
        const int index = ds->FieldByName(field)->Index();
        for (int row = 0; row < ds->RecordCount(); ++row)
            values << ds->RowValue(row, index).toString();
        return values;
    }
    static QStringList Sorted(QStringList list) { return list.sort(), list; }
    static QStringList NotRussian(const QStringList &texts) { return texts.filter(QRegularExpression("^[^А-Яа-яЁё]*$")); }

    // The keys of `shown` that the section of the ini file lacks or whose title is not the one shown.
    static QStringList Untitled(const QString &section, const QMap<QString, QString> &shown)
    {
        QSettings ini(TCaptionsFile::FileName(), QSettings::IniFormat);
        ini.beginGroup(section);
        QStringList missing;
        for (auto it = shown.begin(); it != shown.end(); ++it)
            if (ini.value(it.key()).toString() != it.value())
                missing << it.key();
        return missing;
    }
    static QStringList Untitled(TGridFrame *frame)
    {
        QMap<QString, QString> shown;
        for (TGridColumn *column : frame->GridView->ColumnList())
            shown[column->FieldName()] = column->Caption();
        return Untitled(frame->RightsKey(), shown);
    }
    // Every column of the frame has its Russian title from the ini file, and every key of its section
    // names one of them.
    static void ExpectRussianTitles(TGridFrame *frame)
    {
        const QString section = frame->RightsKey();
        QStringList captions;
        for (TGridColumn *column : frame->GridView->ColumnList())
            captions << column->Caption();
        EXPECT_FALSE(captions.isEmpty()) << section.toStdString();
        EXPECT_EQ(NotRussian(captions), QStringList()) << section.toStdString();
        EXPECT_EQ(Untitled(frame), QStringList()) << section.toStdString();
        QSettings ini(TCaptionsFile::FileName(), QSettings::IniFormat);
        ini.beginGroup(section);
        EXPECT_EQ(ini.childKeys().size(), captions.size()) << section.toStdString();
    }

    // The texts a card shows its user: its title, labels and box titles.
    static QStringList CardTexts(QWidget *card)
    {
        QStringList texts{card->windowTitle()};
        for (QLabel *label : card->findChildren<QLabel *>())
            texts << label->text();
        for (QGroupBox *box : card->findChildren<QGroupBox *>())
            texts << box->title();
        return texts.filter(QRegularExpression("\\S"));
    }

    std::unique_ptr<QWidget> window;
};
