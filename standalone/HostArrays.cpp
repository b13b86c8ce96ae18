#include "standalone/HostArrays.hpp"

#include "zelt/enumeration.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <utility>
#include <variant>

// A name as the class system holds it.
class zelt::internal::InternedText {
public:
    explicit InternedText(std::string_view name) : text(name) {}

    friend bool operator<(const InternedText& a, const InternedText& b) { return a.text < b.text; }

    std::string text;
};

namespace tessgen::standalone {

namespace {

using zelt::internal::Interned;

struct CellArray {
    std::vector<std::u16string> texts; // each cell holds a character array
};
struct StringArray {
    std::vector<std::u16string> texts;
};
struct EnumerationArray {
    Interned className;
    std::vector<Interned> members;
};
using CharArray = std::u16string;

std::atomic<std::size_t> alive = 0; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

constexpr std::string_view kindClass = "tessapp.internal.screener.WhichResultType";
constexpr std::array<std::string_view, 4> kindMembers = {"KELPath", "KELBuiltin", "ORVAKPath", "ORVAKBuiltin"};

} // namespace

} // namespace tessgen::standalone

struct qxArray {
    using Content = std::variant<tessgen::standalone::CharArray, tessgen::standalone::CellArray,
                                 tessgen::standalone::StringArray, tessgen::standalone::EnumerationArray>;

    qxArray(tessgen::standalone::Extent itsExtent, Content itsContent)
        : extent(itsExtent), content(std::move(itsContent)) {
        ++tessgen::standalone::alive;
    }
    qxArray(const qxArray&) = delete;
    qxArray& operator=(const qxArray&) = delete;
    ~qxArray() { --tessgen::standalone::alive; }

    std::atomic<unsigned> references = 1;
    tessgen::standalone::Extent extent;
    Content content;
};

namespace tessgen::standalone {

namespace {

matrix::ArrayPtr make(Extent extent, qxArray::Content content) {
    return matrix::ArrayPtr(new qxArray(extent, std::move(content)));
}

template <typename Content, typename Array>
auto& contentOf(Array* array, const char* expected) {
    auto* content = array == nullptr ? nullptr : std::get_if<Content>(&array->content);
    if (content == nullptr) {
        throw std::invalid_argument(std::string("the array is not ") + expected);
    }
    return *content;
}

} // namespace

matrix::ArrayPtr makeText(std::u16string_view text) {
    return make({1, text.size()}, std::u16string(text));
}

std::vector<std::u16string> textsOf(const qxArray* array) {
    return contentOf<StringArray>(array, "a string array").texts;
}

std::vector<std::string> membersOf(const qxArray* array) {
    std::vector<std::string> names;
    for (const auto* member : contentOf<EnumerationArray>(array, "an enumeration array").members) {
        names.push_back(member == nullptr ? std::string() : member->text);
    }
    return names;
}

std::string classOf(const qxArray* array) {
    return contentOf<EnumerationArray>(array, "an enumeration array").className->text;
}

Extent extentOf(const qxArray* array) {
    return array->extent;
}

std::size_t arraysAlive() noexcept {
    return alive;
}

} // namespace tessgen::standalone

namespace matrix {

using tessgen::standalone::CellArray;
using tessgen::standalone::StringArray;

void destroyArray(qxArray* array) noexcept {
    delete array;
}

void ArrayDeleter::operator()(qxArray* array) const noexcept {
    if (--array->references == 0) {
        destroyArray(array);
    }
}

ArrayPtr create_cell(const std::vector<std::u16string>& texts) {
    return tessgen::standalone::make({1, texts.size()}, CellArray{texts});
}

qxArray* to_orvak(const ArrayPtr& array) {
    ++array->references;
    return array.get();
}

const char16_t* detail::noninlined::qx_array_api::qxArrayToString_UTF16(const qxArray* array) {
    if (const auto* characters = std::get_if<std::u16string>(&array->content)) {
        return characters->c_str();
    }
    const auto* strings = std::get_if<StringArray>(&array->content);
    return strings != nullptr && strings->texts.size() == 1 ? strings->texts.front().c_str() : nullptr;
}

} // namespace matrix

matrix::ArrayPtr String::mustBeString(matrix::ArrayPtr cell) {
    using namespace tessgen::standalone; // NOLINT(google-build-using-namespace)
    return make(cell->extent, StringArray{contentOf<CellArray>(cell.get(), "a cell array").texts});
}

zelt::internal::Interned zelt::internal::makeInterned(std::string_view name) {
    static std::mutex lock;
    static std::set<InternedText> names; // whose elements never move
    const std::lock_guard guard(lock);
    return &*names.emplace(name).first;
}

qxArray* omCreateZELTEnumerationMatrix(std::size_t rows, std::size_t columns, zelt::internal::Interned className) {
    using namespace tessgen::standalone; // NOLINT(google-build-using-namespace)
    if (className == nullptr || className->text != kindClass) {
        throw std::invalid_argument("the stand-alone host has one enumeration class, " + std::string(kindClass));
    }
    return make({rows, columns}, EnumerationArray{className, std::vector<Interned>(rows * columns)}).release();
}

void omSetEnumerationElement(qxArray* array, std::size_t index, zelt::internal::Interned member) {
    using namespace tessgen::standalone; // NOLINT(google-build-using-namespace)
    if (member != nullptr && std::find(kindMembers.begin(), kindMembers.end(), member->text) == kindMembers.end()) {
        throw std::invalid_argument(std::string(kindClass) + " has no member " + member->text);
    }
    contentOf<EnumerationArray>(array, "an enumeration array").members.at(index) = member;
}
