// Text in XML and HTML.
//
// Threads: any.
#pragma once

#include <string>
#include <string_view>

namespace tessgen::cli {

// `text`, which is UTF-8, for an attribute or an element; `plain` are characters that stay as they are. Characters that
// XML 1.0 refuses, even as a reference, are spelled out.
//   a<b  -> a&#60;b
//   \x01 -> \u{1}
std::string inXML(std::string_view text, std::string_view plain = "");

// The same with everything spelled out that could not be seen.
std::string visibleInXML(std::string_view text);

} // namespace tessgen::cli
