// The library over the stand-alone host with a snapshot: the time of one name among many.
//
// Usage: bench_session MANIFEST NAMES [OPTIONS of Google Benchmark]; NAMES has a name on each line, in the order in
// which they are asked.
#include "standalone/Session.hpp"
#include "host/Paths.hpp"
#include "standalone/text/Text.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace tessgen;
using Names = std::vector<std::u16string>;

// Composed as in kelwhich::kelwhich.
kelwhich::KELWhichResolver makeResolver() {
    return {std::make_unique<kelwhich::ORVAKWhichResolver>(), std::make_unique<kelwhich::ScreenerMetadataResolver>(),
            std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<kelwhich::RealFileSystem>())};
}

// Resolves all names by resolvers that have not seen them; reports the time of one name.
template <typename Ask>
void askAll(benchmark::State& state, const Names& names, bool areThere, Ask ask) {
    std::size_t candidates = 0;
    std::size_t asked = 0;
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(names.size()))) {
        const auto resolver = makeResolver();
        for (const auto& name : names) {
            candidates += ask(resolver, name);
        }
        asked += names.size();
    }
    if ((candidates > 0) != areThere) {
        state.SkipWithError("the answers are wrong");
    }
    state.counters["candidates"] = static_cast<double>(candidates) / static_cast<double>(asked);
}

std::size_t resolve(const kelwhich::KELWhichResolver& resolver, const std::u16string& name) {
    return resolver.resolve(name).size();
}

std::size_t explain(const kelwhich::KELWhichResolver& resolver, const std::u16string& name) {
    return resolver.explain(name).resolutions.back().candidates.size();
}

Names readNames(const char* file) {
    std::ifstream lines(file);
    Names names;
    for (std::string line; std::getline(lines, line);) {
        names.push_back(standalone::toUTF16(line).value());
    }
    if (names.empty()) {
        throw std::runtime_error(std::string(file) + ": holds no names");
    }
    return names;
}

template <typename Helper>
void path(benchmark::State& state, Helper helper) {
    const std::u16string path = u"/mine/signal/+wave/+inner/@Shape/private/area.vk";
    for (auto unused : state) {
        benchmark::DoNotOptimize(helper(path));
    }
}

void run(char** words) {
    const standalone::Session session(words[1], standalone::View::snapshot);
    const Names names = readNames(words[2]);
    Names absent = names;
    for (auto& name : absent) {
        name += u'x';
    }
    benchmark::RegisterBenchmark("first", [&](auto& state) { askAll(state, names, true, resolve); });
    benchmark::RegisterBenchmark("missing", [&](auto& state) { askAll(state, absent, false, resolve); });
    benchmark::RegisterBenchmark("explained", [&](auto& state) { askAll(state, names, true, explain); });
    benchmark::RegisterBenchmark("packageRootFolder", [](auto& state) {
        path(state, [](const std::u16string& text) { return kelwhich::packageRootFolder(text); });
    });
    benchmark::RegisterBenchmark("getClassFolderInfo", [](auto& state) {
        path(state, [](const std::u16string& text) { return kelwhich::getClassFolderInfo(text); });
    });
    benchmark::RegisterBenchmark("qualifiedNameForPath", [](auto& state) {
        path(state, [](const std::u16string& text) { return kelwhich::qualifiedNameForPath(text); });
    });
    benchmark::RunSpecifiedBenchmarks();
}

} // namespace

int main(int count, char** words) {
    benchmark::Initialize(&count, words);
    if (count != 3) {
        std::cerr << "usage: bench_session MANIFEST NAMES [--benchmark_...]\n";
        return 2;
    }
    try {
        run(words);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
    return 0;
}
