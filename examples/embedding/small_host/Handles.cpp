#include "Handles.hpp"

#include <algorithm>
#include <array>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string_view>

using Type = qxArray::Type;

void matrix::destroyArray(qxArray* array) noexcept {
    delete array;
}

void matrix::ArrayDeleter::operator()(qxArray* array) const noexcept {
    if (--array->references == 0) {
        destroyArray(array);
    }
}

matrix::ArrayPtr makeText(const std::u16string& text) {
    matrix::ArrayPtr array(new qxArray(Type::Characters, 1, text.size()));
    array->texts = {text};
    return array;
}

matrix::ArrayPtr matrix::create_cell(const std::vector<std::u16string>& texts) {
    ArrayPtr cell(new qxArray(Type::Cell, 1, texts.size()));
    cell->texts = texts;
    return cell;
}

// The cell array is the caller's alone, so it becomes the string array.
matrix::ArrayPtr String::mustBeString(matrix::ArrayPtr cell) {
    if (cell->type != Type::Cell) {
        throw std::invalid_argument("the array is not a cell array");
    }
    cell->type = Type::String;
    return cell;
}

qxArray* matrix::to_orvak(const ArrayPtr& array) {
    ++array->references;
    return array.get();
}

const char16_t* matrix::detail::noninlined::qx_array_api::qxArrayToString_UTF16(const qxArray* array) {
    const bool isText = array->type == Type::Characters || (array->type == Type::String && array->texts.size() == 1);
    return isText ? array->texts.front().c_str() : nullptr;
}

zelt::internal::Interned zelt::internal::makeInterned(std::string_view name) {
    static std::mutex lock;
    static std::set<InternedText> names; // its elements stay where they are
    const std::lock_guard guard(lock);
    return &*names.insert(InternedText{std::string(name)}).first;
}

qxArray* omCreateZELTEnumerationMatrix(std::size_t rows, std::size_t columns, zelt::internal::Interned className) {
    if (className->text != "tessapp.internal.screener.WhichResultType") {
        throw std::invalid_argument("there is no enumeration class " + className->text);
    }
    matrix::ArrayPtr array(new qxArray(Type::Enumeration, rows, columns));
    array->members.resize(rows * columns);
    return array.release();
}

void omSetEnumerationElement(qxArray* array, std::size_t index, zelt::internal::Interned member) {
    static constexpr std::array<std::string_view, 4> known = {"KELPath", "KELBuiltin", "ORVAKPath", "ORVAKBuiltin"};
    if (member != nullptr && std::find(known.begin(), known.end(), member->text) == known.end()) {
        throw std::invalid_argument("the enumeration has no member " + member->text);
    }
    array->members.at(index) = member;
}
