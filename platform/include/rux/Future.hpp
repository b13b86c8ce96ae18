// What an evaluation returns at once: it later holds the outputs, or the error that ended the evaluation.
#pragma once

#include "foundation/concurrent/future.hpp"

namespace rux {

template <typename T>
using Future = foundation::concurrent::future<T>;

} // namespace rux
