// A host for tests of the library alone: answers what the test says, and records what it was asked.
#pragma once

#include "cmddistributor/RunOptions.hpp"
#include "foundation/msg_svc/exchange/IDType.hpp"
#include "foundation/orvakdata/Array.hpp"
#include "tests/support/World.hpp"

#include <functional>
#include <string>
#include <vector>

namespace tessgen::test {

struct RecordingHost {
    struct Evaluation {
        std::string function;
        std::vector<foundation::orvakdata::Array> arguments;
        unsigned long outputCount;
        cmddistributor::RunOptions options;
        bool flag;
        foundation::msg_svc::exchange::IDType requestId;
    };

    std::u16string root = u"/h";
    Texts kelPath;
    std::vector<Texts> sourceCodeDirs;
    World metadata; // its records, and what was asked of them
    std::function<std::vector<foundation::orvakdata::Array>(const Evaluation&)> answer;

    std::vector<Evaluation> evaluations;
    int sourceCodeDirsAsked = 0;
    int kelPathAsked = 0;

    // The host that the services speak of, as new for each test that begins with `reset`.
    static RecordingHost& instance();
    static RecordingHost& reset();
};

} // namespace tessgen::test
