// Where a thread finds its engine.
#pragma once

#include "rux/RUX.hpp"

#include <memory>

namespace rux {

class Factory {
public:
    // The engine of the calling thread; never null.
    // Errors: throws when this thread has none.
    static std::shared_ptr<RUX> getCurrentLocalRUX();
};

} // namespace rux
