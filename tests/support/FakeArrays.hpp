// Array services of a host that records each use and counts references.
#pragma once

#include "matrix/array.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// One array: what it holds, in words of this test.
struct qxArray {
    std::string kind;
    std::optional<std::u16string> text;
    std::vector<std::u16string> texts;
    std::vector<std::string> members;
    std::size_t rows = 1;
    int references = 1;
};

namespace tessgen::test {

struct FakeArrays {
    std::vector<std::string> used; // the services, in order
    int alive = 0;                 // arrays that were made and not destroyed

    static FakeArrays& instance();
    static FakeArrays& reset();
};

} // namespace tessgen::test
