#include "cli/output/Columns.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <vector>

namespace tessgen::cli {

namespace {

// The columns that a character takes, by its first byte. Wide ones begin at U+2E80; some narrow ones count as wide.
std::size_t columnsOf(unsigned char first) {
    constexpr unsigned char firstWide = 0xE2;
    return first >= firstWide ? 2 : 1;
}

bool beginsCharacter(char unit) {
    return (static_cast<unsigned char>(unit) & 0xC0U) != 0x80U;
}

} // namespace

std::size_t outputColumns() {
    static const std::size_t columns = [] {
        constexpr std::size_t fewest = 60;
        winsize terminal{};
        const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &terminal) == 0 && terminal.ws_col > 0;
        return isKnown ? std::max<std::size_t>(terminal.ws_col, fewest) : unlimitedColumns;
    }();
    return columns;
}

std::string shortened(std::string text, std::size_t columns) {
    if (text.size() <= columns) { // no character takes more columns than bytes
        return text;
    }
    std::vector<std::size_t> ends = {0}; // for each byte, the columns up to it
    for (const char unit : text) {
        ends.push_back(ends.back() + (beginsCharacter(unit) ? columnsOf(static_cast<unsigned char>(unit)) : 0));
    }
    const auto all = ends.back();
    if (all <= columns) {
        return text;
    }
    const auto room = columns - std::min<std::size_t>(columns, 1);
    std::size_t head = 0;
    while (ends[head + 1] <= room / 3) {
        ++head;
    }
    while (!beginsCharacter(text[head])) {
        --head;
    }
    std::size_t tail = text.size();
    while (all - ends[tail - 1] <= room - ends[head]) {
        --tail;
    }
    while (tail < text.size() && !beginsCharacter(text[tail])) {
        ++tail;
    }
    return text.substr(0, head) + "…" + text.substr(tail);
}

std::vector<std::string> shortened(std::vector<std::string> texts, std::size_t columns) {
    if (columns == unlimitedColumns) {
        return texts;
    }
    std::map<std::string, const std::string*> whole; // by what it becomes
    std::vector<std::string> results;
    for (const auto& text : texts) {
        results.push_back(shortened(text, columns));
        if (*whole.try_emplace(results.back(), &text).first->second != text) {
            return texts;
        }
    }
    return results;
}

} // namespace tessgen::cli
