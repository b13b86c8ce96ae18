#include "tests/support/FailingAllocator.hpp"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace tessgen::test {

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> made = 0;
std::atomic<std::ptrdiff_t> alive = 0;
std::atomic<std::ptrdiff_t> most = 0;
std::atomic<std::size_t> firstFailing = none;
std::atomic<std::size_t> lastFailing = 0;
std::atomic<bool> hasFailed = false;

} // namespace

void Allocations::arm(std::size_t number, Failure failure) {
    hasFailed = false;
    lastFailing = failure == Failure::once ? test::made + number : none - 1;
    firstFailing = test::made + number;
}

bool Allocations::disarm() {
    firstFailing = none;
    return hasFailed;
}

std::size_t Allocations::made() {
    return test::made;
}

std::ptrdiff_t Allocations::alive() {
    return test::alive;
}

std::ptrdiff_t Allocations::most() {
    return test::most.exchange(test::alive);
}

} // namespace tessgen::test

// The other forms of new and delete call these.
void* operator new(std::size_t size) {
    using namespace tessgen::test;
    const auto number = made++;
    if (number >= firstFailing && number <= lastFailing) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    void* const memory = std::malloc(size == 0 ? 1 : size); // NOLINT: this is what others are made of
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    most = std::max<std::ptrdiff_t>(most, ++alive);
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        --tessgen::test::alive;
        std::free(memory); // NOLINT: as above
    }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
