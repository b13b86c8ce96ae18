// Tells the requests to one host apart.
#pragma once

#include <cstdint>

namespace foundation::msg_svc::exchange {

using IDType = std::uint64_t;

} // namespace foundation::msg_svc::exchange
