#include "standalone/services/DataArrays.hpp"

#include "foundation/orvakdata/CharArray.hpp"
#include "foundation/orvakdata/TypedArray.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::orvakdata {

namespace {

template <typename Elements>
const Elements* elementsOf(const ArrayData* data) noexcept {
    return data == nullptr ? nullptr : std::get_if<Elements>(&data->elements);
}

} // namespace

Array::Array() noexcept = default;

Array::Array(std::shared_ptr<const ArrayData> data) noexcept : data_(std::move(data)) {}

bool Array::isEmpty() const noexcept {
    const auto* const strings = elementsOf<StringElements>(data());
    const auto* const text = elementsOf<std::u16string>(data());
    return strings != nullptr ? strings->empty() : text == nullptr || text->empty();
}

CharArray::CharArray(const Array& array) : Array(array) {
    if (elementsOf<std::u16string>(data()) == nullptr) {
        throw std::invalid_argument("the array is not a character array");
    }
}

std::u16string CharArray::toUTF16() const {
    return *elementsOf<std::u16string>(data());
}

ORVAKStringReferenceExt::operator std::u16string() const {
    return element_->value();
}

using StringIterator = StringArray::Iterator;

bool StringIterator::isEqual(const TypedIterator& other) const noexcept {
    return position_ == other.position_;
}

ORVAKStringReferenceExt StringIterator::getRef() const noexcept {
    return ORVAKStringReferenceExt(*position_);
}

void StringIterator::increment() noexcept {
    ++position_;
}

StringArray::TypedArray(const Array& array) : Array(array) {
    if (elementsOf<StringElements>(data()) == nullptr) {
        throw std::invalid_argument("the array is not a string array");
    }
}

StringIterator StringArray::begin() const noexcept {
    return Iterator(elementsOf<StringElements>(data())->data());
}

StringIterator StringArray::end() const noexcept {
    const auto& elements = *elementsOf<StringElements>(data());
    return Iterator(std::next(elements.data(), static_cast<std::ptrdiff_t>(elements.size())));
}

StringArray ArrayFactory::createStringArray(const ArrayDimensions& dimensions, StringElements elements) {
    const auto count = std::accumulate(dimensions.begin(), dimensions.end(), std::size_t{1}, std::multiplies<>());
    if (count != elements.size()) {
        throw std::invalid_argument("the dimensions of the string array do not fit its number of elements");
    }
    return StringArray(Array(std::make_shared<ArrayData>(std::move(elements))));
}

} // namespace foundation::orvakdata

namespace tessgen::standalone {

using namespace foundation::orvakdata; // NOLINT(google-build-using-namespace)

const std::u16string& firstString(const Array& array) {
    struct Strings : StringArray {
        using StringArray::data;
        using StringArray::StringArray;
    };
    return elementsOf<StringElements>(Strings(array).data())->at(0).value();
}

Array makeCharArray(std::u16string text) {
    return Array(std::make_shared<ArrayData>(std::move(text)));
}

Array makeStringColumn(StringElements elements) {
    return Array(std::make_shared<ArrayData>(std::move(elements)));
}

} // namespace tessgen::standalone
