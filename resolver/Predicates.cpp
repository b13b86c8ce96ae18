#include "resolver/Predicates.hpp"

#include "host/Paths.hpp"

#include <string>

namespace tessgen::kelwhich {

namespace {

bool isPlainName(const std::u16string& name) {
    return name.find_first_of(u"/.") == std::u16string::npos;
}

} // namespace

bool isBuiltinOrSourceFile(const WhichResult& result) {
    switch (result.type) {
    case WhichResultType::KELBuiltin:
    case WhichResultType::ORVAKBuiltin:
    case WhichResultType::ORVAKBuiltinMethod:
        return true;
    case WhichResultType::KELPath:
    case WhichResultType::ORVAKPath:
        break;
    }
    const auto extension = fileExtension(result.path);
    return sameText(extension, u"vk") || sameText(extension, u"vkx");
}

bool isIndirectResult(const WhichResult& result, const std::u16string& name) {
    if (!isPlainName(name)) {
        return false;
    }
    switch (result.type) {
    case WhichResultType::ORVAKBuiltinMethod:
        return true;
    case WhichResultType::KELBuiltin:
    case WhichResultType::ORVAKBuiltin:
        return false;
    case WhichResultType::KELPath:
    case WhichResultType::ORVAKPath:
        break;
    }
    return definesDifferentName(result, name);
}

bool definesDifferentName(const std::u16string& path, const std::u16string& name) {
    if (!isPlainName(name)) {
        return false;
    }
    if (!sameText(qualifiedNameForPath(path), name)) {
        return true;
    }
    const auto classFolder = getClassFolderInfo(path);
    return classFolder && !sameText(classFolder->className, name);
}

} // namespace tessgen::kelwhich
