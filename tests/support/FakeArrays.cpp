#include "tests/support/FakeArrays.hpp"

#include "tests/support/Faults.hpp"
#include "zelt/enumeration.hpp"

#include <map>
#include <memory>
#include <utility>

class zelt::internal::InternedText {
public:
    std::string text;
};

namespace tessgen::test {

namespace {

void use(const std::string& service) {
    Faults::ask();
    FakeArrays::instance().used.push_back(service);
}

qxArray* make(qxArray array) {
    auto made = std::make_unique<qxArray>(std::move(array));
    ++FakeArrays::instance().alive;
    return made.release();
}

} // namespace

FakeArrays& FakeArrays::instance() {
    static FakeArrays arrays;
    return arrays;
}

FakeArrays& FakeArrays::reset() {
    return instance() = FakeArrays();
}

} // namespace tessgen::test

using tessgen::test::make;
using tessgen::test::use;

const char16_t* matrix::detail::noninlined::qx_array_api::qxArrayToString_UTF16(const qxArray* array) {
    use("text");
    return array->text ? array->text->c_str() : nullptr;
}

matrix::ArrayPtr matrix::create_cell(const std::vector<std::u16string>& texts) {
    use("cell");
    return ArrayPtr(make({.kind = "cell", .text = {}, .texts = texts, .members = {}}));
}

matrix::ArrayPtr String::mustBeString(matrix::ArrayPtr cell) {
    use("string of " + cell->kind);
    return matrix::ArrayPtr(make({.kind = "string", .text = {}, .texts = cell->texts, .members = {}}));
}

qxArray* matrix::to_orvak(const ArrayPtr& array) {
    use("to host");
    ++array->references;
    return array.get();
}

void matrix::destroyArray(qxArray* array) noexcept {
    --tessgen::test::FakeArrays::instance().alive;
    delete array;
}

void matrix::ArrayDeleter::operator()(qxArray* array) const noexcept {
    if (--array->references == 0) {
        destroyArray(array);
    }
}

zelt::internal::Interned zelt::internal::makeInterned(std::string_view name) {
    use("intern " + std::string(name));
    static std::map<std::string, InternedText> names;
    return &names.insert({std::string(name), {std::string(name)}}).first->second;
}

qxArray* omCreateZELTEnumerationMatrix(std::size_t rows, std::size_t columns, zelt::internal::Interned className) {
    use("enumeration");
    return make({.kind = className->text, .text = {}, .texts = {}, .members = {columns, "unset"}, .rows = rows});
}

void omSetEnumerationElement(qxArray* array, std::size_t index, zelt::internal::Interned member) {
    use("set " + std::to_string(index));
    array->members.at(index) = member == nullptr ? "null" : member->text;
}
