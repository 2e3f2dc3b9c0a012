// Listeners of one object, told in the order in which they came. A listener may leave, or another one come, while they
// are being told; who has left is not told any more, who comes is told from the next time on.
//
//   ListenerList<DataSourceListener> listeners;
//   listeners.add(grid);
//   listeners.notify([](DataSourceListener& l) { l.dataChanged(); });
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace basalt {

template <typename T>
class ListenerList {
public:
    [[nodiscard]] bool empty() const { return items_.empty(); }

    // A listener is told once, however often it is added.
    void add(T& listener) {
        if (std::find(items_.begin(), items_.end(), &listener) == items_.end()) items_.push_back(&listener);
    }

    void remove(T& listener) {
        const auto found = std::find(items_.begin(), items_.end(), &listener);
        if (found == items_.end()) return;
        if (depth_ == 0) {
            items_.erase(found);
        } else {
            *found = nullptr;
        }
    }

    template <typename Tell>
    void notify(Tell tell) {
        if (items_.empty()) return;
        const Telling telling(*this);
        const std::size_t count = items_.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (items_[i] != nullptr) tell(*items_[i]);
        }
    }

private:
    // Sweeps up the gaps of those who left when nobody walks over the list any more, also after an exception.
    class Telling {
    public:
        explicit Telling(ListenerList& list) : list_(list) { ++list_.depth_; }
        ~Telling() {
            if (--list_.depth_ == 0) std::erase(list_.items_, nullptr);
        }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

    private:
        ListenerList& list_;
    };

    std::vector<T*> items_;
    int depth_ = 0;
};

}  // namespace basalt
