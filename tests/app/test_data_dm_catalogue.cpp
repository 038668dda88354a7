// The data module's datasets: names, selects against the real procedures, update statements, look-up by name.
#include "data_dm_fixture.h"

#include <QSet>

namespace {

// Every dataset that has a data source, with the source's name.
const QList<QPair<QString, QString>> kWithSource = {
    {"spRolesOpen", "dsRolesOpen"},       {"spStatesOpen", "dsStatesOpen"},     {"tConfig", "dsConfig"},
    {"spActionsOpen", "dsActionsOpen"},   {"spRightsOpen", "dsRightsOpen"},     {"spDiscountsOpen", "dsDiscountsOpen"},
    {"spCustOpen", "dsCustOpen"},         {"spMatOpen", "dsMatOpen"},           {"spCntryOpen", "dsCntryOpen"},
    {"spProdOpen", "dsProdOpen"},         {"spCmatOpen", "dsCmatOpen"},         {"spCServOpen", "dsCServOpen"},
    {"spServOpen", "dsServOpen"},         {"spPosOpen", "dsPosOpen"},           {"spEstatOpen", "dsEstatOpen"},
    {"spEmplOpen", "dsEmplOpen"},         {"spOTypeOpen", "dsOTypeOpen"},       {"spStoreOpen", "dsStoreOpen"},
    {"spStoreMatOpen", "dsStoreMatOpen"}, {"spMatDialog", "dsMatDialog"},       {"spATypeOpen", "dsATypeOpen"},
    {"spModelOpen", "dsModelOpen"},       {"spMarkOpen", "dsMarkOpen"},         {"spAYearOpen", "dsAYearOpen"},
    {"spAutoOpen", "dsAutoOpen"},         {"spOrdersOpen", "dsOrdersOpen"},     {"spOStateOpen", "dsOStateOpen"},
    {"spOrdPartsOpen", "dsOrdPartsOpen"}, {"spPartsOpen", "dsPartsOpen"},       {"spOrdServOpen", "dsOrdServOpen"},
    {"spOrdMatOpen", "dsOrdMatOpen"},     {"spPayTypeOpen", "dsPayTypeOpen"},   {"spPurposeOpen", "dsPurposeOpen"},
    {"spPayOpen", "dsPayOpen"},           {"spPayStateOpen", "dsPayStateOpen"}, {"spPurposesOpen", "dsPurposesOpen"},
    {"spObjectOpen", "dsObjectOpen"},     {"spClientsOpen", "dsClientsOpen"},   {"spPayStatusOpen", "dsPayStatusOpen"},
    {"spSalaryOpen", "dsSalaryOpen"},     {"spSalaryMain", "dsSalaryMain"},     {"spOStateMain", "dsOStateMain"},
    {"spRequisitsOpen", "dsRequisitsOpen"}, {"spNalOpen", "dsNalOpen"},         {"spCustOrderOpen", "dsCustOrderOpen"},
    {"spCustPayOpen", "dsCustPayOpen"},   {"spCustDialog", "dsCustDialog"},
    {"dbOtchetVipZakaz", "dsOtchetVipZakaz"}, {"dbOtchetUslug", "dsOtchetUslug"},
    {"dbOtchetMaterial", "dsOtchetMaterial"},
};

const QStringList kWithoutSource = {"spUsersOpen",  "spUsersActiveSelect", "spRolesActionsOpen", "spRolesActionsEdit",
                                    "spCustOpen2", "spOrdMatServOpen",    "spRolesActionsOpen2"};

const QStringList kReports = {"dbOtchetVipZakaz", "dbOtchetUslug", "dbOtchetMaterial"};
const QStringList kRealUpdates = {"tConfig", "spRolesActionsOpen", "spStoreMatOpen"};

void SetAllParamsNull(TFIBDataSet &ds)
{
    for (int i = 0; i < ds.Params().Count(); ++i)
        ds.Params()[i].SetValue(QVariant());
}

} // namespace

using DataModuleCatalogue = DataModuleTest;

