// What the resolver finds out about candidates on its way, causes included.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <memory>
#include <optional>

namespace tessgen::kelwhich {

struct KELWhichResolver::Gathered {
    WhichResult result;
    Explanation::Source source;
    std::optional<Explanation::DropRule> dropped;
};

struct KELWhichResolver::OwnershipVerdict {
    Explanation::Ownership ownership;
    std::size_t folderSize; // how much of the candidate's path is the host's folder
};

struct KELWhichResolver::SupportVerdict {
    Explanation::Support support;
    std::shared_ptr<const SupportEntry> record; // the one that decided, or null
};

} // namespace tessgen::kelwhich
