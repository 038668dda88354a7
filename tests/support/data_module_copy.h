#pragma once
// A per-user data folder of a test's own holding a copy of the deployed database, so that a data module
// started there attaches it as at a normal start; and statements run in that module's transaction.

#include "data_dm.h"

#include <QStringList>
#include <QVariant>

// Points XDG_DATA_HOME at `dataHome` and puts the copy at its "Kelvarion/db/database.fdb".
// Call it before installing the test's own dialogs: the first call deploys with dialogs of its own.
void PrepareDataHome(const QString &dataHome);
// Undoes what PrepareDataHome set in the environment.
void ForgetDataHome();

void ExecIn(TDataDM &dm, const QString &sql);
// First column of the first row, or an invalid value when there is none.
QVariant ScalarIn(TDataDM &dm, const QString &sql);
// All rows of a select, each as its columns joined by '|'.
QStringList RowsIn(TDataDM &dm, const QString &sql);
