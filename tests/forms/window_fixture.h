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
#include "value_editor.h"

#include <QComboBox>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <functional>
#include <memory>

class WindowTest : public FormsTest
{
protected:
    void TearDown() override
    {
        window.reset();
        FormsTest::TearDown();
    }

    // Shows a window standing alone, freed after the test.
    template <class W, class... Args>
    W *Show(Args... args)
    {
        auto *w = new W(args...);
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
    // A text as an SQL literal; "null" stays null.
    static QString Quoted(const QString &text) { return text == "null" ? text : "'" + QString(text).replace("'", "''") + "'"; }
    // Rows of the shop's tables; phones and addresses are SQL literals.
    int NewCustomer(const QString &name, const QString &phone = "null", const QString &address = "null")
    {
        return Insert(QString("insert into CUST (CUSTNAME, MOBI_PHONE, ADDRESS) values (%1, %2, %3)")
                          .arg(Quoted(name), phone, address));
    }
    // Type 1, year 1 ("2011"), model 1 ("Passat") and make 1 ("Volkswagen") unless told otherwise.
    int NewVehicle(const QString &reg, int model = 1, int mark = 1)
    {
        return Insert(QString("insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, %1, %2, %3, 1)")
                          .arg(model).arg(mark).arg(Quoted(reg)));
    }
    // An order of today in status 1 ("Создан") unless told otherwise; 0 leaves a reference null.
    int NewOrder(int cust, int vehicle, int status = 1, const QString &createDate = "cast('today' as date)", int del = 0)
    {
        return Insert(QString("insert into ORDERS (IDCUST, IDAUTO, IDSTATUS, CREATE_DATE, DEL) values (%1, %2, %3, %4, %5)")
                          .arg(cust ? QString::number(cust) : "null", vehicle ? QString::number(vehicle) : "null")
                          .arg(status).arg(createDate).arg(del));
    }
    int NewService(const QString &name, double cost = 1000, double hours = 1, const QString &art = "null",
                   const QString &code = "null")
    {
        return Insert(QString("insert into SERV (SERVNAME, COST, HOURS, SERVART, SERVCODE) values (%1, %2, %3, %4, %5)")
                          .arg(Quoted(name)).arg(cost).arg(hours).arg(Quoted(art), Quoted(code)));
    }
    int NewMaterial(const QString &name, double cost = 100, int quantity = 100, const QString &articul = "null",
                    const QString &scode = "null")
    {
        return Insert(QString("insert into MAT (MATNAME, COST, QUANTITY, ARTICUL, SCODE) values (%1, %2, %3, %4, %5)")
                          .arg(Quoted(name)).arg(cost).arg(quantity).arg(Quoted(articul), Quoted(scode)));
    }
    // The identifier of the row of `table` whose `column` holds `name`.
    int IdOf(const QString &table, const QString &column, const QString &name) { return Scalar("select ID from " + table + " where " + column + " = " + Quoted(name)).toInt(); }

    // The editor a hand-laid card made in the box of that field.
    static QWidget *Editor(QWidget *card, const QString &field) { return card->findChild<QWidget *>(TFieldNameGrammar::ComplexEditorName(field)); }
    static QLineEdit *Line(QWidget *editor)
    {
        auto *combo = qobject_cast<QComboBox *>(editor);
        return combo ? combo->lineEdit() : qobject_cast<QLineEdit *>(editor);
    }
    static void Type(QWidget *card, const QString &name, const QString &text) { TypeText(card->findChild<QLineEdit *>(name), text); }
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
    // Types into a filter editor or picks from a filter's lookup (an empty text clears either), and lets the
    // filter timer refresh the grid.
    static void Filter(QWidget *editor, const QString &text)
    {
        if (auto *lookup = dynamic_cast<TLookupComboBox *>(editor); lookup && text.isEmpty()) {
            lookup->lineEdit()->clear();
            emit lookup->lineEdit()->editingFinished();
        } else if (lookup) {
            Pick(lookup, text);
        } else if (auto *line = qobject_cast<QLineEdit *>(editor); line && text.isEmpty()) {
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
    // The row of a frame's dataset whose fields have the values given; -1 when there is none.
    static int RowOf(TGridFrame *frame, const QVariantMap &values)
    {
        TFIBDataSet *ds = frame->DS->DataSet();
        ds->FetchAll();
        for (int row = 0; row < ds->RecordCount(); ++row) {
            bool all = true;
            for (auto it = values.begin(); it != values.end() && all; ++it)
                all = ds->RowValue(row, ds->FieldByName(it.key())->Index()).toString() == it.value().toString();
            if (all)
                return row;
        }
        return -1;
    }
    // Selects exactly these rows of a frame, as Ctrl + click does.
    static void Select(TGridFrame *frame, const QList<int> &rows)
    {
        QItemSelectionModel *selection = frame->GridView->selectionModel();
        selection->clearSelection();
        for (int row : rows)
            selection->select(frame->GridView->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    // Puts a value into a cell as its editor would, and lets the queued save run.
    static void SetCell(TGridFrame *frame, int row, const QString &field, const QVariant &value)
    {
        TDBGridView *view = frame->GridView;
        const QModelIndex index = view->model()->index(row, view->IndexOf(view->FindColumnByFieldName(field)));
        ASSERT_TRUE(view->model()->flags(index) & Qt::ItemIsEditable) << field.toStdString();
        view->model()->setData(index, value, Qt::EditRole);
        QTest::qWait(30);
    }
    // Double-clicks a cell, types over its value and presses Return, as a user changes a cell; a window
    // that the double click opened instead is closed and fails the test.
    static void TypeInCell(TGridFrame *frame, int row, const QString &field, const QString &text)
    {
        TDBGridView *view = frame->GridView;
        const QPoint cell =
            view->visualRect(view->model()->index(row, view->IndexOf(view->FindColumnByFieldName(field)))).center();
        ModalDriver none(300);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell);
        EXPECT_EQ(none.Failures, QStringList()) << field.toStdString();
        const QList<QLineEdit *> editors = view->viewport()->findChildren<QLineEdit *>();
        ASSERT_EQ(editors.size(), 1) << field.toStdString() << ": no cell editor";
        editors[0]->selectAll();
        QTest::keyClicks(editors[0], text);
        QTest::keyClick(editors[0], Qt::Key_Return);
        QTest::qWait(30);
    }
    // What the editor of a field in a card holds.
    static QVariant Value(QWidget *card, const QString &field)
    {
        auto *editor = dynamic_cast<TValueEditor *>(Editor(card, field));
        return editor ? editor->EditValue() : QVariant("<no editor>");
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
    // The titles of a grid's columns, in their order.
    static QStringList Captions(TDBGridView *view)
    {
        QStringList captions;
        for (TGridColumn *column : view->ColumnList())
            captions << column->Caption();
        return captions;
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
        const QStringList captions = Captions(frame->GridView);
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
