#include "host/Evaluation.hpp"

#include "cmddistributor/RunOptions.hpp"
#include "foundation/orvakdata/ArrayFactory.hpp"
#include "rux/Factory.hpp"
#include "rux/RUX.hpp"

#include <cstddef>
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
    static const foundation::orvakdata::ArrayDimensions oneElement = {1, 1};
    return foundation::orvakdata::ArrayFactory().createArray(oneElement, &text, std::next(&text));
}

std::size_t stringCount(const Array& array) {
    const foundation::orvakdata::StringArray elements(array);
    const auto end = elements.end();
    std::size_t count = 0;
    for (auto element = elements.begin(); !element.isEqual(end); element.increment()) {
        ++count;
    }
    return count;
}

} // namespace tessgen::kelwhich
