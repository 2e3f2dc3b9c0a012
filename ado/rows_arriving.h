// Tells while a request runs that its rows have come to hold so much memory.
//
//   const RowsArriving arriving(8'000'000, [&] { shown = RowSet(); });
//   BatchResult result = session.run(statement);       // the old rows go when the new ones take 8 MB
//
// Whatever engine fills the rows: what is counted is the memory that row sets of this thread take while they grow.
// `reached` is called once, in the middle of the request, so it must not use the session; what it throws fails the
// request.
#pragma once

#include <cstddef>
#include <functional>

namespace basalt {

class RowsArriving {
public:
    RowsArriving(std::size_t bytes, std::function<void()> reached);
    ~RowsArriving();
    RowsArriving(const RowsArriving&) = delete;
    RowsArriving& operator=(const RowsArriving&) = delete;

    // For the row sets: one of their blocks has another size. Without anybody who counts, nothing.
    static void resized(std::size_t before, std::size_t after);

private:
    void count(std::size_t before, std::size_t after);

    RowsArriving* outer_;  // which a request inside of a request does not count for
    std::size_t bytes_;
    std::size_t held_ = 0;
    std::function<void()> reached_;  // empty once called
};

}  // namespace basalt
