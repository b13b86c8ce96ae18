// A result that arrives later: Boost's future, so that `get()` waits and hands on the very exception that was stored.
#pragma once

#include <boost/thread/future.hpp>

namespace foundation::concurrent {

template <typename T>
using future = boost::BOOST_THREAD_FUTURE<T>;

} // namespace foundation::concurrent
