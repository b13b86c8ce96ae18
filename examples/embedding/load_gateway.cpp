// A host process: loads the library at run time, finds the gateway by its symbol, and calls it as the host would for
// host-language code.
//
//     load_gateway LIBRARY INSTALLATION NAME...
#include <standalone/HostArrays.hpp>
#include <standalone/Session.hpp>

#include <dlfcn.h>

#include <array>
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

// The slots of a call. What is in them is given up, also when the gateway throws after the first was written.
struct Outputs {
    Outputs() = default;
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;
    ~Outputs() {
        for (auto* slot : slots) {
            if (slot != nullptr) {
                matrix::ArrayDeleter()(slot);
            }
        }
    }

    std::array<qxArray*, 2> slots = {};
};

void answer(Gateway* invoke, const char* name) {
    const auto input = standalone::makeText(std::filesystem::path(name).u16string());
    std::array<qxArray*, 1> inputs = {input.get()};
    Outputs outputs;
    invoke(2, outputs.slots.data(), 1, inputs.data());
    const auto texts = standalone::textsOf(outputs.slots[0]);
    const auto members = standalone::membersOf(outputs.slots[1]);
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
