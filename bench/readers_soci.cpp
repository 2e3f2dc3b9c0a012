#include <soci/sqlite3/soci-sqlite3.h>

#include "bench/readers.h"
#include "bench/soci_rows.h"

namespace basalt::bench {

struct SociReader::Connection {
    explicit Connection(const std::string& file) : session(*soci::factory_sqlite3(), "db=" + file) {}
    soci::session session;
};

SociReader::SociReader(const std::string& file) : connection_(std::make_unique<Connection>(file)) {}

SociReader::~SociReader() = default;

std::size_t SociReader::readAll(const std::string& statement) {
    return readRows(connection_->session, statement);
}

}  // namespace basalt::bench
