// Export of a grid to a spreadsheet file.

#include "grid_column.h"
#include "grid_export.h"
#include "grid_view.h"
#include "toolkit_fixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using GridExportTest = ToolkitTest;

TEST(GridExportFormats, PicturesBecomeTheSpreadsheetsOwn)
{
    EXPECT_EQ(TGridExport::NumberFormat("###,##0.00"), "###,##0.00");
    EXPECT_EQ(TGridExport::NumberFormat("#,##0.00;-#,##0.00"), "#,##0.00");
    EXPECT_EQ(TGridExport::DateFormat("dd.mm.yyyy hh:nn"), "dd.mm.yyyy hh:mm");
    EXPECT_EQ(TGridExport::DateFormat("dd.mm.yyyy HH24:NN"), "dd.mm.yyyy hh\\2\\4:mm");
}

TEST_F(GridExportTest, WritesEveryRowOfTheShownColumnsOrRaises)
{
    TpFIBDataSet *ds = Open("select * from MANY_ROWS(2000)");
    TDBGridView view;
    view.SetDataSource(Source(ds));
    view.CreateColumn("ID");
    TGridColumn *name = view.CreateColumn("NAME");
    name->SetCaption("Название");
    view.CreateColumn("ID")->SetVisible(false);
    EXPECT_FALSE(ds->AllFetched());

    QTemporaryDir dir;
    const QString path = dir.filePath("grid.xlsx");
    TGridExport::ToXlsx(&view, path);
    EXPECT_TRUE(ds->AllFetched());
    EXPECT_EQ(view.RowCount(), 2000);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("PK"));
    EXPECT_TRUE(bytes.contains("xl/worksheets/sheet1.xml"));
    EXPECT_GT(bytes.size(), 5000);
    EXPECT_THROW(TGridExport::ToXlsx(&view, "/nonexistent-folder/x.xlsx"), EDatabaseError);
}

} // namespace
