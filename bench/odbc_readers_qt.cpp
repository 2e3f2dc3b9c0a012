#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <stdexcept>
#include <vector>

#include "bench/odbc_readers.h"

namespace basalt::bench {

struct QtOdbcReader::Connection {
    int argumentCount = 1;
    char name[6] = "bench";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QSqlDatabase database;
};

QtOdbcReader::QtOdbcReader(const std::string& connectionString) : connection_(std::make_unique<Connection>()) {
    connection_->database = QSqlDatabase::addDatabase(QStringLiteral("QODBC"));
    connection_->database.setDatabaseName(QString::fromStdString(connectionString));
    if (!connection_->database.open()) throw std::runtime_error(connection_->database.lastError().text().toStdString());
}

QtOdbcReader::~QtOdbcReader() {
    const QString name = connection_->database.connectionName();
    connection_->database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

std::size_t QtOdbcReader::readAll(const std::string& statement) {
    QSqlQuery query(connection_->database);
    // The cheapest way that QtSql offers: the driver keeps no copy of its own.
    query.setForwardOnly(true);
    if (!query.exec(QString::fromStdString(statement)))
        throw std::runtime_error(query.lastError().text().toStdString());
    std::vector<std::vector<QVariant>> columns(static_cast<std::size_t>(query.record().count()));
    std::size_t rows = 0;
    while (query.next()) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            columns[i].push_back(query.value(static_cast<int>(i)));
        ++rows;
    }
    return rows;
}

}  // namespace basalt::bench
