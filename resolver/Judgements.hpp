// What the resolver judges of a candidate, with the reason. As a truth value: whether it is preferred for it.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <memory>

namespace tessgen::kelwhich {

struct SourceFileJudgement {
    explicit operator bool() const noexcept { return isBuiltinOrSourceFile; }

    bool isBuiltinOrSourceFile;
};

struct DefinitionJudgement {
    explicit operator bool() const noexcept { return definition == Explanation::Definition::direct; }

    Explanation::Definition definition;
};

struct KELWhichResolver::OwnershipJudgement {
    explicit operator bool() const noexcept { return ownership == Explanation::Ownership::user; }

    Explanation::Ownership ownership;
    std::size_t folderSize; // length of the host's folder at the start of the candidate's path
};

struct KELWhichResolver::SupportJudgement {
    explicit operator bool() const noexcept {
        return support == Explanation::Support::KELBuiltin || support == Explanation::Support::recorded;
    }

    Explanation::Support support;
    std::shared_ptr<const SupportEntry> record; // the one that decided, or null
};

} // namespace tessgen::kelwhich
