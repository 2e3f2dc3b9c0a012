// A database file for one alone, who is about to put another one into its place.
//
//   ExclusiveHold hold("/shop/basalt.db");     // DatabaseError (Busy) when somebody has it open
//   if (hold.settled()) ...                    // the file is the whole database; nothing beside it counts
//   ...                                        // nobody opens it until `hold` goes away
//
// While nothing else is done with the file it stays the database that it was.
#pragma once

#include <memory>
#include <string>

namespace basalt::embedded {

class SqliteDatabase;

class ExclusiveHold {
public:
    // An absolute path of a file that is there. What was committed is brought from the log into the file, and the log
    // removed, where the file is sound enough for it. Throws DatabaseError: Busy when others have the file open,
    // Connection when it cannot be written.
    explicit ExclusiveHold(const std::string& path);
    ~ExclusiveHold();
    ExclusiveHold(const ExclusiveHold&) = delete;
    ExclusiveHold& operator=(const ExclusiveHold&) = delete;

    // False for a file that is damaged or no database: what lies beside it may hold a part of its contents.
    [[nodiscard]] bool settled() const { return settled_; }

private:
    std::unique_ptr<SqliteDatabase> database_;
    bool settled_ = false;
};

}  // namespace basalt::embedded
