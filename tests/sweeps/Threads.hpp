// Threads that meet.
#pragma once

#include <barrier>
#include <cstddef>
#include <iostream>
#include <thread>
#include <utility>
#include <vector>

namespace tessgen::test {

inline constexpr int threadCount = 6;
inline std::size_t meetings = 0;

// Prints how often threads have met since the last call.
inline void tellMeetings() {
    std::cout << "threads: " << std::exchange(meetings, 0) << " meetings\n";
}

// Runs `work(number of the thread)` in several threads that begin at the same moment.
template <typename Work>
void together(Work work) {
    ++meetings;
    std::barrier start(threadCount);
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            start.arrive_and_wait();
            work(number);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace tessgen::test
