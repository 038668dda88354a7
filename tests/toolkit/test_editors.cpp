// Editors plain and bound to a field of the current row.

#include "db_editors.h"
#include "toolkit_fixture.h"
#include "type_text.h"

#include <QLineEdit>
#include <QTest>

using EditorTest = ToolkitTest;

TEST_F(EditorTest, BoundTextEditShowsTheCurrentRowAndWritesIntoIt)
{
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    auto *edit = Keep(new TDBTextEdit);
    edit->SetDataBinding(Source(ds), "NAME");
    // What the editor shows after each step, and the state and value of the row.
    QStringList seen{edit->text()};
    ds->Next();
    seen << edit->text() + QString(" %1").arg(ds->State() == dsEdit);
    TypeText(edit, "Фильтр салона");
    seen << edit->text() + QString(" %1 ").arg(ds->State() == dsEdit) + ds->FieldByName("NAME")->AsString();
    ds->Cancel();
    seen << edit->text();
    ds->Close();
    seen << edit->text();
    EXPECT_EQ(seen.join('/'), "Масло 5W40/Фильтр воздушный 0/Фильтр салона 1 Фильтр салона/Фильтр воздушный/");

    // Another dataset behind the same source; a read-only one refuses the typing.
    TpFIBDataSet *readOnly = Open("select * from GOODS order by ID", false);
    source->SetDataSet(readOnly);
    EXPECT_EQ(edit->text(), "Масло 5W40");
    TypeText(edit, "x");
    EXPECT_EQ(QString("%1 ").arg(readOnly->State() == dsBrowse) + edit->text() + " " + dialogs.Texts().join('|'),
              "1 Масло 5W40 Can't update. (" + readOnly->objectName() + ")");
}

TEST_F(EditorTest, LookupShowsTheListHoldsTheKeyAndOffersNewTexts)
{
    TDataSource kindSource(nullptr, Open("select * from KINDS order by ID"));
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    TEditProperties p(TEditKind::Lookup);
    p.ListSource = &kindSource;
    p.KeyFieldNames = "ID";
    p.ListFieldNames = "KINDNAME";
    auto *lookup = Keep(new TDBLookupComboBox);
    lookup->SetProperties(p);
    lookup->SetDataBinding(Source(ds), "KIND_ID");
    EXPECT_EQ(QString("%1 %2 %3 %4").arg(lookup->count()).arg(lookup->currentText()).arg(lookup->EditValue().toInt())
                  .arg(lookup->isEditable()), "2 Масло 1 0");
    emit lookup->activated(1);
    EXPECT_EQ(QString("%1 %2").arg(ds->State() == dsEdit).arg(ds->FieldByName("KIND_ID")->AsInteger()), "1 2");
    ds->Cancel();
    ds->MoveTo(2);
    // A key the list lacks shows nothing.
    EXPECT_EQ(lookup->currentIndex(), -1);

    // Free typing: a known text picks its key, an unknown one is offered.
    p.DropDownStyle = 1;
    auto *free = Keep(new TLookupComboBox);
    free->SetProperties(p);
    ASSERT_TRUE(free->isEditable());
    QStringList offered;
    free->OnNewLookupDisplayText = [&](const QString &text) { offered << text; };
    int changes = 0;
    free->OnUserChange = [&] { ++changes; };
    for (const char *text : {"Фильтр", "Свечи"}) {
        free->lineEdit()->setText(text);
        emit free->lineEdit()->editingFinished();
    }
    EXPECT_EQ(offered.join(',') + QString(" %1 %2").arg(free->EditValue().toInt()).arg(changes), "Свечи 2 1");
}

TEST_F(EditorTest, DateAndCurrencyEditsHoldAValueOrNothing)
{
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    TEditProperties p(TEditKind::Date);
    p.DateKind = TDateKind::DateTime;
    p.DisplayFormat = p.EditFormat = "dd.mm.yyyy HH:NN";
    auto *date = Keep(new TDBDateEdit);
    date->SetProperties(p);
    date->SetDataBinding(Source(ds), "MADE_DATE");
    EXPECT_EQ(date->text(), "05.03.2024 14:07");
    EXPECT_EQ(date->EditValue().toDateTime(), QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)));
    ds->MoveTo(2);
    EXPECT_TRUE(date->IsEmpty() && !date->EditValue().isValid());

    TEditProperties dateOnly = p;
    dateOnly.DateKind = TDateKind::Date;
    auto *plain = Keep(new TDateEdit);
    plain->SetProperties(dateOnly);
    plain->SetEditValue(QDateTime(QDate(2024, 3, 5), QTime(14, 7)));
    EXPECT_EQ(plain->text() + plain->EditValue().toDateTime().toString(" hh:mm"), "05.03.2024 00:00");

    // A currency edit takes numbers and emptiness.
    auto *money = Keep(new TCurrencyEdit);
    p = TEditProperties(TEditKind::Currency);
    p.DecimalPlaces = 2;
    p.DisplayFormat = "###,##0.00";
    money->SetProperties(p);
    money->SetEditValue(1234.5);
    EXPECT_EQ(money->text(), "1,234.50");
    int changes = 0;
    money->OnUserChange = [&] { ++changes; };
    TypeText(money, "12.5");
    EXPECT_EQ(QString("%1 %2").arg(money->EditValue().toDouble()).arg(changes), "12.5 4");
    money->selectAll();
    QTest::keyClick(money, Qt::Key_Delete);
    QList<bool> seen{money->EditValue().isValid(), (money->alignment() & Qt::AlignHorizontal_Mask) == Qt::AlignRight};
    p.HorizontalAlignment = Qt::AlignLeft;
    money->SetProperties(p);
    EXPECT_EQ(seen << ((money->alignment() & Qt::AlignHorizontal_Mask) == Qt::AlignLeft), QList<bool>({false, true, true}));
}

TEST_F(EditorTest, CheckBoxAndRadioGroupHoldFieldValues)
{
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    auto *check = Keep(new TDBCheckBox);
    check->SetDataBinding(Source(ds), "PAID_BIT");
    QList<bool> checked{check->isChecked()};
    ds->Next();
    EXPECT_EQ(checked << check->isChecked(), QList<bool>({true, false}));
    check->click();
    EXPECT_EQ(ds->FieldByName("PAID_BIT")->AsInteger(), 1);
    ds->Cancel();

    auto *radio = Keep(new TDBRadioGroup);
    radio->SetItems({"Масло", "Фильтр"}, {1, 2});
    radio->SetDataBinding(source.get(), "KIND_ID");
    QList<int> items{radio->ItemIndex()};
    ds->First();
    items << radio->ItemIndex();
    ds->MoveTo(2);
    EXPECT_EQ(items << radio->ItemIndex(), QList<int>({1, 0, -1}));
    ds->First();
    radio->findChildren<QAbstractButton *>()[1]->click();
    EXPECT_EQ(ds->FieldByName("KIND_ID")->AsInteger(), 2);
}

TEST(ButtonEdit, TheButtonIsHandledByItsOwnerWhileEnabled)
{
    TButtonEdit edit;
    int clicks = 0;
    edit.OnButtonClick = [&](int index) { clicks += 1 + index; }; // the one button is number 0
    edit.ClickButton();
    edit.setEnabled(false);
    edit.ClickButton();
    EXPECT_EQ(clicks, 1);
}