TEST_F(DataModuleCatalogue, HoldsEveryDatasetAndSourceByNameOnTheSharedConnection)
{
    const QList<TFIBDataSet *> all = dm->DataSets();
    EXPECT_EQ(all.size(), 57);
    QSet<QString> names;
    for (TFIBDataSet *ds : all) {
        names.insert(ds->objectName());
        EXPECT_EQ(ds->Database(), &dm->pFIBDatabaseMain) << ds->objectName().toStdString();
        EXPECT_EQ(ds->Transaction(), &dm->pFIBTransaction1) << ds->objectName().toStdString();
        EXPECT_TRUE(ds->InsertSQL.isEmpty());
        EXPECT_TRUE(ds->DeleteSQL.isEmpty());
        EXPECT_FALSE(ds->AutoCommit);
    }
    EXPECT_EQ(names.size(), 57);
    EXPECT_EQ(kWithSource.size() + kWithoutSource.size(), 57);

    for (const auto &[dataSet, source] : kWithSource) {
        TFIBDataSet *ds = dm->FindDataSet(dataSet);
        ASSERT_NE(ds, nullptr) << dataSet.toStdString();
        EXPECT_EQ(ds->objectName(), dataSet);
        TDataSource *src = dm->FindDataSource(source);
        ASSERT_NE(src, nullptr) << source.toStdString();
        EXPECT_EQ(src->objectName(), source);
        EXPECT_EQ(src->DataSet(), ds) << source.toStdString();
    }
    for (const QString &dataSet : kWithoutSource) {
        ASSERT_NE(dm->FindDataSet(dataSet), nullptr) << dataSet.toStdString();
        EXPECT_EQ(dm->FindDataSource("ds" + dataSet.mid(2)), nullptr) << dataSet.toStdString();
    }

    // The members are the very objects found by name.
    EXPECT_EQ(dm->FindDataSet("spOrdersOpen"), &dm->spOrdersOpen);
    EXPECT_EQ(dm->FindDataSource("dsOrdersOpen"), &dm->dsOrdersOpen);
    EXPECT_EQ(dm->FindDataSet("tConfig"), &dm->tConfig);
    EXPECT_EQ(dm->FindDataSource("dsConfig"), &dm->dsConfig);
}

TEST_F(DataModuleCatalogue, LookUpByNameIgnoresCase)
{
    EXPECT_EQ(dm->FindDataSet("sp" + QString("ROLES") + "Open"), &dm->spRolesOpen);
    EXPECT_EQ(dm->FindDataSource("ds" + QString("ROLES") + "Open"), &dm->dsRolesOpen);
    EXPECT_EQ(dm->FindDataSet("spAYEAROpen"), &dm->spAYearOpen);
    EXPECT_EQ(dm->FindDataSource("DSAYEAROPEN"), &dm->dsAYearOpen);
    EXPECT_EQ(dm->FindDataSet("SPCSERVOPEN"), &dm->spCServOpen);
    EXPECT_EQ(dm->FindDataSet("TCONFIG"), &dm->tConfig);
    EXPECT_EQ(dm->FindDataSet("spPurposesOpen"), &dm->spPurposesOpen);
    EXPECT_EQ(dm->FindDataSet("spPurposeOpen"), &dm->spPurposeOpen);
    EXPECT_EQ(dm->FindDataSet("spNoSuchOpen"), nullptr);
    EXPECT_EQ(dm->FindDataSource("dsNoSuchOpen"), nullptr);
    EXPECT_EQ(dm->FindDataSet(""), nullptr);
    // Only datasets are datasets.
    EXPECT_EQ(dm->FindDataSet("Query"), nullptr);
    EXPECT_EQ(dm->FindDataSet("dsRolesOpen"), nullptr);
}

