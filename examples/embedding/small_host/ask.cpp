// Asks the library, built with the small host, by its one function and by its gateway.
//
//     ask NAME...
#include "Handles.hpp"

#include <tessgen/kelwhich/invoke.hpp>
#include <tessgen/kelwhich/kelwhich.hpp>

#include <array>
#include <exception>
#include <filesystem>
#include <iostream>

namespace {

std::string narrow(const std::u16string& text) {
    return std::filesystem::path(text).string();
}

void askFunction(const std::u16string& name) {
    std::cout << narrow(name) << " by kelwhich\n";
    for (const auto& candidate : tessgen::kelwhich::kelwhich(name)) {
        std::cout << "  " << static_cast<unsigned>(candidate.type) << ' ' << narrow(candidate.path) << '\n';
    }
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

void askGateway(const std::u16string& name) {
    const auto input = makeText(name);
    std::array<qxArray*, 1> inputs = {input.get()};
    Outputs outputs;
    tessgen::kelwhich::invoke(2, outputs.slots.data(), 1, inputs.data());
    const auto* paths = outputs.slots[0];
    const auto* kinds = outputs.slots[1];
    std::cout << narrow(name) << " by invoke, " << kinds->rows << "-by-" << kinds->columns << '\n';
    for (std::size_t i = 0; i < paths->texts.size(); ++i) {
        std::cout << "  " << kinds->members.at(i)->text << ' ' << narrow(paths->texts[i]) << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        for (int i = 1; i < argc; ++i) {
            const auto name = std::filesystem::path(argv[i]).u16string();
            askFunction(name);
            askGateway(name);
        }
    } catch (const std::exception& error) {
        std::cerr << "ask: " << error.what() << '\n';
        return 2;
    }
    return qxArray::alive == 0 ? 0 : 1;
}
