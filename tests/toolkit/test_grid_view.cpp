// The data grid: lazy fetching, the current row both ways, display per kind, editing, footer, menu.

#include "db_grid.h"
#include "grid_column.h"
#include "grid_model.h"
#include "grid_summary.h"
#include "grid_view.h"
#include "toolkit_fixture.h"

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

class GridViewTest : public ToolkitTest
{
protected:
    // A shown grid with a column per field.
    TDBGridView *View(TFIBDataSet *ds)
    {
        auto *view = Keep(new TDBGridView);
        view->SetDataSource(Source(ds));
        for (int i = 0; i < ds->FieldCount(); ++i)
            view->CreateColumn(ds->Fields(i)->FieldName());
        view->resize(500, 300);
        view->show();
        QCoreApplication::processEvents();
        return view;
    }
    TGridColumn *Column(TDBGridView *view, const char *field, TEditKind kind)
    {
        TGridColumn *column = view->FindColumnByFieldName(field);
        column->Properties()->Kind = kind;
        column->PropertiesChanged();
        return column;
    }
};

TEST_F(GridViewTest, EachKindShowsItsValuesItsOwnWay)
{
    TpFIBDataSet *kinds = Open("select * from KINDS where ID = 1");
    TDataSource kindSource(nullptr, kinds);
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    TDBGridView *view = View(ds);
    TGridColumn *price = Column(view, "PRICE", TEditKind::Currency);
    price->Properties()->DisplayFormat = "###,##0.00";
    TGridColumn *made = Column(view, "MADE_DATE", TEditKind::Date);
    made->Properties()->DateKind = TDateKind::DateTime;
    made->Properties()->DisplayFormat = "dd.mm.yyyy HH24:NN";
    TGridColumn *paid = Column(view, "PAID_BIT", TEditKind::CheckBox);
    TGridColumn *kind = Column(view, "KIND_ID", TEditKind::Lookup);
    kind->Properties()->ListSource = &kindSource;
    kind->Properties()->KeyFieldNames = "ID";
    kind->Properties()->ListFieldNames = "KINDNAME";
    ds->FetchAll();

    const auto texts = [view](TGridColumn *column) {
        QStringList t;
        for (int row = 0; row < view->RowCount(); ++row)
            t << view->DisplayText(row, column->Index());
        return t;
    };
    EXPECT_EQ(texts(price), QStringList({"1,234.50", "100.00", ""}));
    // Only d, m, y, h and n are fields: the hour is followed by a literal 24.
    EXPECT_EQ(texts(made), QStringList({"05.03.2024 1424:07", "06.03.2024 0924:00", ""}));
    EXPECT_EQ(texts(kind), QStringList({"Масло", "", ""}));
    EXPECT_EQ(texts(paid), QStringList({"true", "false", "false"}));
    TGridModel *model = view->Model();
    const auto role = [&](int row, TGridColumn *column, int r) { return model->data(model->index(row, column->Index()), r).toInt(); };
    EXPECT_EQ(QList<int>({role(0, paid, Qt::CheckStateRole), role(2, paid, Qt::CheckStateRole),
                          role(0, price, Qt::TextAlignmentRole) & Qt::AlignRight}),
              QList<int>({Qt::Checked, Qt::Unchecked, Qt::AlignRight}));

    // Lookup texts follow their list when it is opened again.
    kinds->Close();
    kinds->SetSelectSQL("select * from KINDS");
    kinds->Open();
    EXPECT_EQ(view->DisplayText(1, kind->Index()), "Фильтр");
}

