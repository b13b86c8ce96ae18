// The resolver that answers the names of one request.
//
// Threads: those of KELWhichResolver over the collaborators of the request.
// Lifetime: the installation stays open, and answers of the disk are remembered, as long as this lives.
#pragma once

#include "cli/CommandLine.hpp"
#include "standalone/Session.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

namespace tessgen::cli {

class Resolver {
public:
    // Opens what the request speaks of.
    // Errors: those of `findManifest` and of Session.
    explicit Resolver(const Request& request);
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;
    ~Resolver() = default;

    const kelwhich::KELWhichResolver& operator*() const { return resolver_; }
    const kelwhich::KELWhichResolver* operator->() const { return &resolver_; }

private:
    standalone::Session session_;
    kelwhich::KELWhichResolver resolver_;
};

} // namespace tessgen::cli
