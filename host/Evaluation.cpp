#include "host/Evaluation.hpp"

#include "cmddistributor/RunOptions.hpp"
#include "foundation/orvakdata/ArrayFactory.hpp"
#include "foundation/orvakdata/TypedArray.hpp"
#include "orvak/data/optional.hpp"
#include "rux/Factory.hpp"
#include "rux/RUX.hpp"

#include <iterator>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

using foundation::orvakdata::Array;

std::vector<Array> evaluate(const std::string& function, const std::vector<Array>& arguments,
                            unsigned long outputCount) {
    const auto engine = rux::Factory::getCurrentLocalRUX();
    const auto requestId = rux::RUX::createRequestID();
    return engine->feval(function, arguments, outputCount, cmddistributor::RunOptions(), false, requestId).get();
}

Array toStringArray(const std::u16string& text) {
    return foundation::orvakdata::ArrayFactory().createArray({1, 1}, &text, std::next(&text));
}

std::vector<std::u16string> toStrings(const Array& array) {
    const foundation::orvakdata::TypedArray<orvak::data::optional<std::u16string>> elements(array);
    std::vector<std::u16string> strings;
    const auto end = elements.end();
    for (auto element = elements.begin(); !element.isEqual(end); element.increment()) {
        strings.push_back(element.getRef());
    }
    return strings;
}

} // namespace tessgen::kelwhich
