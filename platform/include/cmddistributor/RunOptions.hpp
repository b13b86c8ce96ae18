// How the host is to run an evaluation. The library passes a fresh record and changes nothing in it.
#pragma once

namespace cmddistributor {

struct RunOptions {
    // The evaluation may be stopped by the user of the host.
    bool interruptible = true;
};

} // namespace cmddistributor
