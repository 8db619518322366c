// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace Support {

/// Tells whether a lock is held, by taking it for reading in a thread of its own.
class LockProbe
{
public:
    /// @p read takes the lock and lets it go.
    explicit LockProbe(std::function<void()> read)
        : m_read(std::move(read))
    {
    }

    /// Waits for the readers that were locked out; what they read must live until then.
    ~LockProbe()
    {
        for (std::thread& reader : m_readers)
            reader.join();
    }

    LockProbe(const LockProbe&) = delete;
    LockProbe& operator=(const LockProbe&) = delete;

    /// Whether the lock could be taken before the time was over.
    bool canRead(std::chrono::milliseconds patience)
    {
        std::packaged_task<void()> task(m_read);
        const std::future<void> done = task.get_future();
        m_readers.emplace_back(std::move(task));
        return done.wait_for(patience) == std::future_status::ready;
    }

private:
    std::function<void()> m_read;
    std::vector<std::thread> m_readers;
};

/// Enough to tell that a lock is held, and more than enough to tell that it is free.
constexpr std::chrono::milliseconds WhenLocked(100);
constexpr std::chrono::milliseconds WhenFree(10000);

} // namespace Support