TEST_F(DataModuleCatalogue, DatasetsReadTheirProceduresWithParametersInOrder)
{
    EXPECT_EQ(dm->spOrdersOpen.SelectSQL(),
              "select * from spOrderOpen(:F_IDORDER, :F_DATE_UP, :F_DATE_TO, :F_IDOSTATE, :F_NUM, :F_IDCUST, :F_REG, "
              ":F_IDMARK, :F_IDMODEL, :F_DEL)");
    EXPECT_EQ(dm->tConfig.SelectSQL(), "select * from spConfigOpen");
    EXPECT_EQ(dm->spAYearOpen.SelectSQL(), "select * from spYearOpen");
    EXPECT_EQ(dm->spModelOpen.SelectSQL(), "select * from spModOpen");
    EXPECT_EQ(dm->spPayTypeOpen.SelectSQL(), "select * from spPTypeOpen");
    EXPECT_EQ(dm->spPurposesOpen.SelectSQL(), "select * from spPurposeOpen(:IDPAYTYPE)");
    EXPECT_EQ(dm->spRolesActionsEdit.SelectSQL(), "select * from spRolesActionsOpen(:ID_ROLE)");
    EXPECT_EQ(dm->spRolesActionsOpen2.SelectSQL(), "select * from spRolesActionsOpen(:ID_ROLE)");
    EXPECT_EQ(dm->spStoreMatOpen.SelectSQL(), "select * from spStoreMatOpen(:IDSTORE)");
    EXPECT_EQ(dm->spCustOpen2.SelectSQL(), "select * from spCustOpen2(:ID_CUST)");
    EXPECT_EQ(dm->spSalaryOpen.SelectSQL(), "select * from spSalaryOpen(:F_DATE_UP, :F_DATE_TO, :F_EMPLNANE)");
    EXPECT_EQ(dm->spObjectOpen.SelectSQL(), "select * from spObjectOpen(:IDPAYTYPE, :IDCUST, :IDOBJ)");
    EXPECT_EQ(dm->spRolesOpen.SelectSQL(), "select * from spRolesOpen");

    QStringList names;
    for (int i = 0; i < dm->spOrdersOpen.Params().Count(); ++i)
        names << dm->spOrdersOpen.Params()[i].Name();
    EXPECT_EQ(names, QStringList({"F_IDORDER", "F_DATE_UP", "F_DATE_TO", "F_IDOSTATE", "F_NUM", "F_IDCUST", "F_REG",
                                  "F_IDMARK", "F_IDMODEL", "F_DEL"}));
}

TEST_F(DataModuleCatalogue, EveryDatasetOpensOnTheDeployedSchemaWithNullParameters)
{
    for (TFIBDataSet *ds : dm->DataSets()) {
        SCOPED_TRACE(ds->objectName().toStdString());
        try {
            SetAllParamsNull(*ds);
            ds->Open();
        } catch (const EDatabaseError &e) {
            ADD_FAILURE() << e.Message().toStdString();
            continue;
        }
        EXPECT_TRUE(ds->Active());
        EXPECT_GT(ds->FieldCount(), 0);
        ds->Close();
    }
    // Some read seed rows at once.
    dm->spRolesOpen.Open();
    EXPECT_EQ(dm->spRolesOpen.FieldByName("ROLENAME")->AsString(), "Администратор");
    dm->spAYearOpen.Open();
    EXPECT_NE(dm->spAYearOpen.FindField("AYEARNAME"), nullptr);
}

TEST_F(DataModuleCatalogue, UpdateStatementsAreValidAgainstTheSchema)
{
    dm->pFIBTransaction1.StartTransaction();
    for (TFIBDataSet *ds : dm->DataSets()) {
        SCOPED_TRACE(ds->objectName().toStdString());
        if (kReports.contains(ds->objectName())) {
            EXPECT_TRUE(ds->UpdateSQL.isEmpty());
            EXPECT_EQ(ds->RefreshSQL, ds->SelectSQL());
            continue;
        }
        EXPECT_TRUE(ds->RefreshSQL.isEmpty());
        ASSERT_FALSE(ds->UpdateSQL.trimmed().isEmpty());
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.SetSQLText(ds->UpdateSQL);
        try {
            q.Prepare();
        } catch (const EDatabaseError &e) {
            ADD_FAILURE() << e.Message().toStdString();
        }
    }
    EXPECT_EQ(dm->tConfig.UpdateSQL, "update CONFIG set PVALUE = :PVALUE where ID = :ID");
    EXPECT_TRUE(dm->spStoreMatOpen.UpdateSQL.startsWith("execute procedure spStoreMatEdit("));
    EXPECT_TRUE(dm->spRequisitsOpen.UpdateSQL.contains("PAYSTATUS"));
    EXPECT_TRUE(dm->spNalOpen.UpdateSQL.contains("RIGHTS"));
    EXPECT_TRUE(dm->spSalaryMain.UpdateSQL.contains("ORDMAT"));
    EXPECT_TRUE(dm->spOStateMain.UpdateSQL.contains("ORDMAT"));
}

