#include <soci/odbc/soci-odbc.h>

#include "bench/odbc_readers.h"
#include "bench/soci_rows.h"

namespace basalt::bench {

struct SociOdbcReader::Connection {
    explicit Connection(const std::string& connectionString) : session(*soci::factory_odbc(), connectionString) {}
    soci::session session;
};

SociOdbcReader::SociOdbcReader(const std::string& connectionString)
    : connection_(std::make_unique<Connection>(connectionString)) {}

SociOdbcReader::~SociOdbcReader() = default;

std::size_t SociOdbcReader::readAll(const std::string& statement) {
    return readRows(connection_->session, statement);
}

}  // namespace basalt::bench
