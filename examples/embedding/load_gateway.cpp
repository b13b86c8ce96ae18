// A host process: loads the library at run time, finds the gateway by its symbol, and calls it as the host would for
// host-language code.
//
//     load_gateway LIBRARY INSTALLATION NAME...
#include <standalone/HostArrays.hpp>
#include <standalone/Session.hpp>

#include <dlfcn.h>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

namespace standalone = tessgen::standalone;

namespace {

// void tessgen::kelwhich::invoke(int, qxArray**, int, qxArray**), as the compiler spells it.
constexpr const char* gatewaySymbol = "_ZN7tessgen8kelwhich6invokeEiPP7qxArrayiS3_";
using Gateway = void(int outputCount, qxArray** outputs, int inputCount, qxArray** inputs);

Gateway* loadGateway(const char* library) {
    void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    void* symbol = handle == nullptr ? nullptr : dlsym(handle, gatewaySymbol);
    if (symbol == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<Gateway*>(symbol);
}

void answer(Gateway* invoke, const char* name) {
    const auto input = standalone::makeText(std::filesystem::path(name).u16string());
    qxArray* inputs[] = {input.get()};
    qxArray* outputs[] = {nullptr, nullptr};
    invoke(2, outputs, 1, inputs);
    const matrix::ArrayPtr paths(outputs[0]);
    const matrix::ArrayPtr kinds(outputs[1]);
    const auto texts = standalone::textsOf(paths.get());
    const auto members = standalone::membersOf(kinds.get());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::cout << members.at(i) << ' ' << std::filesystem::path(texts[i]).string() << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: load_gateway LIBRARY INSTALLATION NAME...\n";
        return 2;
    }
    try {
        const standalone::Session session(argv[2]);
        Gateway* invoke = loadGateway(argv[1]);
        for (int i = 3; i < argc; ++i) {
            answer(invoke, argv[i]);
        }
        return standalone::arraysAlive() == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "load_gateway: " << error.what() << '\n';
        return 2;
    }
}
