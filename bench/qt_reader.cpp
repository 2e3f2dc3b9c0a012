#include "bench/qt_reader.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <stdexcept>
#include <vector>

namespace basalt::bench {

struct QtReader::Connection {
    int argumentCount = 1;
    char name[6] = "bench";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QSqlDatabase database;
};

QtReader::QtReader(const std::string& driver, const std::string& database, const std::string& options)
    : connection_(std::make_unique<Connection>()) {
    connection_->database = QSqlDatabase::addDatabase(QString::fromStdString(driver));
    connection_->database.setDatabaseName(QString::fromStdString(database));
    connection_->database.setConnectOptions(QString::fromStdString(options));
    if (!connection_->database.open()) throw std::runtime_error(connection_->database.lastError().text().toStdString());
}

QtReader::~QtReader() {
    const QString name = connection_->database.connectionName();
    connection_->database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

std::size_t QtReader::readAll(const std::string& statement) {
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
