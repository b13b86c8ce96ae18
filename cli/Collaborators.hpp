// What a resolver is made of.
#pragma once

#include "tessgen/kelwhich/FileSystem.hpp"
#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResolver.hpp"

#include <memory>

namespace tessgen::cli {

struct Collaborators {
    std::unique_ptr<kelwhich::WhichResolver> which;
    std::unique_ptr<kelwhich::MetadataResolver> metadata;
    std::unique_ptr<kelwhich::FileSystem> fileSystem;
};

} // namespace tessgen::cli
