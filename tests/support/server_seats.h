#pragma once
// Seats of the program on the private server of the test process: the [Database] section that puts a data
// module in server mode, and databases on the server that the data module deployed there once as the
// plain user, each test getting a copy of its own.

#include "private_server.h"

#include <QString>

// Writes the [Database] section into the per-user ini file of the data home in force (XDG_DATA_HOME).
void WriteServerSettings(const PrivateServer &server, const QString &path,
                         const QString &user = QLatin1String(PrivateServer::SeatUser),
                         const QString &password = QLatin1String(PrivateServer::SeatPassword));
// Removes it again: the next data module is embedded.
void ForgetServerSettings();

// A fresh copy, on the shared private server, of a database that a data module created and deployed there
// as the seat's user; its path on the server. The data home in force is left as it was.
QString NewServerDatabase(const QString &name);
