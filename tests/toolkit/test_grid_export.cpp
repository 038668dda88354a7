// Export of a grid to a spreadsheet file.

#include "grid_column.h"
#include "grid_export.h"
#include "grid_view.h"
#include "toolkit_fixture.h"

#include <QFile>
#include <QTemporaryDir>

using GridExportTest = ToolkitTest;

TEST_F(GridExportTest, WritesEveryRowOfTheShownColumnsOrRaisesAndPicturesBecomeTheSpreadsheetsOwn)
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
    EXPECT_TRUE(ds->AllFetched() && view.RowCount() == 2000);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("PK") && bytes.contains("xl/worksheets/sheet1.xml") && bytes.size() > 5000) << bytes.size();
    EXPECT_THROW(TGridExport::ToXlsx(&view, "/nonexistent-folder/x.xlsx"), EDatabaseError);

    // Display formats become the spreadsheet's own.
    EXPECT_EQ(QStringList({TGridExport::NumberFormat("###,##0.00"), TGridExport::NumberFormat("#,##0.00;-#,##0.00"),
                           TGridExport::DateFormat("dd.mm.yyyy hh:nn"), TGridExport::DateFormat("dd.mm.yyyy HH24:NN")}),
              QStringList({"###,##0.00", "#,##0.00", "dd.mm.yyyy hh:mm", "dd.mm.yyyy hh\\2\\4:mm"}));
}