TEST_F(GridViewTest, ColumnsHideTakeTheirCaptionsAndShareTheWidthInProportion)
{
    TDBGridView *view = View(Open("select ID, NAME, PRICE from GOODS"));
    TGridColumn *price = view->FindColumnByFieldName("price");
    ASSERT_NE(price, nullptr);
    price->SetVisible(false);
    EXPECT_TRUE(view->isColumnHidden(price->Index()));
    view->Columns(0)->SetCaption("Код");
    EXPECT_EQ(view->Model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Код");
    view->Columns(0)->SetWidth(100);
    view->Columns(1)->SetWidth(300);
    EXPECT_NEAR(view->columnWidth(0) + view->columnWidth(1), view->viewport()->width(), 2);
    EXPECT_NEAR(view->columnWidth(1), 3 * view->columnWidth(0), 4);
    price->SetVisible(true);
    EXPECT_FALSE(view->isColumnHidden(price->Index()));
}

TEST_F(GridViewTest, FooterSumsCoverEveryRowAndFollowAPostAndAReopen)
{
    TpFIBDataSet *ds = Open("select * from MANY_ROWS(3000)");
    TDBGrid *grid = Keep(new TDBGrid);
    TDBGridView *view = grid->View();
    view->SetDataSource(Source(ds));
    TGridColumn *id = view->CreateColumn("ID");
    QSignalSpy after(view->Summary(), &TGridSummary::AfterSummary);
    view->SetFooterVisible(true);
    EXPECT_EQ(view->Summary()->Add(id, "#,##0.00"), 0);
    EXPECT_EQ(view->Summary()->Text(0) + QString(" %1").arg(ds->AllFetched()), "4,501,500.00 1");
    ASSERT_TRUE(ds->Locate("ID", 2999));
    ds->Edit();
    ds->FieldByName("ID")->SetValue(1);
    ds->Post();
    EXPECT_EQ(view->Summary()->Text(0), "4,498,502.00");
    ds->Close();
    EXPECT_FALSE(view->Summary()->Sum(0).isValid());
    ds->Open();
    EXPECT_DOUBLE_EQ(view->Summary()->Sum(0).toDouble(), 3000.0 * 3001 / 2);
    EXPECT_TRUE(view->RowCount() == 3000 && after.count() >= 4) << after.count();
    grid->show();
    EXPECT_TRUE(grid->Footer()->isVisible());
}

TEST_F(GridViewTest, FetchesWhatItShowsEachAskAtTheEndDoublesTheRowsAndTheCurrentRowFollowsTheDataSet)
{
    TpFIBDataSet *ds = Open("select * from MANY_ROWS(5000)");
    TDBGridView *view = View(ds);
    EXPECT_EQ(view->RowCount(), ds->RecordCount());
    EXPECT_TRUE(view->RowCount() > 300 / 22 && view->RowCount() <= 1 + 2 * view->Model()->FetchBatch) << view->RowCount();
    EXPECT_EQ(view->currentIndex().row(), 0);
    QScrollBar *bar = view->verticalScrollBar();
    int asks = 0;
    while (!ds->AllFetched() && asks < 100) {
        const int before = view->RowCount();
        bar->setValue(bar->maximum());
        QCoreApplication::processEvents();
        ++asks;
        EXPECT_EQ(view->RowCount(), ds->RecordCount());
        if (!ds->AllFetched())
            EXPECT_GE(view->RowCount(), 2 * before);
    }
    // 101 rows doubled six times are more than 5,000.
    EXPECT_TRUE(view->RowCount() == 5000 && asks <= 7) << asks;

    // Ctrl+End from a fresh first screen.
    ds->Close();
    ds->Open();
    QCoreApplication::processEvents();
    ASSERT_FALSE(ds->AllFetched());
    QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(ds->AllFetched());
    EXPECT_EQ(QList<int>({view->RowCount(), view->currentIndex().row(), ds->FieldByName("ID")->AsInteger()}),
              QList<int>({5000, 4999, 5000}));
    QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(ds->FieldByName("ID")->AsInteger(), 1);

    // The current row follows the dataset both ways; a search beyond the fetched rows brings them into the grid.
    ds->Close();
    ds->Open();
    QCoreApplication::processEvents();
    view->setCurrentIndex(view->Model()->index(5, 1));
    EXPECT_EQ(ds->FieldByName("ID")->AsInteger(), 6);
    ds->MoveTo(8);
    EXPECT_EQ(QList<int>({view->currentIndex().row(), view->FocusedRowIndex()}), QList<int>({8, 8}));
    ASSERT_TRUE(ds->Locate("ID", 700));
    EXPECT_TRUE(view->RowCount() >= 700 && view->currentIndex().row() == 699);
    view->SetFocusedRowIndex(20);
    view->SetFocusedRowIndex(5000);
    EXPECT_EQ(ds->CurrentIndex(), 20);
    ds->Close();
    EXPECT_EQ(view->RowCount(), 0);
    ds->Open();
    EXPECT_EQ(QList<int>({view->RowCount(), view->currentIndex().row()}), QList<int>({ds->RecordCount(), 0}));
}

TEST_F(GridViewTest, RightClickShowsThePopupMenuDoubleClickIsToldAndCellsAreEditedOnlyWhereAWindowAllowsIt)
{
    TpFIBDataSet *ds = Open("select * from GOODS order by ID");
    TDBGridView *view = View(ds);
    QMenu menu;
    menu.addAction("Экспорт в Excel");
    view->SetPopupMenu(&menu);
    const QPoint inside = view->visualRect(view->Model()->index(0, 1)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, inside, view->viewport()->mapToGlobal(inside));
    QCoreApplication::sendEvent(view->viewport(), &event);
    EXPECT_TRUE(menu.isVisible());
    menu.hide();

    QSignalSpy clicks(view, &TDBGridView::DblClick);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->Model()->index(1, 1)).center());
    EXPECT_EQ(QList<int>({int(clicks.count()), ds->CurrentIndex()}), QList<int>({1, 1}));
    ds->First();

    TGridModel *model = view->Model();
    TGridColumn *name = view->FindColumnByFieldName("NAME");
    TGridColumn *paid = Column(view, "PAID_BIT", TEditKind::CheckBox);
    const QModelIndex cell = model->index(1, name->Index());
    const auto editable = [&](const QModelIndex &index) { return bool(model->flags(index) & Qt::ItemIsEditable); };
    QList<bool> seen{editable(cell)};
    view->SetEditing(true);
    seen << editable(cell);
    name->SetEditable(true);
    seen << editable(cell) << editable(model->index(1, view->FindColumnByFieldName("PRICE")->Index()));
    EXPECT_EQ(seen, QList<bool>({false, false, true, false}));
    // A double click on an editable cell opens its editor and is not told as the grid's double click.
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell).center());
    const QList<QLineEdit *> editors = view->viewport()->findChildren<QLineEdit *>();
    EXPECT_EQ(QList<int>({int(clicks.count()), int(editors.size())}), QList<int>({1, 1}));
    for (QLineEdit *editor : editors)
        QTest::keyClick(editor, Qt::Key_Escape);

    QSignalSpy edited(view, &TDBGridView::EditValueChanged);
    ASSERT_TRUE(model->setData(cell, "Фильтр масляный", Qt::EditRole));
    EXPECT_EQ(QString("%1 %2 %3 %4").arg(ds->CurrentIndex()).arg(ds->State() == dsEdit)
                  .arg(ds->FieldByName("NAME")->AsString(), view->DisplayText(1, name->Index())),
              "1 1 Фильтр масляный Фильтр масляный");
    QCoreApplication::processEvents();
    ASSERT_EQ(edited.count(), 1);
    EXPECT_EQ(edited[0][0].value<TGridColumn *>(), name);

    paid->SetEditable(true);
    const QModelIndex check = model->index(1, paid->Index());
    EXPECT_TRUE(model->flags(check) & Qt::ItemIsUserCheckable);
    ASSERT_TRUE(model->setData(check, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(ds->FieldByName("PAID_BIT")->AsInteger(), 1);
    ds->Post();
    EXPECT_EQ(view->DisplayText(1, paid->Index()), "true");

    // A refused edit shows the error and changes nothing.
    TpFIBDataSet *readOnly = Open("select * from GOODS order by ID", false);
    source->SetDataSet(readOnly);
    EXPECT_FALSE(model->setData(model->index(0, name->Index()), "x", Qt::EditRole));
    EXPECT_EQ(dialogs.Texts(), QStringList{"Can't update. (" + readOnly->objectName() + ")"});
    EXPECT_EQ(readOnly->State(), dsBrowse);
}