TEST_F(DataModuleCatalogue, PostingThroughAPlaceholderStatementChangesNothing)
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

    int posted = 0;
    for (TFIBDataSet *ds : dm->DataSets()) {
        const QString name = ds->objectName();
        if (kReports.contains(name) || kRealUpdates.contains(name))
            continue;
        SCOPED_TRACE(name.toStdString());
        SetAllParamsNull(*ds);
        ds->Open();
        if (ds->IsEmpty()) {
            ds->Close();
            continue;
        }
        // A row whose ID is also an ID of the named tables.
        if (TFIBField *id = ds->FindField("ID"); id && !ds->Locate("ID", 1))
            ds->First();
        try {
            ds->Edit();
            if (TFIBField *f = ds->Fields(ds->FieldCount() - 1); f->DataType() == ftString)
                f->SetValue("изменено в карточке");
            ds->Post();
            ++posted;
        } catch (const EDatabaseError &e) {
            ADD_FAILURE() << e.Message().toStdString();
        }
        EXPECT_EQ(ds->State(), dsBrowse);
        ds->Close();
    }
    EXPECT_GE(posted, 15);
    EXPECT_EQ(Rows(snapshot), before);

    // spOStateMain posts against ORDMAT row 1 without repricing it.
    dm->spOStateMain.Open();
    ASSERT_TRUE(dm->spOStateMain.Locate("ID", 1));
    dm->spOStateMain.Edit();
    dm->spOStateMain.Post();
    EXPECT_EQ(Scalar("select COST from ORDMAT where ID = 1").toDouble(), 100.0);
}

TEST_F(DataModuleCatalogue, ConfigRowsPostTheirValue)
{
    dm->tConfig.Open();
    ASSERT_TRUE(dm->tConfig.Locate("PNAME", "ORDERSNUM"));
    const int id = dm->tConfig.FieldByName("ID")->AsInteger();
    dm->tConfig.Edit();
    dm->tConfig.FieldByName("PVALUE")->SetValue("Б-");
    dm->tConfig.Post();
    EXPECT_EQ(Scalar(QString("select PVALUE from CONFIG where ID = %1").arg(id)).toString(), "Б-");
    EXPECT_EQ(Scalar("select count(*) from CONFIG").toInt(), 5);
}

TEST_F(DataModuleCatalogue, RolesActionsPostWritesRoleActionAndRight)
{
    TpFIBDataSet &ds = dm->spRolesActionsOpen;
    ds.ParamByName("ID_ROLE").SetValue(2);
    ds.Open();
    ASSERT_FALSE(ds.IsEmpty());
    const int id = ds.FieldByName("ID")->AsInteger();
    const int action = ds.FieldByName("ID_ACTION_LKP_ACTIONS_F_ACTNAME")->AsInteger();
    ASSERT_GT(id, 0);
    ds.Edit();
    ds.FieldByName("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME")->SetValue(1);
    ds.Post();
    EXPECT_EQ(Rows(QString("select ID_ROLE, ID_ACTION, ID_RIGHTS from ROLES_ACTIONS where ID = %1").arg(id)),
              QStringList{QString("2|%1|1").arg(action)});

    // The administrator's rights are refused by the table's trigger; the typed value stays in the row.
    ds.Close();
    ds.ParamByName("ID_ROLE").SetValue(1);
    ds.Open();
    ds.Edit();
    ds.FieldByName("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME")->SetValue(1);
    try {
        ds.Post();
        FAIL() << "posted";
    } catch (const EFIBError &e) {
        EXPECT_TRUE(e.Message().contains("Права администратора менять запрещено")) << e.Message().toStdString();
    }
    EXPECT_EQ(ds.State(), dsEdit);
    EXPECT_EQ(ds.FieldByName("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME")->AsInteger(), 1);
    ds.Cancel();
    EXPECT_EQ(Scalar("select count(*) from ROLES_ACTIONS where ID_ROLE = 1 and ID_RIGHTS <> 4").toInt(), 0);
}
