// Opening the database that the desktop works with, and saying in Persian what is wrong with one that cannot be opened.
//
//   OpenedDatabase opened = openForDesktop(url, {.createMissing = true});
#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "ado/session.h"
#include "host/engines/database_url.h"
#include "host/engines/open_database.h"

namespace basalt::host {

struct OpenedDatabase {
    std::unique_ptr<Session> session;
    std::string notice;  // Persian; what was done to the database on opening it, empty when nothing was
};

struct StartOptions {
    bool createMissing = false;  // a missing file becomes a database with demo data
    OpenOptions open = {};
};

// The file is a database, but none of this program.
class ForeignDatabase : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The database holds tables of this program, but tells no version: its deployment was not brought to its end.
class UnfinishedDatabase : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Brings a database of an older program up to date, and frees what killed clients of this machine held in it.
// MissingDatabase, ForeignDatabase, UnfinishedDatabase, FileExists or DatabaseRemains when it is to be made, or
// DatabaseError when it cannot be opened or written, is damaged, in use, or was made by a newer program.
[[nodiscard]] OpenedDatabase openForDesktop(const DatabaseUrl& url, StartOptions options = {});

struct DatabaseProblem {
    std::string title;
    std::string advice;
};

// For people: what is wrong, and what can be done about it. For any error of openForDesktop and createDatabase.
[[nodiscard]] DatabaseProblem describeProblem(const std::exception& error);

}  // namespace basalt::host
