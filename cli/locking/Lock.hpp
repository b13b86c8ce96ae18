// What many names stand for, in an installation or as the file of a lock says.
#pragma once

#include "analysis/Lock.hpp"
#include "cli/locking/LockedPaths.hpp"
#include "standalone/files/AtomicFile.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

struct Lock {
    std::string place;                     // the manifest of the installation, or the lock's file
    std::vector<std::string> lines;        // without the first one and line ends; sorted
    std::vector<std::string> failed;       // names without an answer, as they are spelled in lines; sorted
    std::optional<LockedPaths> paths = {}; // of an installation
    std::vector<std::size_t> numbers = {}; // of the lines in the lock's file, counted from 1
};

extern const analysis::Spelling lockSpelling;
extern const standalone::Replaceable replaceableLock;

// A set of names, as they are spelled in lines; sorted.
using LockedNames = std::vector<std::string>;

// The lock in a file ("-" for standard input), with only the lines of `names` if there are such; nothing when the file
// is not there, is a folder, or is not a lock by its first line.
// Errors: std::runtime_error, one line: the file cannot be read; a line of it is malformed or not in its place.
std::optional<Lock> readLock(const std::string& file, const std::optional<LockedNames>& names);

// The first line of a lock, with its end.
std::string lockFirstLine();

} // namespace tessgen::cli
