// The data module's datasets: names, selects against the real procedures, update statements, look-up by name.
#include "data_dm_fixture.h"

#include <QRegularExpression>

namespace {

const QStringList kReports = {"dbOtchetVipZakaz", "dbOtchetUslug", "dbOtchetMaterial"};
const QStringList kRealUpdates = {"tConfig", "spRolesActionsOpen", "spStoreMatOpen", "spOrdersOpen", "spOrdPartsOpen",
                                   "spOrdServOpen", "spOrdMatOpen"};

void SetAllParamsNull(TFIBDataSet &ds)
{
    for (int i = 0; i < ds.Params().Count(); ++i)
        ds.Params()[i].SetValue(QVariant());
}

} // namespace

using DataModuleCatalogue = DataModuleTest;

TEST_F(DataModuleCatalogue, EveryDatasetIsFoundByNameWorksOnTheDeployedSchemaAndPlaceholderPostsChangeNothing)
{
    // An order line, so that the ORDMAT placeholder has a row with a matching ID to leave alone.
    Exec("insert into MAT (ID, MATNAME, QUANTITY, COST) values (1, 'Фильтр', 10, 100)");
    Exec("insert into ORDERS (ID) values (1)");
    Exec("insert into ORDMAT (ID, IDORDER, IDMAT, OCNT) values (1, 1, 1, 1)");
    Exec("update MAT set COST = 555 where ID = 1"); // a reprice would show in the line
    const QString snapshot = "select (select list(ID || USERNAME) from USERS), (select list(ID || STATUS) from PAYSTATUS), "
                             "(select list(ID || RIGHTNAME) from RIGHTS), (select list(ID || COST || SUMM) from ORDMAT), "
                             "(select list(ID || QUANTITY) from MAT), (select list(ID || SUMORDER) from ORDERS) "
                             "from rdb$database";
    const QStringList before = Rows(snapshot);

    const QList<TFIBDataSet *> all = dm->DataSets();
    EXPECT_EQ(all.size(), 57);
    int withSource = 0, posted = 0;
    for (TFIBDataSet *ds : all) {
        const QString name = ds->objectName();
        SCOPED_TRACE(name.toStdString());
        EXPECT_TRUE(ds->Database() == &dm->pFIBDatabaseMain && ds->Transaction() == &dm->pFIBTransaction1
                    && ds->InsertSQL.isEmpty() && ds->DeleteSQL.isEmpty() && !ds->AutoCommit);
        // Found by its own name in any case, and only so: names are unique.
        EXPECT_TRUE(dm->FindDataSet(name.toUpper()) == ds && dm->FindDataSet(name.toLower()) == ds);
        // Its source, if it has one, is "ds" and the name after its lower-case prefix.
        const QString stem = name.mid(name.indexOf(QRegularExpression("[A-Z]")));
        if (TDataSource *src = dm->FindDataSource("DS" + stem.toUpper())) {
            EXPECT_EQ(src->DataSet(), ds);
            ++withSource;
        }
        try {
            SetAllParamsNull(*ds);
            ds->Open();
            EXPECT_GT(ds->FieldCount(), 0);
            if (kReports.contains(name)) {
                // Reports are read only and refresh by their select.
                EXPECT_TRUE(ds->UpdateSQL.isEmpty());
                EXPECT_EQ(ds->RefreshSQL, ds->SelectSQL());
                ds->Close();
                continue;
            }
            EXPECT_TRUE(ds->RefreshSQL.isEmpty());
            TpFIBQuery q;
            q.SetDatabase(&dm->pFIBDatabaseMain);
            q.SetTransaction(&dm->pFIBTransaction1);
            q.SetSQLText(ds->UpdateSQL);
            q.Prepare();
            // A placeholder statement posts a row, one whose ID is also an ID of the named tables, and changes nothing.
            if (!kRealUpdates.contains(name) && !ds->IsEmpty()) {
                if (TFIBField *id = ds->FindField("ID"); id && !ds->Locate("ID", 1))
                    ds->First();
                ds->Edit();
                if (TFIBField *f = ds->Fields(ds->FieldCount() - 1); f->DataType() == ftString)
                    f->SetValue("изменено в карточке");
                ds->Post();
                ++posted;
                EXPECT_EQ(ds->State(), dsBrowse);
            }
            ds->Close();
        } catch (const EDatabaseError &e) {
            ADD_FAILURE() << e.Message().toStdString();
        }
    }
    EXPECT_TRUE(withSource == 50 && posted >= 15) << withSource << " " << posted;
    EXPECT_EQ(Rows(snapshot), before);
    EXPECT_TRUE(dm->FindDataSet("spOrdersOpen") == &dm->spOrdersOpen && dm->FindDataSource("dsAYearOpen") == &dm->dsAYearOpen
                && !dm->FindDataSource("dsNoSuchOpen"));
    for (const char *other : {"spNoSuchOpen", "", "Query", "dsRolesOpen"})
        EXPECT_EQ(dm->FindDataSet(other), nullptr) << other;
    dm->spRolesOpen.Open();
    EXPECT_EQ(dm->spRolesOpen.FieldByName("ROLENAME")->AsString(), "Администратор");

    // spOStateMain posts against ORDMAT row 1 without repricing it.
    dm->spOStateMain.Open();
    ASSERT_TRUE(dm->spOStateMain.Locate("ID", 1));
    dm->spOStateMain.Edit();
    dm->spOStateMain.Post();
    EXPECT_EQ(Scalar("select COST from ORDMAT where ID = 1").toDouble(), 100.0);
}

// The settings' statement is the start suite's: a post on one seat is seen on the other.
TEST_F(DataModuleCatalogue, RealUpdateStatementsWriteTheRow)
{
    TpFIBDataSet &ds = dm->spRolesActionsOpen;
    ds.ParamByName("ID_ROLE").SetValue(2);
    ds.Open();
    ASSERT_FALSE(ds.IsEmpty());
    const int id = ds.FieldByName("ID")->AsInteger();
    const int action = ds.FieldByName("ID_ACTION_LKP_ACTIONS_F_ACTNAME")->AsInteger();
    ds.Edit();
    ds.FieldByName("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME")->SetValue(1);
    ds.Post();
    EXPECT_EQ(Rows(QString("select ID_ROLE, ID_ACTION, ID_RIGHTS from ROLES_ACTIONS where ID = %1").arg(id)),
              QStringList{QString("2|%1|1").arg(action)});
}
